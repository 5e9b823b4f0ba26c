// The conversions. std::from_chars reads floats, since the platform's own conversion obeys the
// locale and reads hexadecimal. Where the standard library has it for integers alone, the platform
// is handed a plain decimal number and the locale of C.
#include "scalar/convert.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <system_error>

#include "scan/number.h"

#ifndef __cpp_lib_to_chars
#include <clocale>
#include <cstdlib>
#include <string>
#endif

namespace zrt {
namespace {

#ifdef __cpp_lib_to_chars

// from_chars gives the same error for a literal that is too large and for one that is too small.
// Which it was, the decimal point's distance from the first digit tells.
double OutOfRange(std::string_view text) {
  const std::string_view whole = text.substr(0, text.find_first_of(".eE"));
  const std::size_t first_digit = std::min(whole.find_first_not_of('0'), whole.size());
  const std::size_t digit_count = whole.size() - first_digit;
  const std::size_t exponent = text.find_first_of("eE");
  std::size_t places_down = 0;
  if (exponent != std::string_view::npos && text.substr(exponent + 1).starts_with('-')) {
    for (const char c : text.substr(exponent + 2)) {
      if (places_down > text.size()) break;
      places_down = places_down * 10 + static_cast<std::size_t>(c - '0');
    }
  }
  return digit_count > places_down ? std::numeric_limits<double>::infinity() : 0.0;
}

double LeadingDouble(std::string_view text) {
  double value = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc::result_out_of_range ? OutOfRange(text) : value;
}

#else

std::size_t SkipDigits(std::string_view text, std::size_t position) {
  while (position < text.size() && IsDecimalDigit(text[position])) ++position;
  return position;
}

// Cuts the text behind its leading decimal number: digits, a fraction, and an exponent that has
// digits.
double LeadingDouble(std::string_view text) {
  std::size_t end = SkipDigits(text, 0);
  if (text.substr(end).starts_with('.')) end = SkipDigits(text, end + 1);
  if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
    const std::size_t digits = end + (text.substr(end + 1).starts_with('-') ? 2 : 1);
    if (SkipDigits(text, digits) > digits) end = SkipDigits(text, digits);
  }
  const locale_t c_locale = newlocale(LC_ALL_MASK, "C", nullptr);
  const double value = strtod_l(std::string(text.substr(0, end)).c_str(), nullptr, c_locale);
  freelocale(c_locale);
  return value;
}

#endif

}  // namespace

void FromFloat(float value, int& number) {
  constexpr float kBound = 2147483648.0F;
  if (std::isnan(value)) {
    number = 0;
  } else if (value >= kBound) {
    number = std::numeric_limits<int>::max();
  } else if (value < -kBound) {
    number = std::numeric_limits<int>::min();
  } else {
    number = static_cast<int>(value);
  }
}

void FromLiteral(std::string_view text, int& number) { number = LeadingDecimal(text); }

void FromLiteral(std::string_view text, float& number) {
  number = static_cast<float>(LeadingDouble(text));
}

}  // namespace zrt
