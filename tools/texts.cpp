// Texts are handed on one by one; what is shown of them is the commands' own.
#include "texts.h"

#include <iostream>

#include "output.h"
#include "terminal.h"

TextSession::TextSession(const ReadingRequest& request)
    : request_(request),
      explainer_(request.setting.data_dir),
      evaluator_(&scope_, {request.setting.max_bits, false, false, request.names_from}) {
  if (request.add_names) request.add_names(&scope_);
  LoadScope(request.setting.scope, &scope_);
}

ExitCode TextSession::ForEach(const Show& show) {
  bool is_good = true;
  for (const std::string& text : request_.texts) {
    is_good = show(text, ArgumentSource(text)) && is_good;
  }
  if (!request_.input_path.empty()) {
    LineReader reader(request_.input_path);
    while (std::cout) {
      const LineReader::State state = reader.Next();
      if (state == LineReader::State::kEndOfInput) break;
      is_good = ShowLine(reader, state, show) && is_good;
    }
  }
  FlushStandardOutput();
  return is_good ? kAllEvaluated : kExpressionFailed;
}

bool TextSession::ShowLine(const LineReader& reader, LineReader::State state, const Show& show) {
  line_number_ = reader.number();
  if (state == LineReader::State::kComplete) return show(reader.line(), reader.source());
  Refuse(reader.source(), Reason(state));
  return false;
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
