// The texts of a command that shows something of each: from the command line, or a line each.
#pragma once

#include <functional>
#include <string>

#include "commands.h"
#include "diagnostic.h"
#include "evaluator.h"
#include "failures.h"
#include "lines.h"
#include "scope.h"

/// What explain, check and names work with.
class TextSession {
 public:
  /// Throws Failure for a wrong scope file.
  explicit TextSession(const ReadingRequest& request);

  /// Calls `show` with each text and its source, and ends with its worst answer: whether a text is
  /// as it should be. A line that cannot be a text is complained of. Throws Failure.
  using Show = std::function<bool(const std::string& text, const Source& source)>;
  ExitCode ForEach(const Show& show);

  /// An object for a script, begun with the number of the line that the text is, if it is one.
  [[nodiscard]] JsonLine NewAnswer() const;

  TextEvaluator& evaluator() { return evaluator_; }
  Explainer& explainer() { return explainer_; }
  Scope& scope() { return scope_; }

 private:
  bool ShowLine(const LineReader& reader, LineReader::State state, const Show& show);
  void Refuse(const Source& source, const std::string& reason) const;

  const ReadingRequest& request_;
  Scope scope_;
  Explainer explainer_;
  TextEvaluator evaluator_;
  std::size_t line_number_ = 0;
};
