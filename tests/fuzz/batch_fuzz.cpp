// Any bytes as what scripts hand to the host program: lines of a batch, each of which gets one
// answer in plain ASCII that says what became of it, and names on a command line, which are refused
// in their own text or found.
#include <algorithm>
#include <iostream>
#include <sstream>

#include "commands.h"
#include "fuzz.h"
#include "support.h"

namespace {

bool IsShowable(std::string_view text, unsigned char highest = 0xFF) {
  return std::all_of(text.begin(), text.end(), [highest](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x20 && byte != 0x7F && byte <= highest;
  });
}

// Each line is a run of its own, nearly.
std::string FirstLines(const std::string& text, int count) {
  std::size_t end = 0;
  while (count-- > 0 && end < text.size())
    end = std::min(text.find('\n', end), text.size() - 1) + 1;
  return text.substr(0, end);
}

void TryLines(const std::string& text) {
  std::istringstream lines(text);
  std::ostringstream answers;
  std::cin.rdbuf(lines.rdbuf());
  std::streambuf* output = std::cout.rdbuf(answers.rdbuf());
  BatchRequest request;
  request.input_path = "-";
  request.setting.scope.fields = {"f=0x11,0x22/7"};
  request.setting.max_bits = 1 << 20;
  EvaluateObjects(request);
  std::cout.rdbuf(output);

  std::istringstream written(answers.str());
  std::ptrdiff_t count = 0;
  for (std::string line; std::getline(written, line); ++count) {
    const auto answer = nlohmann::json::parse(line, nullptr, false);
    Require(answer.is_object() && answer.contains("line"), line);
    Require(answer.contains("error") != answer.contains("status"), line);
    Require(IsShowable(line, 0x7E), line);
  }
  const bool is_open = !text.empty() && text.back() != '\n';
  Require(count == std::count(text.begin(), text.end(), '\n') + (is_open ? 1 : 0), "the count");
}

void TryName(bool is_field, const std::string& argument) try {
  Scope scope;
  ScopeRequest request;
  (is_field ? request.fields : request.tokens) = {argument};
  LoadScope(request, &scope);
  ZRTExpression expression;
  scope.Attach(&expression);
  std::string name = argument.substr(0, argument.find('='));
  Require(is_field ? expression.SearchDataField(name.data()) != nullptr
                   : expression.SearchToken(name.data()) != nullptr,
          name);
} catch (const Failure& failure) {
  Require(failure.exit_code == kUsage && failure.where && IsShowable(failure.message), "refused");
  Require(IsShowable(failure.where->where) && IsShowable(failure.where->window), argument);
  Require(failure.where->caret + failure.where->underlined <= failure.where->window.size() + 1,
          argument);
}

}  // namespace

ZRT_FUZZ([](Input input) {
  const std::uint8_t way = input.Byte();
  const std::string text = input.Rest();
  if (way != 't' && way != 'd') {
    TryLines(FirstLines(text, turn == 0 ? 400 : 1 + static_cast<int>(turn % 3)));
  } else if (text.find('\0') == std::string::npos) {
    TryName(way == 'd', text);
  }
  return std::string();
})
