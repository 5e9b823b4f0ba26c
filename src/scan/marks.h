// One pass over a text notes where its operators, parentheses and brackets stand and how they are
// linked, so that no later question reads the text again. Knows nothing of values or of solving.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string_view>

#include "scan/operators.h"

namespace zrt {

/// The longest text, in characters: positions leave the library as an int.
inline constexpr std::size_t kMaxTextLength = std::numeric_limits<std::int32_t>::max();

/// Stands for a mark that is not there. It lies behind every mark, and the comparisons of marks
/// rest on that.
inline constexpr std::uint32_t kNoMark = std::numeric_limits<std::uint32_t>::max();

struct Mark {
  std::uint32_t position;
  // "(": the mark of its match. "[": the next "]". "]": the next "[". Others: the next bracket of
  // either kind. kNoMark where there is none.
  std::uint32_t link;
};

/// The marks of one text. The text stays the caller's and outlives the marks.
class MarkedText {
 public:
  /// To the operator scans of a whole text parentheses are ordinary characters; the walk wants
  /// them.
  enum class Parentheses : bool { kPlain, kMarked };

  /// `text` holds at most kMaxTextLength characters. Throws std::bad_alloc.
  MarkedText(std::string_view text, Parentheses parentheses);
  MarkedText(const MarkedText&) = delete;
  MarkedText& operator=(const MarkedText&) = delete;

  [[nodiscard]] std::string_view text() const { return text_; }
  [[nodiscard]] std::uint32_t length() const { return static_cast<std::uint32_t>(text_.size()); }
  [[nodiscard]] std::uint32_t mark_count() const { return mark_count_; }
  [[nodiscard]] char At(std::uint32_t position) const { return text_[position]; }
  [[nodiscard]] std::uint32_t PositionOf(std::uint32_t mark) const { return marks_[mark].position; }
  [[nodiscard]] char CharOf(std::uint32_t mark) const { return text_[marks_[mark].position]; }
  [[nodiscard]] bool IsOperator(std::uint32_t mark) const {
    return ClassOf(CharOf(mark)) == CharClass::kOperator;
  }

  /// Of a "(": the mark of the matching ")", kNoMark if the text ends before it. Constant time.
  [[nodiscard]] std::uint32_t MatchOf(std::uint32_t mark) const { return marks_[mark].link; }

  /// The first "[" and the first "]" from a mark on that is no "(". Constant time.
  struct Brackets {
    std::uint32_t open = kNoMark;
    std::uint32_t close = kNoMark;
  };
  [[nodiscard]] bool has_brackets() const { return has_brackets_; }
  [[nodiscard]] Brackets BracketsFrom(std::uint32_t mark) const;

 private:
  Mark* MoveToHeap(std::uint32_t position);
  void LinkBrackets();

  static constexpr std::size_t kInlineMarks = 256;

  std::string_view text_;
  std::uint32_t mark_count_ = 0;
  bool has_brackets_ = false;
  std::array<Mark, kInlineMarks> inline_;  // left uninitialised: it would cost time
  std::unique_ptr<Mark[]> heap_;
  Mark* marks_ = inline_.data();
};

}  // namespace zrt
