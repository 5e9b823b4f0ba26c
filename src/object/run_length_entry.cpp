// The entry point to the run-length writer: a chain of blocks outside, bytes in one piece inside.
#include <cstdint>
#include <vector>

#include "DataExpression.h"
#include "bits/exhausted_memory.h"
#include "bitstream/stream_bytes.h"
#include "runlength/run_length.h"

void fnGetDataExpression(LByteBuffer* data, char* text) {
  const unsigned int size = data->GetTotalSize();
  const char digit_ten = util_Hex2HexAnsi(10);  // its case is the closed library's
  if (static_cast<unsigned int>(data->GetDataSize()) == size) {
    zrt::WriteRunLengthText({data->GetDataBlock(), size}, digit_ten, text);
    return;
  }
  const bool is_written = zrt::OnExhaustedMemory(false, [&] {
    std::vector<std::uint8_t> bytes(zrt::SizeOf(*data));
    zrt::CopyBytes(*data, bytes.data());
    zrt::WriteRunLengthText(bytes, digit_ten, text);
    return true;
  });
  if (!is_written) *text = '\0';  // as if there were no run
}
