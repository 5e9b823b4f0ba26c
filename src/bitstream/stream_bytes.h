// Bytes in and out of the closed library's byte chains: the border between streams and the working
// value. Knows nothing of texts.
//
// The contract appends byte by byte. A block type may offer more, an append of many bytes at once,
// which is asked for when the library is compiled and taken where it is there. Both ways leave the
// same bytes.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

#include "RowDataStream.h"
#include "bits/bit_value.h"

namespace zrt {

/// As many bytes of a chain as an index reaches.
inline constexpr unsigned int kMostBytes = std::numeric_limits<int>::max();

/// The bytes of a chain. Throws std::bad_alloc if they are more than kMostBytes: the rest cannot be
/// read, as if there were no memory to read it into.
std::size_t SizeOf(LByteBuffer& chain);

/// Copies the bytes of a chain to `to`, SizeOf() of them; in one go if it is one block.
void CopyBytes(LByteBuffer& chain, std::uint8_t* to);

/// `value` becomes the bytes of a chain; its bit length stays. Throws std::bad_alloc.
void LoadBytes(LByteBuffer& chain, BitValue& value);

/// The same, but bytes that lie in one block are borrowed: the chain must outlive their use.
void BorrowBytes(LByteBuffer& chain, BitValue& value);

/// A block that takes many bytes at once: it appends the first of them to itself, as many as it has
/// room for, and gives their count.
template <class Block>
concept BulkBlock = requires(Block& block, const unsigned char* bytes, std::size_t count) {
  { block.AppendData(bytes, count) } -> std::same_as<std::size_t>;
};

/// A block that shows the room behind its bytes, for `count` more or none: what is filled there and
/// then appended from there needs no copy. As AppendData() it leaves the bytes as they are.
template <class Block>
concept RoomyBlock = BulkBlock<Block> && requires(Block& block, std::size_t count) {
  { block.RoomToAppend(count) } -> std::same_as<std::span<unsigned char>>;
};

/// The place where the stream of an evaluation will have the bytes of its outcome. The first long
/// value that needs new bytes gets them there: often it is the outcome itself, or grows to it.
class OutcomePlace {
 public:
  /// Of a stream, or none. In a text of many pieces each of them is short.
  explicit OutcomePlace(LByteBuffer* stream, std::size_t text_length = 0)
      : stream_(stream), least_size_(std::max(kLongValue, text_length / 32)) {}

  /// For a value that is to be given `byte_count` new bytes.
  void OfferTo(BitValue& value, std::size_t byte_count) {
    if (stream_ && byte_count >= least_size_ && !value.has_own_bytes()) Offer(value, byte_count);
  }

 private:
  static constexpr std::size_t kLongValue = 1024;  // bytes

  void Offer(BitValue& value, std::size_t byte_count);

  LByteBuffer* stream_;  // null from the first offer on
  std::size_t least_size_;
};

/// Appends `count` bytes, each from `byte_at(index)`, behind what the chain of `head` holds, block
/// by block as blocks fill up. False if memory for a byte runs out; the bytes before it stay.
template <class Block, class ByteAt>
[[nodiscard]] bool AppendEach(Block& head, std::size_t count, const ByteAt& byte_at) {
  auto* block = head.GetLastBlock(&head);
  for (std::size_t index = 0; index < count; ++index) {
    const std::uint8_t byte = byte_at(index);
    if (block->WriteData(byte) != 0) continue;
    block = block->AllocateNewBlock();
    if (!block || block->WriteData(byte) == 0) return false;
  }
  return true;
}

/// The same with bytes in one piece, which do not lie in the chain itself.
template <class Block>
[[nodiscard]] bool AppendBytes(Block& head, std::span<const std::uint8_t> bytes) {
  if constexpr (BulkBlock<Block>) {
    auto* block = head.GetLastBlock(&head);
    std::size_t done = block->AppendData(bytes.data(), bytes.size());
    while (done < bytes.size()) {
      block = block->AllocateNewBlock();
      const std::size_t more =
          block ? block->AppendData(bytes.data() + done, bytes.size() - done) : 0;
      if (more == 0) return false;
      done += more;
    }
    return true;
  } else {
    return AppendEach(head, bytes.size(), [bytes](std::size_t index) { return bytes[index]; });
  }
}

/// Appends the bytes of `value` behind those of `stream`, or puts them in their place, and takes
/// its bit length. The value may have borrowed its bytes from the stream. False as above.
[[nodiscard]] bool AddValue(RowDataStream& stream, BitValue& value);
[[nodiscard]] bool ReplaceValue(RowDataStream& stream, BitValue& value);

/// Puts `value` in the place of what `stream` holds. A value of as many bytes needs no memory.
/// False if memory for a larger one runs out: the stream then holds what it held, unless its blocks
/// do not find again the memory that they gave back. `value` is used up.
[[nodiscard]] bool OverwriteByValue(RowDataStream& stream, BitValue& value);

}  // namespace zrt
