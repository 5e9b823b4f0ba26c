// The stream at the border: a byte chain of the closed library with a length in bits.
#include "RowDataStream.h"

#include "bitstream/stream_bytes.h"

RowDataStream::RowDataStream() noexcept : BitLength(0) {}

RowDataStream::RowDataStream(const RowDataStream& other) = default;

RowDataStream::RowDataStream(int /*size*/, int bitLength) noexcept : BitLength(bitLength) {}

RowDataStream::~RowDataStream() = default;

RowDataStream& RowDataStream::operator=(const RowDataStream& other) = default;

void RowDataStream::CopyBlock(RowDataStream* source) {
  if (!source) return;
  const unsigned int size = source->GetTotalSize();
  // A chain may be copied onto its own end, by itself or by a stream that shares its blocks: its
  // size is taken before it grows, and its bytes are read one by one, since growing may move a
  // block.
  const bool is_one_block = static_cast<unsigned int>(source->GetDataSize()) == size;
  if (is_one_block && source->GetDataBlock() != GetDataBlock()) {
    (void)zrt::AppendBytes(*this, {source->GetDataBlock(), size});
  } else {
    LByteBuffer* block = GetLastBlock(this);
    for (unsigned int index = 0; block && index < size; ++index) {
      const unsigned char byte = source->ReadData(static_cast<int>(index));
      if (block->WriteData(byte) != 0) continue;
      block = block->AllocateNewBlock();
      if (block) block->WriteData(byte);
    }
  }
  BitLength = source->BitLength;
}
