// Building the marks of a text: one pass forward for positions and parentheses, and, only if the
// text holds brackets at all, one pass back over the marks for the brackets' links. Long texts are
// mostly digits, so the forward pass looks at a block of characters at once for those that are
// neither letter nor digit.
#include "scan/marks.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "bits/huge_pages.h"
#include "bits/wide.h"
#include "scan/text.h"

namespace zrt {
namespace {

constexpr std::uint32_t kBlock = 128;  // characters
constexpr std::uint32_t kWord = 8;     // characters

// A 1 for each character of a block that is neither letter nor digit: only such may carry a mark.
using Others = std::array<unsigned char, kBlock>;

// Gives their count too.
ZRT_WIDE unsigned FindOthers(const char* block, Others& others) {
  unsigned char count = 0;
  for (std::size_t i = 0; i < kBlock; ++i) {
    const int is_digit = PlaceBehind('0', block[i]) < 10;
    const int is_letter = PlaceBehind('a', block[i] | ' ') < 26;  // of either case
    others[i] = static_cast<unsigned char>((is_digit | is_letter) ^ 1);
    count = static_cast<unsigned char>(count + others[i]);
  }
  return count;
}

bool HasOthers(const Others& others, std::uint32_t word) {
  std::uint64_t ones = 0;
  static_assert(sizeof(ones) == kWord);
  std::memcpy(&ones, &others[word], kWord);
  return ones != 0;
}

// Moves `begin` on to the next characters among which one may carry a mark and gives their end: a
// word in a block, or the rest behind the last block. `others` are those of the block in
// which `begin` stands, unless it stands at its start.
std::uint32_t NextPart(std::string_view text, std::uint32_t& begin, Others& others) {
  const auto length = static_cast<std::uint32_t>(text.size());
  const std::uint32_t in_blocks = length / kBlock * kBlock;
  while (begin < in_blocks) {
    if (begin % kBlock == 0 && FindOthers(&text[begin], others) == 0) {
      begin += kBlock;
    } else if (HasOthers(others, begin % kBlock)) {
      return begin + kWord;
    } else {
      begin += kWord;
    }
  }
  return length;
}

// As many marks as a text has, or more.
std::size_t CountOthers(std::string_view text) {
  std::size_t count = 0;
  for (; text.size() >= kBlock; text.remove_prefix(kBlock)) {
    Others others;
    count += FindOthers(text.data(), others);
  }
  return count + text.size();
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
  Others others;
  for (std::uint32_t begin = 0; begin < length;) {
    const std::uint32_t end = length < kBlock ? length : NextPart(text, begin, others);
    for (; begin < end; ++begin) {
      const CharClass char_class = ClassOf(text[begin]);
      if (char_class != CharClass::kPlain) note(begin, char_class);
    }
  }
  mark_count_ = mark;
  while (innermost_open != kNoMark) {
    innermost_open = std::exchange(marks[innermost_open].link, kNoMark);
  }
  if (has_brackets()) LinkBrackets();
}

// The marks still to come are counted, so that no long text has them twice while they grow.
Mark* MarkedText::MoveToHeap(std::uint32_t position) {
  const std::size_t count = kInlineMarks + CountOthers(text_.substr(position));
  heap_ = std::make_unique_for_overwrite<Mark[]>(count);
  PreferHugePages(heap_.get(), count * sizeof(Mark));
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
