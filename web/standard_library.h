// What the library and the tools use of the standard library and that of the page's compiler, which
// is an older one, does not have yet. Included in front of each file of the page's build, and of no
// other.
#pragma once

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>
#include <system_error>
#include <type_traits>

static_assert(_LIBCPP_VERSION < 15000, "A newer library may have all of this: see what can go");

_LIBCPP_BEGIN_NAMESPACE_STD

template <class Array>
unique_ptr<Array> make_unique_for_overwrite(size_t count) {
  return unique_ptr<Array>(new remove_extent_t<Array>[count]);
}

namespace ranges {

template <class Range, class Out>
void copy(const Range& range, Out out) {
  std::copy(std::begin(range), std::end(range), out);
}

template <class Range, class Value>
void fill(Range&& range, const Value& value) {
  std::fill(std::begin(range), std::end(range), value);
}

template <class Range, class Value>
auto find(Range&& range, const Value& value) {
  return std::find(std::begin(range), std::end(range), value);
}

template <class Range, class Holds>
bool all_of(const Range& range, Holds holds) {
  return std::all_of(std::begin(range), std::end(range), holds);
}

}  // namespace ranges

/// Takes a decimal number alone, as all do that call it here.
inline from_chars_result from_chars(const char* first, const char* last, float& value) {
  const string text(first, last);
  char* end = nullptr;
  errno = 0;
  const float read = strtof(text.c_str(), &end);
  if (end == text.c_str()) return {first, errc::invalid_argument};
  const char* stopped = first + (end - text.c_str());
  if (errno == ERANGE && (isinf(read) || read == 0)) return {stopped, errc::result_out_of_range};
  value = read;
  return {stopped, errc()};
}

namespace zrt_digits {

// The least digits that read back as `value`, which is finite and not negative, and of those the
// nearest ones: "d.ddde+xx". At a power of two the nearest may be one digit off those that are
// printed, since the values below stand closer.
inline string Shortest(float value) {
  constexpr int kEnough = 9;
  char text[32];
  for (int digits = 1;; ++digits) {
    snprintf(text, sizeof text, "%.*e", digits - 1, static_cast<double>(value));
    if (digits == kEnough || strtof(text, nullptr) == value) return text;
    char* last = text + (digits == 1 ? 0 : digits);
    for (const int step : {1, -2}) {
      *last = static_cast<char>(*last + step);
      if (*last >= '0' && *last <= '9' && strtof(text, nullptr) == value) return text;
    }
  }
}

}  // namespace zrt_digits

/// The shortest text that reads back as `value`, and the plain form where both are as long.
inline to_chars_result to_chars(char* first, char* last, float value) {
  if (isinf(value)) return {std::copy_n(value < 0 ? "-inf" : "inf", value < 0 ? 4 : 3, first), {}};
  const string scientific = zrt_digits::Shortest(fabs(value));
  const size_t mark = scientific.find('e');
  const int digits = mark == 1 ? 1 : static_cast<int>(mark) - 1;
  const int exponent = atoi(scientific.c_str() + mark + 1);
  const int places = std::max(digits - 1 - exponent, 0);  // behind the point
  string plain(64, '\0');
  plain.resize(static_cast<size_t>(
      snprintf(plain.data(), plain.size(), "%.*f", places, static_cast<double>(fabs(value)))));
  string text = plain.size() <= scientific.size() ? plain : scientific;
  if (signbit(value)) text.insert(0, 1, '-');
  if (last - first < static_cast<ptrdiff_t>(text.size())) return {last, errc::value_too_large};
  return {std::copy(text.begin(), text.end(), first), errc()};
}

_LIBCPP_END_NAMESPACE_STD
