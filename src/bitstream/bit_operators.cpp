// One short function an operator, on values whose byte counts and bit lengths may disagree. The
// sizes of results come from bit lengths and the moves run over bytes; where the two do not fit
// together a store falls outside the result, and what was laid before it stays.
#include "bitstream/bit_operators.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "bits/exhausted_memory.h"
#include "bits/kernels.h"
#include "bitstream/word_operators.h"
#include "scalar/integer.h"

namespace zrt {
namespace {

constexpr bool FitsBitLength(std::int64_t bit_count) {
  return bit_count == static_cast<std::int32_t>(bit_count);
}

// The first four bytes, whatever the size: a shorter value stands in the high-order bytes.
int LeadingWord(BitValue& value) {
  const auto bytes = value.Bytes();
  std::uint32_t word = 0;
  for (std::size_t i = 0; i < kLeadingWordSize; ++i) {
    word = (word << 8) | (i < bytes.size() ? bytes[i] : std::uint32_t{0});
  }
  return static_cast<int>(word);
}

void SetLeadingWord(BitValue& value, int word) {
  const auto bytes = value.OwnBytes();
  StoreWord(word, bytes.first(std::min(bytes.size(), kLeadingWordSize)));
}

bool IsTooWide(const BitValue& value) { return value.byte_count() > kLeadingWordSize; }

std::int64_t JoinedLength(int left_bit_length, const BitValue& right) {
  return std::int64_t{left_bit_length} + right.bit_length();
}

std::int64_t CopyCount(BitValue& right) { return std::max(LeadingWord(right), 0); }

ZRTStatus Calculate(BitValue& left, std::uint16_t code, BitValue& right) {
  if (IsTooWide(right) || IsTooWide(left)) return ErrOperandTooWide;
  int value = LeadingWord(left);
  const ZRTStatus status = ApplyToInteger(value, code, LeadingWord(right));
  if (status == kOk) SetLeadingWord(left, value);
  return status;
}

ZRTStatus Shift(BitValue& left, std::uint16_t code, BitValue& right, OutcomePlace& place) {
  if (IsTooWide(right)) return ErrOperandTooWide;
  const int count = LeadingWord(right);
  if (count <= 0) return kOk;  // before Rewrite(): a long left value is not to move for nothing
  const auto kernel = code == OpShiftLeft ? kernels::ShiftLeft : kernels::ShiftRight;
  place.OfferTo(left, left.byte_count());
  const auto [target, source] = left.Rewrite();
  kernel(target, source, static_cast<std::size_t>(count));
  return kOk;
}

// Where concatenation lays the left side: directly above the right one, in a result of `size`
// bytes.
//
//   05/3 @ 03/2    in 1 byte    the left side begins in the right one's top byte, at bit 2
//   12/8 @ 34/8    in 2 bytes   it begins in the byte above
//
// Where bytes and bit length of a side disagree there may be less room than that:
//
//   0005/3 @ 03/3  in 1 byte    the left side has a byte too many for the result: not `fits`
//   05/3 @ 0003/3  in 1 byte    so has the right one, and the left one finds no place at all
//   12/8 @ /4      in 2 bytes   there is no top byte at whose bit 4 it could begin: no place
struct Placing {
  Placing(const BitValue& left, const BitValue& right, std::size_t size) {
    const std::size_t low_bit = static_cast<unsigned>(right.bit_length()) % 8;
    const bool shares_a_byte = low_bit > 0;
    const bool right_fits = right.byte_count() <= size;
    has_place = right_fits && (!shares_a_byte || right.byte_count() > 0);
    const std::size_t bytes_below = right.byte_count() - (has_place && shares_a_byte ? 1 : 0);
    const bool left_fits = has_place && bytes_below + left.byte_count() <= size;
    fits = right_fits && (left.byte_count() == 0 || left_fits);
    up_bits = 8 * bytes_below + low_bit;
  }

