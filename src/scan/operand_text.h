// The text of an operand taken apart at its brackets. Pure text: what a name stands for, and what
// an index is worth, is for others.
#pragma once

#include <optional>
#include <string_view>

#include "ErrorCodes.h"

namespace zrt {

/// Views into the operand.
struct OperandText {
  std::string_view name;                  // or literal
  std::optional<std::string_view> index;  // the text between the brackets, never empty
};

/// Splits `text`. What follows the "]" is ignored.
/// @return kOk, ErrMissingArrayName, ErrMissingCloseBracket, ErrEmptyIndex, ErrStrayCloseBracket.
ZRTStatus SplitOperand(std::string_view text, OperandText& operand);

}  // namespace zrt
