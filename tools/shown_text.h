// Foreign text in a message: names, paths and pieces of input as they may be shown to a person and
// to a terminal. Knows nothing of what the text means.
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

/// `text` in one line that shows as it reads: \n, \t, \r, \x1B, \u202E, \U000E0001 for characters
/// that act on a terminal or turn the order of others around, \xFF for bytes that are no UTF-8. All
/// else stays, a backslash too, so that shown text may be shown again. Of more than `most`
/// characters, escapes counted as they are written, the first `most` are left and "...".
std::string Shown(std::string_view text,
                  std::size_t most = std::numeric_limits<std::size_t>::max());

/// The beginning of `text` in quotes, enough to know it again. Here characters that cannot be seen
/// or pass for a blank are escaped too, since they may be what is wrong with the text.
std::string Quoted(std::string_view text);

/// A character as it is shown, and the room that it takes.
struct ShownCharacter {
  std::string shown;
  std::size_t size;     // bytes of the character
  std::size_t columns;  // of what is shown: 2 for wide characters, 0 for marks on others
};

/// The first character of a text that is not empty, as Shown() shows it, or as Quoted() does.
ShownCharacter FirstShown(std::string_view text, bool shows_unseen);

/// "1 byte", "2 bytes".
std::string Counted(std::size_t count, const char* noun);

/// The columns of a text that is shown already.
std::size_t ColumnsOf(std::string_view shown);

/// A text that is shown already, with blanks behind it for so many columns.
std::string Padded(std::string shown, std::size_t columns);

/// Lines of whole words, none of more columns unless a word has more; the first one has `first`
/// columns. What stands in quotes is one word.
std::vector<std::string> Wrapped(std::string_view words, std::size_t columns, std::size_t first);
inline std::vector<std::string> Wrapped(std::string_view words, std::size_t columns) {
  return Wrapped(words, columns, columns);
}

/// Where the character at `offset`, in bytes, stands in an editor, counted from 1. A tab goes on to
/// the next column behind a multiple of 8.
struct TextPosition {
  std::size_t line;
  std::size_t column;
};
TextPosition PositionOf(std::string_view text, std::size_t offset);
