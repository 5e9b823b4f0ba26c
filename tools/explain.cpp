// How a text is read, with values: its brackets, the picture of its cuts, and the steps. One
// evaluation tells all of it, so rows are taken as one evaluation takes them.
#include <iostream>
#include <sstream>

#include "commands.h"
#include "cut_svg.h"
#include "explain_page.h"
#include "page.h"
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

// What is drawn into files.
class Drawer {
 public:
  explicit Drawer(const PageRequest& request) : request_(request) {}

  void Draw(const std::string& text, const ReadingTree& tree, const std::string& failure) {
    const std::string id = "cut" + std::to_string(++count_);
    if (!request_.svg_path.empty()) svg_ = CutSvg(text, tree, failure, id);
    if (!request_.html_path.empty()) bodies_ += ExplainBody(text, tree, failure, id);
  }

  void WriteFiles() {
    if (!request_.svg_path.empty()) WriteFile(request_.svg_path, svg_);
    if (request_.html_path.empty()) return;
    WriteFile(request_.html_path, HtmlPage("zrteval explain", bodies_));
  }

 private:
  const PageRequest& request_;
  std::size_t count_ = 0;
  std::string svg_;
  std::string bodies_;
};

}  // namespace

ExitCode Explain(const ReadingRequest& request) {
  TextSession session(request);
  Drawer drawer(request.pages);
  bool is_first = true;
  const ExitCode exit_code = session.ForEach([&](const std::string& text, const Source& source) {
    TextEvaluator& evaluator = session.evaluator();
    const bool has_value = evaluator.EvaluateWatched(text, request.kind);
    const Reading& reading = evaluator.reading();
    const ReadingTree tree(reading);
    if (request.pages.is_asked_for()) {
      drawer.Draw(text, tree, evaluator.FailureWords(&session.explainer()));
      return has_value;
    }
    if (request.as_json) {
      JsonLine line = session.NewAnswer();
      evaluator.AddAnswer(&line, &session.explainer());
      const bool has_brackets = tree.root() != ReadingTree::kNone;
      if (has_brackets) line.AddText("brackets", tree.Brackets(text, tree.root()));
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
  drawer.WriteFiles();
  return exit_code;
}
