// Any bytes as a scope file: it is refused in one line, or it is a text and all that a lenient
// reader finds in it is in the scopes.
#include "scope_file.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "files.h"
#include "fuzz.h"

namespace {

bool IsLoaded(Scope& scope, const std::string& text) try {
  std::istringstream file(text);
  std::cin.rdbuf(file.rdbuf());
  std::cin.clear();
  LoadScope({"-", {}, {}}, &scope);
  return true;
} catch (const Failure& failure) {
  const std::string& message = failure.message;
  Require(failure.exit_code == kScopeFile && failure.where, message);
  Require(failure.where->where.starts_with("standard input:"), failure.where->where);
  Require(message.find('\n') == std::string::npos && message.size() < 1000, message);
  return false;
}

std::string ScopesDiffer(Input input) {
  std::string text = input.Rest();
  Scope scope;
  if (!IsLoaded(scope, text)) return "";
  const bool has_control = std::ranges::any_of(
      text, [](unsigned char c) { return c == 0x7F || (c < ' ' && (c < '\t' || c > '\r')); });
  if (has_control) return "a control character was let in";
  ZRTExpression expression;
  scope.Attach(&expression);
  DropByteOrderMark(&text);
  const auto root = nlohmann::json::parse(text, nullptr, false, true);
  for (const std::string section : {"tokens", "data"}) {
    if (!root.contains(section)) continue;
    for (const auto& [set, names] : root[section].items()) {
      for (const auto& [key, value] : names.items()) {
        std::string name = key;
        if (section == "data" ? !expression.SearchDataField(name.data())
                              : !expression.SearchToken(name.data())) {
          return name;
        }
      }
    }
  }
  return "";
}

}  // namespace

ZRT_FUZZ(ScopesDiffer)
