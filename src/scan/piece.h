// A piece of a marked text: what cutting an expression makes of it. Cutting moves positions and
// copies nothing.
#pragma once

#include <cstdint>
#include <string_view>

#include "scan/marks.h"

namespace zrt {

/// A range of characters of a marked text with its range of marks.
struct Piece {
  std::uint32_t begin = 0;
  std::uint32_t end = 0;
  std::uint32_t first_mark = 0;
  std::uint32_t last_mark = 0;  // one behind

  // A truth value as wide as its fellows: a narrower one would stall each copy of a piece.
  // Invariant where it is set: LeftMostOperator() finds no operator in this piece behind a bracket
  // that it has passed over, so it may end there. Walk::OpenUnary() sets it and says why it holds.
  std::uint32_t no_operator_behind_brackets = 0;

  [[nodiscard]] bool empty() const { return begin == end; }
};

/// Where a scan has found an operator, and which. Members of one width, as above.
struct FoundOperator {
  std::uint32_t position = 0;
  std::uint32_t mark = kNoMark;
  std::uint32_t code_number = OpNone;

  [[nodiscard]] bool is_there() const { return mark != kNoMark; }
  [[nodiscard]] OperatorCode code() const { return static_cast<OperatorCode>(code_number); }
};

inline Piece WholePiece(const MarkedText& text) { return {0, text.length(), 0, text.mark_count()}; }

inline std::string_view ViewOf(const MarkedText& text, const Piece& piece) {
  return {text.text().data() + piece.begin, piece.end - piece.begin};
}

/// `piece` without its leading or trailing blanks. Blanks carry no marks.
inline Piece DropLeadingBlanks(const MarkedText& text, Piece piece) {
  while (piece.begin < piece.end && text.At(piece.begin) == ' ') ++piece.begin;
  return piece;
}
inline Piece DropTrailingBlanks(const MarkedText& text, Piece piece) {
  while (piece.begin < piece.end && text.At(piece.end - 1) == ' ') --piece.end;
  return piece;
}

/// What stands before `found`, without trailing blanks.
inline Piece PieceBefore(const MarkedText& text, Piece piece, const FoundOperator& found) {
  piece.end = found.position;
  piece.last_mark = found.mark;
  return DropTrailingBlanks(text, piece);
}

/// What stands behind `found`, without leading blanks.
inline Piece PieceBehind(const MarkedText& text, Piece piece, const FoundOperator& found) {
  const std::uint32_t width = OperatorWidth(found.code());  // each character of it has its mark
  piece.begin = found.position + width;
  piece.first_mark = found.mark + width;
  return DropLeadingBlanks(text, piece);
}

}  // namespace zrt
