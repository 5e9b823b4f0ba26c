// The walk: one text taken apart into groups, unary operators and chains, for any kind of value.
//
// A text with a "(" is cut at its first group, one without at its first unary operator; either way
// the pieces are solved as expressions of their own and joined: (left op middle) op right. A text
// with neither is a chain, run from the left. There is no precedence and no syntax tree.
//
// The walk knows nothing of values, names or results: the policy of a kind of value says what is
// that kind's own (walk_policy.h), and who is told what happens (watch.h). Nothing here recurses:
// open levels stand on a stack, and solved values on another.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "ErrorCodes.h"
#include "scan/marks.h"
#include "scan/operator_scan.h"
#include "solve/small_stack.h"
#include "solve/walk_frame.h"
#include "solve/walk_policy.h"
#include "solve/walk_steps.h"
#include "solve/watch.h"

namespace zrt {

template <class Policy>
class Walk : private WalkSteps<Policy> {
 public:
  /// Solves the whole text. Throws std::bad_alloc alone, before anything is delivered.
  static ZRTStatus Solve(Policy& policy, const MarkedText& text);

 private:
  using Steps = WalkSteps<Policy>;
  using Steps::Apply, Steps::ApplyUnary, Steps::Chain;
  using Steps::policy_, Steps::text_, Steps::watch, Steps::Part;
  using Steps::TellOperator, Steps::TellOutcome, Steps::TellUnread;
  using typename Steps::Does;
  using typename Steps::Solved;
  using typename Steps::Watch;

  enum class Shape : std::uint8_t { kSolved, kChain, kUnary, kGroup };

  // What a piece is known not to hold, so that nothing is searched for twice: once a text has shown
  // no group, its pieces are not looked through for one again.
  enum class RuledOut : std::uint8_t { kNothing, kGroups, kGroupsAndUnary };
  enum class Side : std::uint8_t { kLeft, kRight };

  // The order in which the sides of a middle are solved, and what is then known of each. The order
  // is a promise, since operands may be rows that move on as they are read.
  struct SideTurn {
    Side side;
    RuledOut ruled_out;
  };
  // clang-format off
  static constexpr SideTurn kTurns[] = {  // by Turn
      // Around a unary operator, the first one of a text without groups.
      {Side::kLeft, RuledOut::kGroupsAndUnary}, {Side::kRight, RuledOut::kGroups}, {},
      // Around a group, the first one of its text.
      {Side::kRight, RuledOut::kNothing}, {Side::kLeft, RuledOut::kGroups}, {},
      {Side::kRight, RuledOut::kNothing}, {Side::kLeft, RuledOut::kGroups}, {},
  };
  // clang-format on

  // Where a piece is cut: at the mark of a "(" or of a unary operator. A chain is not cut, and one
  // that its policy has read at once has its value on the stack.
  struct Cut {
    Shape shape;
    std::uint32_t mark;
  };

  using Level = WalkLevel<Watch>;

  Walk(Policy& policy, const MarkedText& text) : Steps(policy, text), frames_(text) {}

  ZRTStatus SolveFrom(Cut cut);

  static Cut FindCut(const MarkedText& text, const Piece& piece, RuledOut ruled_out);
  Cut SolveOrFindCut(const Piece& piece, RuledOut ruled_out);

  struct Task {
    Piece piece;
    RuledOut ruled_out = RuledOut::kNothing;
    bool is_there = false;
  };

  ZRTStatus OpenMiddle(Piece& piece, Cut cut, RuledOut& ruled_out);
  ZRTStatus NextSide(Task& task);
  ZRTStatus Combine();

  // Open a level for a cut and leave in `piece` the text inside: a group's, or a unary operand.
  ZRTStatus OpenGroup(Piece& piece, std::uint32_t open_mark);
  void OpenUnary(Piece& piece, std::uint32_t unary_mark);

  // Whether a piece is all that stands inside the group of a level.
  bool IsInsideGroup(const Level& level, const Piece& piece) {
    return level.is_inside_group() &&
           piece.first_mark == frames_.MiddleBelow(0, level.is_inner()) + 1;
  }

  // Cut a side of the top level into `side` and note its operator; one that is empty is no failure
  // and not there.
  ZRTStatus CutRight(const WalkFrame& frame, Level& level, Piece& side) const;
  ZRTStatus CutLeft(const WalkFrame& frame, Level& level, Piece& side);
  bool HasNothingLeft(const WalkFrame& frame);
  ZRTStatus CutNegations(const Level& level, RightScan& scan, FoundOperator& found,
                         std::uint32_t& middle);

