// The buffer of the working value: where its bytes stand, and how room is made for more.
#include "bits/bit_value.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "bits/kernels.h"

namespace zrt {

BitValue::BitValue(BitValue&& other) noexcept { *this = std::move(other); }

BitValue& BitValue::operator=(BitValue&& other) noexcept {
  heap_ = std::move(other.heap_);
  inline_ = other.inline_;
  capacity_ = other.capacity_;
  first_ = other.first_;
  byte_count_ = other.byte_count_;
  bit_length_ = other.bit_length_;
  low_bit_ = other.low_bit_;
  other.capacity_ = kInlineSize;
  other.first_ = 0;
  other.byte_count_ = 0;
  other.low_bit_ = 0;
  return *this;
}

std::span<std::uint8_t> BitValue::Bytes() {
  if (low_bit_ > 0) {
    kernels::ShiftRight(Stored(), low_bit_);
    low_bit_ = 0;
    ++first_;  // the byte that held the shifted-up bits is 0 now
  }
  return Stored();
}

std::span<std::uint8_t> BitValue::Rebuild(std::size_t byte_count) {
  if (byte_count > capacity_) {
    heap_ = std::make_unique_for_overwrite<std::uint8_t[]>(byte_count);
    capacity_ = byte_count;
  }
  first_ = 0;
  byte_count_ = byte_count;
  low_bit_ = 0;
  return Stored();
}

// In the buffer stand, from the top down: slack, the stored bytes, slack. The stored bytes are the
// number's and, if it stands shifted, one more; the lowest low_bit_ bits of them are zeros below
// the number. A step up uses these bits first, since that moves nothing, and then whole new bytes:
// with 3 bits below the number a step of 7 wants 4 more, so a byte is added, and 4 bits remain.
void BitValue::Reshape(std::size_t up_bits, std::size_t byte_count) {
  std::size_t new_low_bytes = 0;
  std::size_t low_bit = low_bit_;
  if (up_bits > low_bit) {
    new_low_bytes = (up_bits - low_bit + 7) / 8;
    low_bit += 8 * new_low_bytes;
  }
  low_bit -= up_bits;
  const std::size_t size = stored_size() + new_low_bytes;
  const std::size_t new_size = byte_count + (low_bit > 0 ? 1 : 0);
  const std::size_t new_high_bytes = new_size > size ? new_size - size : 0;
  MakeRoom(new_high_bytes, new_low_bytes);

  std::memset(buffer() + first_ + stored_size(), 0, new_low_bytes);
  first_ = first_ + size - new_size;  // down for new bytes above, up where bytes are cut off
  std::memset(buffer() + first_, 0, new_high_bytes);
  byte_count_ = byte_count;
  low_bit_ = static_cast<std::uint8_t>(low_bit);
  ClearAboveNumber();
}

void BitValue::ClearAboveNumber() {
  if (low_bit_ > 0) buffer()[first_] &= static_cast<std::uint8_t>((1U << low_bit_) - 1);
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
  kernels::AndShifted(Stored(), low_bit_, bytes.last(std::min(bytes.size(), byte_count_)));
}

// Slack as large as the value goes to the side that has to grow; the other side keeps what it has,
// up to that size. So a value that grows at both ends by turns moves a logarithmic number of times.
void BitValue::MakeRoom(std::size_t front, std::size_t back) {
  const std::size_t size = stored_size();
  const std::size_t behind = capacity_ - first_ - size;
  if (front <= first_ && back <= behind) return;
  const std::size_t needed = front + size + back;
  if (needed <= capacity_ && !heap_) {
    const std::size_t first = front + (capacity_ - needed) / 2;
    std::memmove(buffer() + first, buffer() + first_, size);
    first_ = first;
    return;
  }
  const std::size_t front_slack = front > first_ ? needed : std::min(first_ - front, needed);
  const std::size_t back_slack = back > behind ? needed : std::min(behind - back, needed);
  const std::size_t capacity = needed + front_slack + back_slack;
  auto heap = std::make_unique_for_overwrite<std::uint8_t[]>(capacity);
  std::memcpy(heap.get() + front_slack + front, buffer() + first_, size);
  heap_ = std::move(heap);
  capacity_ = capacity;
  first_ = front_slack + front;
}

}  // namespace zrt
