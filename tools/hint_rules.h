// What the rules of the hints look at and how they say it. Shared by the files of hints, and by
// nothing else.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hints.h"
#include "reading_text.h"

using Said = std::optional<Hint>;
inline constexpr std::string_view kOperators = "+-*/%&|@^~!$,<>";

inline bool IsOperator(char c) { return c != '\0' && kOperators.find(c) != std::string_view::npos; }
inline bool IsUnary(char c) { return c == '~' || c == '!' || c == '$'; }
inline bool IsDigit(char c) { return c >= '0' && c <= '9'; }

inline std::string InQuotes(std::string_view text) { return '"' + std::string(text) + '"'; }

// What a rule may look at.
struct Situation {
  std::string_view text;
  zrt::ValueKind kind;
  zrt::Place place;
  const Reading& reading;
  const std::vector<std::string>& names;
  const char* names_from;
  std::string_view part;  // at the place

  // The next characters beside the place that are no blanks; NUL where there is none.
  [[nodiscard]] char Before() const {
    const std::size_t at = text.substr(0, place.offset).find_last_not_of(' ');
    return at == std::string_view::npos ? '\0' : text[at];
  }
  [[nodiscard]] char At() const { return place.offset < text.size() ? text[place.offset] : '\0'; }

  [[nodiscard]] bool IsInIndex() const {
    const std::size_t bracket = text.substr(0, place.offset).find_last_of("[]");
    return bracket != std::string_view::npos && text[bracket] == '[';
  }

  // From `begin` through the operand or group that stands there, with the signs and unary operators
  // in front of it.
  [[nodiscard]] zrt::Place Through(std::size_t begin, std::size_t operand) const {
    const auto is_in_front = [](char c) { return c == ' ' || c == '-' || c == '+' || IsUnary(c); };
    while (operand < text.size() && is_in_front(text[operand])) ++operand;
    std::size_t end = operand;
    std::size_t depth = 0;
    for (; end < text.size(); ++end) {
      const char c = text[end];
      if (c == '[') end = std::min(text.find(']', end), text.size() - 1);
      if (c == '(') ++depth;
      if (c == ')' && depth-- <= 1) {
        end += depth == 0 ? 1 : 0;
        break;
      }
      if (depth == 0 && IsOperator(c)) break;
    }
    while (end > operand && text[end - 1] == ' ') --end;
    return {begin, end - begin};
  }
  [[nodiscard]] Hint Wrapped(zrt::Place wrapped, const std::string& says,
                             const std::string& before) const {
    const std::string inside(PartOf(text, wrapped));
    const bool has_operand = !inside.empty() && !IsOperator(inside.back());
    return {wrapped, says, has_operand ? before + inside + ")" : ""};
  }
};

inline std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

/// The reason of an ErrUnknownOperand (hints_operand.cpp).
Said UnknownOperandHint(const Situation& at);

/// That numbers have no sign (hints_operand.cpp).
Said SignHint(const Situation& at);
