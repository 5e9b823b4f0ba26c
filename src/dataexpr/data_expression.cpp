// The run-length writer. Seven or more equal bytes become a replication, all else digits.
//
// The byte that ends a run, long or short, belongs to the digits and never opens the next run:
// after 01, seven times 55 are a run of six. Readers do not mind, and texts stay the same for all
// time.
#include "DataExpression.h"

#include <charconv>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

#include "bitstream/bit_value.h"
#include "bitstream/hex_text.h"
#include "bitstream/stream_bytes.h"

namespace zrt {
namespace {

constexpr std::size_t kLongRun = 7;

using Bytes = std::span<const std::uint8_t>;

// The end of the bytes equal to the one at `begin`.
std::size_t EndOfRun(Bytes bytes, std::size_t begin) {
  const std::uint8_t byte = bytes[begin];
  std::uint64_t repeated = 0;
  std::memset(&repeated, byte, sizeof(repeated));
  std::size_t end = begin + 1;
  while (end + sizeof(repeated) <= bytes.size()) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data() + end, sizeof(word));
    if (word != repeated) break;
    end += sizeof(repeated);
  }
  while (end < bytes.size() && bytes[end] == byte) ++end;
  return end;
}

char* Write(std::string_view piece, char* text) { return text + piece.copy(text, piece.size()); }

char* WriteDigits(Bytes bytes, bool is_first, char* text) {
  if (bytes.empty()) return text;
  return WriteHexDigits(bytes, Write(is_first ? "0x" : "@0x", text));
}

char* WriteRun(Bytes run, bool is_first, char* text) {
  constexpr std::size_t kMaxCountDigits = 10;
  text = WriteHexDigits(run.first(1), Write(is_first ? "(0x" : "@(0x", text));
  *text++ = '^';
  text = std::to_chars(text, text + kMaxCountDigits, run.size()).ptr;
  *text++ = ')';
  return text;
}

void WriteExpression(Bytes bytes, char* const text) {
  char* end = text;
  std::size_t digits_begin = 0;  // of the bytes not yet written
  for (std::size_t begin = 0; begin < bytes.size();) {
    const std::size_t run_end = EndOfRun(bytes, begin);
    if (run_end - begin >= kLongRun) {
      end = WriteDigits(bytes.subspan(digits_begin, begin - digits_begin), end == text, end);
      end = WriteRun(bytes.subspan(begin, run_end - begin), end == text, end);
      digits_begin = run_end;
    }
    begin = run_end + 1;
  }
  if (end != text) {
    end = WriteDigits(bytes.subspan(digits_begin), false, end);
    if (*text != '(') {
      std::memmove(text + 1, text, static_cast<std::size_t>(end - text));
      *text = '(';
      ++end;
      *end++ = ')';
    }
  }
  *end = '\0';
}

}  // namespace
}  // namespace zrt

void fnGetDataExpression(LByteBuffer* data, char* text) {
  const unsigned int size = data->GetTotalSize();
  if (static_cast<unsigned int>(data->GetDataSize()) == size) {
    zrt::WriteExpression({data->GetDataBlock(), size}, text);
    return;
  }
  *text = '\0';
  try {
    zrt::BitValue bytes;
    LoadBytes(*data, bytes);
    zrt::WriteExpression(bytes.Bytes(), text);
  } catch (...) {
    return;  // no memory to lay a chain out: as if it had no run
  }
}
