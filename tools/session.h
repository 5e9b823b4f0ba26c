// A session at a terminal: texts are evaluated line by line, commands begin with a colon.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "commands.h"
#include "line_editor.h"
#include "session_scope.h"

class Session {
 public:
  /// Asks for lines until the end of input or :quit.
  void Run();

 private:
  void HandleGuarded(const std::string& line);
  void Handle(const std::string& line);
  void HandleCommand(std::string_view name, const std::string& rest);
  void Evaluate(const std::string& text);
  bool EvaluateApart(const std::string& text, std::string* written);
  void Let(const std::string& rest);
  void TellRows();
  void TellNames();
  void Inspect(std::string_view command, const std::string& rest);
  bool RunGuarded(const std::function<std::string()>& work, std::string* result);
  LineEditor::Completion Complete(std::string_view beginning) const;
  std::string RemarkOn(const std::string& line);
  std::vector<std::string> Names() const;

  zrt::ValueKind kind_ = zrt::ValueKind::kInteger;
  SessionScope scope_;

  // The last text as it was evaluated.
  std::string last_text_;
  zrt::ValueKind last_kind_ = zrt::ValueKind::kInteger;
  SessionScope last_scope_;
  bool is_over_ = false;
};
