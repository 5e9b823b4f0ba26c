// Lines are read byte by byte from the stream's buffer: getline() would take a line of any length.
#include "lines.h"

#include <cerrno>
#include <cstring>
#include <iostream>

#include "files.h"

namespace {

constexpr std::size_t kMostSkippedBytes = std::size_t{1} << 24U;

Failure ReadFailure(const std::string& name) {
  return {kInputOutput, name + ": " + std::strerror(errno)};
}

}  // namespace

LineReader::LineReader(const std::string& path) : name_(ShownName(path)), input_(std::cin.rdbuf()) {
  errno = 0;
  if (path == "-") return;
  file_.open(path, std::ios::binary);
  if (!file_) throw ReadFailure(name_);
  input_ = file_.rdbuf();
}

LineReader::State LineReader::Next() try {
  if (state_ != State::kComplete) SkipLine();
  ++number_;
  state_ = Read();
  if (number_ == 1) DropByteOrderMark(&line_);
  return state_;
} catch (const std::ios_base::failure&) {
  throw ReadFailure(name_);
}

// The end of what is left of a line may never come.
void LineReader::SkipLine() {
  for (std::size_t count = 0; count < kMostSkippedBytes; ++count) {
    const int c = input_->sbumpc();
    if (c == EOF || c == '\n') return;
  }
  throw Failure{kInputOutput, name_ + ":" + std::to_string(number_) +
                                  ": the line does not end within " +
                                  std::to_string(kMostSkippedBytes) + " bytes more"};
}

LineReader::State LineReader::Read() {
  line_.clear();
  int c = input_->sbumpc();
  if (c == EOF) return State::kEndOfInput;
  for (; c != EOF && c != '\n'; c = input_->sbumpc()) {
    if (c == '\0') return State::kHoldsNul;
    if (line_.size() == kMostTextBytes) return State::kTooLong;
    line_ += static_cast<char>(c);
  }
  if (c == '\n' && line_.ends_with('\r')) line_.pop_back();
  return State::kComplete;
}

std::string Reason(LineReader::State state) {
  return state == LineReader::State::kHoldsNul ? "the text holds a NUL" : "the text is too long";
}

std::string FirstLine(const std::string& path) {
  LineReader reader(path);
  const LineReader::State state = reader.Next();
  if (state == LineReader::State::kComplete) return reader.line();
  const bool is_empty = state == LineReader::State::kEndOfInput;
  throw Failure{kInputOutput,
                ShownName(path) + ": " + (is_empty ? "the file is empty" : Reason(state))};
}
