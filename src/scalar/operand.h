// Integer and float operands: a token, an element of a token, or a literal. The two kinds differ in
// how tokens and literals convert and in nothing else. The index serves bit vectors too.
#pragma once

#include <string_view>

#include "ErrorCodes.h"
#include "names/scopes.h"
#include "scalar/convert.h"
#include "scan/operand_text.h"
#include "scan/short_operand.h"

namespace zrt {

/// The index of an operand that has none.
inline constexpr int kNoIndex = -1;

/// Evaluates the index of `operand` as an integer expression into `index`, which stays kNoIndex if
/// there is none or if it fails before it gives a value. An index text holds no "]", so an operand
/// in it can have no index of its own: this goes down once and no further.
ZRTStatus EvaluateIndex(const OperandText& operand, const Scopes& scopes, int& index);

/// Reads an operand that has brackets or is long.
template <class Number>
ZRTStatus ReadIndexedScalar(std::string_view text, const Scopes& scopes, Number& value);

/// Reads a token, which has an index if that is not kNoIndex.
template <class Number>
ZRTStatus ReadToken(ZRTTokens& token, int index, Number& value);

/// Reads a literal of any kind. @return kOk, ErrUnknownOperand.
template <class Number>
ZRTStatus ReadLiteral(std::string_view text, Number& value);

/// Reads one operand into `value`, which a failure leaves as it was. For int and float. A token is
/// asked for before the text is looked at as a number, so a token may hide a literal.
/// @return kOk, ErrBadTokenType, ErrUnknownOperand, ErrMissingCloseBracket, ErrEmptyIndex,
///         ErrStrayCloseBracket, ErrMissingArrayName, ErrNegativeIndex. Throws std::bad_alloc.
template <class Number>
ZRTStatus ReadScalar(std::string_view text, const Scopes& scopes, Number& value) {
  ShortOperand plain(text);
  if (!plain.is_plain()) return ReadIndexedScalar(text, scopes, value);
  if (ZRTTokens* token = scopes.FindToken(plain.name())) return ReadToken(*token, kNoIndex, value);
  if (!plain.is_small_number()) return ReadLiteral(text, value);
  FromInteger(plain.small_number(), value);
  return kOk;
}

}  // namespace zrt
