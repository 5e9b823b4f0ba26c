// One look for the first bracket is all that an operand without an index costs. Blanks beside the
// brackets are dropped here, since no cut of the expression meets them.
#include "scan/operand_text.h"

#include <algorithm>

#include "scan/operators.h"
#include "scan/text.h"

namespace zrt {

ZRTStatus SplitOperand(std::string_view text, OperandText& operand) {
  const auto bracket = std::find_if(text.begin(), text.end(), IsBracket);
  if (bracket == text.end()) {
    operand = {text, std::nullopt};
    return kOk;
  }
  const auto open = std::find(bracket, text.end(), '[');  // a "]" before it is harmless
  if (open == text.end()) return ErrStrayCloseBracket;
  if (open == text.begin()) return ErrMissingArrayName;
  std::string_view index = DropLeadingBlanks({open + 1, text.end()});
  const std::size_t close = index.find(']');
  if (close == std::string_view::npos) return ErrMissingCloseBracket;
  index = DropTrailingBlanks(index.substr(0, close));
  if (index.empty()) return ErrEmptyIndex;
  operand = {DropTrailingBlanks({text.begin(), open}), index};
  return kOk;
}

}  // namespace zrt
