// Where the left-most and the right-most operator of a piece of text stand. The one implementation
// behind the public scans and the walk; every answer comes from marks. Knows of no value.
#pragma once

#include <cstdint>
#include <optional>

#include "scan/marks.h"
#include "scan/piece.h"

namespace zrt {

/// The first operator of the expression in `piece`, which holds no "(" that is marked. Passes over
/// operators in brackets (also over any in front of a "]" when no "[" follows at all) and over the
/// "-" of an exponent. Takes time in proportion to the marks up to the one found, or up to the
/// first bracket that hides an operator if the piece says that nothing follows it.
std::optional<FoundOperator> LeftMostOperator(const MarkedText& text, const Piece& piece);

/// The operator that LeftMostOperator would find at the first character of `piece`, in constant
/// time.
std::optional<FoundOperator> OperatorAtStart(const MarkedText& text, const Piece& piece);

/// The right-most operator of a piece, again and again from what stands before it. All together
/// take time in proportion to the piece's marks.
class RightScan {
 public:
  RightScan(const MarkedText& text, const Piece& piece);

  /// The last operator of what is left. None if the last operator character lies within the first
  /// pair of brackets: there is no search to the left of it.
  std::optional<FoundOperator> Last();

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
