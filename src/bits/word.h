// Bytes eight at a time, as they stand in memory.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zrt {

inline constexpr std::size_t kWordSize = sizeof(std::uint64_t);

inline std::uint64_t LoadWord(const void* from) {
  std::uint64_t word = 0;
  std::memcpy(&word, from, kWordSize);
  return word;
}

/// The place in memory of the first byte that is not 0, in a word that has one.
inline std::size_t FirstByte(std::uint64_t word) {
  const bool is_little = std::endian::native == std::endian::little;
  return static_cast<std::size_t>(is_little ? std::countr_zero(word) : std::countl_zero(word)) / 8;
}

}  // namespace zrt
