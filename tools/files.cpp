// Reads and writes through streams; what the system says of a failure goes into the message.
#include "files.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>

namespace {

Failure SystemFailure(const std::string& name, ExitCode exit_code) {
  return Failure{exit_code, name + ": " + (errno == 0 ? "failed" : std::strerror(errno))};
}

}  // namespace

std::string ShownName(const std::string& path) { return path == "-" ? "standard input" : path; }

std::string ReadFile(const std::string& path, ExitCode exit_code, std::size_t most_bytes) {
  const bool is_standard = path == "-";
  errno = 0;
  std::ifstream file;
  if (!is_standard) file.open(path, std::ios::binary);
  std::istream& input = is_standard ? std::cin : file;
  std::string bytes;
  std::array<char, 1U << 16U> piece{};
  while (input.good()) {
    input.read(piece.data(), piece.size());
    bytes.append(piece.data(), static_cast<std::size_t>(input.gcount()));
    if (bytes.size() > most_bytes) {
      throw Failure{exit_code, ShownName(path) + ": more than " + std::to_string(most_bytes) +
                                   " bytes, whose bits are more than can be counted"};
    }
  }
  if (!input.eof() || input.bad()) throw SystemFailure(ShownName(path), exit_code);
  return bytes;
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
  if (!std::cout.flush()) throw SystemFailure("standard output", kInputOutput);
}
