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

/// A word as it stands in memory, as the number whose most significant byte comes first; and back.
inline std::uint64_t BigEndian(std::uint64_t word) {
  return std::endian::native == std::endian::little ? __builtin_bswap64(word) : word;
}

/// A byte in all eight places of a word.
constexpr std::uint64_t InEachByte(unsigned byte) { return byte * 0x0101010101010101U; }

/// The bits of so many low bytes of a word, all of them for more than it has.
inline std::uint64_t LowBytes(std::size_t count) {
  return count < kWordSize ? (std::uint64_t{1} << (8 * count)) - 1 : ~std::uint64_t{0};
}

/// The place in memory of the first byte that is not 0, in a word that has one.
inline std::size_t FirstByte(std::uint64_t word) {
  const bool is_little = std::endian::native == std::endian::little;
  return static_cast<std::size_t>(is_little ? std::countr_zero(word) : std::countl_zero(word)) / 8;
}

}  // namespace zrt
