// Where the left-most and the right-most operator of a piece of text stand. The one implementation
// behind the public scans and the walk; every answer comes from marks. Knows of no value.
//
// Brackets hide the operators inside them by a rule of first occurrences rather than by nesting,
// and an exponent's "-" is told by the "e" before it alone; the callers' texts depend on both, so
// they are kept to the letter. Most texts have no brackets, so that case stands here, for the
// compiler to set it into the walk's loops.
#pragma once

#include <cstdint>

#include "scan/marks.h"
#include "scan/piece.h"

namespace zrt {

/// Whether the character at `position` is the "-" of an exponent in a text that begins at `begin`.
inline bool IsExponentSign(const MarkedText& text, std::uint32_t position, std::uint32_t begin) {
  if (text.At(position) != '-' || position <= begin) return false;
  const char before = text.At(position - 1);
  return before == 'e' || before == 'E';
}

/// The operator that begins at `mark`. "<" and ">" are shifts where they stand doubled.
inline FoundOperator OperatorAt(const MarkedText& text, const Piece& piece, std::uint32_t mark) {
  const std::uint32_t position = text.PositionOf(mark);
  const char c = text.At(position);
  OperatorCode code = EntryOf(c).code;
  if ((c == '<' || c == '>') && position + 1 < piece.end && text.At(position + 1) == c) {
    code = c == '<' ? OpShiftLeft : OpShiftRight;
  }
  return {position, mark, code};
}

/// LeftMostOperator() in a text with brackets.
FoundOperator LeftMostOperatorBesideBrackets(const MarkedText& text, const Piece& piece);

/// The first operator of the expression in `piece`, which holds no "(" that is marked. Passes over
/// operators in brackets (also over any in front of a "]" when no "[" follows at all) and over the
/// "-" of an exponent. Takes time in proportion to the marks up to the one found, or up to the
/// first bracket that hides an operator if the piece says that nothing follows it.
inline FoundOperator LeftMostOperator(const MarkedText& text, const Piece& piece) {
  if (text.has_brackets()) return LeftMostOperatorBesideBrackets(text, piece);
  for (std::uint32_t mark = piece.first_mark; mark < piece.last_mark; ++mark) {
    // What was passed over ended with a "-": an "e" directly before a later one stands behind it.
    if (text.IsOperator(mark) && !IsExponentSign(text, text.PositionOf(mark), piece.begin)) {
      return OperatorAt(text, piece, mark);
    }
  }
  return {};
}

/// Whether a bracket hides the operator at `mark`, in the text between `mark` and `last_mark`.
bool IsHiddenFromStart(const MarkedText& text, std::uint32_t mark, std::uint32_t last_mark);

/// The operator that LeftMostOperator would find at the first character of `piece`, in constant
/// time.
inline FoundOperator OperatorAtStart(const MarkedText& text, const Piece& piece) {
  const std::uint32_t mark = piece.first_mark;
  if (mark >= piece.last_mark || text.PositionOf(mark) != piece.begin || !text.IsOperator(mark)) {
    return {};
  }
  if (text.has_brackets() && IsHiddenFromStart(text, mark, piece.last_mark)) return {};
  return OperatorAt(text, piece, mark);
}

/// The right-most operator of a piece, again and again from what stands before it. All together
/// take time in proportion to the piece's marks.
class RightScan {
 public:
  RightScan(const MarkedText& text, const Piece& piece);

  /// The last operator of what is left. None if the last operator character lies within the first
  /// pair of brackets: there is no search to the left of it.
  FoundOperator Last();

  /// Leaves what stands before `found`, without trailing blanks.
  void CutBefore(const FoundOperator& found);

  [[nodiscard]] const Piece& rest() const { return piece_; }

 private:
  const MarkedText& text_;
  Piece piece_;
  MarkedText::Brackets brackets_;
  // The "-" of the first "e-" and of the first "E-": exponents further right are no exponents here.
  std::uint32_t lower_exponent_ = kNoMark;
  std::uint32_t upper_exponent_ = kNoMark;
};

}  // namespace zrt
