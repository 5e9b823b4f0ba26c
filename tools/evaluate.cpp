// One loop over the texts for all kinds of values, and both ways to tell them.
#include <iostream>
#include <sstream>

#include "commands.h"
#include "evaluator.h"
#include "lines.h"
#include "terminal.h"

namespace {

class Teller {
 public:
  explicit Teller(const EvaluateRequest& request)
      : request_(request),
        explainer_(request.setting.data_dir),
        evaluator_(&scope_,
                   {request.setting.max_bits, request.fresh_rows, !request.input_path.empty()}),
        style_(ErrorStyle()) {
    LoadScope(request.setting.scope, &scope_);
  }

  void RunTexts() {
    for (const std::string& text : request_.texts) Run(text, nullptr);
  }

  void RunLines() {
    LineReader reader(request_.input_path);
    while (std::cout) {
      const LineReader::State state = reader.Next();
      if (state == LineReader::State::kEndOfInput) return;
      if (state == LineReader::State::kComplete) {
        Run(reader.line(), &reader);
      } else {
        Refuse(reader, Reason(state));
      }
      // A program that talks to this one through pipes waits for each value.
      if (reader.must_wait()) std::cout.flush();
    }
  }

  [[nodiscard]] ExitCode exit_code() const { return exit_code_; }

 private:
  // `reader` has read the text as a line; null if it is none.
  void Run(const std::string& text, const LineReader* reader) {
    const bool has_value = evaluator_.Evaluate(text, request_.kind);
    if (!has_value) exit_code_ = kExpressionFailed;
    if (request_.as_json) {
      JsonLine answer;
      if (reader != nullptr) AddLine(*reader, &answer);
      evaluator_.AddAnswer(&answer, &explainer_);
      std::cout << answer.text() << '\n';
    } else if (has_value) {
      PrintValue();
    } else {
      const Source source = reader == nullptr ? ArgumentSource(text) : reader->source();
      std::ostringstream message;
      evaluator_.PrintFailure(message, source, &explainer_, style_);
      ErrorStream() << message.str();
    }
  }

  // A line that is no text.
  void Refuse(const LineReader& reader, const std::string& reason) {
    exit_code_ = kExpressionFailed;
    if (request_.as_json) {
      JsonLine answer;
      AddLine(reader, &answer);
      std::cout << answer.AddText("error", reason).text() << '\n';
    } else {
      PrintPlace(ErrorStream(), reader.source(), {reader.line().size(), 0}, reason, style_);
    }
  }

  static void AddLine(const LineReader& reader, JsonLine* answer) {
    answer->AddNumber("line", static_cast<long long>(reader.number()));
  }

  void PrintValue() {
    std::cout << evaluator_.ValueText(request_.format);
    if (request_.with_length) std::cout << ' ' << evaluator_.bit_length();
    if (request_.format != BitFormat::kRaw) std::cout << '\n';
  }

  const EvaluateRequest& request_;
  Scope scope_;
  Explainer explainer_;
  TextEvaluator evaluator_;
  Style style_;
  ExitCode exit_code_ = kAllEvaluated;
};

}  // namespace

ExitCode Evaluate(const EvaluateRequest& request) {
  Teller teller(request);
  if (request.input_path.empty()) {
    teller.RunTexts();
  } else {
    teller.RunLines();
  }
  FlushStandardOutput();
  return teller.exit_code();
}
