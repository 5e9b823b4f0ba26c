// One loop over the texts for all kinds of values. Only ValueOf knows how a kind is evaluated.
#include <cerrno>
#include <cstring>
#include <iostream>

#include "commands.h"
#include "scope_file.h"
#include "shown_text.h"

namespace {

class Evaluator {
 public:
  explicit Evaluator(const EvaluateRequest& request)
      : request_(request), explainer_(request.data_dir) {
    if (!request.scope_path.empty()) scope_.Load(request.scope_path);
    scope_.Attach(&expression_);
  }

  void Run(const std::string& text, const std::string& label) {
    if (request_.fresh_rows) scope_.ResetRows();
    std::string value;
    const int status = ValueOf(text, &value);
    if (status < 0) return Fail(label + Quoted(text) + ": " + explainer_.Explain(status));
    std::cout << value;
    if (request_.format != BitFormat::kRaw) std::cout << '\n';
  }

  void Fail(const std::string& message) {
    exit_code_ = kExpressionFailed;
    Complain(message);
  }

  ExitCode exit_code() const { return exit_code_; }

 private:
  int ValueOf(const std::string& text, std::string* value) {
    int status = 0;
    if (request_.kind == ValueKind::kInt) {
      int number = 0;
      status = expression_.GetIntegerOperand(text.c_str(), &number);
      *value = std::to_string(number);
    } else if (request_.kind == ValueKind::kFloat) {
      float number = 0;
      status = expression_.GetFloatOperand(text.c_str(), &number);
      *value = FloatText(number);
    } else {
      RowDataStream stream;  // evaluated once, as a second reading would take the fields' next rows
      status = expression_.GetBitStream(text.c_str(), &stream);
      if (status < 0) return status;
      *value = BitText(&stream, request_.format);
      if (request_.with_length) *value += " " + std::to_string(stream.BitLength);
    }
    return status;
  }

  const EvaluateRequest& request_;
  Scope scope_;
  ZRTExpression expression_;
  Explainer explainer_;
  ExitCode exit_code_ = kAllEvaluated;
};

constexpr std::size_t kMostSkippedBytes = std::size_t{1} << 24U;

enum class LineState { kComplete, kHoldsNul, kTooLong, kEndOfInput };

// Takes a line of standard input without its end. Blanks matter to the language, so it loses
// nothing else. A line that cannot be a text is left where that shows: it may have no end.
LineState ReadLine(std::string* line) {
  std::streambuf* input = std::cin.rdbuf();
  line->clear();
  int c = input->sbumpc();
  if (c == EOF) return LineState::kEndOfInput;
  for (; c != EOF && c != '\n'; c = input->sbumpc()) {
    if (c == '\0') return LineState::kHoldsNul;
    if (line->size() == kMostTextBytes) return LineState::kTooLong;
    *line += static_cast<char>(c);
  }
  if (c == '\n' && line->ends_with('\r')) line->pop_back();
  return LineState::kComplete;
}

// Passes over what is left of a line. False if its end is too far away: it may never come.
bool SkipLine() {
  for (std::size_t count = 0; count < kMostSkippedBytes; ++count) {
    const int c = std::cin.rdbuf()->sbumpc();
    if (c == EOF || c == '\n') return true;
  }
  return false;
}

void RunLines(Evaluator* evaluator) {
  std::string line;
  for (std::size_t number = 1; std::cout; ++number) {
    const LineState state = ReadLine(&line);
    if (state == LineState::kEndOfInput) return;
    const std::string label = "line " + std::to_string(number) + ": ";
    if (number == 1) DropByteOrderMark(&line);
    if (state == LineState::kComplete) {
      evaluator->Run(line, label);
    } else {
      const bool holds_nul = state == LineState::kHoldsNul;
      evaluator->Fail(label + (holds_nul ? "the text holds a NUL" : "the text is too long"));
      if (!SkipLine()) {
        throw Failure{kInputOutput, label + "the line does not end within " +
                                        std::to_string(kMostSkippedBytes) + " bytes more"};
      }
    }
    // A program that talks to this one through pipes waits for each value.
    if (std::cin.rdbuf()->in_avail() <= 0) std::cout.flush();
  }
}

}  // namespace

ExitCode Evaluate(const EvaluateRequest& request) {
  Evaluator evaluator(request);
  if (request.batch) {
    errno = 0;
    try {
      RunLines(&evaluator);
    } catch (const std::ios_base::failure&) {
      throw Failure{kInputOutput, std::string("standard input: ") + std::strerror(errno)};
    }
  } else {
    for (const std::string& text : request.texts) evaluator.Run(text, "");
  }
  FlushStandardOutput();
  return evaluator.exit_code();
}
