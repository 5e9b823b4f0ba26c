// Takes text apart into characters, strictly: what is no UTF-8 is single bytes.
#include "shown_text.h"

#include <locale.h>  // NOLINT(modernize-deprecated-headers): newlocale() is the system's
#include <wchar.h>   // NOLINT(modernize-deprecated-headers): and so is wcwidth()

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Controls, line ends of every kind, marks that turn text around, tags.
constexpr Range kActing[] = {
    {0x00,    0x1F   },
    {0x7F,    0x9F   },
    {0x61C,   0x61C  },
    {0x200E,  0x200F },
    {0x2028,  0x202E },
    {0x2066,  0x2069 },
    {0xFFF9,  0xFFFB },
    {0xE0000, 0xE007F},
};

// Blanks that are none to the language, and characters without a shape.
constexpr Range kUnseen[] = {
    {0xA0,   0xA0  },
    {0xAD,   0xAD  },
    {0x1680, 0x1680},
    {0x180E, 0x180E},
    {0x2000, 0x200D},
    {0x202F, 0x202F},
    {0x205F, 0x2065},
    {0x206A, 0x206F},
    {0x3000, 0x3000},
    {0xFEFF, 0xFEFF},
};

bool IsIn(std::span<const Range> ranges, char32_t code) {
  return std::any_of(ranges.begin(), ranges.end(), [code](const Range& range) {
    return range.first <= code && code <= range.last;
  });
}

struct Character {
  char32_t code;
  std::size_t size;  // bytes
  bool is_valid;     // else `code` is a byte
};

// The first character of a text that is not empty.
Character FirstOf(std::string_view text) {
  constexpr std::array<char32_t, 5> kLeast = {0, 0, 0x80, 0x800, 0x10000};  // by size
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) return {lead, 1, true};
  const Character invalid = {lead, 1, false};
  const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < size) return invalid;
  char32_t code = lead & (0x7FU >> size);
  for (const char c : text.substr(1, size - 1)) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0U) != 0x80) return invalid;
    code = code << 6U | (byte & 0x3FU);
  }
  const bool is_surrogate = code >= 0xD800 && code <= 0xDFFF;
  return code < kLeast[size] || code > 0x10FFFF || is_surrogate ? invalid
                                                                : Character{code, size, true};
}

bool IsEscaped(const Character& character, bool shows_unseen) {
  return !character.is_valid || IsIn(kActing, character.code) ||
         (shows_unseen && IsIn(kUnseen, character.code));
}

std::string Escape(const Character& character) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  if (character.code == '\n') return "\\n";
  if (character.code == '\r') return "\\r";
  if (character.code == '\t') return "\\t";
  // \x is a byte, so characters of two bytes and more are \u.
  const unsigned digit_count = character.code > 0xFFFF ? 8 : character.size > 1 ? 4 : 2;
  std::string text = digit_count == 8 ? "\\U" : digit_count == 4 ? "\\u" : "\\x";
  for (unsigned i = digit_count; i-- > 0;) text += kDigits[character.code >> (4 * i) & 0xFU];
  return text;
}

// Columns of a character that is shown as it is. The program's own locale has no say.
std::size_t ColumnsOf(const Character& character) {
  if (!character.is_valid || character.code < 0x80) return 1;
  static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  if (utf8 == nullptr) return 1;
  const locale_t before = uselocale(utf8);
  const int columns = wcwidth(static_cast<wchar_t>(character.code));
  uselocale(before);
  return columns < 0 ? 1 : static_cast<std::size_t>(columns);
}

std::string ShownPart(std::string_view text, std::size_t most, bool shows_unseen) {
  std::string shown;
  std::size_t count = 0;
  while (!text.empty()) {
    const Character character = FirstOf(text);
    const bool is_escaped = IsEscaped(character, shows_unseen);
    const std::string piece =
        is_escaped ? Escape(character) : std::string(text.substr(0, character.size));
    count += is_escaped ? piece.size() : 1;
    if (count > most) return shown + "...";
    shown += piece;
    text.remove_prefix(character.size);
  }
  return shown;
}

}  // namespace

std::string Shown(std::string_view text, std::size_t most) { return ShownPart(text, most, false); }

std::string Quoted(std::string_view text) {
  constexpr std::size_t kMostCharacters = 60;
  return '"' + ShownPart(text, kMostCharacters, true) + '"';
}

ShownCharacter FirstShown(std::string_view text, bool shows_unseen) {
  const Character character = FirstOf(text);
  if (!IsEscaped(character, shows_unseen)) {
    return {std::string(text.substr(0, character.size)), character.size, ColumnsOf(character)};
  }
  std::string shown = Escape(character);
  const std::size_t columns = shown.size();
  return {std::move(shown), character.size, columns};
}

std::size_t ColumnsOf(std::string_view shown) {
  std::size_t columns = 0;
  while (!shown.empty()) {
    const ShownCharacter character = FirstShown(shown, false);
    columns += character.columns;
    shown.remove_prefix(character.size);
  }
  return columns;
}

std::string Counted(std::size_t count, const char* noun) {
  return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

std::string Padded(std::string shown, std::size_t columns) {
  shown.append(columns - std::min(columns, ColumnsOf(shown)), ' ');
  return shown;
}

std::vector<std::string> Wrapped(std::string_view words, std::size_t columns, std::size_t first) {
  const auto end_of_word = [&words] {
    bool is_quoted = false;
    std::size_t end = 0;
    for (; end < words.size() && (is_quoted || words[end] != ' '); ++end) {
      if (words[end] == '"') is_quoted = !is_quoted;
    }
    return end;
  };
  std::vector<std::string> lines(1);
  for (bool is_begin = true; !words.empty(); is_begin = false) {
    const std::string_view word = words.substr(0, end_of_word());
    words.remove_prefix(std::min(word.size() + 1, words.size()));
    const std::size_t room = lines.size() == 1 ? first : columns;
    if (is_begin) {
      lines.back() = word;
    } else if (ColumnsOf(lines.back()) + 1 + ColumnsOf(word) > room) {
      lines.emplace_back(word);
    } else {
      lines.back().append(1, ' ').append(word);
    }
  }
  return lines;
}

TextPosition PositionOf(std::string_view text, std::size_t offset) {
  constexpr std::size_t kTab = 8;
  const std::string_view before = text.substr(0, offset);
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  std::string_view start = before.substr(before.rfind('\n') + 1);  // npos + 1 is 0
  std::size_t columns = 0;
  while (!start.empty()) {
    const Character character = FirstOf(start);
    columns += character.code == '\t' ? kTab - columns % kTab : ColumnsOf(character);
    start.remove_prefix(character.size);
  }
  return {static_cast<std::size_t>(line), columns + 1};
}
