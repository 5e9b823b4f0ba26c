// A stream's bytes and texts, sized by the library.
#include "zrtexpression/texts.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "bits/bit_value.h"
#include "bits/digits.h"
#include "bits/exhausted_memory.h"
#include "bitstream/stream_bytes.h"
#include "hq4170.h"
#include "object/data_expression.h"

namespace zrt {
namespace {

// The text that `write` makes in a buffer of `most` characters, NUL included.
template <class Write>
bool WriteInto(std::string& text, std::size_t most, const Write& write) {
  text.clear();
  const bool is_written = OnExhaustedMemory(false, [&] {
    text.resize(most);
    write(text.data());
    text.resize(std::strlen(text.data()));
    return true;
  });
  if (!is_written) text.clear();
  return is_written;
}

}  // namespace

std::size_t ValidByteCount(const RowDataStream& stream) noexcept {
  return BytesFor(stream.BitLength);
}

void CopyValidBytes(RowDataStream& stream, SpareBits spare_bits, std::uint8_t* bytes) noexcept {
  const std::size_t wanted = ValidByteCount(stream);
  const std::size_t held = stream.GetTotalSize();
  const std::size_t count = std::min(wanted, held);
  std::fill_n(bytes, wanted - count, std::uint8_t{0});
  if (held == static_cast<unsigned int>(stream.GetDataSize())) {
    std::copy_n(stream.GetDataBlock() + (held - count), count, bytes + (wanted - count));
  } else {
    for (std::size_t index = held - count; index < held; ++index) {
      bytes[wanted - held + index] = stream.ReadData(static_cast<int>(index));
    }
  }
  const int bits_of_first = stream.BitLength % 8;
  if (spare_bits == SpareBits::kCleared && bits_of_first > 0) {
    bytes[0] &= static_cast<std::uint8_t>((1U << bits_of_first) - 1);
  }
}

bool GetHexText(RowDataStream& stream, std::string* text) noexcept {
  const std::size_t count = ValidByteCount(stream);
  return WriteInto(*text, 2 * count + 3, [&](char* to) {
    std::vector<std::uint8_t> bytes(count);
    CopyValidBytes(stream, SpareBits::kAsTheyAre, bytes.data());
    WriteHexText(bytes, stream.BitLength, util_Hex2HexAnsi(10), to);
  });
}

bool GetDataExpression(LByteBuffer& data, std::string* text) noexcept {
  const std::size_t most = 2 * std::size_t{data.GetTotalSize()} + 3;
  return WriteInto(*text, most, [&](char* to) { WriteDataExpression(data, to); });
}

}  // namespace zrt
