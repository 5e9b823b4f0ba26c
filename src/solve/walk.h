// The walk: one text taken apart into groups, unary operators and chains, for any kind of value.
//
// A text with a "(" is cut at its first group, one without at its first unary operator; either way
// the pieces are solved as expressions of their own and joined: (left op middle) op right. A text
// with neither is a chain, run from the left. There is no precedence and no syntax tree.
//
// The walk knows nothing of values, names or results: the policy of a kind of value says what is
// that kind's own (walk_policy.h). Nothing here recurses: open levels stand on a stack of frames,
// solved values on a stack of values.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "ErrorCodes.h"
#include "scan/marks.h"
#include "scan/operator_scan.h"
#include "solve/small_stack.h"
#include "solve/walk_policy.h"

namespace zrt {

template <class Policy>
class Walk {
 public:
  using Value = typename Policy::Value;

  Walk(Policy& policy, const MarkedText& text) : policy_(policy), text_(text) {}

  /// Solves the whole text. Throws std::bad_alloc alone, before anything is delivered.
  ZRTStatus Solve();

  /// Solves the whole text as one chain, whatever it holds.
  ZRTStatus SolveChain() { return DeliverChain(WholePiece(text_)); }

 private:
  enum class Shape : std::uint8_t { kChain, kUnary, kGroup };

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
  static constexpr SideTurn kTurns[2][2] = {
      // Around a unary operator, the first one of a text without groups.
      {{Side::kLeft, RuledOut::kGroupsAndUnary}, {Side::kRight, RuledOut::kGroups}},
      // Around a group, the first one of its text.
      {{Side::kRight, RuledOut::kNothing}, {Side::kLeft, RuledOut::kGroups}},
  };
  // clang-format on

  // Where a piece is cut: at the mark of a "(" or of a unary operator; a chain is not cut.
  struct Cut {
    Shape shape;
    std::uint32_t mark;
  };

  // An open level: a piece with its middle, the "(" or the unary operator, and how far it is. Deep
  // texts have millions of them, so it is kept small.
  struct Frame {
    Piece piece;
    std::uint32_t middle_mark = kNoMark;
    std::uint32_t right_mark = kNoMark;    // first of the right text; behind a group's ")"
    OperatorCode left_code = kNoOperator;  // of a side that is there
    OperatorCode right_code = kNoOperator;
    bool is_group = false;
    std::uint8_t sides_done = 0;

    [[nodiscard]] bool has_left() const { return left_code != kNoOperator; }
    [[nodiscard]] bool has_right() const { return right_code != kNoOperator; }
  };
  static_assert(sizeof(Frame) == 32);

  Cut FindCut(const Piece& piece, RuledOut ruled_out) const;

  // A piece that is to be solved next.
  struct Task {
    Piece piece;
    RuledOut ruled_out = RuledOut::kNothing;
    bool is_there = false;
  };

  ZRTStatus OpenMiddle(Piece& piece, Cut cut, RuledOut& ruled_out);
  ZRTStatus NextSide(Task& task);
  ZRTStatus Combine();

  // Open a frame for a cut and leave in `piece` the text inside: a group's, or a unary operand.
  ZRTStatus OpenGroup(Piece& piece, std::uint32_t open_mark);
  void OpenUnary(Piece& piece, std::uint32_t unary_mark);

  // Cut a side of the top frame into `side` and note its operator; one that is empty is no failure
  // and not there.
  ZRTStatus CutRight(Frame& frame, Piece& side) const;
  ZRTStatus CutLeft(Frame& frame, Piece& side);
  ZRTStatus CutNegations(Frame& frame, RightScan& scan, FoundOperator& found);

  ZRTStatus Chain(Piece piece, Value& running);
  ZRTStatus ReadOperand(const Piece& piece, const FoundOperator& found, Value& value);
  ZRTStatus DeliverChain(const Piece& piece);
  static bool RefusesShift(const FoundOperator& found) {
    return Policy::kRefusesShifts && found.is_there() && IsShift(found.code());
  }

