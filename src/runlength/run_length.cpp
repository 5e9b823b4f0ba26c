// The run-length writer. Seven or more equal bytes become a replication, all else digits.
//
// The byte that ends a run, long or short, belongs to the digits and never opens the next run:
// after 01, seven times 55 are a run of six. Readers do not mind, and texts stay the same for all
// time.
#include "runlength/run_length.h"

#include <charconv>
#include <string_view>

#include "bits/digits.h"
#include "bits/word.h"

namespace zrt {
namespace {

constexpr std::size_t kLongRun = 7;

using Bytes = std::span<const std::uint8_t>;

// The first place from `begin` on whose byte the next one equals; the end if there is none.
std::size_t NextPair(Bytes bytes, std::size_t begin) {
  std::size_t i = begin;
  for (; i + kWordSize < bytes.size(); i += kWordSize) {
    const std::uint64_t pairs = ZeroBytes(LoadWord(&bytes[i]) ^ LoadWord(&bytes[i + 1]));
    if (pairs != 0) return i + FirstByte(pairs);
  }
  while (i + 1 < bytes.size() && bytes[i] != bytes[i + 1]) ++i;
  return i + 1 < bytes.size() ? i : bytes.size();
}

// The end of the bytes equal to the one at `begin`.
std::size_t EndOfRun(Bytes bytes, std::size_t begin) {
  const std::uint64_t repeated = InEachByte(bytes[begin]);
  std::size_t end = begin + 1;
  constexpr std::size_t kFourWords = 4 * kWordSize;
  for (; end + kFourWords <= bytes.size(); end += kFourWords) {
    std::uint64_t others = 0;
    for (std::size_t i = end; i < end + kFourWords; i += kWordSize) {
      others |= LoadWord(&bytes[i]) ^ repeated;
    }
    if (others != 0) break;
  }
  for (; end + kWordSize <= bytes.size(); end += kWordSize) {
    const std::uint64_t others = LoadWord(&bytes[end]) ^ repeated;
    if (others != 0) return end + FirstByte(others);
  }
  while (end < bytes.size() && bytes[end] == bytes[begin]) ++end;
  return end;
}

char* Write(std::string_view piece, char* text) { return text + piece.copy(text, piece.size()); }

// Where the text stands that grows, and how its digits look.
class Writer {
 public:
  Writer(char* text, char digit_ten) : begin_(text), end_(text), digit_ten_(digit_ten) {}

  // A text that begins with digits is put in parentheses.
  void WriteDigits(Bytes bytes) {
    if (bytes.empty()) return;
    is_in_parentheses_ |= is_empty();
    *end_++ = is_empty() ? '(' : '@';
    end_ = WriteHexDigits(bytes, digit_ten_, Write("0x", end_));
  }

  void WriteRun(Bytes run) {
    constexpr std::size_t kMaxCountDigits = 10;
    if (!is_empty()) *end_++ = '@';
    end_ = Write("(0x", end_);
    *end_++ = HexDigit(run.front() >> 4, digit_ten_);
    *end_++ = HexDigit(run.front() & 0xF, digit_ten_);
    *end_++ = '^';
    end_ = std::to_chars(end_, end_ + kMaxCountDigits, run.size()).ptr;
    *end_++ = ')';
  }

  void Finish() {
    if (is_in_parentheses_) *end_++ = ')';
    *end_ = '\0';
  }

  [[nodiscard]] bool is_empty() const { return end_ == begin_; }

 private:
  char* begin_;
  char* end_;
  char digit_ten_;
  bool is_in_parentheses_ = false;
};

}  // namespace

void WriteRunLengthText(Bytes bytes, char digit_ten, char* text) {
  Writer writer(text, digit_ten);
  std::size_t digits_begin = 0;  // of the bytes not yet written
  for (std::size_t begin = 0; begin < bytes.size();) {
    // Up to the next pair each run is one byte long, and another byte ends it: they begin at every
    // second byte, so the pair may be cut in two.
    const std::size_t pair = NextPair(bytes, begin);
    if (pair == bytes.size()) break;
    begin = (pair - begin) % 2 == 0 ? pair : pair + 1;
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
