// The number scan: a small state machine for decimal notations, two plain loops for the prefixed
// ones. A fraction and an exponent never combine, and the "-" may stand anywhere in an exponent.
#include "scan/number.h"

#include "scan/text.h"

namespace zrt {
namespace {

enum class State : std::uint8_t { kStart, kFraction, kExponent };

template <class IsDigit>
NumberKind KindOfPrefixed(std::string_view digits, const IsDigit& is_digit, std::size_t short_count,
                          NumberKind short_kind, NumberKind long_kind) {
  if (digits.empty() || !AllOf(digits, is_digit)) return NumberNone;
  return digits.size() <= short_count ? short_kind : long_kind;
}

NumberKind KindOfDecimal(std::string_view text) {
  NumberKind kind = NumberNone;
  State state = State::kStart;
  bool minus_seen = false;
  for (const char c : text) {
    if (IsDecimalDigit(c)) {
      kind = state == State::kStart ? NumberDecimal : NumberFloat;
    } else if (state == State::kStart && c == '.') {
      state = State::kFraction;
    } else if (state == State::kStart && (c == 'e' || c == 'E')) {
      state = State::kExponent;
    } else if (state == State::kExponent && c == '-' && !minus_seen) {
      minus_seen = true;
    } else {
      return NumberNone;
    }
  }
  return kind;
}

}  // namespace

NumberKind KindOfNumber(std::string_view text) {
  if (text.starts_with('#')) {
    const auto is_binary_digit = [](char c) { return c == '0' || c == '1'; };
    return KindOfPrefixed(text.substr(1), is_binary_digit, 32, NumberBinary, NumberBinaryLong);
  }
  if (text.starts_with("0x")) {
    const auto is_hex_digit = [](char c) {
      return int{PlaceBehind('0', c) < 10} | int{PlaceBehind('a', c | ' ') < 6};  // of either case
    };
    return KindOfPrefixed(text.substr(2), is_hex_digit, 8, NumberHex, NumberHexLong);
  }
  return KindOfDecimal(text);
}

std::int32_t LeadingDecimal(std::string_view text) {
  std::uint32_t value = 0;
  for (const char c : text) {
    if (!IsDecimalDigit(c)) break;
    value = value * 10 + static_cast<std::uint32_t>(c - '0');
  }
  return static_cast<std::int32_t>(value);
}

}  // namespace zrt
