// Reading JSON strictly: comments are welcome, but a key that comes twice or a number that does not
// fit is refused with its place. Knows nothing of what the values mean.
#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>
#include <vector>

/// The way to a value from the root: a key in each object, an index in each array.
using JsonStep = std::variant<std::string, std::size_t>;
using JsonPath = std::vector<JsonStep>;

/// What is wrong, in one line, behind its line and column.
struct JsonError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class JsonText {
 public:
  explicit JsonText(std::string text) : text_(std::move(text)) {}

  /// A number is a float if it is written with "." or an exponent, and then has been rounded to
  /// single precision once; any other number is an integer of at most 64 bits. Throws JsonError.
  nlohmann::json Parse();

  /// What a JsonError would say of a value that parsed well and yet cannot be used.
  std::string Complaint(const JsonPath& path, const std::string& reason);

 private:
  std::string text_;
};
