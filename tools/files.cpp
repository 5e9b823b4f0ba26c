// Reads and writes through streams; what the system says of a failure goes into the message.
#include "files.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>

#include "shown_text.h"
#include "terminal.h"

namespace {

Failure SystemFailure(const std::string& name, ExitCode exit_code) {
  return Failure{exit_code, name + ": " + (errno == 0 ? "failed" : std::strerror(errno))};
}

// Reads a file piece by piece. `check` gets all bytes so far and where the new ones begin: what is
// wrong from the start is not read to its end, which may never come.
template <class Check>
std::string Read(const std::string& path, ExitCode exit_code, std::size_t most_bytes, Check check) {
  const bool is_standard = path == "-";
  errno = 0;
  std::ifstream file;
  if (!is_standard) file.open(path, std::ios::binary);
  std::istream& input = is_standard ? std::cin : file;
  std::string bytes;
  std::array<char, 1U << 14U> piece{};
  while (input.good()) {
    const std::size_t start = bytes.size();
    input.read(piece.data(), piece.size());
    bytes.append(piece.data(), static_cast<std::size_t>(input.gcount()));
    check(bytes, start);
    if (bytes.size() > most_bytes) {
      throw Failure{exit_code, ShownName(path) + ": more than " + std::to_string(most_bytes) +
                                   " bytes, which is more than can be worked on"};
    }
  }
  if (!input.eof() || input.bad()) throw SystemFailure(ShownName(path), exit_code);
  return bytes;
}

// Blanks and line ends are the only controls in a text.
bool IsNoText(char c) {
  constexpr std::string_view kAllowed = "\t\n\v\f\r";
  const auto byte = static_cast<unsigned char>(c);
  return (byte < 0x20 && kAllowed.find(c) == std::string_view::npos) || byte == 0x7F;
}

}  // namespace

Failure FailureAt(ExitCode exit_code, const Source& source, zrt::Place place,
                  const std::string& message) {
  return {exit_code, message, MakeDiagnostic(source, place, ErrorStyle().columns)};
}

std::string ShownName(const std::string& path) { return path == "-" ? "standard input" : path; }

std::string ReadFile(const std::string& path, ExitCode exit_code, std::size_t most_bytes) {
  return Read(path, exit_code, most_bytes, [](const std::string&, std::size_t) {});
}

std::string ReadText(const std::string& path, ExitCode exit_code) {
  const auto check = [&](const std::string& text, std::size_t start) {
    const auto control = FirstControl(text, start);
    if (!control) return;
    throw FailureAt(exit_code, {ShownName(path), text, 1, false}, {control->offset, 1},
                    control->complaint);
  };
  std::string text = Read(path, exit_code, kMostTextBytes, check);
  DropByteOrderMark(&text);
  return text;
}

std::optional<Control> FirstControl(std::string_view text, std::size_t start) {
  while (start < text.size() && !IsNoText(text[start])) ++start;
  if (start >= text.size()) return std::nullopt;
  const bool is_nul = text[start] == '\0';
  return Control{start, "this is no text, it holds " +
                            (is_nul ? "a NUL" : "the character " + Shown(text.substr(start, 1)))};
}

void DropByteOrderMark(std::string* text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (text->starts_with(kMark)) text->erase(0, kMark.size());
}

void WriteFile(const std::string& path, std::string_view bytes) {
  errno = 0;
  if (path == "-") {
    std::cout << bytes;
    return FlushStandardOutput();
  }
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << bytes;
  file.close();
  if (!file) throw SystemFailure(path, kInputOutput);
}

void FlushStandardOutput() {
  if (std::cout.flush() || IsOutputClosed()) return;
  throw SystemFailure("standard output", kInputOutput);
}
