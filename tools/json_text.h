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

/// What is wrong, in one line, and where in the text. what() is the place as a JSON pointer, if
/// there is one, and the reason.
struct JsonError : std::runtime_error {
  JsonError(std::size_t the_offset, const std::string& the_pointer, const std::string& the_reason)
      : runtime_error(the_pointer.empty() ? the_reason : the_pointer + ": " + the_reason),
        offset(the_offset),
        pointer(the_pointer),
        reason(the_reason) {}

  std::size_t offset;
  std::string pointer;  // empty if the text is no JSON
  std::string reason;
};

class JsonText {
 public:
  explicit JsonText(std::string text) : text_(std::move(text)) {}

  /// A number is a float if it is written with "." or an exponent, and then has been rounded to
  /// single precision once; any other number is an integer of at most 64 bits. Throws JsonError.
  nlohmann::json Parse();

  /// The JsonError of a value that parsed well and yet cannot be used.
  JsonError Complaint(const JsonPath& path, const std::string& reason);

  const std::string& text() const { return text_; }

 private:
  std::string text_;
};
