// The byte loops. Words are loaded most significant byte first, so that shifts cross bytes in the
// order of the vector's bits.
#include "bits/kernels.h"

#include <algorithm>
#include <cstring>

namespace zrt::kernels {
namespace {

constexpr std::size_t kWordSize = sizeof(std::uint64_t);

// The bits of each byte in the opposite order (H. S. Warren, Hacker's Delight, 7-1).
constexpr std::uint64_t SwapFields(std::uint64_t word, unsigned width, std::uint64_t mask) {
  return ((word >> width) & mask) | ((word & mask) << width);
}
constexpr std::uint64_t MirrorEachByte(std::uint64_t word) {
  word = SwapFields(word, 1, 0x5555555555555555U);
  word = SwapFields(word, 2, 0x3333333333333333U);
  return SwapFields(word, 4, 0x0F0F0F0F0F0F0F0FU);
}

// The number of eight bytes, most significant first, on every platform. Written out like this, and
// not as a loop, it is one byte swap and one move to both compilers.
std::uint64_t Load(const std::uint8_t* from) {
  const auto byte = [from](unsigned i) { return std::uint64_t{from[i]} << (56 - 8 * i); };
  return byte(0) | byte(1) | byte(2) | byte(3) | byte(4) | byte(5) | byte(6) | byte(7);
}
void Store(std::uint8_t* to, std::uint64_t word) {
  const auto put = [to, word](unsigned i) {
    to[i] = static_cast<std::uint8_t>(word >> (56 - 8 * i));
  };
  put(0);
  put(1);
  put(2);
  put(3);
  put(4);
  put(5);
  put(6);
  put(7);
}

// The same with the bytes in the opposite order.
std::uint64_t LoadReversed(const std::uint8_t* from) {
  const auto byte = [from](unsigned i) { return std::uint64_t{from[i]} << (8 * i); };
  return byte(0) | byte(1) | byte(2) | byte(3) | byte(4) | byte(5) | byte(6) | byte(7);
}

constexpr std::uint8_t Low8(std::uint64_t word) { return static_cast<std::uint8_t>(word); }

struct Or {
  static constexpr std::uint64_t kNeutral = 0;
  template <class Word>
  static Word Join(Word left, Word right) {
    return static_cast<Word>(left | right);
  }
};
struct And {
  static constexpr std::uint64_t kNeutral = ~std::uint64_t{0};
  template <class Word>
  static Word Join(Word left, Word right) {
    return static_cast<Word>(left & right);
  }
};

// The bits that `source` does not reach are filled with the operator's neutral value.
template <class Operator>
void JoinShifted(Bytes target, unsigned low_bit, ConstBytes source) {
  std::size_t count = std::min(target.size(), source.size());
  std::uint8_t* to = target.data() + target.size();
  const std::uint8_t* from = source.data() + source.size();
  if (low_bit == 0) {
    to -= count;
    from -= count;
    for (std::size_t i = 0; i < count; ++i) to[i] = Operator::Join(to[i], from[i]);
    return;
  }
  std::uint64_t carry = Operator::kNeutral >> (64 - low_bit);
  for (; count >= kWordSize; count -= kWordSize) {
    to -= kWordSize;
    from -= kWordSize;
    const std::uint64_t word = Load(from);
    Store(to, Operator::Join(Load(to), (word << low_bit) | carry));
    carry = word >> (64 - low_bit);
  }
  for (; count > 0; --count) {
    const std::uint64_t byte = *--from;
    --to;
    *to = Operator::Join(*to, Low8((byte << low_bit) | carry));
    carry = byte >> (8 - low_bit);
  }
  if (to != target.data()) {
    --to;
    *to = Operator::Join(*to, Low8((Operator::kNeutral << low_bit) | carry));
  }
}

}  // namespace

void OrShifted(Bytes target, unsigned low_bit, ConstBytes source) {
  JoinShifted<Or>(target, low_bit, source);
}

void AndShifted(Bytes target, unsigned low_bit, ConstBytes source) {
  JoinShifted<And>(target, low_bit, source);
}

// In place from the top: each step reads at or behind the bytes that it writes.
void ShiftLeft(Bytes bytes, std::size_t bit_count) {
  const std::size_t size = bytes.size();
  const std::size_t byte_shift = std::min(bit_count / 8, size);
  const auto low_bit = static_cast<unsigned>(bit_count % 8);
  const std::size_t kept = size - byte_shift;
  std::uint8_t* to = bytes.data();
  const std::uint8_t* from = to + byte_shift;
  std::size_t i = 0;
  if (low_bit == 0) {
    if (kept > 0) std::memmove(to, from, kept);
    i = kept;
  }
  for (; i + kWordSize < kept; i += kWordSize) {
    const std::uint64_t next = from[i + kWordSize];
    Store(to + i, (Load(from + i) << low_bit) | (next >> (8 - low_bit)));
  }
  for (; i < kept; ++i) {
    const unsigned next = i + 1 < kept ? from[i + 1] : 0U;
    to[i] = Low8((static_cast<unsigned>(from[i]) << low_bit) | (next >> (8 - low_bit)));
  }
  std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(kept), bytes.end(), std::uint8_t{0});
}

