// A text read from left to right, as far as it holds nothing unusual: names and literals, indexes
// behind names, operators. What is found is what the operator scans find there; wherever they would
// have to look further, nothing is. Knows of no value and of no group.
#pragma once

#include <cstddef>
#include <string_view>

#include "scan/operators.h"

namespace zrt {

/// A place in a text. Behind the text stands what no operand and no operator holds: the NUL of a
/// whole text, the "]" of an index. So the end needs no looking at but where brackets are. Small
/// enough to live in registers, which is why nothing here hands on `this`.
class PlainText {
 public:
  PlainText(std::string_view text, bool for_bits)
      : at_(text.data()), end_(text.data() + text.size()), for_bits_(for_bits) {}

  [[nodiscard]] bool is_read() const { return at_ == end_; }

  /// The next character; at the end the one behind the text.
  [[nodiscard]] char Next() const { return *at_; }
  void Skip() { ++at_; }

  /// A unary operator with the blanks behind it, or kNoOperator.
  OperatorCode TakeUnary() {
    const char c = Next();
    if (IsOfOperands(c) || !IsUnary(c, for_bits_)) return kNoOperator;
    ++at_;
    SkipBlanks();
    return EntryOf(c).code;
  }

  /// A name with its index, or a literal. Empty if there is none.
  std::string_view TakeOperand() {
    const char* const begin = at_;
    while (IsOfOperands(Next())) ++at_;
    if (Next() == '[') at_ = EndOfIndex(at_, end_, for_bits_);
    return at_ ? std::string_view(begin, static_cast<std::size_t>(at_ - begin)) : "";
  }

  /// An operator behind an operand or a group, with the blanks around it. OpNone if there is none,
  /// or if it may be part of a number.
  OperatorCode TakeOperator() {
    const char before = at_[-1];
    SkipBlanks();
    const char c = Next();
    if (ClassOf(c) != CharClass::kOperator || IsUnary(c, for_bits_)) return OpNone;
    if (c == '-' && (before == 'e' || before == 'E')) return OpNone;
    OperatorCode code = EntryOf(c).code;
    ++at_;
    if ((c == '<' || c == '>') && Next() == c) {
      code = c == '<' ? OpShiftLeft : OpShiftRight;
      ++at_;
    }
    SkipBlanks();
    return code;
  }

 private:
  void SkipBlanks() {
    while (Next() == ' ') ++at_;
  }

  // What stands behind an index, or null if it holds anything by which a text is cut, or if the
  // next thing is no operator: what stands between is nothing to anybody, but it is unusual.
  static const char* EndOfIndex(const char* open, const char* end, bool for_bits) {
    const char* at = open + 1;
    for (; at < end && *at != ']'; ++at) {
      if (IsUnary(*at, for_bits) || ClassOf(*at) > CharClass::kOperator) return nullptr;
    }
    if (at == end) return nullptr;
    ++at;
    return at < end && IsOfOperands(*at) ? nullptr : at;
  }

  const char* at_;
  const char* end_;
  bool for_bits_;
};

}  // namespace zrt
