// Bytes in and out of the closed library's byte chains: the border between streams and the working
// value. Knows nothing of texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "RowDataStream.h"
#include "bitstream/bit_value.h"

namespace zrt {

/// Copies the bytes of a chain to `to`, GetTotalSize() of them; in one go if it is one block.
void CopyBytes(LByteBuffer& chain, std::uint8_t* to);

/// `value` becomes the bytes of a chain; its bit length stays. Throws std::bad_alloc.
void LoadBytes(LByteBuffer& chain, BitValue& value);

/// Appends `count` bytes, each from `byte_at(index)`, behind what the chain of `head` holds, block
/// by block as blocks fill up. False if memory for a byte runs out; the bytes before it stay.
template <class ByteAt>
[[nodiscard]] bool AppendEach(LByteBuffer& head, std::size_t count, const ByteAt& byte_at) {
  LByteBuffer* block = head.GetLastBlock(&head);
  for (std::size_t index = 0; index < count; ++index) {
    const std::uint8_t byte = byte_at(index);
    if (block->WriteData(byte) != 0) continue;
    block = block->AllocateNewBlock();
    if (!block || block->WriteData(byte) == 0) return false;
  }
  return true;
}

/// The same with bytes in one piece.
[[nodiscard]] bool AppendBytes(LByteBuffer& head, std::span<const std::uint8_t> bytes);

/// Appends the bytes of `value` and takes its bit length. False as above.
[[nodiscard]] bool AddValue(RowDataStream& stream, BitValue& value);

}  // namespace zrt