  bool fits;            // both sides lie in the result as a whole
  bool has_place;       // the left side is laid, as far as there is room
  std::size_t up_bits;  // its lowest bit, if it has a place
};

// Sides of similar size make room by themselves: what they are joined to next is as long as they
// are, or short beside them.
bool AreSimilar(std::size_t one, std::size_t other) {
  return std::max(one, other) / 4 <= std::min(one, other);
}

// Lays both sides in new bytes: each is read once and written once, in its final place.
BitValue Joined(BitValue& left, BitValue& right, const Placing& placing, std::size_t size,
                OutcomePlace& place) {
  BitValue joined;
  place.OfferTo(joined, size);
  const auto growth = left.byte_count() < right.byte_count() ? BitValue::Growth::kInFront
                                                             : BitValue::Growth::kBehind;
  const auto target = AreSimilar(left.byte_count(), right.byte_count())
                          ? joined.Rebuild(size)
                          : joined.RebuildWithRoom(size, growth);
  const auto low = right.Bytes().last(std::min(right.byte_count(), size));
  if (!placing.has_place) {
    std::ranges::fill(target.first(size - low.size()), std::uint8_t{0});
    kernels::Lay(target, 0, low);
    return joined;
  }
  const std::size_t bytes_below = placing.up_bits / 8;
  const auto low_bit = static_cast<unsigned>(placing.up_bits % 8);
  const auto high = target.first(size - bytes_below);
  const std::size_t laid = std::min(high.size(), left.byte_count() + (low_bit > 0 ? 1 : 0));
  std::ranges::fill(high.first(high.size() - laid), std::uint8_t{0});
  kernels::Lay(high, low_bit, left.Bytes());
  kernels::Lay(target.last(bytes_below), 0, low.last(bytes_below));
  if (low_bit > 0) high.back() = static_cast<std::uint8_t>(high.back() | low.front());
  return joined;
}

// Lays `left` above `right`. The shorter one goes into the longer one's buffer if that has room.
ZRTStatus Concatenate(BitValue& left, BitValue& right, OutcomePlace& place) {
  const std::int64_t total = JoinedLength(left.bit_length(), right);
  if (!FitsBitLength(total)) return ErrStreamWrite;
  const std::size_t size = BytesFor(total);
  const Placing placing(left, right, size);
  const int bit_length = placing.fits ? static_cast<int>(total) : left.bit_length();
  const bool left_is_longer = left.byte_count() >= right.byte_count();
  if (left_is_longer && placing.has_place && left.HasRoomFor(placing.up_bits, size)) {
    left.Reshape(placing.up_bits, size);
    left.Or(0, right.Bytes());
  } else if (!left_is_longer && right.HasRoomFor(0, size)) {
    right.Reshape(0, size);
    if (placing.has_place) right.Or(placing.up_bits, left.Bytes());
    left = std::move(right);
  } else {
    left = Joined(left, right, placing, size, place);
  }
  left.set_bit_length(bit_length);
  return placing.fits ? kOk : ErrStreamWrite;
}

// Places the copies of a pattern one above the other, each beginning `bit_count` above the one
// before. Of a copy that another one follows, only what lies below that one survives.
class Copies {
 public:
  Copies(std::span<std::uint8_t> target, std::span<const std::uint8_t> pattern,
         std::size_t bit_count)
      : target_(target), pattern_(pattern), bit_count_(bit_count) {}

  // The first copy that does not fit, in 0 to `count`.
  [[nodiscard]] std::size_t FirstMisfit(std::size_t count) const {
    if (pattern_.size() > target_.size()) return 0;
    const std::size_t bits = 8 * (target_.size() - pattern_.size() + 1);
    return std::min(count, (bits + bit_count_ - 1) / bit_count_);
  }

  // Lays copies 0 to `count` - 1, `count` being 1 at least. After a whole block of copies, which
  // ends at a byte, all repeats.
  void Lay(std::size_t count) const {
    const int block_log = 3 - std::min(std::countr_zero(bit_count_), 3);
    const std::size_t block = std::size_t{1} << block_log;  // copies
    std::size_t laid = 0;
    if (count > block) {
      const std::size_t block_size = (bit_count_ << block_log) / 8;  // bytes
      const std::size_t blocks = (count - 1) >> block_log;
      std::ranges::fill(target_.last(block_size), std::uint8_t{0});
      for (; laid < block; ++laid) LayOne(laid, false);
      const auto all = target_.last(blocks * block_size);
      std::ranges::copy(target_.last(block_size), all.begin());
      kernels::Repeat(all, block_size);
      laid = blocks << block_log;
    }
    const std::size_t bytes_laid = laid * bit_count_ / 8;
    std::ranges::fill(target_.first(target_.size() - bytes_laid), std::uint8_t{0});
    for (; laid < count; ++laid) LayOne(laid, laid + 1 == count);
  }

 private:
  void LayOne(std::size_t copy, bool is_last) const {
    const std::size_t begin = copy * bit_count_;
    const std::size_t next = begin + bit_count_;
    std::span<std::uint8_t> room = target_.first(target_.size() - begin / 8);
    if (!is_last) room = room.last((next + 7) / 8 - begin / 8);
    kernels::OrShifted(room, static_cast<unsigned>(begin % 8), pattern_);
  }

