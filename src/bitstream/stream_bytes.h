// Bytes in and out of the closed library's byte chains: the border between streams and the working
// value. Knows nothing of texts.
#pragma once

#include <cstdint>
#include <span>

#include "RowDataStream.h"
#include "bitstream/bit_value.h"

namespace zrt {

/// Copies the bytes of a chain to `to`, GetTotalSize() of them; in one go if it is one block.
void CopyBytes(LByteBuffer& chain, std::uint8_t* to);

/// `value` becomes the bytes of a chain; its bit length stays. Throws std::bad_alloc.
void LoadBytes(LByteBuffer& chain, BitValue& value);

/// Appends bytes behind what the chain of `head` holds, block by block as blocks fill up. False if
/// memory for a new block runs out; the bytes that found room stay.
[[nodiscard]] bool AppendBytes(LByteBuffer& head, std::span<const std::uint8_t> bytes);

/// `stream` becomes `value`. False as above.
[[nodiscard]] bool StoreValue(RowDataStream& stream, BitValue& value);

}  // namespace zrt
