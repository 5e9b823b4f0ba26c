// Digits both ways, two a step, through tables made of the closed library's digit functions.
#include "bitstream/hex_text.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "bitstream/bit_value.h"
#include "hq4170.h"

namespace zrt {
namespace {

struct DigitTables {
  DigitTables() {
    for (unsigned byte = 0; byte < pairs.size(); ++byte) {
      pairs[byte] = {util_Hex2HexAnsi(static_cast<unsigned char>(byte >> 4)),
                     util_Hex2HexAnsi(static_cast<unsigned char>(byte & 0xF))};
    }
    for (const char digit : std::string_view("0123456789ABCDEFabcdef")) {
      values[static_cast<unsigned char>(digit)] = util_HexAnsi2Hex(digit);
    }
  }

  std::array<std::array<char, 2>, 256> pairs{};
  std::array<std::uint8_t, 256> values{};
};

const DigitTables& Tables() {
  static const DigitTables tables;
  return tables;
}

}  // namespace

char* WriteHexDigits(std::span<const std::uint8_t> bytes, char* text) {
  const auto& pairs = Tables().pairs;
  for (const std::uint8_t byte : bytes) {
    std::memcpy(text, pairs[byte].data(), 2);
    text += 2;
  }
  return text;
}

void ReadHexDigits(std::string_view digits, std::span<std::uint8_t> bytes) {
  const auto& values = Tables().values;
  const auto value_at = [&](std::size_t i) {
    return values[static_cast<unsigned char>(digits[i])];
  };
  const std::size_t whole_bytes = digits.size() / 2;
  for (std::size_t i = 0; i < whole_bytes; ++i) {
    bytes[i] = static_cast<std::uint8_t>((value_at(2 * i) << 4) | value_at(2 * i + 1));
  }
  if (digits.size() % 2 != 0) {
    bytes[whole_bytes] = static_cast<std::uint8_t>(value_at(digits.size() - 1) << 4);
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

void WriteHexText(std::span<const std::uint8_t> bytes, int bit_length, char* text) {
  const std::size_t wanted = BytesFor(bit_length);
  const std::size_t count = std::min(wanted, bytes.size());
  *text++ = '0';
  *text++ = 'x';
  text = std::fill_n(text, 2 * (wanted - count), util_Hex2HexAnsi(0));
  *WriteHexDigits(bytes.last(count), text) = '\0';
}

}  // namespace zrt
