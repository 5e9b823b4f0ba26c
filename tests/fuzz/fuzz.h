// What the fuzz targets share. Each of them is given bytes, tries what they stand for, and ends the
// program where something does not hold. Knows of no target.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

inline void Require(bool holds, std::string_view what) {
  if (holds) return;
  std::fprintf(stderr, "Does not hold: %.*s\n", static_cast<int>(what.size()), what.data());
  std::abort();
}

/// Numbers from the bytes of an input, zeros behind its end.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

  bool has_more() const { return next_ < end_; }
  std::uint8_t Byte() { return has_more() ? *next_++ : std::uint8_t{0}; }
  std::vector<std::uint8_t> Bytes(std::size_t count) {
    std::vector<std::uint8_t> bytes(count);
    for (std::uint8_t& byte : bytes) byte = Byte();
    return bytes;
  }
  std::string Rest() { return {next_, end_}; }

 private:
  const std::uint8_t *next_, *end_;
};