// In place from the low end, the mirror image of the above.
void ShiftRight(Bytes bytes, std::size_t bit_count) {
  const std::size_t size = bytes.size();
  const std::size_t byte_shift = std::min(bit_count / 8, size);
  const auto low_bit = static_cast<unsigned>(bit_count % 8);
  std::size_t kept = size - byte_shift;
  const std::uint8_t* from = bytes.data();
  std::uint8_t* to = bytes.data() + byte_shift;
  if (low_bit == 0) {
    if (kept > 0) std::memmove(to, from, kept);
    kept = 0;
  }
  for (; kept > kWordSize; kept -= kWordSize) {
    const std::size_t i = kept - kWordSize;
    const std::uint64_t above = from[i - 1];
    Store(to + i, (Load(from + i) >> low_bit) | (above << (64 - low_bit)));
  }
  for (; kept > 0; --kept) {
    const std::size_t i = kept - 1;
    const unsigned above = i > 0 ? from[i - 1] : 0U;
    to[i] = Low8((static_cast<unsigned>(from[i]) >> low_bit) | (above << (8 - low_bit)));
  }
  std::fill_n(bytes.data(), byte_shift, std::uint8_t{0});
}

void Complement(Bytes bytes) {
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(~byte);
}

void NegateEach(Bytes bytes) {
  for (std::uint8_t& byte : bytes) byte = byte == 0 ? 1 : 0;
}

// Words from both ends change places, each mirrored; the middle goes byte by byte.
void Mirror(Bytes bytes) {
  std::uint8_t* low = bytes.data();
  std::uint8_t* high = low + bytes.size();
  while (static_cast<std::size_t>(high - low) >= 2 * kWordSize) {
    high -= kWordSize;
    const std::uint64_t first = MirrorEachByte(LoadReversed(low));
    Store(low, MirrorEachByte(LoadReversed(high)));
    Store(high, first);
    low += kWordSize;
  }
  std::reverse(low, high);
  for (; low != high; ++low) *low = Low8(MirrorEachByte(*low));
}

// What is laid already is laid again, twice as much each time.
void Repeat(Bytes bytes, std::size_t period) {
  std::uint8_t* const end = bytes.data() + bytes.size();
  if (period == 1 && !bytes.empty()) {
    std::memset(bytes.data(), end[-1], bytes.size());
    return;
  }
  for (std::size_t laid = period; laid < bytes.size();) {
    const std::size_t more = std::min(laid, bytes.size() - laid);
    std::memcpy(end - laid - more, end - more, more);
    laid += more;
  }
}

}  // namespace zrt::kernels
