// Blanks beside the brackets of an index are dropped here, since no cut of the expression meets
// them.
#include "scan/operand_text.h"

#include "scan/text.h"

namespace zrt {

ZRTStatus SplitOperand(std::string_view text, OperandText& operand) {
  const std::size_t open = text.find('[');  // a "]" before it is harmless
  if (open == std::string_view::npos) {
    if (text.find(']') != std::string_view::npos) return ErrStrayCloseBracket;
    operand = {text, std::nullopt};
    return kOk;
  }
  if (open == 0) return ErrMissingArrayName;
  std::string_view index = DropLeadingBlanks(text.substr(open + 1));
  const std::size_t close = index.find(']');
  if (close == std::string_view::npos) return ErrMissingCloseBracket;
  index = DropTrailingBlanks(index.substr(0, close));
  if (index.empty()) return ErrEmptyIndex;
  operand = {DropTrailingBlanks(text.substr(0, open)), index};
  return kOk;
}

}  // namespace zrt
