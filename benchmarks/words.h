// Big numbers of the packaged libraries. All of them keep 64-bit words with the least significant
// first, where this library has bytes with the most significant first; here is the way between.
#pragma once

#include <gmp.h>

#include <cstdint>
#include <string>
#include <vector>

#include "world.h"

namespace zrt_bench {

using Words = std::vector<std::uint64_t>;

/// The number that the bytes are.
inline Words ToWords(const Bytes& bytes) {
  Words words((bytes.size() + 7) / 8);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const std::size_t place = bytes.size() - 1 - i;
    words[place / 8] |= std::uint64_t{bytes[i]} << (8 * (place % 8));
  }
  return words;
}

/// The low `bit_count` bits of a number as bytes; words that are not there are 0.
inline std::string ToBytes(const std::uint64_t* words, std::size_t word_count,
                           std::size_t bit_count) {
  std::string bytes((bit_count + 7) / 8, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const std::size_t place = bytes.size() - 1 - i;
    if (place / 8 >= word_count) continue;
    bytes[i] = static_cast<char>(words[place / 8] >> (8 * (place % 8)));
  }
  if (bit_count % 8 != 0) bytes[0] = static_cast<char>(bytes[0] & ((1 << (bit_count % 8)) - 1));
  return bytes;
}

/// An integer of GMP that frees itself.
class Integer {
 public:
  Integer() { mpz_init(value_); }
  explicit Integer(const Words& words) : Integer() {
    mpz_import(value_, words.size(), -1, sizeof(std::uint64_t), 0, 0, words.data());
  }
  Integer(const Integer&) = delete;
  Integer& operator=(const Integer&) = delete;
  ~Integer() { mpz_clear(value_); }

  mpz_ptr get() { return value_; }

  std::string LowBits(std::size_t bit_count) const {
    return ToBytes(mpz_limbs_read(value_), mpz_size(value_), bit_count);
  }

 private:
  mpz_t value_;
};

static_assert(sizeof(mp_limb_t) == sizeof(std::uint64_t) && GMP_NAIL_BITS == 0);

}  // namespace zrt_bench
