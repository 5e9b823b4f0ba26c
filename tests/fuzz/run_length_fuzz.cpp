// The run-length writer on any buffer: the reference's text, in no more room than is documented,
// from blocks of any size, which reads back. The first byte is the block size; then each two are a
// byte and how many of it, so that runs are common.
#include "DataExpression.h"
#include "fuzz.h"
#include "guarded.h"
#include "reference.h"
#include "support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* input_data, std::size_t input_size) {
  static GuardedRoom room;
  static ZRTExpression expression;
  Input input(input_data, input_size);
  const int block_size = input.Byte() % 16;  // those below 4 are 4, and 0 grows
  std::vector<std::uint8_t> bytes;
  while (input.has_more() && bytes.size() < 300) {
    const std::uint8_t byte = input.Byte(), choice = input.Byte();
    const std::size_t count = choice % 8 == 7 ? choice : 1 + choice % 9;
    bytes.insert(bytes.end(), count, byte);
  }
  const BlockSize setting(block_size);
  LByteBuffer data;
  data.Append(bytes);
  char* const text = room.Last(2 * bytes.size() + 3);
  fnGetDataExpression(&data, text);
  Require(text == reference::RunLengthText(bytes), text);
  Require(BytesOf(data) == bytes, "the buffer stays");
  if (*text == '\0') return 0;
  RowDataStream stream;
  Require(expression.GetBitStream(text, &stream) == 0, text);
  Require(BytesOf(stream) == bytes && stream.BitLength == static_cast<int>(8 * bytes.size()), text);
  return 0;
}
