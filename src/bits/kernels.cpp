// The byte loops. A number that moves by less than a byte is made of neighbours: each byte takes
// bits of the byte beside it. 32 bytes at a time do the same in lanes of 64 bits: what a lane's
// shift carries from byte to byte inside it is masked off, and the neighbours' bits come from a
// second load one byte further on. So no byte is swapped, and the order of bytes in a lane does not
// matter.
#include "bits/kernels.h"

#include <algorithm>
#include <cstring>

#include "bits/wide.h"
#include "bits/word.h"

namespace zrt::kernels {
namespace {

// A step of 32 bytes as a vector. It is handed on by reference alone: as a value it would have to
// know by which registers the machine at hand passes it.
using Step [[gnu::vector_size(32)]] = std::uint64_t;
constexpr std::size_t kStep = sizeof(Step);  // bytes

ZRT_INLINE void Load(Step& step, const std::uint8_t* from) { std::memcpy(&step, from, kStep); }
ZRT_INLINE void Store(std::uint8_t* to, const Step& step) { std::memcpy(to, &step, kStep); }

constexpr std::uint8_t Low8(unsigned word) { return static_cast<std::uint8_t>(word); }

// The bytes of a number that moves up by `low_bit`, 1 to 7: each takes its top bits from the byte
// in its place and its low bits from the one below, which stands behind it.
struct MovedUp {
  explicit MovedUp(unsigned bits) : low_bit(bits), kept(InEachByte(0xFFU << bits & 0xFFU)) {}

  [[nodiscard]] std::uint8_t Byte(unsigned byte, unsigned below) const {
    return Low8(byte << low_bit | below >> (8 - low_bit));
  }
  ZRT_INLINE void Bytes(Step& step, const std::uint8_t* from) const {
    Step below;
    Load(step, from);
    Load(below, from + 1);
    step = (step << low_bit & kept) | (below >> (8 - low_bit) & ~kept);
  }

