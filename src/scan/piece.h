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

  // Invariant where it is set: LeftMostOperator() finds no operator in this piece behind a bracket
  // that it has passed over, so it may end there. Walk::OpenUnary() sets it and says why it holds.
  bool no_operator_behind_brackets = false;

  [[nodiscard]] bool empty() const { return begin == end; }
};

struct FoundOperator {
  std::uint32_t position;
  std::uint32_t mark;
  OperatorCode code;
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
  const std::uint32_t width = OperatorWidth(found.code);  // each character of it has its mark
  piece.begin = found.position + width;
  piece.first_mark = found.mark + width;
  return DropLeadingBlanks(text, piece);
}

}  // namespace zrt
