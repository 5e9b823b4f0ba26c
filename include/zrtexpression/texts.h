// A stream's bytes and texts for hosts, sized by the library: what GetBitStream and
// fnGetDataExpression write into the caller's buffer, into a string that grows as needed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "RowDataStream.h"
#include "zrtexpression/export.h"

namespace zrt {

/// The bits of the first byte above the bit length, if that is no multiple of 8.
enum class SpareBits : std::uint8_t { kAsTheyAre, kCleared };

/// How many bytes the bit length of `stream` needs; 0 for a negative one.
ZRT_EXPORT std::size_t ValidByteCount(const RowDataStream& stream) noexcept;

/// Copies the bytes that the bit length of `stream` needs to `bytes`, the last byte last:
/// ValidByteCount() of them. Missing ones are 0, those in front of the length are left out.
ZRT_EXPORT void CopyValidBytes(RowDataStream& stream, SpareBits spare_bits,
                               std::uint8_t* bytes) noexcept;

/// Writes the text that GetBitStream(text, hexText) writes for a value that `stream` holds.
/// @return false if memory runs out; `text` is then empty.
ZRT_EXPORT bool GetHexText(RowDataStream& stream, std::string* text) noexcept;

/// Writes the text that fnGetDataExpression writes for `data`, without its limit to the caller's
/// buffer. @return false if memory runs out; `text` is then empty.
ZRT_EXPORT bool GetDataExpression(LByteBuffer& data, std::string* text) noexcept;

}  // namespace zrt
