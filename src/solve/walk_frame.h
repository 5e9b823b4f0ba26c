// An open level of a walk: a piece with its middle, and how far its sides are. It is plain data;
// the walk alone changes it.
#pragma once

#include <cstdint>

#include "scan/marks.h"
#include "scan/operator_scan.h"
#include "solve/watch.h"

namespace zrt {

// Where the operators of a frame's sides stand.
struct SidePositions {
  std::uint32_t left = 0;
  std::uint32_t right = 0;
};

/// The middle is the "(" or the unary operator. Deep texts have millions of frames, so they are
/// kept small.
template <class Watch>
struct WalkFrame {
  Piece piece;
  std::uint32_t middle_mark = kNoMark;
  std::uint32_t right_mark = kNoMark;    // first of the right text; behind a group's ")"
  OperatorCode left_code = kNoOperator;  // of a side that is there
  OperatorCode right_code = kNoOperator;
  bool is_group = false;
  std::uint8_t sides_done = 0;
  [[no_unique_address]] IfWatched<Watch, SidePositions> operators;

  [[nodiscard]] bool has_left() const { return left_code != kNoOperator; }
  [[nodiscard]] bool has_right() const { return right_code != kNoOperator; }

  // The operators of the sides. Where they stand is known if somebody watches.
  [[nodiscard]] FoundOperator left_operator() const {
    FoundOperator found{0, 0, left_code};
    if constexpr (kIsWatched<Watch>) found.position = operators.left;
    return found;
  }
  [[nodiscard]] FoundOperator right_operator() const {
    FoundOperator found{0, 0, right_code};
    if constexpr (kIsWatched<Watch>) found.position = operators.right;
    return found;
  }
};
static_assert(sizeof(WalkFrame<Unwatched>) == 32);

}  // namespace zrt
