// The stream at the border: a byte chain of the closed library with a length in bits.
#include "RowDataStream.h"

#include <algorithm>

#include "bitstream/stream_bytes.h"

RowDataStream::RowDataStream() : BitLength(0) {}

RowDataStream::RowDataStream(const RowDataStream& other) = default;

RowDataStream::RowDataStream(int /*size*/, int bitLength) : BitLength(bitLength) {}

RowDataStream::~RowDataStream() = default;

RowDataStream& RowDataStream::operator=(const RowDataStream& other) = default;

void RowDataStream::CopyBlock(RowDataStream* source) {
  if (!source) return;
  // A chain may be copied onto its own end, by itself or by a stream that shares its blocks: its
  // size is taken before it grows, and each byte is looked up anew, since growing may move a block.
  const unsigned int size = std::min(source->GetTotalSize(), zrt::kMostBytes);
  const bool is_one_block = static_cast<unsigned int>(source->GetDataSize()) == size;
  if (is_one_block && source->GetDataBlock() != GetDataBlock()) {
    (void)zrt::AppendBytes<LByteBuffer>(*this, {source->GetDataBlock(), size});
  } else {
    (void)zrt::AppendEach<LByteBuffer>(*this, size, [source](std::size_t index) {
      return source->ReadData(static_cast<int>(index));
    });
  }
  BitLength = source->BitLength;
}
