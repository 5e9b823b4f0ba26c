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

void BorrowBytes(LByteBuffer& chain, BitValue& value) {
  const unsigned int size = chain.GetTotalSize();
  if (static_cast<unsigned int>(chain.GetDataSize()) != size) return LoadBytes(chain, value);
  value.Borrow({chain.GetDataBlock(), size});
}

// A stream may share its blocks with the row that it is to hold: what is borrowed from it would
// move or change as it is written.
void KeepFrom(RowDataStream& stream, BitValue& value) {
  if (value.Bytes().data() == stream.GetDataBlock()) (void)value.OwnBytes();
}

bool AddValue(RowDataStream& stream, BitValue& value) {
  KeepFrom(stream, value);
  stream.BitLength = value.bit_length();
  return AppendBytes<LByteBuffer>(stream, value.Bytes());
}

bool ReplaceValue(RowDataStream& stream, BitValue& value) {
  KeepFrom(stream, value);
  stream.ClearBuffer();
  return AddValue(stream, value);
}

}  // namespace zrt
