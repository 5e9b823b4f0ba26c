// Whole files in and out, "-" being a standard stream, and how the program ends when that fails.
#pragma once

#include <limits>
#include <string>
#include <string_view>

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
};

/// What a message calls an input file: "-" is standard input.
std::string ShownName(const std::string& path);

/// The bytes of a file. One that cannot be read or is larger than `most_bytes` is a Failure.
std::string ReadFile(const std::string& path, ExitCode exit_code,
                     std::size_t most_bytes = std::numeric_limits<std::size_t>::max());

/// Writes a whole file. All that keeps bytes from reaching it is a Failure.
void WriteFile(const std::string& path, std::string_view bytes);

/// Makes certain that all that was printed has reached standard output.
void FlushStandardOutput();
