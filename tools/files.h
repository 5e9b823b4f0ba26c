// Whole files in and out, "-" being a standard stream, and how the program ends when that fails.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "diagnostic.h"

/// The program's exit statuses; the library's own statuses are none of them.
enum ExitCode : int {
  kAllEvaluated = 0,
  kExpressionFailed = 1,
  kUsage = 2,
  kScopeFile = 3,
  kInputOutput = 4,
};

/// Thrown where nothing is left to do but to say why; main() prints the message.
struct Failure {
  ExitCode exit_code;
  std::string message;
  std::optional<Diagnostic> where = std::nullopt;  // what the message is about, if it is a text
};

/// The Failure of a text that is wrong at `place`.
Failure FailureAt(ExitCode exit_code, const Source& source, zrt::Place place,
                  const std::string& message);

// The library's longest text, and a line end.
constexpr std::size_t kMostTextBytes = std::size_t{2147483647} + 2;

/// What a message calls an input file: "-" is standard input.
std::string ShownName(const std::string& path);

/// The bytes of a file. One that cannot be read or is larger than `most_bytes` is a Failure.
std::string ReadFile(const std::string& path, ExitCode exit_code, std::size_t most_bytes);

/// The text of a file, without a byte order mark at its start. Besides, a NUL or another control
/// character that no text holds is a Failure, with line and column, as soon as it has been read.
std::string ReadText(const std::string& path, ExitCode exit_code);

/// A control character that no text holds, and what is to be said of it.
struct Control {
  std::size_t offset;
  std::string complaint;
};

/// The first one of `text` from `start` on.
std::optional<Control> FirstControl(std::string_view text, std::size_t start = 0);

/// Drops a UTF-8 byte order mark, which some editors write, from the start of `text`.
void DropByteOrderMark(std::string* text);

/// Writes a whole file. All that keeps bytes from reaching it is a Failure.
void WriteFile(const std::string& path, std::string_view bytes);

/// Makes certain that all that was printed has reached standard output. If that is a pipe that
/// nobody reads any more, there is nothing to be told.
void FlushStandardOutput();
