// Lines typed by a person, with history and completion where the editing library was there at the
// build and the terminal can move its cursor. Knows nothing of what the lines mean.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class LineEditor {
 public:
  enum class End { kLine, kInterrupted, kEndOfInput };

  /// The words that may stand where the last word of a line's beginning stands, and how many of its
  /// bytes that word has.
  struct Completion {
    std::vector<std::string> words;
    std::size_t typed = 0;
  };
  using Complete = std::function<Completion(std::string_view beginning)>;

  /// What is shown below while a line is typed; empty for nothing.
  using Remark = std::function<std::string(const std::string& line)>;

  LineEditor() = default;
  virtual ~LineEditor() = default;
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  /// Reads a line, without its end. CatchInterrupts() must have been called.
  virtual End Read(const std::string& prompt, std::string* line) = 0;
};

std::unique_ptr<LineEditor> MakeLineEditor(LineEditor::Complete complete,
                                           LineEditor::Remark remark);

/// The one with the editing library, where there is one.
std::unique_ptr<LineEditor> MakeEditingEditor(LineEditor::Complete complete,
                                              LineEditor::Remark remark);
