// Operands: a name, a name with an index, or a literal. Splitting serves every kind of value;
// reading serves integers and floats, which differ in how tokens and literals convert and in
// nothing else.
#pragma once

#include <optional>
#include <string_view>

#include "ErrorCodes.h"
#include "frame/scopes.h"

namespace zrt {

/// An operand's text taken apart. Views into the operand.
struct Operand {
  std::string_view name;                  // or literal
  std::optional<std::string_view> index;  // the text between the brackets, never empty
};

/// Splits `text`. What follows the "]" is ignored.
/// @return kOk, ErrMissingArrayName, ErrMissingCloseBracket, ErrEmptyIndex, ErrStrayCloseBracket.
ZRTStatus SplitOperand(std::string_view text, Operand& operand);

/// The index of an operand that has none.
inline constexpr int kNoIndex = -1;

/// Evaluates the index of `operand` as an integer expression into `index`, which stays kNoIndex if
/// there is none or if it fails before it gives a value. An index text holds no "]", so an operand
/// in it can have no index of its own: this goes down once and no further.
ZRTStatus EvaluateIndex(const Operand& operand, const Scopes& scopes, int& index);

/// Reads one operand into `value`, which a failure leaves as it was. For int and float.
template <class Number>
ZRTStatus ReadScalar(std::string_view text, const Scopes& scopes, Number& value);

}  // namespace zrt
