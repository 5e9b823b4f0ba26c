// Blanks and pieces of text. A blank is the space alone; a tab is a character like any other.
#pragma once

#include <cstddef>
#include <string_view>

namespace zrt {

constexpr std::string_view DropLeadingBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

constexpr std::string_view DropTrailingBlanks(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);  // npos + 1 is 0
}

}  // namespace zrt