  Policy& policy_;
  const MarkedText& text_;
  SmallStack<Frame, 64> frames_;
  SmallStack<Value, 64> values_;
};

/// Evaluates `text` by `policy`: as an expression, or as one chain whatever it holds.
/// @return ErrStreamWrite for a text of more than kMaxTextLength characters, with nothing read or
///         delivered; else what the walk says. Throws std::bad_alloc before anything is delivered.
template <class Policy>
ZRTStatus SolveText(std::string_view text, Policy policy) {
  if (text.size() > kMaxTextLength) return ErrStreamWrite;
  const MarkedText marked(text, MarkedText::Parentheses::kMarked);
  return Walk<Policy>(policy, marked).Solve();
}
template <class Policy>
ZRTStatus SolveTextAsChain(std::string_view text, Policy policy) {
  if (text.size() > kMaxTextLength) return ErrStreamWrite;
  const MarkedText marked(text, MarkedText::Parentheses::kPlain);
  return Walk<Policy>(policy, marked).SolveChain();
}

// The first group of a piece, else its first unary operator, else neither.
template <class Policy>
typename Walk<Policy>::Cut Walk<Policy>::FindCut(const Piece& piece, RuledOut ruled_out) const {
  if (ruled_out == RuledOut::kGroupsAndUnary) return {Shape::kChain, kNoMark};
  std::uint32_t first_unary = kNoMark;
  for (std::uint32_t mark = piece.first_mark; mark < piece.last_mark; ++mark) {
    const char c = text_.CharOf(mark);
    if (c == '(') return {Shape::kGroup, mark};
    if (first_unary == kNoMark && IsUnary(c, Policy::kReversesBits)) {
      first_unary = mark;
      if (ruled_out == RuledOut::kGroups) break;
    }
  }
  return {first_unary == kNoMark ? Shape::kChain : Shape::kUnary, first_unary};
}

// Goes down to the first chain of a piece, opening a frame for each level, and solves that chain;
// then up, combining the levels that have all their sides, to the next side that is to be solved.
template <class Policy>
ZRTStatus Walk<Policy>::Solve() {
  Piece piece = WholePiece(text_);
  Cut cut = FindCut(piece, RuledOut::kNothing);
  if (cut.shape == Shape::kChain) return DeliverChain(piece);
  for (;;) {
    while (cut.shape != Shape::kChain) {
      RuledOut ruled_out = RuledOut::kNothing;
      const ZRTStatus status = OpenMiddle(piece, cut, ruled_out);
      if (status != kOk) return status;
      cut = FindCut(piece, ruled_out);
    }
    ZRTStatus status = Chain(piece, values_.Push());
    Task task;
    while (status == kOk && !task.is_there) {
      status = NextSide(task);
      if (status != kOk || task.is_there) break;
      status = Combine();
      if (frames_.empty()) return status;
    }
    if (status != kOk) return status;
    piece = task.piece;
    cut = FindCut(piece, task.ruled_out);
  }
}

template <class Policy>
ZRTStatus Walk<Policy>::DeliverChain(const Piece& piece) {
  Value running{};
  const ZRTStatus status = Chain(piece, running);
  if (status == kOk || Policy::kKeepsPartialChain) policy_.Deliver(running, false);
  return status;
}

// Opens a frame for a cut. `piece` becomes the text inside, with what is known of it.
template <class Policy>
ZRTStatus Walk<Policy>::OpenMiddle(Piece& piece, Cut cut, RuledOut& ruled_out) {
  if (cut.shape == Shape::kGroup) return OpenGroup(piece, cut.mark);
  if (!Policy::kHasUnaryPath) return ErrInvalidOperator;
  OpenUnary(piece, cut.mark);
  ruled_out = Policy::kUnaryOperandIsExpression ? RuledOut::kGroups : RuledOut::kGroupsAndUnary;
  return kOk;
}

template <class Policy>
ZRTStatus Walk<Policy>::OpenGroup(Piece& piece, std::uint32_t open_mark) {
  const std::uint32_t close_mark = text_.MatchOf(open_mark);
  if (close_mark == kNoMark) return ErrUnbalancedParenthesis;
  const std::uint32_t open = text_.PositionOf(open_mark);
  const std::uint32_t close = text_.PositionOf(close_mark);
  // A group alone in its piece needs no frame, but for the outermost one, which delivers.
  if (open != piece.begin || close + 1 != piece.end || frames_.empty()) {
    Frame& frame = frames_.Push();
    frame.piece = piece;
    frame.middle_mark = open_mark;
    frame.right_mark = close_mark + 1;
    frame.is_group = true;
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
  Frame& frame = frames_.Push();
  frame.piece = piece;
  frame.middle_mark = unary_mark;
  frame.right_mark = piece.last_mark;
  piece.begin = text_.PositionOf(unary_mark) + 1;
  piece.first_mark = unary_mark + 1;
  piece = DropLeadingBlanks(text_, piece);
  const FoundOperator found = LeftMostOperator(text_, piece);
  if (found.is_there()) {
    frame.right_mark = found.mark;
    piece = PieceBefore(text_, piece, found);
  }
  piece.no_operator_behind_brackets = Policy::kTrustsBracketInvariant ? 1 : 0;
}

// The top frame has got a value: cuts its next side, if there is one.
template <class Policy>
ZRTStatus Walk<Policy>::NextSide(Task& task) {
  Frame& frame = frames_.Top();
  if constexpr (Policy::kHasUnaryPath) {
    if (frame.sides_done == 0 && !frame.is_group) {
      policy_.ApplyUnary(values_.Top(), EntryOf(text_.CharOf(frame.middle_mark)).code);
    }
  }
  while (frame.sides_done < 2 && !task.is_there) {
    const SideTurn turn = kTurns[frame.is_group ? 1 : 0][frame.sides_done];
    ++frame.sides_done;
    const bool is_right = turn.side == Side::kRight;
    const ZRTStatus status = is_right ? CutRight(frame, task.piece) : CutLeft(frame, task.piece);
    if (status != kOk) return status;
    task.is_there = is_right ? frame.has_right() : frame.has_left();
    task.ruled_out = turn.ruled_out;
  }
  return kOk;
}

template <class Policy>
ZRTStatus Walk<Policy>::CutRight(Frame& frame, Piece& side) const {
  Piece right = frame.piece;
  right.first_mark = frame.right_mark;
  if (frame.is_group) {
    right.begin = text_.PositionOf(frame.right_mark - 1) + 1;
    right = DropLeadingBlanks(text_, right);
  } else {
    const bool is_there = right.first_mark < right.last_mark;
    right.begin = is_there ? text_.PositionOf(right.first_mark) : right.end;
  }
  if (right.empty()) return kOk;
  const FoundOperator found = OperatorAtStart(text_, right);
  if (!found.is_there()) return ErrMisplacedOperator;
  if (RefusesShift(found)) return ErrInvalidOperator;
  frame.right_code = found.code();
  side = PieceBehind(text_, right, found);
  return kOk;
}

template <class Policy>
ZRTStatus Walk<Policy>::CutLeft(Frame& frame, Piece& side) {
  Piece left = frame.piece;
  left.end = text_.PositionOf(frame.middle_mark);
  left.last_mark = frame.middle_mark;
  left.no_operator_behind_brackets = 0;  // it ends elsewhere than the operand it is part of
  left = DropTrailingBlanks(text_, left);
  if (left.empty()) return kOk;
  RightScan scan(text_, left);
  FoundOperator found = scan.Last();
  if (frame.is_group) {
    const ZRTStatus status = CutNegations(frame, scan, found);
    if (status != kOk || scan.rest().empty()) return status;
  }
  if (!found.is_there() || found.position == left.begin) return ErrMisplacedOperator;
  frame.left_code = found.code();
  side = PieceBefore(text_, left, found);
  return kOk;
}

// Deals with the "!" and "~" directly in front of a group.
template <class Policy>
ZRTStatus Walk<Policy>::CutNegations(Frame& frame, RightScan& scan, FoundOperator& found) {
  while (found.is_there() && IsNegation(found.code())) {
    if constexpr (Policy::kGroupNegation == GroupNegation::kRefused) {
      return ErrInvalidOperator;
    } else {
      const bool alone = PieceBefore(text_, scan.rest(), found).empty();
      if (Policy::kGroupNegation == GroupNegation::kIfAlone && !alone) return kOk;
      // The group's value lies below the right side's, if there is one.
      policy_.ApplyUnary(values_.Below(frame.has_right() ? 1 : 0), found.code());
      scan.CutBefore(found);
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
  const Frame& frame = frames_.Top();
  const OperatorCode left_code = frame.left_code;
  const OperatorCode right_code = frame.right_code;
  const bool has_left = frame.has_left();
  const bool has_right = frame.has_right();
  const bool is_group = frame.is_group;
  frames_.Drop();
  const bool is_outermost = frames_.empty();

  const bool has_both = has_left && has_right;
  const std::size_t side_count = (has_left ? 1U : 0U) + (has_right ? 1U : 0U);
  Value& middle = values_.Below(side_count);
  Value& left = values_.Below(has_both && !is_group ? 1 : 0);
  Value& right = values_.Below(has_both && is_group ? 1 : 0);

  const bool replaces = Policy::kGroupReplacesLeftUnderNone && left_code == OpNone;
  const bool joins_left = has_left && !replaces;
  Value& running = joins_left ? left : middle;
  if (is_outermost && side_count > 0) policy_.BeginResult(running);
  ZRTStatus status = kOk;
  if (joins_left) status = policy_.Apply(running, left_code, middle);
  if (status == kOk && has_right) status = policy_.Apply(running, right_code, right);
  if (is_outermost) policy_.Deliver(running, side_count == 0);
  if (joins_left) middle = std::move(left);
  for (std::size_t side = 0; side < side_count; ++side) values_.Drop();
  return status;
}

// Reads the operand in front of `found`, or all of `piece` if there is no operator left.
template <class Policy>
ZRTStatus Walk<Policy>::ReadOperand(const Piece& piece, const FoundOperator& found, Value& value) {
  const Piece operand = found.is_there() ? PieceBefore(text_, piece, found) : piece;
  const ZRTStatus status = policy_.Read(ViewOf(text_, operand), value);
  return status == kOk && RefusesShift(found) ? ErrInvalidOperator : status;
}

template <class Policy>
ZRTStatus Walk<Policy>::Chain(Piece piece, Value& running) {
  FoundOperator found = LeftMostOperator(text_, piece);
  ZRTStatus status = ReadOperand(piece, found, running);
  while (status == kOk && found.is_there()) {
    piece = PieceBehind(text_, piece, found);
    if (piece.empty()) break;  // an operator at the end has nothing to act on
    const OperatorCode pending = found.code();
    found = LeftMostOperator(text_, piece);
    if (found.is_there() && found.position == piece.begin) return ErrMissingOperand;
    Value operand{};
    status = ReadOperand(piece, found, operand);
    if (status == kOk) status = policy_.Apply(running, pending, operand);
  }
  return status;
}

}  // namespace zrt
