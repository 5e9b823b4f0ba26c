// Any bytes as a scope file: it is refused in one line, or all that a lenient reader finds in it is
// in the scopes.
#include "scope_file.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>

#include "files.h"
#include "fuzz.h"
#include "support.h"

namespace {

// What the file is refused with, if it is.
std::optional<std::string> Load(Scope& scope, const std::string& text) try {
  std::istringstream file(text);
  std::cin.rdbuf(file.rdbuf());
  std::cin.clear();
  scope.Load("-");
  return std::nullopt;
} catch (const Failure& failure) {
  const std::string& message = failure.message;
  Require(failure.exit_code == kScopeFile && message.starts_with("standard input: "), message);
  Require(message.find('\n') == std::string::npos && message.size() < 1000, message);
  return message;
}

std::size_t CountOf(const nlohmann::json& value) { return value.is_array() ? value.size() : 1; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string text = Input(data, size).Rest();
  Scope scope, again;
  const auto refusal = Load(scope, text);
  Require(Load(again, text) == refusal, "the same file is refused with the same words");
  if (refusal) return 0;
  ZRTExpression expression;
  scope.Attach(&expression);
  DropByteOrderMark(&text);
  const auto root = nlohmann::json::parse(text, nullptr, false, true);
  for (const auto& [set, names] : root.value("tokens", nlohmann::json::object()).items()) {
    for (const auto& [name, value] : names.items()) {
      std::string key = name;
      ZRTTokens* token = SearchToken(expression, key.data());
      Require(token != nullptr, "each token is there");
      if (set == "local" && value.is_number_integer()) {
        Require(token->GetTokenType() == 2 && token->GetIntValue() == value.get<int>(), name);
      }
    }
  }
  for (const auto& [set, names] : root.value("data", nlohmann::json::object()).items()) {
    for (const auto& [name, value] : names.items()) {
      std::string key = name;
      QLMDataField* field = expression.SearchDataField(key.data());
      Require(field != nullptr, "each field is there");
      if (set == "external")
        Require(field->GetRowCount() == static_cast<int>(CountOf(value)), name);
    }
  }
  return 0;
}
