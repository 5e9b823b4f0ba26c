// How a text is read, with values: its brackets, the picture of its cuts, and the steps. One
// evaluation tells all of it, so rows are taken as one evaluation takes them.
#include <iostream>
#include <sstream>

#include "commands.h"
#include "picture.h"
#include "reading_text.h"
#include "reading_tree.h"
#include "shown_text.h"
#include "steps.h"
#include "terminal.h"
#include "texts.h"

namespace {

void PrintReading(const std::string& text, const ReadingTree& tree) {
  const Reading& reading = tree.reading();
  if (tree.root() != ReadingTree::kNone) {
    std::cout << "reads as  " << Shown(tree.Brackets(text, tree.root())) << "\n\n";
  }
  const std::string picture = CutPicture(text, reading, OutputStyle().columns);
  if (!picture.empty()) {
    std::cout << picture << '\n';
  } else if (!reading.operations().empty()) {
    std::cout << CutList(text, tree) << '\n';
  }
  const std::string lines = StepLines(text, reading);
  if (!lines.empty()) std::cout << lines << '\n';
  if (reading.has_outcome()) std::cout << "gives  " << ValueText(reading.outcome_value()) << '\n';
}

}  // namespace

ExitCode Explain(const ReadingRequest& request) {
  TextSession session(request);
  bool is_first = true;
  return session.ForEach([&](const std::string& text, const Source& source) {
    TextEvaluator& evaluator = session.evaluator();
    const bool has_value = evaluator.EvaluateWatched(text, request.kind);
    const Reading& reading = evaluator.reading();
    const ReadingTree tree(reading);
    if (request.as_json) {
      JsonLine line;
      evaluator.AddAnswer(&line, &session.explainer());
      if (tree.root() != ReadingTree::kNone) {
        line.AddText("brackets", tree.Brackets(text, tree.root()));
      }
      std::cout << line.AddWritten("steps", StepArray(text, reading)).text() << '\n';
      return has_value;
    }
    if (!is_first) std::cout << '\n';
    is_first = false;
    PrintReading(text, tree);
    if (has_value) return true;
    std::ostringstream message;
    evaluator.PrintFailure(message, source, &session.explainer(), ErrorStyle());
    ErrorStream() << message.str();
    return false;
  });
}
