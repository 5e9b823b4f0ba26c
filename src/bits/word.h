// Bytes eight at a time, as they stand in memory.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "bits/wide.h"

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

/// The top bit of each byte that is 0 (H. S. Warren, Hacker's Delight, 6-1).
constexpr std::uint64_t ZeroBytes(std::uint64_t word) {
  constexpr std::uint64_t kLow7 = InEachByte(0x7F);
  return ~(((word & kLow7) + kLow7) | word | kLow7);
}

/// Each byte's bits in the opposite order (H. S. Warren, Hacker's Delight, 7-1), of a word or of a
/// vector of words.
template <class Unit>
ZRT_INLINE void MirrorEachByte(Unit& unit) {
  unit = (unit >> 1 & InEachByte(0x55)) | (unit & InEachByte(0x55)) << 1;
  unit = (unit >> 2 & InEachByte(0x33)) | (unit & InEachByte(0x33)) << 2;
  unit = (unit >> 4 & InEachByte(0x0F)) | (unit & InEachByte(0x0F)) << 4;
}

/// The bits of so many low bytes of a word, all of them for more than it has.
inline std::uint64_t LowBytes(std::size_t count) {
  return count < kWordSize ? (std::uint64_t{1} << (8 * count)) - 1 : ~std::uint64_t{0};
}

/// A value of up to kWordSize bytes in registers: its bytes as a number, whose bits above them are
/// 0, and its length in bits, which is a fact of its own (see BitValue).
struct BitWord {
  std::uint64_t bits;
  std::uint32_t byte_count;
  std::int32_t bit_length;

  /// Takes the low bytes of a number.
  void Set(std::uint64_t number, std::size_t count) {
    bits = number & LowBytes(count);
    byte_count = static_cast<std::uint32_t>(count);
  }
};

/// The place in memory of the first byte that is not 0, in a word that has one.
inline std::size_t FirstByte(std::uint64_t word) {
  const bool is_little = std::endian::native == std::endian::little;
  return static_cast<std::size_t>(is_little ? std::countr_zero(word) : std::countl_zero(word)) / 8;
}

}  // namespace zrt
