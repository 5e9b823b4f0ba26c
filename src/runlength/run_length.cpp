// The run-length writer. Seven or more equal bytes become a replication, all else digits.
//
// The byte that ends a run, long or short, belongs to the digits and never opens the next run:
// after 01, seven times 55 are a run of six. Readers do not mind, and texts stay the same for all
// time.
#include "runlength/run_length.h"

#include <charconv>
#include <cstring>
#include <string_view>

#include "bits/digits.h"

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

// Where the text stands that grows, and how its digits look.
class Writer {
 public:
  Writer(char* text, char digit_ten) : begin_(text), end_(text), digit_ten_(digit_ten) {}

  void WriteDigits(Bytes bytes) {
    if (bytes.empty()) return;
    end_ = WriteHexDigits(bytes, digit_ten_, Write(is_empty() ? "0x" : "@0x", end_));
  }

  void WriteRun(Bytes run) {
    constexpr std::size_t kMaxCountDigits = 10;
    end_ = WriteHexDigits(run.first(1), digit_ten_, Write(is_empty() ? "(0x" : "@(0x", end_));
    *end_++ = '^';
    end_ = std::to_chars(end_, end_ + kMaxCountDigits, run.size()).ptr;
    *end_++ = ')';
  }

  // Ends the text; one that begins with digits is put in parentheses.
  void Finish() {
    if (!is_empty() && *begin_ != '(') {
      std::memmove(begin_ + 1, begin_, static_cast<std::size_t>(end_ - begin_));
      *begin_ = '(';
      ++end_;
      *end_++ = ')';
    }
    *end_ = '\0';
  }

  [[nodiscard]] bool is_empty() const { return end_ == begin_; }

 private:
  char* begin_;
  char* end_;
  char digit_ten_;
};

}  // namespace

void WriteRunLengthText(Bytes bytes, char digit_ten, char* text) {
  Writer writer(text, digit_ten);
  std::size_t digits_begin = 0;  // of the bytes not yet written
  for (std::size_t begin = 0; begin < bytes.size();) {
    const std::size_t run_end = EndOfRun(bytes, begin);
    if (run_end - begin >= kLongRun) {
      writer.WriteDigits(bytes.subspan(digits_begin, begin - digits_begin));
      writer.WriteRun(bytes.subspan(begin, run_end - begin));
      digits_begin = run_end;
    }
    begin = run_end + 1;
  }
  if (!writer.is_empty()) writer.WriteDigits(bytes.subspan(digits_begin));
  writer.Finish();
}

}  // namespace zrt
