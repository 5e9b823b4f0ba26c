// One look at a short operand, which most operands are: all that reading it asks of its characters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "scan/number.h"
#include "scan/operators.h"

namespace zrt {

class ShortOperand {
 public:
  /// A longer text is not looked at: it is not plain.
  static constexpr std::size_t kMaxLength = 63;

  explicit ShortOperand(std::string_view text) : length_(text.size()) {
    if (length_ > kMaxLength) return;
    bool has_bracket = false;
    for (std::size_t i = 0; i < length_; ++i) {
      const char c = text[i];
      copy_[i] = c;
      has_bracket |= IsBracket(c);
      is_digits_ &= IsDecimalDigit(c);
      number_ = number_ * 10 + static_cast<std::uint32_t>(c - '0');
    }
    copy_[length_] = '\0';
    is_plain_ = !has_bracket;
  }

  /// Short, and without brackets: a name or a literal as it stands. The rest wants a plain operand.
  [[nodiscard]] bool is_plain() const { return is_plain_; }

  /// The text as the lookups want it: NUL-terminated and writable.
  [[nodiscard]] char* name() { return copy_; }

  /// Whether it is a decimal literal that 32 bits hold for certain, and its value then.
  [[nodiscard]] bool is_small_number() const {
    return is_digits_ && length_ > 0 && length_ <= kSafeDigits;
  }
  [[nodiscard]] std::int32_t small_number() const { return static_cast<std::int32_t>(number_); }

 private:
  static constexpr std::size_t kSafeDigits = 9;

  std::size_t length_;
  std::uint32_t number_ = 0;
  bool is_digits_ = true;
  bool is_plain_ = false;
  char copy_[kMaxLength + 1];  // left uninitialised: it would cost time
};

}  // namespace zrt
