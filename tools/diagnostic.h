// A place of a text as compilers show it: where it is, what is to be said of it, and the line with
// a caret below. Knows nothing of expressions.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

#include "zrtexpression/failure.h"

/// A text and where it comes from.
struct Source {
  std::string label;  // a file's name, or the text itself in quotes
  std::string_view text;
  std::size_t first_line = 1;  // of the text in its file
  bool shows_blanks = true;    // tabs and the like as escapes; false where they mean nothing
};

/// The source of a text that comes from no file.
Source ArgumentSource(std::string_view text);

/// How a stream shows what is printed to it; output.h tells it of the two standard ones.
struct Style {
  bool is_colored = false;
  std::size_t columns = 100;
  bool wraps = false;  // sentences go on in a further line; else the reader sees to that
};

enum class Tone { kFailure, kHint };

/// A place ready to be printed, also when its text is gone.
struct Diagnostic {
  std::string where;           // label:line:column; columns are those of a terminal
  std::string window;          // the part of the line around the place, as Shown()
  std::size_t caret = 0;       // columns in front of it
  std::size_t underlined = 1;  // columns, that of the caret included
};
Diagnostic MakeDiagnostic(const Source& source, zrt::Place place, std::size_t columns);

/// Prints "where: message", the window and the caret. What stands in front of the first ": " of
/// `message` is its head. Shown() is applied to the message.
void PrintDiagnostic(std::ostream& out, const Diagnostic& diagnostic, std::string_view message,
                     const Style& style, Tone tone);

/// Both at once.
void PrintPlace(std::ostream& out, const Source& source, zrt::Place place, std::string_view message,
                const Style& style, Tone tone = Tone::kFailure);

/// A further line to what was printed last, such as "hint: ...".
void PrintNote(std::ostream& out, std::string_view message, const Style& style);
