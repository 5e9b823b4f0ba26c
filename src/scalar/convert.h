// How token values and literals become an integer or a float. Independent of the locale.
#pragma once

#include <string_view>

// Each float operation has the one result that IEEE 754 gives it. Compilers that may take no float
// for a NaN drop the test for it, and with it the 0 that it reads as an integer.
#if defined(__FAST_MATH__) || (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__) || \
    defined(__RECIPROCAL_MATH__) || defined(__ASSOCIATIVE_MATH__) || defined(__NO_SIGNED_ZEROS__)
#error "zrtexpression is not built with -ffast-math or a part of it: float results would change"
#endif

namespace zrt {

/// A token's float as an integer: truncated toward zero, the nearest bound if it lies outside 32
/// bits, 0 for NaN.
void FromFloat(float value, int& number);

/// A token's float as it is.
inline void FromFloat(float value, float& number) { number = value; }

/// A token's integer as it is.
inline void FromInteger(int value, int& number) { number = value; }

/// A token's integer as the nearest float.
inline void FromInteger(int value, float& number) { number = static_cast<float>(value); }

/// A literal of any kind as an integer: its leading decimal digits modulo 2 to the 32nd. "0x10" is
/// 0 and "1.5" is 1.
void FromLiteral(std::string_view text, int& number);

/// A literal of any kind as a float: its leading decimal number, rounded to double and then to
/// float; infinity if it is too large, 0 if too small. "0x10" is 0.
void FromLiteral(std::string_view text, float& number);

}  // namespace zrt
