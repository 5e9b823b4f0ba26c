// The append protocol and its reverse.
#include "bitstream/stream_bytes.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace zrt {
namespace {

// A stream may share its blocks with the row that it is to hold: what is borrowed from it would
// move or change as it is written.
void KeepFrom(RowDataStream& stream, BitValue& value) {
  if (value.has_own_bytes() || value.Bytes().data() != stream.GetDataBlock()) return;
  (void)value.OwnBytes();
}

// A stream that is emptied frees its later blocks, so that only a sole one will do.
template <class Block>
std::span<std::uint8_t> RoomBehind(Block& head, std::size_t byte_count) {
  if constexpr (RoomyBlock<Block>) {
    if (head.GetLastBlock(&head) == &head) return head.RoomToAppend(byte_count);
  }
  return {};
}

}  // namespace

std::size_t SizeOf(LByteBuffer& chain) {
  const unsigned int size = chain.GetTotalSize();
  // What cannot be read fails as what finds no memory does: so many bytes nobody has.
  if (size > kMostBytes) (void)std::allocator<std::byte>().allocate(SIZE_MAX);
  return size;
}

void CopyBytes(LByteBuffer& chain, std::uint8_t* to) {
  const std::size_t size = SizeOf(chain);
  if (size == 0) return;
  if (static_cast<std::size_t>(chain.GetDataSize()) == size) {
    std::copy_n(chain.GetDataBlock(), size, to);
    return;
  }
  for (std::size_t index = 0; index < size; ++index) {
    to[index] = chain.ReadData(static_cast<int>(index));
  }
}

void OutcomePlace::Offer(BitValue& value, std::size_t byte_count) {
  const auto room = RoomBehind<LByteBuffer>(*stream_, byte_count);
  stream_ = nullptr;
  if (!room.empty()) value.UseRoom(room);
}

void LoadBytes(LByteBuffer& chain, BitValue& value) {
  CopyBytes(chain, value.Rebuild(SizeOf(chain)).data());
}

void BorrowBytes(LByteBuffer& chain, BitValue& value) {
  const std::size_t size = SizeOf(chain);
  if (static_cast<std::size_t>(chain.GetDataSize()) != size) return LoadBytes(chain, value);
  value.Borrow({chain.GetDataBlock(), size});
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

bool OverwriteByValue(RowDataStream& stream, BitValue& value) {
  const auto bytes = value.Bytes();
  const std::size_t older_size = stream.GetTotalSize();
  if (bytes.size() < older_size) return ReplaceValue(stream, value);
  // What is added at the end can fail, so it comes first.
  if (AppendBytes<LByteBuffer>(stream, bytes.subspan(older_size))) {
    for (std::size_t index = 0; index < older_size; ++index) {
      stream.WriteData(static_cast<int>(index), bytes[index]);
    }
    stream.BitLength = value.bit_length();
    return true;
  }
  LoadBytes(stream, value);  // which has room for them
  stream.ClearBuffer();
  (void)AppendBytes<LByteBuffer>(stream, value.Bytes().first(older_size));
  return false;
}

}  // namespace zrt