  unsigned low_bit;
  std::uint64_t kept;  // the bits that come from the byte in its place, in each byte
};

struct SetBits {
  static constexpr unsigned kNeutral = 0;  // what stands beside the source's bits
  template <class Unit>
  ZRT_INLINE static void Join(Unit& left, const Unit& right) {
    left = right;
  }
};
struct OrBits {
  static constexpr unsigned kNeutral = 0;
  template <class Unit>
  ZRT_INLINE static void Join(Unit& left, const Unit& right) {
    left |= right;
  }
};
struct AndBits {
  static constexpr unsigned kNeutral = 0xFF;
  template <class Unit>
  ZRT_INLINE static void Join(Unit& left, const Unit& right) {
    left &= right;
  }
};

// Target and source end at the same byte. The source's lowest byte has a neighbour below it, and
// its topmost one above it, of the operator's neutral bits.
template <class Operator>
ZRT_INLINE void JoinMovedUp(Bytes target, unsigned low_bit, ConstBytes source) {
  const MovedUp moved(low_bit);
  const std::size_t count = std::min(target.size(), source.size());
  std::uint8_t* const to = target.data() + target.size() - count;
  const std::uint8_t* const from = source.data() + source.size() - count;
  if (to != target.data()) {
    Operator::Join(to[-1], moved.Byte(Operator::kNeutral, count > 0 ? *from : Operator::kNeutral));
  }
  std::size_t i = 0;
  for (; i + kStep < count; i += kStep) {
    Step laid;
    Step moved_step;
    Load(laid, to + i);
    moved.Bytes(moved_step, from + i);
    Operator::Join(laid, moved_step);
    Store(to + i, laid);
  }
  for (; i < count; ++i) {
    Operator::Join(to[i], moved.Byte(from[i], i + 1 < count ? from[i + 1] : Operator::kNeutral));
  }
}

template <class Operator>
ZRT_INLINE void JoinEach(Bytes target, ConstBytes left, ConstBytes right) {
  const std::size_t above = target.size() - right.size();
  if (target.data() != left.data() && above > 0) std::memcpy(target.data(), left.data(), above);
  std::uint8_t* to = target.data() + above;
  const std::uint8_t* from = left.data() + above;
  std::size_t i = 0;
  for (; i + kStep <= right.size(); i += kStep) {
    Step step;
    Step other;
    Load(step, from + i);
    Load(other, right.data() + i);
    Operator::Join(step, other);
    Store(to + i, step);
  }
  for (; i < right.size(); ++i) {
    std::uint8_t byte = from[i];
    Operator::Join(byte, right[i]);
    to[i] = byte;
  }
}

// The mirror image of a step.
ZRT_INLINE void LoadMirrored(Step& step, const std::uint8_t* from) {
  Load(step, from);
  MirrorEachByte(step);
  step = Step{__builtin_bswap64(step[3]), __builtin_bswap64(step[2]), __builtin_bswap64(step[1]),
              __builtin_bswap64(step[0])};
}

std::uint8_t MirroredByte(std::uint8_t byte) {
  std::uint64_t word = byte;
  MirrorEachByte(word);
  return static_cast<std::uint8_t>(word);
}

// Steps from both ends change places; the middle goes byte by byte.
ZRT_INLINE void MirrorInPlace(Bytes bytes) {
  std::uint8_t* low = bytes.data();
  std::uint8_t* high = low + bytes.size();
  for (; static_cast<std::size_t>(high - low) >= 2 * kStep; low += kStep) {
    high -= kStep;
    Step from_low;
    Step from_high;
    LoadMirrored(from_low, low);
    LoadMirrored(from_high, high);
    Store(low, from_high);
    Store(high, from_low);
  }
  std::reverse(low, high);
  for (; low != high; ++low) *low = MirroredByte(*low);
}

}  // namespace

ZRT_WIDE void Lay(Bytes target, unsigned low_bit, ConstBytes source) {
  if (low_bit > 0) return JoinMovedUp<SetBits>(target, low_bit, source);
  const std::size_t count = std::min(target.size(), source.size());
  if (count > 0) std::memcpy(target.last(count).data(), source.last(count).data(), count);
}

ZRT_WIDE void OrShifted(Bytes target, unsigned low_bit, ConstBytes source) {
  if (low_bit > 0) return JoinMovedUp<OrBits>(target, low_bit, source);
  const std::size_t count = std::min(target.size(), source.size());
  std::uint8_t* const to = target.data() + target.size() - count;
  const std::uint8_t* const from = source.data() + source.size() - count;
  for (std::size_t i = 0; i < count; ++i) to[i] |= from[i];
}

ZRT_WIDE void AndShifted(Bytes target, unsigned low_bit, ConstBytes source) {
  JoinMovedUp<AndBits>(target, low_bit, source);
}

ZRT_WIDE void And(Bytes target, ConstBytes left, ConstBytes right) {
  JoinEach<AndBits>(target, left, right);
}

ZRT_WIDE void Or(Bytes target, ConstBytes left, ConstBytes right) {
  JoinEach<OrBits>(target, left, right);
}

// From the top: each step reads at or behind the bytes that it writes.
ZRT_WIDE void ShiftLeft(Bytes target, ConstBytes source, std::size_t bit_count) {
  const std::size_t size = target.size();
  const std::size_t byte_shift = std::min(bit_count / 8, size);
  const std::size_t kept = size - byte_shift;
  std::uint8_t* const to = target.data();
  const std::uint8_t* const from = source.data() + byte_shift;
  if (bit_count % 8 == 0) {
    if (kept > 0) std::memmove(to, from, kept);
  } else {
    const MovedUp moved(bit_count % 8);
    std::size_t i = 0;
    Step step;
    for (; i + kStep < kept; i += kStep) {
      moved.Bytes(step, from + i);
      Store(to + i, step);
    }
    for (; i < kept; ++i) to[i] = moved.Byte(from[i], i + 1 < kept ? from[i + 1] : 0U);
  }
  std::fill_n(to + kept, byte_shift, std::uint8_t{0});
}

// From the low end, the mirror image of the above: down by some bits is up by the rest of a byte,
// in the place of the byte above.
ZRT_WIDE void ShiftRight(Bytes target, ConstBytes source, std::size_t bit_count) {
  const std::size_t size = target.size();
  const std::size_t byte_shift = std::min(bit_count / 8, size);
  std::size_t kept = size - byte_shift;
  std::uint8_t* const to = target.data() + byte_shift;
  const std::uint8_t* const from = source.data();
  if (bit_count % 8 == 0) {
    if (kept > 0) std::memmove(to, from, kept);
  } else {
    const MovedUp moved(8 - bit_count % 8);
    Step step;
    for (; kept > kStep; kept -= kStep) {
      moved.Bytes(step, from + kept - kStep - 1);
      Store(to + kept - kStep, step);
    }
    for (; kept > 0; --kept)
      to[kept - 1] = moved.Byte(kept > 1 ? from[kept - 2] : 0U, from[kept - 1]);
  }
  std::fill_n(target.data(), byte_shift, std::uint8_t{0});
}

ZRT_WIDE void Complement(Bytes target, ConstBytes source) {
  for (std::size_t i = 0; i < target.size(); ++i) {
    target[i] = static_cast<std::uint8_t>(~source[i]);
  }
}

ZRT_WIDE void NegateEach(Bytes target, ConstBytes source) {
  for (std::size_t i = 0; i < target.size(); ++i) target[i] = source[i] == 0 ? 1 : 0;
}

ZRT_WIDE void Mirror(Bytes target, ConstBytes source) {
  if (target.data() == source.data()) return MirrorInPlace(target);
  const std::uint8_t* from = source.data() + source.size();
  std::uint8_t* to = target.data();
  for (; static_cast<std::size_t>(from - source.data()) >= kStep; to += kStep) {
    from -= kStep;
    Step step;
    LoadMirrored(step, from);
    Store(to, step);
  }
  while (from != source.data()) *to++ = MirroredByte(*--from);
}

// What is laid already is laid again: twice as much each time, until it is a piece that stays in
// the cache while it is copied. Upward: the other way takes twice as long where the target is in no
// cache.
void Repeat(Bytes bytes, std::size_t period) {
  constexpr std::size_t kLargestPiece = 8192;  // bytes
  if (period == 1) {
    std::memset(bytes.data(), bytes.front(), bytes.size());
    return;
  }
  std::size_t piece = period;
  for (std::size_t laid = period; laid < bytes.size();) {
    const std::size_t more = std::min(piece, bytes.size() - laid);
    std::memcpy(bytes.data() + laid, bytes.data(), more);
    laid += more;
    if (piece < kLargestPiece) piece = laid;
  }
}

}  // namespace zrt::kernels
