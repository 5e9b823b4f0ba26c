// A line is shown as a window around the place, so that a long one fits a terminal, and only what
// may stand in it is looked at.
#include "diagnostic.h"

#include <algorithm>
#include <ostream>
#include <vector>

#include "shown_text.h"

namespace {

constexpr std::string_view kIndent = "  ";
constexpr std::string_view kHanging = "    ";  // more than what a text has
constexpr std::string_view kCut = "...";
constexpr std::size_t kFewestColumns = 20;

constexpr const char* kBold = "\033[1m";
constexpr const char* kRed = "\033[1;31m";
constexpr const char* kGreen = "\033[1;32m";
constexpr const char* kCyan = "\033[1;36m";
constexpr const char* kPlain = "\033[0m";

// The line that a place begins in, and what of the place is in it. The line end is part of the line
// if it may be what is wrong with it.
struct Line {
  std::string_view text;
  std::size_t offset;
  std::size_t length;
};

Line LineOf(const Source& source, zrt::Place place) {
  const std::string_view text = source.text;
  const std::size_t offset = std::min(place.offset, text.size());
  const std::size_t start = text.substr(0, offset).rfind('\n') + 1;  // npos + 1 is 0
  std::size_t end = std::min(text.find('\n', offset), text.size());
  if (source.shows_blanks && end < text.size()) ++end;
  return {text.substr(start, end - start), offset - start, std::min(place.length, end - offset)};
}

using Characters = std::vector<ShownCharacter>;

// The first characters of `text`, enough for as many columns.
Characters CharactersOf(std::string_view text, std::size_t columns, bool shows_blanks) {
  Characters characters;
  for (std::size_t used = 0; !text.empty() && used <= columns;) {
    ShownCharacter character = FirstShown(text, shows_blanks);
    if (!shows_blanks && text.front() == '\t') character = {" ", 1, 1};
    text.remove_prefix(character.size);
    used += std::max<std::size_t>(character.columns, 1);
    characters.push_back(std::move(character));
  }
  return characters;
}

// The last ones, likewise: as many bytes as could matter, from the beginning of a character.
Characters LastCharactersOf(std::string_view text, std::size_t columns, bool shows_blanks) {
  constexpr std::size_t kMostBytes = 4;  // of a character
  if (text.size() > columns * kMostBytes) text.remove_prefix(text.size() - columns * kMostBytes);
  const auto is_inside = [&text] {
    return !text.empty() && (static_cast<unsigned char>(text.front()) & 0xC0U) == 0x80;
  };
  for (std::size_t k = 1; k < kMostBytes && is_inside(); ++k) text.remove_prefix(1);
  return CharactersOf(text, std::string_view::npos, shows_blanks);
}

std::size_t ColumnsOf(const Characters& characters) {
  std::size_t columns = 0;
  for (const ShownCharacter& character : characters) columns += character.columns;
  return columns;
}

std::size_t BytesOf(const Characters& characters) {
  std::size_t bytes = 0;
  for (const ShownCharacter& character : characters) bytes += character.size;
  return bytes;
}

// What of `columns` those in front of the place get, if not all fit: a third, or what the others
// leave.
std::size_t RoomInFront(std::size_t columns, std::size_t front, std::size_t behind) {
  if (front + behind <= columns) return front;
  const std::size_t left = columns - std::min(columns, behind);
  return std::min(front, std::max(columns / 3, left));
}

std::string Paint(std::string_view text, const char* color, bool is_colored) {
  return is_colored ? color + std::string(text) + kPlain : std::string(text);
}

// What stands behind so many columns of a line.
std::string Sentence(std::string_view words, std::size_t used, const Style& style) {
  if (!style.wraps) return std::string(words);
  const std::size_t columns = std::max(style.columns, kFewestColumns);
  std::string sentence;
  for (const std::string& line :
       Wrapped(words, columns - kHanging.size(), columns - used % columns)) {
    if (!sentence.empty()) sentence.append(1, '\n').append(kHanging);
    sentence += line;
  }
  return sentence;
}

}  // namespace

Source ArgumentSource(std::string_view text) { return {Quoted(text), text}; }

Diagnostic MakeDiagnostic(const Source& source, zrt::Place place, std::size_t columns) {
  columns = std::max(columns, kFewestColumns) - kIndent.size();
  const TextPosition position = PositionOf(source.text, place.offset);
  Diagnostic diagnostic;
  diagnostic.where = source.label + ":" + std::to_string(source.first_line + position.line - 1) +
                     ":" + std::to_string(position.column);

  const Line line = LineOf(source, place);
  Characters front =
      LastCharactersOf(line.text.substr(0, line.offset), columns, source.shows_blanks);
  Characters behind = CharactersOf(line.text.substr(line.offset), columns, source.shows_blanks);
  const std::size_t room = RoomInFront(columns, ColumnsOf(front), ColumnsOf(behind));
  if (ColumnsOf(front) > room || BytesOf(front) < line.offset) {
    auto first = front.begin();
    for (std::size_t used = ColumnsOf(front) + kCut.size(); first != front.end() && used > room;) {
      used -= first++->columns;
    }
    front.erase(front.begin(), first);
    front.insert(front.begin(), {std::string(kCut), 0, kCut.size()});
  }
  const std::size_t caret = ColumnsOf(front);
  const std::size_t left = columns - std::min(columns, caret);
  if (ColumnsOf(behind) > left || line.offset + BytesOf(behind) < line.text.size()) {
    while (behind.size() > 1 && ColumnsOf(behind) + kCut.size() > left) behind.pop_back();
    behind.push_back({std::string(kCut), 0, kCut.size()});
  }
  for (const ShownCharacter& character : front) diagnostic.window += character.shown;
  std::size_t bytes = 0, underlined = 0;
  for (const ShownCharacter& character : behind) {
    diagnostic.window += character.shown;
    if (bytes < line.length) underlined += character.columns;
    bytes += character.size;
  }
  diagnostic.caret = caret;
  diagnostic.underlined = std::max<std::size_t>(underlined, 1);
  return diagnostic;
}

void PrintDiagnostic(std::ostream& out, const Diagnostic& diagnostic, std::string_view message,
                     const Style& style, Tone tone) {
  const std::size_t head_size = std::min(message.find(": "), message.size());
  const std::string where = Shown(diagnostic.where) + ":";
  const std::string head = Shown(message.substr(0, head_size));
  const std::size_t used = ColumnsOf(where) + 1 + ColumnsOf(head);
  const bool is_colored = style.is_colored;
  out << Paint(where, kBold, is_colored) << ' '
      << Paint(head, tone == Tone::kFailure ? kRed : kCyan, is_colored)
      << Sentence(Shown(message.substr(head_size)), used, style) << '\n';
  out << kIndent << diagnostic.window << '\n';
  out << kIndent << std::string(diagnostic.caret, ' ')
      << Paint('^' + std::string(diagnostic.underlined - 1, '~'), kGreen, is_colored) << '\n';
}

void PrintPlace(std::ostream& out, const Source& source, zrt::Place place, std::string_view message,
                const Style& style, Tone tone) {
  PrintDiagnostic(out, MakeDiagnostic(source, place, style.columns), message, style, tone);
}

void PrintNote(std::ostream& out, std::string_view message, const Style& style) {
  const std::size_t head_size = std::min(message.find(": "), message.size());
  const std::string head = Shown(message.substr(0, head_size));
  out << kIndent << Paint(head, kCyan, style.is_colored)
      << Sentence(Shown(message.substr(head_size)), kIndent.size() + ColumnsOf(head), style)
      << '\n';
}