  std::span<std::uint8_t> target_;
  std::span<const std::uint8_t> pattern_;
  std::size_t bit_count_;
};

ZRTStatus Replicate(BitValue& left, BitValue& right, OutcomePlace& place) {
  if (IsTooWide(right)) return ErrOperandTooWide;
  const std::int64_t count = CopyCount(right);
  const int bit_count = left.bit_length();
  const std::int64_t total = count * bit_count;
  if (!FitsBitLength(total)) return ErrStreamWrite;
  BitValue result;
  place.OfferTo(result, BytesFor(total));
  const auto target = result.Rebuild(BytesFor(total));
  bool fits = true;
  bool is_laid = false;
  if (count > 0 && left.byte_count() > 0) {
    fits = bit_count > 0;
    if (fits) {
      const Copies copies(target, left.Bytes(), static_cast<std::size_t>(bit_count));
      const auto wanted = static_cast<std::size_t>(count);
      const std::size_t misfit = copies.FirstMisfit(wanted);
      fits = misfit == wanted;
      copies.Lay(fits ? wanted : misfit + 1);
      is_laid = true;
    }
  }
  if (!is_laid) std::ranges::fill(target, std::uint8_t{0});
  result.set_bit_length(fits ? static_cast<int>(total) : bit_count);
  left = std::move(result);
  return fits ? kOk : ErrStreamWrite;
}

// The low bytes of the right side, mirrored, from the top of the left side on; bytes the right side
// does not have are 0.
void ReverseInto(BitValue& left, BitValue& right, OutcomePlace& place) {
  BitValue result;
  place.OfferTo(result, left.byte_count());
  const auto target = result.Rebuild(left.byte_count());
  const auto source = right.Bytes();
  const std::size_t count = std::min(source.size(), target.size());
  kernels::Mirror(target.first(count), source.last(count));
  std::ranges::fill(target.subspan(count), std::uint8_t{0});
  result.set_bit_length(left.bit_length());
  left = std::move(result);
}

// The operator has an effect: no other code comes here.
ZRTStatus Apply(BitValue& left, std::uint16_t code, BitValue& right, OutcomePlace& place) {
  switch (code) {
    case OpAnd:
      place.OfferTo(left, left.byte_count());
      left.And(right.Bytes());
      return kOk;
    case OpOr:
      place.OfferTo(left, left.byte_count());
      left.Or(right.Bytes());
      return kOk;
    case OpLogicalNot:
    case OpBitwiseNot: ApplyUnaryToBits(left, static_cast<OperatorCode>(code), place); return kOk;
    case OpShiftLeft:
    case OpShiftRight: return Shift(left, code, right, place);
    case OpAdd:
    case OpSubtract:
    case OpDivide:
    case OpMultiply:
    case OpModulo: return Calculate(left, code, right);
    case OpConcat: return Concatenate(left, right, place);
    case OpReplicate: return Replicate(left, right, place);
    case OpBitReverse: ReverseInto(left, right, place); return kOk;
    default: return ErrInvalidOperator;
  }
}

// Out of the way of words: it needs all the registers.
[[gnu::noinline]] ZRTStatus ApplyToBytes(BitValue& left, std::uint16_t code, BitValue& right,
                                         OutcomePlace& place) {
  if (const auto status = StatusWithoutValues(code)) return *status;
  // Each operator gets its memory before it changes the left side.
  return OnExhaustedMemory(ErrStreamWrite, [&] { return Apply(left, code, right, place); });
}

}  // namespace

std::optional<ZRTStatus> StatusWithoutValues(std::uint16_t code) {
  switch (EffectOf(code, &OperatorRow::on_bits, Effect::kRefused)) {
    case Effect::kIgnored: return kOk;
    case Effect::kRefused: return ErrInvalidOperator;
    default: return std::nullopt;
  }
}

bool IsTooLong(int left_bit_length, std::uint16_t code, BitValue& right) {
  switch (code) {
    case OpConcat: return !FitsBitLength(JoinedLength(left_bit_length, right));
    case OpReplicate:
      return !IsTooWide(right) && !FitsBitLength(CopyCount(right) * left_bit_length);
    default: return false;
  }
}

ZRTStatus ApplyToBits(BitValue& left, std::uint16_t code, BitValue& right, OutcomePlace& place) {
  if (left.is_word() && right.is_word()) {
    BitWord word = left.word();
    if (ApplyToWord(word, code, right.word())) {
      left.Set(word);
      return kOk;
    }
  }
  return ApplyToBytes(left, code, right, place);
}

void ApplyUnaryToBits(BitValue& value, OperatorCode code, OutcomePlace& place) {
  if (value.is_word()) {
    BitWord word = value.word();
    ApplyUnaryToWord(word, code);
    return value.Set(word);
  }
  const auto kernel = code == OpBitwiseNot   ? kernels::Complement
                      : code == OpLogicalNot ? kernels::NegateEach
                                             : kernels::Mirror;
  place.OfferTo(value, value.byte_count());
  const auto [target, source] = value.Rewrite();
  kernel(target, source);
}

}  // namespace zrt
