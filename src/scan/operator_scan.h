// Where the left-most and the right-most operator of a piece of text stand. The one implementation
// behind the public scans and the walk; every answer comes from marks. Knows of no value.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "scan/marks.h"

namespace zrt {

/// A range of characters of a marked text with its range of marks.
struct Piece {
  std::uint32_t begin = 0;
  std::uint32_t end = 0;
  std::uint32_t first_mark = 0;
  std::uint32_t last_mark = 0;  // one behind

  // Set where a scan is known to find nothing once it has passed over a bracket: see Walk.
  bool bracket_ends_scan = false;

  [[nodiscard]] bool empty() const { return begin == end; }
};

struct FoundOperator {
  std::uint32_t position;
  std::uint32_t mark;
  OperatorCode code;
};

Piece WholePiece(const MarkedText& text);
std::string_view ViewOf(const MarkedText& text, const Piece& piece);

/// `piece` without its leading or trailing blanks. Blanks carry no marks.
Piece DropLeadingBlanks(const MarkedText& text, Piece piece);
Piece DropTrailingBlanks(const MarkedText& text, Piece piece);

/// What stands before `found`, without trailing blanks, and what stands behind it, without leading.
Piece PieceBefore(const MarkedText& text, const Piece& piece, const FoundOperator& found);
Piece PieceBehind(const MarkedText& text, const Piece& piece, const FoundOperator& found);

/// The first operator of the expression in `piece`. Passes over operators in brackets (also over
/// any in front of a "]" when no "[" follows at all) and over the "-" of an exponent. Takes time in
/// proportion to the marks up to the one found.
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
  [[nodiscard]] bool IsInBrackets(std::uint32_t mark) const;

  const MarkedText& text_;
  Piece piece_;
  MarkedText::Brackets brackets_;
  // The "-" of the first "e-" and of the first "E-": exponents further right are no exponents here.
  std::uint32_t lower_exponent_ = kNoMark;
  std::uint32_t upper_exponent_ = kNoMark;
};

}  // namespace zrt
