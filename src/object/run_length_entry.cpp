// The entry point to the run-length writer: a chain of blocks outside, bytes in one piece inside.
#include <cstdint>
#include <vector>

#include "DataExpression.h"
#include "bits/exhausted_memory.h"
#include "bitstream/stream_bytes.h"
#include "object/data_expression.h"
#include "runlength/run_length.h"

void zrt::WriteDataExpression(LByteBuffer& data, char* text) {
  const unsigned int size = data.GetTotalSize();
  const char digit_ten = util_Hex2HexAnsi(10);  // its case is the closed library's
  if (static_cast<unsigned int>(data.GetDataSize()) == size) {
    WriteRunLengthText({data.GetDataBlock(), size}, digit_ten, text);
    return;
  }
  std::vector<std::uint8_t> bytes(SizeOf(data));
  CopyBytes(data, bytes.data());
  WriteRunLengthText(bytes, digit_ten, text);
}

void fnGetDataExpression(LByteBuffer* data, char* text) {
  const bool is_written = zrt::OnExhaustedMemory(false, [&] {
    zrt::WriteDataExpression(*data, text);
    return true;
  });
  if (!is_written) *text = '\0';  // as if there were no run
}
