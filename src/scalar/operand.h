// Integer and float operands: a token, an element of a token, or a literal. The two kinds differ in
// how tokens and literals convert and in nothing else. The index serves bit vectors too.
#pragma once

#include <string_view>

#include "ErrorCodes.h"
#include "names/scopes.h"
#include "scan/operand_text.h"

namespace zrt {

/// The index of an operand that has none.
inline constexpr int kNoIndex = -1;

/// Evaluates the index of `operand` as an integer expression into `index`, which stays kNoIndex if
/// there is none or if it fails before it gives a value. An index text holds no "]", so an operand
/// in it can have no index of its own: this goes down once and no further.
ZRTStatus EvaluateIndex(const OperandText& operand, const Scopes& scopes, int& index);

/// Reads one operand into `value`, which a failure leaves as it was. For int and float.
/// @return kOk, ErrBadTokenType, ErrUnknownOperand, ErrMissingCloseBracket, ErrEmptyIndex,
///         ErrStrayCloseBracket, ErrMissingArrayName, ErrNegativeIndex. Throws std::bad_alloc.
template <class Number>
ZRTStatus ReadScalar(std::string_view text, const Scopes& scopes, Number& value);

}  // namespace zrt
