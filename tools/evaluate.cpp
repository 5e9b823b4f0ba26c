// One loop over the texts for all kinds of values. Only ValueOf knows how a kind is evaluated.
#include <cerrno>
#include <cstring>
#include <iostream>

#include "commands.h"
#include "scope_file.h"

namespace {

// A piece of the text, enough to know it again.
std::string Shown(const std::string& text) {
  constexpr std::size_t kLongest = 60;
  return '"' + (text.size() <= kLongest ? text : text.substr(0, kLongest) + "...") + '"';
}

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
    if (text.find('\0') != std::string::npos) return Fail(label + "the text holds a NUL");
    const int status = ValueOf(text, &value);
    if (status < 0) return Fail(label + Shown(text) + ": " + explainer_.Explain(status));
    std::cout << value;
    if (request_.format != BitFormat::kRaw) std::cout << '\n';
  }

  ExitCode exit_code() const { return exit_code_; }

 private:
  void Fail(const std::string& message) {
    exit_code_ = kExpressionFailed;
    Complain(message);
  }

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

// Blanks matter to the language, so a line loses nothing but its end.
void RunLines(Evaluator* evaluator) {
  std::string line;
  std::size_t number = 0;
  errno = 0;
  while (std::cout && std::getline(std::cin, line)) {
    if (!std::cin.eof() && line.ends_with('\r')) line.pop_back();
    evaluator->Run(line, "line " + std::to_string(++number) + ": ");
    // A program that talks to this one through pipes waits for each value.
    if (std::cin.rdbuf()->in_avail() <= 0) std::cout.flush();
  }
  if (std::cin.bad()) {
    throw Failure{kInputOutput, std::string("standard input: ") + std::strerror(errno)};
  }
}

}  // namespace

ExitCode Evaluate(const EvaluateRequest& request) {
  Evaluator evaluator(request);
  if (request.batch) {
    RunLines(&evaluator);
  } else {
    for (const std::string& text : request.texts) evaluator.Run(text, "");
  }
  FlushStandardOutput();
  return evaluator.exit_code();
}
