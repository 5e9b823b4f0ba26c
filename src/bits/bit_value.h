// The working value of a bit-vector evaluation: bytes in one piece, most significant first, with a
// length in bits. It knows nothing of texts, fields or streams.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <utility>

#include "bits/word.h"

namespace zrt {

/// The bytes that so many bits need; none for a negative count.
constexpr std::size_t BytesFor(std::int64_t bit_count) {
  return bit_count > 0 ? static_cast<std::size_t>((bit_count + 7) / 8) : 0;
}

/// Writes the high-order bytes of a word, most significant first, as many as there is room for.
constexpr void StoreWord(std::int32_t word, std::span<std::uint8_t> bytes) {
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<std::uint8_t>(static_cast<std::uint32_t>(word) >> (24 - 8 * i));
  }
}

/// Bytes and a bit length, two separate facts. A value is tidy if the count is what the length
/// needs and the spare bits above the length are 0; "~" and the rows of data fields make untidy
/// ones.
///
/// The bytes are the value's own, or borrowed from someone who keeps them as they are for as long
/// as the value may be used; what writes to a borrowed value gives it bytes of its own first.
///
/// Own bytes as a number may stand shifted up in their buffer by some bits (low_bit_), so that
/// short pieces can be joined at the low end of a long value without moving it, and the buffer has
/// slack at both ends that grows geometrically.
///
/// Invariants: the stored bits below low_bit_ and above the number's bytes are 0; a value of up to
/// kInlineSize stored bytes needs no allocation; a borrowed one stands unshifted. No invariant:
/// bits above the bit length. They are never masked, here or elsewhere.
///
/// Where a value of up to kWordSize bytes is built anew, it ends at that byte of its buffer, which
/// each buffer has, whatever stands in front of it: there one load reaches all of it.
class BitValue {
 public:
  BitValue() noexcept = default;
  BitValue(BitValue&& other) noexcept { *this = std::move(other); }
  BitValue& operator=(BitValue&& other) noexcept;
  BitValue(const BitValue&) = delete;
  BitValue& operator=(const BitValue&) = delete;
  ~BitValue() { GiveBack(); }

  [[nodiscard]] std::size_t byte_count() const { return byte_count_; }
  [[nodiscard]] int bit_length() const { return bit_length_; }
  void set_bit_length(int bit_length) { bit_length_ = bit_length; }

  /// A value of up to kWordSize bytes is mostly a word as well: one that is read and made in a
  /// register, with no loop over bytes.
  [[nodiscard]] bool is_word() const { return first_ + byte_count_ == kWordSize && low_bit_ == 0; }
  [[nodiscard]] BitWord word() const {
    BitWord word{};
    word.Set(BigEndian(LoadWord(buffer())), byte_count_);
    word.bit_length = bit_length_;
    return word;
  }

  /// The value becomes that of a word.
  void Set(const BitWord& word);

  /// The bytes, in their place: moves them if they stand shifted. Valid until the value changes.
  std::span<const std::uint8_t> Bytes() {
    if (borrowed_) return {borrowed_, byte_count_};
    if (low_bit_ > 0) MoveDown();
    return Stored();
  }

  /// Copies the bytes from `first` on, as many as `bytes` has room for, which must be there. Moves
  /// nothing, so that who looks at a value does not change what the next operator costs.
  void CopyTo(std::size_t first, std::span<std::uint8_t> bytes) const;

  /// The bytes as own ones, to be changed. Throws std::bad_alloc, leaving the value as it was.
  std::span<std::uint8_t> OwnBytes();

  /// Makes the value `byte_count` own bytes of no known content and gives them to be filled; the
  /// bit length stays. Throws std::bad_alloc, leaving the value as it was.
  std::span<std::uint8_t> Rebuild(std::size_t byte_count);

  /// As many bytes as Rebuild() gives without new memory.
  [[nodiscard]] std::size_t capacity() const { return capacity_; }

  /// Leaves the first `byte_count` of own bytes that stand unshifted.
  void Shorten(std::size_t byte_count) { byte_count_ = byte_count; }

  /// The value becomes `bytes`, which stay the lender's; the bit length stays. Few bytes are
  /// copied.
  void Borrow(std::span<const std::uint8_t> bytes);

  /// The value, which has no own bytes, gets its next ones in `room`, if that is large enough. The
  /// memory stays the lender's.
  void UseRoom(std::span<std::uint8_t> room);
  [[nodiscard]] bool has_own_bytes() const { return !borrowed_ && byte_count_ > 0; }

