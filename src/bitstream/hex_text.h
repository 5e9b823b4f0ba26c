// Hexadecimal and binary digits to bytes, and bytes to hexadecimal digits.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace zrt {

/// Writes two digits a byte, the high nibble first, without a terminator. Returns the end of them.
char* WriteHexDigits(std::span<const std::uint8_t> bytes, char* text);

/// Reads hexadecimal digits in reading order from the first byte on; an odd count leaves the low
/// nibble of the last byte 0. `bytes` has (digit count + 1) / 2 bytes.
void ReadHexDigits(std::string_view digits, std::span<std::uint8_t> bytes);

/// Reads binary digits, right-aligned. `bytes` has (digit count + 7) / 8 bytes.
void ReadBinaryDigits(std::string_view digits, std::span<std::uint8_t> bytes);

/// Writes a value of `bit_length` bits as "0x", two digits for each of the bytes the length needs,
/// the last byte last, and the terminator. Bytes above are left out, missing ones are written as
/// zeros.
void WriteHexText(std::span<const std::uint8_t> bytes, int bit_length, char* text);

}  // namespace zrt
