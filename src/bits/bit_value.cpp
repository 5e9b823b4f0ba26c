// The buffer of the working value: where its bytes stand, and how room is made for more.
#include "bits/bit_value.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "bits/huge_pages.h"
#include "bits/kernels.h"

namespace zrt {

void BitValue::Take(BitValue& other) {
  GiveBack();
  heap_ = std::move(other.heap_);
  is_lent_ = std::exchange(other.is_lent_, false);
  inline_ = other.inline_;
  borrowed_ = std::exchange(other.borrowed_, nullptr);
  capacity_ = std::exchange(other.capacity_, kInlineSize);
  first_ = std::exchange(other.first_, 0);
  byte_count_ = std::exchange(other.byte_count_, 0);
  bit_length_ = other.bit_length_;
  low_bit_ = std::exchange(other.low_bit_, std::uint8_t{0});
}

void BitValue::MoveDown() {
  kernels::ShiftRight(Stored(), Stored(), low_bit_);
  low_bit_ = 0;
  ++first_;  // the byte that held the shifted-up bits is 0 now
}

void BitValue::CopyTo(std::size_t first, std::span<std::uint8_t> bytes) const {
  const std::uint8_t* from = (borrowed_ ? borrowed_ : buffer() + first_) + first;
  if (low_bit_ == 0) {
    std::copy_n(from, bytes.size(), bytes.begin());
    return;
  }
  for (std::uint8_t& byte : bytes) {
    byte = static_cast<std::uint8_t>((from[0] << (8 - low_bit_)) | (from[1] >> low_bit_));
    ++from;
  }
}

std::span<std::uint8_t> BitValue::OwnBytes() {
  const auto [target, source] = Rewrite();
  if (target.data() != source.data()) kernels::Lay(target, 0, source);
  return target;
}

std::span<std::uint8_t> BitValue::Rebuild(std::size_t byte_count) {
  if (byte_count > capacity_) UseHeap(NewHeap(byte_count), byte_count);
  Begin(byte_count);
  return Stored();
}

// Not zeroed.
std::unique_ptr<std::uint8_t[]> BitValue::NewHeap(std::size_t capacity) {
  std::unique_ptr<std::uint8_t[]> heap(new std::uint8_t[capacity]);
  PreferHugePages(heap.get(), capacity);
  return heap;
}

void BitValue::UseHeap(std::unique_ptr<std::uint8_t[]> heap, std::size_t capacity) {
  GiveBack();
  heap_ = std::move(heap);
  capacity_ = capacity;
}

void BitValue::UseRoom(std::span<std::uint8_t> room) {
  UseHeap(std::unique_ptr<std::uint8_t[]>(room.data()), room.size());
  is_lent_ = true;
}

void BitValue::Borrow(std::span<const std::uint8_t> bytes) {
  if (bytes.size() <= kInlineSize) {
    std::ranges::copy(bytes, Rebuild(bytes.size()).begin());
    return;
  }
  borrowed_ = bytes.data();
  byte_count_ = bytes.size();
  low_bit_ = 0;
}

BitValue::Rewriting BitValue::Rewrite() {
  const auto source = Bytes();
  return {borrowed_ ? Rebuild(byte_count_) : Stored(), source};
}

// In the buffer stand, from the top down: slack, the stored bytes, slack. The stored bytes are the
// number's and, if it stands shifted, one more; the lowest low_bit_ bits of them are zeros below
// the number. A step up uses these bits first, since that moves nothing, and then whole new bytes:
// with 3 bits below the number a step of 7 wants 4 more, so a byte is added, and 4 bits remain.
BitValue::Room BitValue::RoomFor(std::size_t up_bits, std::size_t byte_count) const {
  Room room{};
  room.low_bit = low_bit_;
  if (up_bits > room.low_bit) {
    room.back = (up_bits - room.low_bit + 7) / 8;
    room.low_bit += 8 * room.back;
  }
  room.low_bit -= up_bits;
  const std::size_t size = stored_size() + room.back;
  room.new_size = byte_count + (room.low_bit > 0 ? 1 : 0);
  room.front = room.new_size > size ? room.new_size - size : 0;
  return room;
}

bool BitValue::HasRoomFor(std::size_t up_bits, std::size_t byte_count) const {
  return Has(RoomFor(up_bits, byte_count));
}

void BitValue::Reshape(std::size_t up_bits, std::size_t byte_count) {
  const Room room = RoomFor(up_bits, byte_count);
  MakeRoom(room);
  const std::size_t size = stored_size() + room.back;
  std::memset(buffer() + first_ + stored_size(), 0, room.back);
  first_ = first_ + size - room.new_size;  // down for new bytes above, up where bytes are cut off
  std::memset(buffer() + first_, 0, room.front);
  byte_count_ = byte_count;
  low_bit_ = static_cast<std::uint8_t>(room.low_bit);
  ClearAboveNumber();
}

void BitValue::ClearAboveNumber() {
  if (low_bit_ > 0) buffer()[first_] &= static_cast<std::uint8_t>((1U << low_bit_) - 1);
}

std::span<std::uint8_t> BitValue::RebuildWithRoom(std::size_t byte_count, Growth growth) {
  if (is_lent_ && byte_count <= capacity_) {
    Rebuild(byte_count);
    if (growth == Growth::kInFront) first_ = capacity_ - byte_count;
    return Stored();
  }
  if (byte_count <= kInlineSize && !heap_) {
    Rebuild(byte_count);
    first_ = (kInlineSize - byte_count) / 2;
    return Stored();
  }
  Rebuild(3 * byte_count);
  first_ = byte_count;
  byte_count_ = byte_count;
  return Stored();
}

void BitValue::Or(std::size_t up_bits, std::span<const std::uint8_t> bytes) {
  const std::size_t lowest_bit = low_bit_ + up_bits;
  const std::size_t bytes_below = lowest_bit / 8;
  if (bytes_below >= stored_size()) return;
  kernels::OrShifted(Stored().first(stored_size() - bytes_below),
                     static_cast<unsigned>(lowest_bit % 8), bytes);
  ClearAboveNumber();
}

void BitValue::And(std::span<const std::uint8_t> bytes) {
  const auto low = bytes.last(std::min(bytes.size(), byte_count_));
  if (low_bit_ > 0) return kernels::AndShifted(Stored(), low_bit_, low);
  const auto [target, source] = Rewrite();
  kernels::And(target, source, low);
}

void BitValue::Or(std::span<const std::uint8_t> bytes) {
  const auto low = bytes.last(std::min(bytes.size(), byte_count_));
  if (low_bit_ > 0) return Or(0, low);
  const auto [target, source] = Rewrite();
  kernels::Or(target, source, low);
}

// In the inline bytes slack is left at both ends. On the heap there is none: what grows again and
// again is built with room (RebuildWithRoom). What was cut to a few bytes there may grow by fewer
// than a word has.
void BitValue::MakeRoom(const Room& room) {
  if (Has(room)) return;
  const std::size_t size = stored_size();
  const std::size_t needed = room.front + size + room.back;
  if (!borrowed_ && !heap_ && needed <= capacity_) {
    const std::size_t first = room.front + (capacity_ - needed) / 2;
    std::memmove(buffer() + first, buffer() + first_, size);
    first_ = first;
    return;
  }
  const std::size_t capacity = std::max(needed, kWordSize);
  auto heap = NewHeap(capacity);
  std::memcpy(heap.get() + room.front, borrowed_ ? borrowed_ : buffer() + first_, size);
  UseHeap(std::move(heap), capacity);
  borrowed_ = nullptr;
  first_ = room.front;
}

}  // namespace zrt