  /// Bytes to read, and as many own ones to be filled from them: the same ones, unless the value
  /// was borrowed. Throws std::bad_alloc, leaving the value as it was.
  struct Rewriting {
    std::span<std::uint8_t> target;
    std::span<const std::uint8_t> source;
  };
  Rewriting Rewrite();

  /// The number becomes (number << up) modulo 2 to the power 8 * byte_count, in that many bytes.
  /// Takes time in proportion to what is added if there is room. Throws std::bad_alloc, leaving the
  /// value as it was.
  void Reshape(std::size_t up_bits, std::size_t byte_count);

  /// Whether Reshape() has room for that without moving the number.
  [[nodiscard]] bool HasRoomFor(std::size_t up_bits, std::size_t byte_count) const;

  /// Makes the value `byte_count` own bytes of no known content, unshifted, with room to grow at
  /// both ends, or at the one where more is to come if the room is lent, and gives them to be
  /// filled; the bit length stays. Throws std::bad_alloc, leaving the value as it was.
  enum class Growth : bool { kInFront, kBehind };
  std::span<std::uint8_t> RebuildWithRoom(std::size_t byte_count, Growth growth);

  /// number |= bytes << up_bits; what does not fit into the number's bytes is dropped. For own
  /// bytes.
  void Or(std::size_t up_bits, std::span<const std::uint8_t> bytes);

  /// number &= bytes, number |= bytes, in the low bytes that both have. Throw std::bad_alloc,
  /// leaving the value as it was.
  void And(std::span<const std::uint8_t> bytes);
  void Or(std::span<const std::uint8_t> bytes);

 private:
  // Room for 128 bits, shifted up, and slack; with the fields below it makes 64 bytes.
  static constexpr std::size_t kInlineSize = 18;

  struct Room {
    std::size_t front;  // bytes that are wanted in front of the stored ones
    std::size_t back;
    std::size_t low_bit;  // then
    std::size_t new_size;
  };
  [[nodiscard]] Room RoomFor(std::size_t up_bits, std::size_t byte_count) const;
  [[nodiscard]] bool Has(const Room& room) const {
    return !borrowed_ && room.front <= first_ && room.back <= capacity_ - first_ - stored_size();
  }

  [[nodiscard]] std::size_t stored_size() const { return byte_count_ + (low_bit_ > 0 ? 1 : 0); }
  [[nodiscard]] const std::uint8_t* buffer() const { return heap_ ? heap_.get() : inline_.data(); }
  std::uint8_t* buffer() { return heap_ ? heap_.get() : inline_.data(); }
  void Begin(std::size_t byte_count);
  void MoveDown();
  void Take(BitValue& other);
  std::span<std::uint8_t> Stored() { return {buffer() + first_, stored_size()}; }
  void MakeRoom(const Room& room);
  static std::unique_ptr<std::uint8_t[]> NewHeap(std::size_t capacity);
  void UseHeap(std::unique_ptr<std::uint8_t[]> heap, std::size_t capacity);
  void GiveBack() {
    if (std::exchange(is_lent_, false)) (void)heap_.release();
  }
  void ClearAboveNumber();

  std::unique_ptr<std::uint8_t[]> heap_;
  const std::uint8_t* borrowed_ = nullptr;  // null if the bytes are own ones
  std::size_t capacity_ = kInlineSize;
  std::size_t first_ = 0;  // of the stored bytes, in the buffer
  std::size_t byte_count_ = 0;
  int bit_length_ = 0;
  std::uint8_t low_bit_ = 0;  // 0 to 7
  bool is_lent_ = false;      // the heap's memory is someone else's
  std::array<std::uint8_t, kInlineSize> inline_{};
};

inline void BitValue::Begin(std::size_t byte_count) {
  borrowed_ = nullptr;
  first_ = byte_count < kWordSize ? kWordSize - byte_count : 0;
  byte_count_ = byte_count;
  low_bit_ = 0;
}

// A word is copied: it was just written, and a load of all the bytes would wait for that.
inline BitValue& BitValue::operator=(BitValue&& other) noexcept {
  if (!other.is_word()) {
    Take(other);
    return *this;
  }
  Set(other.word());
  return *this;
}

inline void BitValue::Set(const BitWord& word) {
  Begin(word.byte_count);
  bit_length_ = word.bit_length;
  const std::uint64_t bytes = BigEndian(word.bits);
  std::memcpy(buffer(), &bytes, kWordSize);
}

}  // namespace zrt
