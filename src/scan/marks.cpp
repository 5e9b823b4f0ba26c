// Building the marks of a text: one pass forward for positions and parentheses, and, only if the
// text holds brackets at all, one pass back over the marks for the brackets' links. Long texts are
// mostly digits, so the forward pass steps over pieces that hold letters and digits alone.
#include "scan/marks.h"

#include <algorithm>
#include <utility>

#include "scan/text.h"

namespace zrt {
namespace {

constexpr std::uint32_t kPiece = 256;     // characters
constexpr std::uint32_t kLongText = 512;  // characters; shorter ones are better off without

// Whether a piece is letters and digits alone, which carry no marks.
bool IsPlain(std::string_view piece) {
  return AllOf(piece, [](char c) {
    return int{PlaceBehind('0', c) < 10} | int{PlaceBehind('a', c | ' ') < 26};  // of either case
  });
}

}  // namespace

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): the inline marks, see there
MarkedText::MarkedText(std::string_view text, Parentheses parentheses) : text_(text) {
  const bool marks_parentheses = parentheses == Parentheses::kMarked;
  // The open parentheses form a chain through their own links until they are closed.
  std::uint32_t innermost_open = kNoMark;
  Mark* marks = marks_;
  std::uint32_t mark = 0;
  const auto note = [&](std::uint32_t position, CharClass char_class) {
    std::uint32_t link = kNoMark;
    if (char_class == CharClass::kOpenParenthesis) {
      if (!marks_parentheses) return;
      link = std::exchange(innermost_open, mark);
    } else if (char_class == CharClass::kCloseParenthesis) {
      if (!marks_parentheses) return;
      if (innermost_open != kNoMark)
        innermost_open = std::exchange(marks[innermost_open].link, mark);
    } else if (char_class != CharClass::kOperator) {
      has_brackets_ = true;
    }
    if (mark == kInlineMarks) marks = MoveToHeap(position);
    marks[mark++] = {position, link};
  };
  const auto length = static_cast<std::uint32_t>(text.size());
  for (std::uint32_t begin = 0; begin < length;) {
    const std::uint32_t end = length < kLongText ? length : std::min(begin + kPiece, length);
    const bool is_plain = length >= kLongText && IsPlain(text.substr(begin, kPiece));
    for (; begin < end && !is_plain; ++begin) {
      const CharClass char_class = ClassOf(text[begin]);
      if (char_class != CharClass::kPlain) note(begin, char_class);
    }
    begin = end;
  }
  mark_count_ = mark;
  while (innermost_open != kNoMark) {
    innermost_open = std::exchange(marks[innermost_open].link, kNoMark);
  }
  if (has_brackets()) LinkBrackets();
}

// The marks still to come are counted, so that no long text has them twice while they grow.
Mark* MarkedText::MoveToHeap(std::uint32_t position) {
  const auto to_come = std::ranges::count_if(
      text_.substr(position), [](char c) { return ClassOf(c) != CharClass::kPlain; });
  heap_ = std::make_unique_for_overwrite<Mark[]>(kInlineMarks + static_cast<std::size_t>(to_come));
  std::ranges::copy(inline_, heap_.get());
  return marks_ = heap_.get();
}

void MarkedText::LinkBrackets() {
  Brackets next;
  for (std::uint32_t mark = mark_count(); mark-- > 0;) {
    switch (CharOf(mark)) {
      case '(': break;  // keeps its match
      case '[':
        marks_[mark].link = next.close;
        next.open = mark;
        break;
      case ']':
        marks_[mark].link = next.open;
        next.close = mark;
        break;
      default: marks_[mark].link = std::min(next.open, next.close); break;  // kNoMark is largest
    }
  }
}

MarkedText::Brackets MarkedText::BracketsFrom(std::uint32_t mark) const {
  if (!IsBracket(CharOf(mark))) mark = marks_[mark].link;
  if (mark == kNoMark) return {};
  const std::uint32_t other = marks_[mark].link;
  return CharOf(mark) == '[' ? Brackets{mark, other} : Brackets{other, mark};
}

}  // namespace zrt
