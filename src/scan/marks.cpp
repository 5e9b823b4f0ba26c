// Building the marks of a text: one pass forward for positions and parentheses, and, only if the
// text holds brackets at all, one pass back over the marks for the brackets' links. Long texts are
// mostly digits, so the forward pass looks at a block of characters at once for those that are
// neither letter nor digit.
#include "scan/marks.h"

#include <algorithm>
#include <bit>
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

// A word of them, a byte for each character.
std::uint64_t OthersIn(const Others& others, std::uint32_t word) {
  std::uint64_t ones = 0;
  static_assert(sizeof(ones) == kWord);
  std::memcpy(&ones, &others[word], kWord);
  return ones;
}

// Takes the first character that is left out of a word of them and gives its place.
std::uint32_t TakeFirst(std::uint64_t& ones) {
  if constexpr (std::endian::native == std::endian::little) {
    const auto place = static_cast<std::uint32_t>(std::countr_zero(ones)) / 8;
    ones &= ones - 1;
    return place;
  } else {
    const auto bit = static_cast<std::uint32_t>(std::countl_zero(ones));
    ones ^= std::uint64_t{1} << (63 - bit);
    return bit / 8;
  }
}

template <class Take>
void ForEachIn(const Others& others, std::uint32_t block, const Take& take) {
  for (std::uint32_t word = 0; word < kBlock; word += kWord) {
    std::uint64_t ones = OthersIn(others, word);
    while (ones != 0) take(block + word + TakeFirst(ones));
  }
}

// Hands on the characters of the whole blocks of `text` that may carry a mark.
template <class Take>
void ForEachOther(std::string_view text, const Take& take) {
  const auto in_blocks = static_cast<std::uint32_t>(text.size() / kBlock * kBlock);
  Others others;
  for (std::uint32_t block = 0; block < in_blocks; block += kBlock) {
    if (FindOthers(&text[block], others) != 0) ForEachIn(others, block, take);
  }
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
  const auto note_other = [&](std::uint32_t position) {
    const CharClass char_class = ClassOf(text[position]);
    if (char_class != CharClass::kPlain) note(position, char_class);
  };
  ForEachOther(text, note_other);
  const std::size_t rest = text.size() / kBlock * kBlock;
  for (std::size_t i = rest; i < text.size(); ++i) note_other(static_cast<std::uint32_t>(i));
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
