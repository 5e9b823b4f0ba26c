// Digits both ways by arithmetic, in plain loops that compilers turn into vector instructions; a
// table would cost a load for each digit. Few digits are better off without vectors.
#include "bits/digits.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "bits/bit_value.h"
#include "bits/wide.h"
#include "bits/word.h"

namespace zrt {
namespace {

// A step of 32 digits as vectors, handed on by reference alone, as in the kernels.
using Chars [[gnu::vector_size(32)]] = std::uint8_t;
using Pairs [[gnu::vector_size(32)]] = std::uint16_t;      // of them, to make a byte each
using HalfStep [[gnu::vector_size(16)]] = std::uint8_t;    // their bytes
using Digits [[gnu::vector_size(32)]] = std::int8_t;       // compared in one step, unlike others
using HalfPairs [[gnu::vector_size(16)]] = std::uint16_t;  // shifted in one step
constexpr std::size_t kStep = sizeof(Chars);
constexpr std::size_t kStepBytes = sizeof(HalfStep);

// Two digits of either case make a byte. What is no digit leaves bits in `others`.
ZRT_INLINE void ToBytes(const Chars& chars, std::uint8_t* bytes, Chars& others) {
  const Chars decimal = chars - '0';
  const Chars letter = (chars | ' ') - 'a';
  others |= (decimal > 9) & (letter > 5);
  const Chars value = decimal > 9 ? letter + 10 : decimal;
  Pairs pairs;
  std::memcpy(&pairs, &value, kStep);
  constexpr bool kIsLittle = std::endian::native == std::endian::little;
  const Pairs both = kIsLittle ? (pairs << 4) | (pairs >> 8) : (pairs >> 4) | pairs;
  const auto joined = __builtin_convertvector(both & 0xFF, HalfStep);
  std::memcpy(bytes, &joined, sizeof(joined));
}

ZRT_INLINE void ReadStep(const char* digits, std::uint8_t* bytes, Chars& others) {
  Chars chars;
  std::memcpy(&chars, digits, kStep);
  ToBytes(chars, bytes, others);
}

// The first place that has bits in `others`; kStep if there is none.
ZRT_INLINE std::size_t FirstOf(const Chars& others) {
  std::array<std::uint64_t, kStep / kWordSize> words{};
  std::memcpy(words.data(), &others, kStep);
  if ((words[0] | words[1] | words[2] | words[3]) == 0) return kStep;
  std::size_t word = 0;
  while (words[word] == 0) ++word;
  return word * kWordSize + FirstByte(words[word]);
}

// A digit without a second one.
std::uint8_t HighNibble(char digit) {
  const int value = digit <= '9' ? digit - '0' : (digit | ' ') - 'a' + 10;
  return static_cast<std::uint8_t>(value << 4);
}

// Four bytes as digits, the first one in the top byte.
std::uint64_t DigitsOf(std::uint32_t number, std::uint8_t gap) {
  std::uint64_t values = (number | std::uint64_t{number} << 16) & 0x0000FFFF0000FFFFU;
  values = (values | values << 8) & 0x00FF00FF00FF00FFU;
  values = (values | values << 4) & InEachByte(0xF);
  const std::uint64_t above_nine = (values + InEachByte(6)) >> 4 & InEachByte(1);
  return values + InEachByte('0') + above_nine * gap;
}

// The other way round: bytes to digits. `gap` lies between "9" and the digit for ten.
ZRT_INLINE void WriteStep(const std::uint8_t* bytes, char* digits, std::uint8_t gap) {
  HalfStep low;
  std::memcpy(&low, bytes, sizeof(low));
  const auto high = reinterpret_cast<HalfStep>(reinterpret_cast<HalfPairs>(low) >> 4);
  auto chars = reinterpret_cast<Digits>(
      __builtin_shufflevector(high, low, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23, 8,
                              24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31));
  chars &= 0xF;
  const Digits zero = Digits{} + '0';
  chars += chars > 9 ? zero + static_cast<std::int8_t>(gap) : zero;
  std::memcpy(digits, &chars, kStep);
}

// A step or more. The last one ends where the bytes do, whatever part of them it writes again: a
// loop over a rest of any length costs more.
ZRT_WIDE void WriteSteps(std::span<const std::uint8_t> bytes, std::uint8_t gap, char* text) {
  const std::size_t last = bytes.size() - kStepBytes;
  for (std::size_t i = 0; i < last; i += kStepBytes) WriteStep(&bytes[i], text + 2 * i, gap);
  WriteStep(&bytes[last], text + 2 * last, gap);
}

// The same with steps of four bytes.
void WriteWords(std::span<const std::uint8_t> bytes, std::uint8_t gap, char* text) {
  const std::size_t last = bytes.size() - 4;
  for (std::size_t i = 0;; i = std::min(i + 4, last)) {
    std::uint32_t number = 0;
    for (const std::uint8_t byte : bytes.subspan(i, 4)) number = number << 8 | byte;
    const std::uint64_t digits = BigEndian(DigitsOf(number, gap));
    std::memcpy(text + 2 * i, &digits, kWordSize);
    if (i == last) return;
  }
}

}  // namespace

// Whole steps in their place, and the rest with zeros behind it in a place of its own.
ZRT_WIDE bool ReadHexDigits(std::string_view digits, std::span<std::uint8_t> bytes) {
  constexpr std::ptrdiff_t kReadAhead = 1024;  // characters
  constexpr std::size_t kPart = 16384;         // characters, between looks at the others
  Chars others{};
  const std::size_t in_steps = digits.size() / kStep * kStep;
  for (std::size_t i = 0; i < in_steps;) {
    const std::size_t end = std::min(i + kPart, in_steps);
    for (; i < end; i += kStep) {
      // Between groups the literals of a text are read from the last one to the first.
      __builtin_prefetch(&digits[i] - kReadAhead);
      ReadStep(&digits[i], &bytes[i / 2], others);
    }
    if (FirstOf(others) < kStep) return false;
  }
  if (in_steps < digits.size()) {
    std::array<char, kStep> last{};
    std::array<std::uint8_t, kStep / 2> last_bytes{};
    last.fill('0');
    digits.substr(in_steps).copy(last.data(), kStep);
    ReadStep(last.data(), last_bytes.data(), others);
    const auto rest = bytes.subspan(in_steps / 2);
    std::copy_n(last_bytes.data(), rest.size(), rest.data());
  }
  return FirstOf(others) == kStep;
}

// A step at once; the rest in a place of its own with what is no digit behind it.
ZRT_WIDE std::size_t CopyHexDigits(std::string_view text, char* copy, std::uint8_t* bytes) {
  const std::size_t in_steps = text.size() / kStep * kStep;
  std::size_t count = 0;
  std::size_t in_step = kStep;
  for (; count < in_steps && in_step == kStep; count += in_step) {
    Chars chars;
    Chars others{};
    std::memcpy(&chars, &text[count], kStep);
    std::memcpy(copy + count, &chars, kStep);
    ToBytes(chars, bytes + count / 2, others);
    in_step = FirstOf(others);
  }
  if (in_step == kStep && count < text.size()) {
    std::array<char, kStep> last{};
    std::array<std::uint8_t, kStep / 2> last_bytes{};
    Chars others{};
    const std::size_t length = text.substr(count).copy(last.data(), kStep);
    std::copy_n(last.data(), length, copy + count);
    ReadStep(last.data(), last_bytes.data(), others);
    in_step = FirstOf(others);
    std::copy_n(last_bytes.data(), (in_step + 1) / 2, bytes + count / 2);
    count += in_step;
  }
  if (count % 2 != 0) bytes[count / 2] = HighNibble(text[count - 1]);
  return count;
}

char* WriteHexDigits(std::span<const std::uint8_t> bytes, char digit_ten, char* text) {
  const auto gap = static_cast<std::uint8_t>(digit_ten - '9' - 1);
  char* const end = text + 2 * bytes.size();
  if (bytes.size() >= kStepBytes) {
    WriteSteps(bytes, gap, text);
  } else if (bytes.size() >= 4) {
    WriteWords(bytes, gap, text);
  } else {
    for (const std::uint8_t byte : bytes) {
      *text++ = HexDigit(byte >> 4, digit_ten);
      *text++ = HexDigit(byte & 0xF, digit_ten);
    }
  }
  return end;
}

void ReadBinaryDigits(std::string_view digits, std::span<std::uint8_t> bytes) {
  std::size_t digit = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const std::size_t end = digits.size() - 8 * (bytes.size() - 1 - i);
    unsigned byte = 0;
    for (; digit < end; ++digit) byte = (byte << 1) | (digits[digit] == '1' ? 1U : 0U);
    bytes[i] = static_cast<std::uint8_t>(byte);
  }
}

void WriteHexText(std::span<const std::uint8_t> bytes, int bit_length, char digit_ten, char* text) {
  const std::size_t wanted = BytesFor(bit_length);
  const std::size_t count = std::min(wanted, bytes.size());
  *text++ = '0';
  *text++ = 'x';
  text = std::fill_n(text, 2 * (wanted - count), '0');
  *WriteHexDigits(bytes.last(count), digit_ten, text) = '\0';
}

}  // namespace zrt
