// The scans for operators where brackets may hide some, and from the right.
#include "scan/operator_scan.h"

namespace zrt {
namespace {

// Whether the operator at `mark` stands between the first "[" and the first "]" of a piece that
// ends before `last_mark`. With no "[" in the piece the "]" hides all that stands before it; with
// no "]" nothing is hidden. A bracket that is not there is kNoMark, and so behind the piece.
bool IsHidden(const MarkedText::Brackets& brackets, std::uint32_t mark, std::uint32_t last_mark) {
  const bool opens_behind = brackets.open > mark && brackets.open < last_mark;
  return !opens_behind && brackets.close > mark && brackets.close < last_mark;
}

}  // namespace

FoundOperator LeftMostOperatorBesideBrackets(const MarkedText& text, const Piece& piece) {
  std::uint32_t begin = piece.begin;
  std::uint32_t mark = piece.first_mark;
  for (;;) {
    const std::uint32_t start = mark;
    while (mark < piece.last_mark && !text.IsOperator(mark)) ++mark;
    if (mark >= piece.last_mark) return {};
    const MarkedText::Brackets brackets = text.BracketsFrom(start);
    if (IsHidden(brackets, mark, piece.last_mark)) {
      if (piece.no_operator_behind_brackets != 0) return {};
      begin = text.PositionOf(brackets.close) + 1;
      mark = brackets.close + 1;
      continue;
    }
    if (!IsExponentSign(text, text.PositionOf(mark), begin)) return OperatorAt(text, piece, mark);
    begin = text.PositionOf(mark) + 1;
    ++mark;
  }
}

bool IsHiddenFromStart(const MarkedText& text, std::uint32_t mark, std::uint32_t last_mark) {
  return IsHidden(text.BracketsFrom(mark), mark, last_mark);
}

RightScan::RightScan(const MarkedText& text, const Piece& piece) : text_(text), piece_(piece) {
  if (piece.first_mark >= piece.last_mark) return;
  if (text.has_brackets()) brackets_ = text.BracketsFrom(piece.first_mark);
  for (std::uint32_t mark = piece.first_mark; mark < piece.last_mark; ++mark) {
    const std::uint32_t position = text.PositionOf(mark);
    if (!IsExponentSign(text, position, piece.begin)) continue;
    std::uint32_t& exponent = text.At(position - 1) == 'e' ? lower_exponent_ : upper_exponent_;
    if (exponent == kNoMark) exponent = mark;
  }
}

FoundOperator RightScan::Last() {
  for (;;) {
    std::uint32_t mark = piece_.last_mark;
    while (mark > piece_.first_mark && !text_.IsOperator(mark - 1)) --mark;
    if (mark == piece_.first_mark) return {};
    --mark;
    if (IsHidden(brackets_, mark, piece_.last_mark)) return {};
    // The later of the two exponents that still stand; both go as the text is cut before them.
    if (mark == lower_exponent_ || mark == upper_exponent_) {
      CutBefore({text_.PositionOf(mark), mark, OpSubtract});
      continue;
    }
    const std::uint32_t position = text_.PositionOf(mark);
    const char c = text_.At(position);
    const bool doubled =
        (c == '<' || c == '>') && position > piece_.begin && text_.At(position - 1) == c;
    return OperatorAt(text_, piece_, doubled ? mark - 1 : mark);
  }
}

void RightScan::CutBefore(const FoundOperator& found) {
  piece_ = PieceBefore(text_, piece_, found);
}

}  // namespace zrt
