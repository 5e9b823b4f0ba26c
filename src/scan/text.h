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

/// Whether `is_in` gives no 0 for each character. No branch a character, so that compilers make
/// vectors of the loop: texts may be millions of characters long.
template <class IsIn>
constexpr bool AllOf(std::string_view text, const IsIn& is_in) {
  constexpr std::size_t kPiece = 256;
  for (; !text.empty(); text.remove_prefix(text.size() < kPiece ? text.size() : kPiece)) {
    unsigned char others = 0;
    for (const char c : text.substr(0, kPiece)) others |= static_cast<unsigned char>(is_in(c) == 0);
    if (others != 0) return false;
  }
  return true;
}

/// Where `c` stands behind `first`, counted modulo 256: below the size of a range of characters for
/// those that are in it.
constexpr unsigned char PlaceBehind(char first, int c) {
  return static_cast<unsigned char>(c - first);
}

}  // namespace zrt
