// How token values and literals become an integer or a float. Independent of the locale.
#pragma once

#include <string_view>

namespace zrt {

/// A token's float: truncated toward zero, to the nearest bound outside 32 bits, NaN to 0; as it
/// is.
template <class Number>
Number FromFloat(float value);
template <>
int FromFloat<int>(float value);
template <>
float FromFloat<float>(float value);

/// A token's integer: as it is; converted to the nearest float.
template <class Number>
Number FromInteger(int value) {
  return static_cast<Number>(value);
}

/// A literal of any kind: its leading decimal digits modulo 2 to the 32nd ("0x10" is 0); its
/// leading decimal number rounded to double and then to float, infinity if too large ("0x10" is 0
/// here too).
template <class Number>
Number FromLiteral(std::string_view text);
template <>
int FromLiteral<int>(std::string_view text);
template <>
float FromLiteral<float>(std::string_view text);

}  // namespace zrt
