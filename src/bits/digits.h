// Hexadecimal and binary digits to bytes, and bytes to hexadecimal digits. Which case the letters
// have is the caller's to say. Knows nothing of texts and literals around the digits.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace zrt {

/// The digit of 0 to 15, with letters as below.
constexpr char HexDigit(int nibble, char digit_ten) {
  return static_cast<char>(nibble > 9 ? digit_ten + nibble - 10 : '0' + nibble);
}

/// The values of hexadecimal digits; of what is none, more.
constexpr std::array<std::uint8_t, 256> MakeDigitValues() {
  std::array<std::uint8_t, 256> values{};
  values.fill(0xFF);
  for (unsigned i = 0; i < 10; ++i) values['0' + i] = static_cast<std::uint8_t>(i);
  for (unsigned i = 10; i < 16; ++i) {
    values['A' + i - 10] = values['a' + i - 10] = static_cast<std::uint8_t>(i);
  }
  return values;
}
inline constexpr std::array<std::uint8_t, 256> kDigitValues = MakeDigitValues();

/// Writes two digits a byte, the high nibble first, without a terminator. The digit for ten is
/// `digit_ten`, "A" or "a", and the other letters follow it. Returns the end of the digits.
char* WriteHexDigits(std::span<const std::uint8_t> bytes, char digit_ten, char* text);

/// Reads hexadecimal digits of either case, in reading order from the first byte on; an odd count
/// leaves the low nibble of the last byte 0. `bytes` has (digit count + 1) / 2 bytes. False if
/// `digits` holds anything else, soon behind the place: then the bytes are of no known content.
[[nodiscard]] bool ReadHexDigits(std::string_view digits, std::span<std::uint8_t> bytes);

/// Reads the hexadecimal digits that `text` begins with in the same way, and copies them. `copy`
/// has room for as many characters as `text` has, `bytes` for half of them; what stands behind the
/// digits and their bytes is of no known content then.
/// @return the count of digits.
[[nodiscard]] std::size_t CopyHexDigits(std::string_view text, char* copy, std::uint8_t* bytes);

/// Reads up to 16 hexadecimal digits as a number, and copies them. For few digits, in the time that
/// the others need to begin. False if there is anything else.
[[nodiscard]] inline bool ReadHexDigits(std::string_view digits, char* copy, std::uint64_t& word) {
  unsigned others = 0;
  std::uint64_t number = 0;
  for (const char c : digits) {
    *copy++ = c;
    const unsigned value = kDigitValues[static_cast<unsigned char>(c)];
    others |= value;
    number = number << 4 | value;
  }
  word = number;
  return others < 16;
}

/// Reads binary digits, right-aligned. `bytes` has (digit count + 7) / 8 bytes.
void ReadBinaryDigits(std::string_view digits, std::span<std::uint8_t> bytes);

/// Writes a value of `bit_length` bits as "0x", two digits for each of the bytes the length needs,
/// the last byte last, and the terminator. Bytes above are left out, missing ones are written as
/// zeros.
void WriteHexText(std::span<const std::uint8_t> bytes, int bit_length, char digit_ten, char* text);

}  // namespace zrt
