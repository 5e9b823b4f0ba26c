// What kind of number literal a text is, and the value of its leading decimal digits.
#pragma once

#include <cstdint>
#include <string_view>

namespace zrt {

enum NumberKind : std::int32_t {
  NumberNone,
  NumberBinary,      // "#" and 1 to 32 binary digits
  NumberBinaryLong,  // "#" and more
  NumberHex,         // "0x" and 1 to 8 hexadecimal digits
  NumberHexLong,     // "0x" and more
  NumberFloat,       // the last digit lies behind a "." or an exponent letter
  NumberDecimal,     // digits, perhaps with a "." or an exponent letter that no digit follows
};

/// The kind of `text` as a whole; nothing is skipped, neither sign nor blank.
NumberKind KindOfNumber(std::string_view text);

constexpr bool IsDecimalDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsHexadecimalDigit(char c) {
  return IsDecimalDigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

/// The value of the decimal digits that `text` begins with, modulo 2 to the 32nd; 0 if none.
std::int32_t LeadingDecimal(std::string_view text);

}  // namespace zrt
