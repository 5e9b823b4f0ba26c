// The append protocol and its reverse.
#include "bitstream/stream_bytes.h"

#include <cstring>

namespace zrt {

void CopyBytes(LByteBuffer& chain, std::uint8_t* to) {
  const unsigned int size = chain.GetTotalSize();
  if (size == 0) return;
  if (static_cast<unsigned int>(chain.GetDataSize()) == size) {
    std::memcpy(to, chain.GetDataBlock(), size);
    return;
  }
  for (unsigned int index = 0; index < size; ++index) {
    to[index] = chain.ReadData(static_cast<int>(index));
  }
}

void LoadBytes(LByteBuffer& chain, BitValue& value) {
  CopyBytes(chain, value.Rebuild(chain.GetTotalSize()).data());
}

bool AddValue(RowDataStream& stream, BitValue& value) {
  stream.BitLength = value.bit_length();
  return AppendBytes<LByteBuffer>(stream, value.Bytes());
}

}  // namespace zrt
