// Reading JSON strictly: comments are welcome, but a key that comes twice or a number that does not
// fit is refused with its place. Knows nothing of what the values mean.
#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

/// What is wrong, in one line, behind the place: a JSON pointer, or line and column.
struct JsonError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Parses `text`. A number is a float if it is written with "." or an exponent, and then has been
/// rounded to single precision once; any other number is an integer of at most 64 bits.
/// Throws JsonError.
nlohmann::json ParseJson(const std::string& text);
