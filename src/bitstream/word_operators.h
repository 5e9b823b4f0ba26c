// The operators that most short texts use, on values in registers. They say the same as those on
// bytes (bit_operators.h), which take the rest.
#pragma once

#include <cstddef>
#include <cstdint>

#include "bits/word.h"
#include "scan/operators.h"

namespace zrt {

/// So many bytes of a value count where it is taken as an integer. It stands in the high-order ones
/// if it has fewer, and is refused if it has more.
inline constexpr std::size_t kLeadingWordSize = 4;

/// Joins two values of as many bytes as their lengths ask for, if the result is a word.
inline bool JoinWords(BitWord& left, const BitWord& right) {
  const auto high = static_cast<unsigned>(left.bit_length);  // a negative one is too much
  const auto low = static_cast<unsigned>(right.bit_length);
  if (high > 64 || low > 63 || high + low > 64) return false;
  if (left.byte_count != (high + 7) / 8 || right.byte_count != (low + 7) / 8) return false;
  left.Set(left.bits << low | right.bits, (high + low + 7) / 8);
  left.bit_length = static_cast<std::int32_t>(high + low);
  return true;
}

inline bool ShiftWord(BitWord& left, std::uint16_t code, const BitWord& right) {
  if (right.byte_count > kLeadingWordSize) return false;
  const std::size_t missing = kLeadingWordSize - right.byte_count;
  const auto count = static_cast<std::int32_t>(right.bits << (8 * missing));
  if (count <= 0) return true;
  const std::uint64_t bits = count < 64 ? left.bits : 0;
  left.Set(code == OpShiftLeft ? bits << (count % 64) : bits >> (count % 64), left.byte_count);
  return true;
}

/// Applies a binary operator in place. False, with nothing done, for what goes the long way.
inline bool ApplyToWord(BitWord& left, std::uint16_t code, const BitWord& right) {
  switch (code) {
    case OpAnd: left.bits &= right.bits | ~LowBytes(right.byte_count); return true;
    case OpOr: left.Set(left.bits | right.bits, left.byte_count); return true;
    case OpShiftLeft:
    case OpShiftRight: return ShiftWord(left, code, right);
    case OpConcat: return JoinWords(left, right);
    default: return false;
  }
}

/// The same for a unary operator, any of them.
inline void ApplyUnaryToWord(BitWord& value, OperatorCode code) {
  switch (code) {
    case OpBitwiseNot: value.Set(~value.bits, value.byte_count); break;
    case OpLogicalNot: value.Set(ZeroBytes(value.bits) >> 7, value.byte_count); break;
    default:  // mirrors
      MirrorEachByte(value.bits);
      value.bits = __builtin_bswap64(value.bits);
      if (value.byte_count > 0) value.bits >>= 8 * (kWordSize - value.byte_count);
      break;
  }
}

}  // namespace zrt
