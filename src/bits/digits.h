// Hexadecimal and binary digits to bytes, and bytes to hexadecimal digits. Which case the letters
// have is the caller's to say. Knows nothing of texts and literals around the digits.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace zrt {

/// The digit of 0 to 15, with letters as below.
constexpr char HexDigit(int nibble, char digit_ten) {
  return static_cast<char>(nibble > 9 ? digit_ten + nibble - 10 : '0' + nibble);
}

/// Writes two digits a byte, the high nibble first, without a terminator. The digit for ten is
/// `digit_ten`, "A" or "a", and the other letters follow it. Returns the end of the digits.
char* WriteHexDigits(std::span<const std::uint8_t> bytes, char digit_ten, char* text);

/// Reads hexadecimal digits of either case, in reading order from the first byte on; an odd count
/// leaves the low nibble of the last byte 0. `bytes` has (digit count + 1) / 2 bytes. False if
/// `digits` holds anything else: then the bytes are of no known content.
[[nodiscard]] bool ReadHexDigits(std::string_view digits, std::span<std::uint8_t> bytes);

/// Reads the hexadecimal digits that `text` begins with in the same way, and copies them. `copy`
/// has room for as many characters as `text` has, `bytes` for half of them; what stands behind the
/// digits and their bytes is of no known content then.
/// @return the count of digits.
[[nodiscard]] std::size_t CopyHexDigits(std::string_view text, char* copy, std::uint8_t* bytes);

/// The same without the copy.
[[nodiscard]] std::size_t ReadLeadingHexDigits(std::string_view text, std::uint8_t* bytes);

/// Reads up to 16 hexadecimal digits as a number, and copies them. For few digits, in the time that
/// the others need to begin. False if there is anything else.
[[nodiscard]] bool ReadHexDigits(std::string_view digits, char* copy, std::uint64_t& word);

/// Reads binary digits, right-aligned. `bytes` has (digit count + 7) / 8 bytes.
void ReadBinaryDigits(std::string_view digits, std::span<std::uint8_t> bytes);

/// Writes a value of `bit_length` bits as "0x", two digits for each of the bytes the length needs,
/// the last byte last, and the terminator. Bytes above are left out, missing ones are written as
/// zeros.
void WriteHexText(std::span<const std::uint8_t> bytes, int bit_length, char digit_ten, char* text);

}  // namespace zrt
