// Objects for scripts: one a line, the keys in the order in which they are added, ASCII alone, so
// that nothing in them acts on a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "zrtexpression/failure.h"

/// `text` as a JSON text. Bytes that are no UTF-8 become U+FFFD.
std::string JsonQuoted(std::string_view text);

class JsonLine {
 public:
  JsonLine& AddText(std::string_view key, std::string_view text);
  JsonLine& AddNumber(std::string_view key, long long number);

  /// "at" and "length".
  JsonLine& AddPlace(zrt::Place place);

  /// A value that is written already.
  JsonLine& AddWritten(std::string_view key, std::string_view value);

  /// The object as it is so far.
  [[nodiscard]] std::string text() const { return text_ + "}"; }

 private:
  std::string text_ = "{";
};

/// A JSON array as it grows.
class JsonArray {
 public:
  void Add(const std::string& written) {
    if (text_.size() > 1) text_ += ',';
    text_ += written;
  }
  [[nodiscard]] std::string text() const { return text_ + "]"; }

 private:
  std::string text_ = "[";
};