  SmallStack<Level, 64> levels_;
  WalkFrames frames_;
  typename Policy::template Values<Solved> values_;
};

// The first group of a piece, else its first unary operator, else neither.
template <class Policy>
typename Walk<Policy>::Cut Walk<Policy>::FindCut(const MarkedText& text, const Piece& piece,
                                                 RuledOut ruled_out) {
  if (ruled_out == RuledOut::kGroupsAndUnary) return {Shape::kChain, kNoMark};
  std::uint32_t first_unary = kNoMark;
  for (std::uint32_t mark = piece.first_mark; mark < piece.last_mark; ++mark) {
    const char c = text.CharOf(mark);
    if (c == '(') return {Shape::kGroup, mark};
    if (first_unary == kNoMark && IsUnary(c, Policy::kReversesBits)) {
      first_unary = mark;
      if (ruled_out == RuledOut::kGroups) break;
    }
  }
  return {first_unary == kNoMark ? Shape::kChain : Shape::kUnary, first_unary};
}

// The same for a piece inside the text, which its policy may read without cutting it.
template <class Policy>
typename Walk<Policy>::Cut Walk<Policy>::SolveOrFindCut(const Piece& piece, RuledOut ruled_out) {
  if constexpr (Policy::kReadsAtOnce) {
    const std::string_view text = ViewOf(text_, piece);
    if (policy_.MayReadAtOnce(text)) {
      if (policy_.ReadAtOnce(text, values_.Push().value)) return {Shape::kSolved, kNoMark};
      values_.Drop();
    }
  }
  return FindCut(text_, piece, ruled_out);
}

// A text that is a chain needs no levels, so that it does without their stacks.
template <class Policy>
ZRTStatus Walk<Policy>::Solve(Policy& policy, const MarkedText& text) {
  const Cut cut = FindCut(text, WholePiece(text), RuledOut::kNothing);
  if (cut.shape == Shape::kChain) return Steps(policy, text).SolveChain();
  return Walk(policy, text).SolveFrom(cut);
}

// Goes down to the first chain of a piece, opening a level for each cut, and solves that chain;
// then up, combining the levels that have all their sides, to the next side that is to be solved.
template <class Policy>
ZRTStatus Walk<Policy>::SolveFrom(Cut cut) {
  Piece piece = WholePiece(text_);
  for (;;) {
    while (cut.shape > Shape::kChain) {
      RuledOut ruled_out = RuledOut::kNothing;
      const ZRTStatus status = OpenMiddle(piece, cut, ruled_out);
      if (status != kOk) return status;
      cut = SolveOrFindCut(piece, ruled_out);
    }
    ZRTStatus status = cut.shape == Shape::kSolved ? kOk : Chain(piece, values_.Push());
    Task task;
    while (status == kOk) {
      status = NextSide(task);
      if (status != kOk || task.is_there) break;
      status = Combine();
      if (levels_.empty()) return status;
    }
    if (status != kOk) return status;
    piece = task.piece;
    cut = SolveOrFindCut(piece, task.ruled_out);
  }
}

// Opens a level for a cut. `piece` becomes the text inside, with what is known of it.
template <class Policy>
ZRTStatus Walk<Policy>::OpenMiddle(Piece& piece, Cut cut, RuledOut& ruled_out) {
  if (cut.shape == Shape::kGroup) return OpenGroup(piece, cut.mark);
  if constexpr (Policy::kHasUnaryPath) {
    OpenUnary(piece, cut.mark);
    ruled_out = Policy::kUnaryOperandIsExpression ? RuledOut::kGroups : RuledOut::kGroupsAndUnary;
    return kOk;
  } else {
    const std::uint32_t position = text_.PositionOf(cut.mark);
    return watch()->Fail(ErrInvalidOperator, Part(position, position + 1));
  }
}

template <class Policy>
ZRTStatus Walk<Policy>::OpenGroup(Piece& piece, std::uint32_t open_mark) {
  const std::uint32_t close_mark = text_.MatchOf(open_mark);
  const std::uint32_t open = text_.PositionOf(open_mark);
  if (close_mark == kNoMark) return watch()->Fail(ErrUnbalancedParenthesis, Part(open, open + 1));
  const std::uint32_t close = text_.PositionOf(close_mark);
  watch()->Cut(CutEvent::By::kGroup, ViewOf(text_, piece), Part(open, close + 1));
  // A group alone in its piece needs no level, but for the outermost one, which delivers.
  if (open != piece.begin || close + 1 != piece.end || levels_.empty()) {
    const bool is_inner = frames_.is_full() && IsInsideGroup(levels_.Top(), piece);
    levels_.Push().turn = is_inner ? Turn::kRightOfInnerGroup : Turn::kRightOfGroup;
    if (is_inner) {
      frames_.PushInner(open_mark);
    } else {
      frames_.Push() = {piece, open_mark, close_mark + 1};
    }
  }
  piece = {open + 1, close, open_mark + 1, close_mark};
  return kOk;
}

// The operand ends at the first operator behind the unary one; what follows is the right text.
//
// Scans go on inside the operand later. Once one of them has passed over a "]", it finds nothing
// more up to the operand's end, by one of two ways:
//   The scan here has passed over the same "]". From there on both go on alike, and what they find
//   next is the operator that ends the operand, outside of it:            ~a[~b[1]+2
//   The scan here hid nothing in front of that "]", because it saw a "[" behind the operand. Then
//   each operator of the operand that is left is the "-" of an exponent, which every scan passes
//   over:                                                                 ~1e-5]+[2]
// So the piece says that a scan may end there, which spares one scan to the same end at each level
// of ~a[~a[~a[1]...: together they would cost the square of the length.
template <class Policy>
void Walk<Policy>::OpenUnary(Piece& piece, std::uint32_t unary_mark) {
  levels_.Push();
  WalkFrame& frame = frames_.Push();
  frame.piece = piece;
  frame.middle_mark = unary_mark;
  frame.right_mark = piece.last_mark;
  const std::uint32_t unary = text_.PositionOf(unary_mark);
  piece.begin = unary + 1;
  piece.first_mark = unary_mark + 1;
  piece = DropLeadingBlanks(text_, piece);
  const FoundOperator found = LeftMostOperator(text_, piece);
  if (found.is_there()) {
    frame.right_mark = found.mark;
    piece = PieceBefore(text_, piece, found);
  }
  piece.no_operator_behind_brackets = Policy::kTrustsBracketInvariant ? 1 : 0;
  watch()->Cut(CutEvent::By::kUnary, ViewOf(text_, frame.piece), Part(unary, piece.end));
}

// The top level has got a value: cuts its next side, if there is one. What is needed for that goes
// with the last one, so that right sides within right sides, as in (1)+(2)+(3), take little memory.
template <class Policy>
ZRTStatus Walk<Policy>::NextSide(Task& task) {
  Level& level = levels_.Top();
  if (level.is_done()) return kOk;
  const bool is_inner = level.is_inner();
  const bool is_left_kept = level.turn == Turn::kLeftOfGroup;
  const WalkFrame frame = is_left_kept
                              ? frames_.TakeLeft()
                              : frames_.Top(is_inner, is_inner && levels_.Below(1).is_inner());
  if constexpr (Policy::kHasUnaryPath) {
    if (level.turn == Turn::kLeftOfUnary) {
      ApplyUnary(values_.Top(), OperatorAt(text_, frame.piece, frame.middle_mark));
    }
  }
  while (!level.is_done() && !task.is_there) {
    const SideTurn turn = kTurns[static_cast<std::uint8_t>(level.turn)];
    level.GoOn();
    const bool is_right = turn.side == Side::kRight;
    const ZRTStatus status =
        is_right ? CutRight(frame, level, task.piece) : CutLeft(frame, level, task.piece);
    if (status != kOk) return status;
    task.is_there = is_right ? level.has_right() : level.has_left();
    task.ruled_out = turn.ruled_out;
  }
  if (level.is_left_of_group() && HasNothingLeft(frame)) level.GoOn();
  if (level.turn == Turn::kLeftOfGroup) frames_.KeepLeft();
  if (level.is_done() && !is_left_kept) frames_.Drop(is_inner);
  return kOk;
}

// Whether the left side of a group, which is to be solved after the right one, is known before to
// be none. A sole negation is applied, unless somebody watches when that happens.
template <class Policy>
bool Walk<Policy>::HasNothingLeft(const WalkFrame& frame) {
  const Piece left = DropLeadingBlanks(text_, frames_.LeftOf(frame));
  if constexpr (!kIsWatched<Watch> && Policy::kGroupNegation != GroupNegation::kRefused) {
    if (left.end - left.begin == 1 && IsNegation(EntryOf(text_.At(left.begin)).code)) {
      ApplyUnary(values_.Top(), OperatorAt(text_, left, left.first_mark));
      return true;
    }
  }
  return left.empty();
}

template <class Policy>
ZRTStatus Walk<Policy>::CutRight(const WalkFrame& frame, Level& level, Piece& side) const {
  Piece right = frame.piece;
  right.first_mark = frame.right_mark;
  if (level.is_group()) {
    right.begin = text_.PositionOf(frame.right_mark - 1) + 1;
    right = DropLeadingBlanks(text_, right);
  } else {
    const bool is_there = right.first_mark < right.last_mark;
    right.begin = is_there ? text_.PositionOf(right.first_mark) : right.end;
  }
  if (right.empty()) return kOk;
  const FoundOperator found = OperatorAtStart(text_, right);
  if (!found.is_there()) return watch()->Fail(ErrMisplacedOperator, Part(right.begin, right.begin));
  if constexpr (Policy::kRefusesShifts) {
    if (IsShift(found.code())) return watch()->Fail(ErrInvalidOperator, Part(found));
  }
  level.right_code = found.code();
  if constexpr (kIsWatched<Watch>) level.operators.right = found.position;
  side = PieceBehind(text_, right, found);
  return kOk;
}

template <class Policy>
ZRTStatus Walk<Policy>::CutLeft(const WalkFrame& frame, Level& level, Piece& side) {
  const Piece left = frames_.LeftOf(frame);
  std::uint32_t middle = text_.PositionOf(frame.middle_mark);
  if (left.empty()) return kOk;
  RightScan scan(text_, left);
  FoundOperator found = scan.Last();
  if (level.is_group()) {
    const ZRTStatus status = CutNegations(level, scan, found, middle);
    if (status != kOk || scan.rest().empty()) return status;
  }
  if (!found.is_there()) return watch()->Fail(ErrMisplacedOperator, Part(middle, middle));
  if (found.position == left.begin) return watch()->Fail(ErrMisplacedOperator, Part(found));
  TellUnread(scan.rest(), found);
  level.left_code = found.code();
  if constexpr (kIsWatched<Watch>) level.operators.left = found.position;
  side = PieceBefore(text_, left, found);
  return kOk;
}

// Deals with the "!" and "~" directly in front of a group. `middle` is where the middle begins,
// with those of them that it takes.
template <class Policy>
ZRTStatus Walk<Policy>::CutNegations(const Level& level, RightScan& scan, FoundOperator& found,
                                     std::uint32_t& middle) {
  while (found.is_there() && IsNegation(found.code())) {
    if constexpr (Policy::kGroupNegation == GroupNegation::kRefused) {
      return watch()->Fail(ErrInvalidOperator, Part(found));
    } else {
      const bool alone = PieceBefore(text_, scan.rest(), found).empty();
      if (Policy::kGroupNegation == GroupNegation::kIfAlone && !alone) return kOk;
      TellUnread(scan.rest(), found);
      // The group's value lies below the right side's, if there is one.
      ApplyUnary(values_.Below(level.has_right() ? 1 : 0), found);
      scan.CutBefore(found);
      middle = found.position;
      found = scan.Last();
    }
  }
  return kOk;
}

// Joins (left op middle) op right. The values stand in the order in which they were solved, the
// last one on top; a side that is not there has none:
//
//   around a group             middle  right  left
//   around a unary operator    middle  left   right
template <class Policy>
ZRTStatus Walk<Policy>::Combine() {
  const Level& level = levels_.Top();
  const FoundOperator left_operator = level.left_operator();
  const FoundOperator right_operator = level.right_operator();
  const bool has_left = level.has_left();
  const bool has_right = level.has_right();
  const bool is_group = level.is_group();
  levels_.Drop();
  const bool is_outermost = levels_.empty();

  const bool has_both = has_left && has_right;
  const std::size_t side_count = (has_left ? 1U : 0U) + (has_right ? 1U : 0U);
  Solved& middle = values_.Below(side_count);
  Solved& left = values_.Below(has_both && !is_group ? 1 : 0);
  Solved& right = values_.Below(has_both && is_group ? 1 : 0);

  const bool replaces = Policy::kGroupReplacesLeftUnderNone && left_operator.code_number == OpNone;
  const bool joins_left = has_left && !replaces;
  Solved& running = joins_left ? left : middle;
  if (is_outermost && side_count > 0) policy_.BeginResult(running.value);
  if (has_left && replaces) TellOperator(Does::kReplaces, left_operator, left, &middle);
  ZRTStatus status = kOk;
  if (joins_left) status = Apply(running, left_operator, middle);
  if (status == kOk && has_right) status = Apply(running, right_operator, right);
  if (is_outermost) {
    if (status == kOk) TellOutcome(running);
    policy_.Deliver(running.value, side_count == 0);
  }
  if (joins_left) middle = std::move(left);
  for (std::size_t side = 0; side < side_count; ++side) values_.Drop();
  return status;
}

}  // namespace zrt
