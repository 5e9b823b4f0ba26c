// An open level of a walk, in two parts: what it is until its values are joined, and what is needed
// of its piece until all sides are cut. They are plain data; the walk alone changes them.
#pragma once

#include <cstdint>

#include "scan/marks.h"
#include "scan/operator_scan.h"
#include "scan/piece.h"
#include "solve/small_stack.h"
#include "solve/watch.h"

namespace zrt {

// Where the operators of a level's sides stand.
struct SidePositions {
  std::uint32_t left = 0;
  std::uint32_t right = 0;
};

/// What comes next at a level once it has got a value. A level that is done joins its values.
enum class Turn : std::uint8_t {
  kLeftOfUnary,
  kRightOfUnary,
  kUnaryIsDone,
  kRightOfGroup,
  kLeftOfGroup,
  kGroupIsDone,
  // The same for one whose piece is all that stands inside the group of the level below.
  kRightOfInnerGroup,
  kLeftOfInnerGroup,
  kInnerGroupIsDone,
};

/// Long texts have millions of levels, so they are kept small.
template <class Watch>
struct WalkLevel {
  Turn turn = Turn::kLeftOfUnary;
  OperatorCode left_code = kNoOperator;  // of a side that is there
  OperatorCode right_code = kNoOperator;
  [[no_unique_address]] IfWatched<Watch, SidePositions> operators;

  [[nodiscard]] bool is_group() const { return turn >= Turn::kRightOfGroup; }
  [[nodiscard]] bool is_inner() const { return turn >= Turn::kRightOfInnerGroup; }
  [[nodiscard]] bool is_inside_group() const {
    return turn == Turn::kRightOfGroup || turn == Turn::kRightOfInnerGroup;
  }
  [[nodiscard]] bool is_left_of_group() const {
    return turn == Turn::kLeftOfGroup || turn == Turn::kLeftOfInnerGroup;
  }
  [[nodiscard]] bool is_done() const { return static_cast<std::uint8_t>(turn) % 3 == 2; }
  void GoOn() { turn = static_cast<Turn>(static_cast<std::uint8_t>(turn) + 1); }
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
static_assert(sizeof(WalkLevel<Unwatched>) == 3);

/// Of a level that has sides left to cut, its piece with the places of these cuts. The middle is
/// the "(" or the unary operator.
struct WalkFrame {
  Piece piece;
  std::uint32_t middle_mark = kNoMark;
  std::uint32_t right_mark = kNoMark;  // first of the right text; behind a group's ")"
};
static_assert(sizeof(WalkFrame) == 28);

/// The frames of those open levels that have sides left to cut. Of some a mark alone is kept, from
/// which the frame is found again: of an inner group that of its "(", since the rest follows from
/// the group around it, that of the level below; of a group whose right side is being solved, the
/// one that its piece begins with.
class WalkFrames {
 public:
  explicit WalkFrames(const MarkedText& text) : text_(text) {}

  WalkFrame& Push() { return frames_.Push(); }

  /// Whether a frame would take more memory, so that inner groups are worth telling apart.
  [[nodiscard]] bool is_full() const { return frames_.is_full(); }
  void PushInner(std::uint32_t open_mark) { marks_.Push() = open_mark; }

  /// The middle of the level that lies so many inner groups below the top one.
  std::uint32_t MiddleBelow(std::size_t inner_count, bool is_inner) {
    return is_inner ? marks_.Below(inner_count) : frames_.Top().middle_mark;
  }

  /// The frame of the top level. `is_inner`: of that level, and of the one below it.
  WalkFrame Top(bool is_inner, bool is_inside_inner) {
    if (!is_inner) return frames_.Top();
    const std::uint32_t open = MiddleBelow(1, is_inside_inner);
    const std::uint32_t close = text_.MatchOf(open);
    const std::uint32_t middle = marks_.Top();
    return {
        {text_.PositionOf(open) + 1, text_.PositionOf(close), open + 1, close},
        middle,
        text_.MatchOf(middle) + 1
    };
  }
  void Drop(bool is_inner) { is_inner ? marks_.Drop() : frames_.Drop(); }

  /// What stands before the middle of a frame, without trailing blanks.
  [[nodiscard]] Piece LeftOf(const WalkFrame& frame) const {
    Piece left = frame.piece;
    left.end = text_.PositionOf(frame.middle_mark);
    left.last_mark = frame.middle_mark;
    left.no_operator_behind_brackets = 0;  // it ends elsewhere than the operand it is part of
    return DropTrailingBlanks(text_, left);
  }

  /// Keeps of the top frame, a group's, what its left side follows from.
  void KeepLeft() {
    marks_.Push() = frames_.Top().piece.first_mark;
    frames_.Drop();
  }

  /// What was kept last, as a frame without a right side. Its piece stands behind a "(" or, without
  /// leading blanks, behind an operator, or is the text.
  WalkFrame TakeLeft() {
    const std::uint32_t first_mark = marks_.Top();
    marks_.Drop();
    std::uint32_t middle_mark = first_mark;
    while (text_.CharOf(middle_mark) != '(') ++middle_mark;
    Piece piece{0, text_.PositionOf(middle_mark), first_mark, middle_mark};
    if (first_mark > 0) {
      piece.begin = text_.PositionOf(first_mark - 1) + 1;
      if (text_.CharOf(first_mark - 1) != '(') piece = DropLeadingBlanks(text_, piece);
    }
    return {piece, middle_mark};
  }

 private:
  const MarkedText& text_;
  SmallStack<WalkFrame, 64> frames_;
  SmallStack<std::uint32_t, 64> marks_;
};

}  // namespace zrt
