// Texts are handed on one by one; what is shown of them is the commands' own.
#include "texts.h"

#include <iostream>

#include "lines.h"
#include "output.h"
#include "terminal.h"

TextSession::TextSession(const ReadingRequest& request)
    : request_(request),
      explainer_(request.setting.data_dir),
      evaluator_(&scope_, {request.setting.max_bits, false, false, request.names_from}) {
  if (request.add_names) request.add_names(&scope_);
  LoadScope(request.setting.scope, &scope_);
}

ExitCode TextSession::ForEach(
    const std::function<bool(const std::string& text, const Source& source)>& show) {
  bool is_good = true;
  for (const std::string& text : request_.texts) {
    is_good = show(text, ArgumentSource(text)) && is_good;
  }
  if (!request_.input_path.empty()) {
    LineReader reader(request_.input_path);
    while (std::cout) {
      const LineReader::State state = reader.Next();
      if (state == LineReader::State::kEndOfInput) break;
      line_number_ = reader.number();
      if (state == LineReader::State::kComplete) {
        is_good = show(reader.line(), reader.source()) && is_good;
      } else {
        is_good = false;
        Refuse(reader.source(), Reason(state));
      }
    }
  }
  FlushStandardOutput();
  return is_good ? kAllEvaluated : kExpressionFailed;
}

JsonLine TextSession::NewAnswer() const {
  JsonLine answer;
  if (line_number_ > 0) answer.AddNumber("line", static_cast<long long>(line_number_));
  return answer;
}

// A line that is no text.
void TextSession::Refuse(const Source& source, const std::string& reason) const {
  if (request_.as_json) {
    std::cout << NewAnswer().AddText("error", reason).text() << '\n';
  } else {
    PrintPlace(ErrorStream(), source, {source.text.size(), 0}, reason, ErrorStyle());
  }
}
