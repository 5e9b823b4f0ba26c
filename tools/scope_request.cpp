// Scope files and the names of a command line, and what is wrong with them, shown in their own
// text.
#include <algorithm>
#include <charconv>
#include <string_view>

#include "files.h"
#include "scope_file.h"

namespace {

using nlohmann::json;

void LoadFile(const std::string& path, Scope* scope) {
  JsonText text(ReadText(path, kScopeFile));
  const auto fail = [&](const JsonError& error) {
    const Source source = {ShownName(path), text.text(), 1, false};
    return FailureAt(kScopeFile, source, {error.offset, 0}, error.what());
  };
  try {
    ReadScope(text.Parse(), scope);
  } catch (const JsonError& error) {
    throw fail(error);
  } catch (const JsonRefusal& refusal) {
    throw fail(text.Complaint(refusal.path, refusal.reason));
  }
}

[[noreturn]] void RefuseArgument(std::string_view argument, zrt::Place place,
                                 const std::string& message) {
  throw FailureAt(kUsage, ArgumentSource(argument), place, message);
}

// Splits "name=value". The value begins behind the first "=".
std::string NameIn(const std::string& argument, const std::string& form) {
  const std::size_t equals = argument.find('=');
  if (equals == std::string::npos) {
    RefuseArgument(argument, {argument.size(), 0}, "a \"=\" is missing" + form);
  }
  if (equals == 0) RefuseArgument(argument, {0, 0}, "a name is missing" + form);
  return argument.substr(0, equals);
}

void DefineToken(const std::string& argument, const std::string& form, Scope* scope) {
  constexpr std::size_t kPathToName = 3;
  const std::string name = NameIn(argument, form);
  const std::size_t start = name.size() + 1;
  JsonText text(argument.substr(start));
  try {
    json root;
    root["tokens"]["local"][name] = text.Parse();
    ReadScope(root, scope);
  } catch (const JsonError& error) {
    const std::string reason =
        error.pointer.empty() ? "this is no number and no array of numbers" : error.reason;
    RefuseArgument(argument, {start + error.offset, 0}, reason + form);
  } catch (JsonRefusal& refusal) {
    refusal.path.erase(refusal.path.begin(), refusal.path.begin() + kPathToName);
    const JsonError error = text.Complaint(refusal.path, refusal.reason);
    RefuseArgument(argument, {start + error.offset, 0}, error.reason + form);
  }
}

// A row as the scope file has it: "0x0ABC/12" with its width, "0x12" with 8 bits a byte.
json RowOf(std::string_view argument, zrt::Place place, const std::string& form) {
  const std::string_view text = argument.substr(place.offset, place.length);
  const std::size_t slash = text.find('/');
  json row = {
      {"bytes", std::string(text.substr(0, slash))}
  };
  if (slash == std::string_view::npos) return row;
  const std::string_view digits = text.substr(slash + 1);
  int width = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), width);
  if (error != std::errc() || end != digits.data() + digits.size() || width < 0) {
    RefuseArgument(argument, {place.offset + slash + 1, digits.size()},
                   "the width is no number from 0 to 2147483647" + form);
  }
  row["width"] = width;
  return row;
}

void DefineField(const std::string& argument, const std::string& form, Scope* scope) {
  const std::string name = NameIn(argument, form);
  for (std::size_t start = name.size() + 1, end = 0; end < argument.size(); start = end + 1) {
    end = std::min(argument.find(',', start), argument.size());
    const zrt::Place place = {start, end - start};
    try {
      json root;
      root["data"]["external"][name] = RowOf(argument, place, form);
      ReadScope(root, scope);
    } catch (const JsonRefusal& refusal) {
      RefuseArgument(argument, place, refusal.reason + form);
    }
  }
}

}  // namespace

void LoadScope(const ScopeRequest& request, Scope* scope) {
  for (const std::string& argument : request.tokens)
    DefineToken(argument, request.token_form, scope);
  for (const std::string& argument : request.fields)
    DefineField(argument, request.field_form, scope);
  if (request.path.empty()) return;
  Scope file;
  LoadFile(request.path, &file);
  scope->AddMissing(file);
}
