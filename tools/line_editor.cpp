// Which editor it is, and the plain one: lines as the terminal itself gives them.
#include "line_editor.h"

#include <unistd.h>

#include <iostream>
#include <utility>

#include "terminal.h"

namespace {

class PlainEditor : public LineEditor {
 public:
  End Read(const std::string& prompt, std::string* line) override {
    std::cout << prompt << std::flush;
    line->clear();
    for (char c = '\0'; c != '\n';) {
      const ssize_t count = read(STDIN_FILENO, &c, 1);
      const bool is_interrupted = TakeInterrupt();
      if (is_interrupted || count <= 0) {
        std::cout << '\n';
        return is_interrupted ? End::kInterrupted : End::kEndOfInput;
      }
      if (c != '\n') *line += c;
    }
    return End::kLine;
  }
};

}  // namespace

#ifdef ZRT_HAS_EDIT
std::unique_ptr<LineEditor> MakeLineEditor(LineEditor::Complete complete,
                                           LineEditor::Remark remark) {
  if (CanMoveCursor()) return MakeEditingEditor(std::move(complete), std::move(remark));
  return std::make_unique<PlainEditor>();
}
#else
// NOLINTBEGIN(performance-unnecessary-value-param): as the other one takes them
std::unique_ptr<LineEditor> MakeLineEditor(LineEditor::Complete /*complete*/,
                                           LineEditor::Remark /*remark*/) {
  return std::make_unique<PlainEditor>();
}
// NOLINTEND(performance-unnecessary-value-param)
#endif
