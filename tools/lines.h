// Texts that come a line each, from a file or from standard input.
#pragma once

#include <cstddef>
#include <fstream>
#include <string>

#include "diagnostic.h"

class LineReader {
 public:
  enum class State { kComplete, kHoldsNul, kTooLong, kEndOfInput };

  /// Throws Failure if the file cannot be opened.
  explicit LineReader(const std::string& path);

  /// Takes the next line without its end. Blanks matter to the language, so it loses nothing else.
  /// Of a line that cannot be a text, line() is what stands in front of where that shows, and the
  /// rest is skipped by the next call, 16 MiB of it at most. Throws Failure.
  State Next();

  [[nodiscard]] const std::string& line() const { return line_; }
  [[nodiscard]] std::size_t number() const { return number_; }
  [[nodiscard]] Source source() const { return {name_, line_, number_}; }

  /// Whether more can be had only by waiting for it.
  [[nodiscard]] bool must_wait() const { return input_->in_avail() <= 0; }

 private:
  State Read();
  void SkipLine();

  std::string name_;  // as a message calls it
  std::ifstream file_;
  std::streambuf* input_;
  std::string line_;
  std::size_t number_ = 0;
  State state_ = State::kComplete;
};

/// Why a line that is not complete is no text.
std::string Reason(LineReader::State state);

/// The first line of a file. Throws Failure if there is none, or if it is no text.
std::string FirstLine(const std::string& path);
