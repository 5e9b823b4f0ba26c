// Any bytes as a scope file: it is refused in one line, or all that a lenient reader finds in it is
// in the scopes.
#include "scope_file.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "files.h"
#include "fuzz.h"
#include "support.h"

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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string text = Input(data, size).Rest();
  Scope scope;
  if (!IsLoaded(scope, text)) return 0;
  ZRTExpression expression;
  scope.Attach(&expression);
  DropByteOrderMark(&text);
  const auto root = nlohmann::json::parse(text, nullptr, false, true);
  for (const std::string section : {"tokens", "data"}) {
    if (!root.contains(section)) continue;
    for (const auto& [set, names] : root[section].items()) {
      for (const auto& [key, value] : names.items()) {
        std::string name = key;
        Require(section == "data" ? expression.SearchDataField(name.data()) != nullptr
                                  : SearchToken(expression, name.data()) != nullptr,
                name);
      }
    }
  }
  return 0;
}
