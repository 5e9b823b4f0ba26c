// Digits both ways by arithmetic, in plain loops that compilers turn into vector instructions; a
// table would cost a load for each digit.
#include "bits/digits.h"

#include <algorithm>

#include "bits/bit_value.h"

namespace zrt {
namespace {

// All arithmetic is on bytes, as narrow as a vector's lanes can be. `gap` lies between "9" and the
// digit for ten.
char DigitOf(std::uint8_t nibble, std::uint8_t gap) {
  return static_cast<char>(nibble + '0' + (nibble > 9 ? gap : 0));
}

// The low four bits of "0" to "9" are the value; those of "A" and "a" are 1, and both lie behind
// "9".
std::uint8_t ValueOf(char digit) {
  return static_cast<std::uint8_t>((digit & 0xF) + (digit > '9' ? 9 : 0));
}

}  // namespace

char* WriteHexDigits(std::span<const std::uint8_t> bytes, char digit_ten, char* text) {
  const auto gap = static_cast<std::uint8_t>(digit_ten - '9' - 1);
  const std::uint8_t* const from = bytes.data();
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    text[2 * i] = DigitOf(from[i] >> 4, gap);
    text[2 * i + 1] = DigitOf(from[i] & 0xF, gap);
  }
  return text + 2 * bytes.size();
}

void ReadHexDigits(std::string_view digits, std::span<std::uint8_t> bytes) {
  const std::size_t whole_bytes = digits.size() / 2;
  const char* const from = digits.data();
  std::uint8_t* const to = bytes.data();
  for (std::size_t i = 0; i < whole_bytes; ++i) {
    to[i] = static_cast<std::uint8_t>(ValueOf(from[2 * i]) << 4 | ValueOf(from[2 * i + 1]));
  }
  if (digits.size() % 2 != 0) {
    to[whole_bytes] = static_cast<std::uint8_t>(ValueOf(digits.back()) << 4);
  }
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
