// The walk: one text taken apart into groups, unary operators and chains, for any kind of value.
//
// A text with a "(" is cut at its first group, one without at its first unary operator; either way
// the pieces are solved as expressions of their own and joined: (left op middle) op right. A text
// with neither is a chain, run from the left. There is no precedence and no syntax tree.
//
// The walk knows nothing of values, names or results: the policy of a kind of value says what is
// that kind's own (see Policy below). Nothing here recurses: open levels stand on a stack of
// frames, solved values on a stack of values.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "ErrorCodes.h"
#include "scan/marks.h"
#include "scan/operator_scan.h"
#include "solve/small_stack.h"

namespace zrt {

/// What a "!" or "~" in front of a group means.
enum class GroupNegation : std::uint8_t {
  kIfAlone,        // negates the group if only blanks stand before it: ~(5), but not 1+~(5)
  kRefused,        // ErrInvalidOperator wherever it stands
  kThenLookAgain,  // negates the group and is dropped; what is left is looked at again: 1@~(2)
};

/// A policy has these members; each constant stands for one real difference between the kinds.
///
///   Value                        default-constructible and movable
///   kRefusesShifts               1<<x fails at the "<<", before x is read (floats)
///   kHasUnaryPath                ~1 has a value; else it is ErrInvalidOperator (floats: else)
///   kUnaryOperandIsExpression    in ~a[~1] the operand a[~1] is cut at its "~" again (integers)
///   kGroupReplacesLeftUnderNone  1,(2) is 2, not 1 (integers)
///   kKeepsPartialChain           a chain that fails leaves its value so far as the result (bits)
///   kGroupNegation               see GroupNegation
///   IsUnary(c)                   the characters of unary operators
///   Read(text, value)            reads one operand; on failure `value` is what a result then shows
///   Apply(value, code, operand)  a binary operator, in place; may use the operand up
///   ApplyUnary(value, code)      a unary operator, in place
///   BeginResult(value)           operators are about to make `value` the result in place: 1+(2)
///   Deliver(value, is_added)     `value` is the result, also what a failure leaves of it; added to
///                                what the result holds where no operator works on that: (2)
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

  // What is known of a piece before it is looked at, so that no text without a group is searched
  // for one twice: its pieces have none either.
  enum class Known : std::uint8_t { kNothing, kNoGroup, kChain };

  // An open level: a piece with its middle, the "(" or the unary operator, and how far it is. Deep
  // texts have millions of them, so it is kept small.
  struct Frame {
    Piece piece;
    std::uint32_t middle_mark = kNoMark;
    std::uint32_t right_mark = kNoMark;  // first of the right text; behind a group's ")"
    OperatorCode left_code = OpNone;
    OperatorCode right_code = OpNone;
    bool is_group : 1 = false;
    bool has_left : 1 = false;
    bool has_right : 1 = false;
    std::uint8_t sides_done : 2 = 0;
  };
  static_assert(sizeof(Frame) == 32);

  struct Look {
    Shape shape;
    std::uint32_t mark;
  };
  Look LookAt(const Piece& piece, Known known) const;

  ZRTStatus Enter(Piece piece, Known known);
  ZRTStatus Advance();
  ZRTStatus Combine();

  Piece RightOf(const Frame& frame) const;
  Frame OpenUnary(const Piece& piece, std::uint32_t unary_mark, Piece& operand) const;

  // Cut one side of the top frame into `side`; an empty one is no failure and no side.
  ZRTStatus CutRight(Frame& frame, std::optional<Piece>& side) const;
  ZRTStatus CutLeft(Frame& frame, std::optional<Piece>& side);
  ZRTStatus CutNegations(Frame& frame, RightScan& scan, std::optional<FoundOperator>& found);

  ZRTStatus Chain(Piece piece, Value& running);
  ZRTStatus ReadOperand(const Piece& piece, const std::optional<FoundOperator>& found,
                        Value& value);
  ZRTStatus DeliverChain(const Piece& piece);
  static bool RefusesShift(const std::optional<FoundOperator>& found) {
    return Policy::kRefusesShifts && found && IsShift(found->code);
  }

  Policy& policy_;
  const MarkedText& text_;
  SmallStack<Frame, 48> frames_;
  SmallStack<Value, 48> values_;
};

// The first group of a piece, else its first unary operator, else neither.
template <class Policy>
typename Walk<Policy>::Look Walk<Policy>::LookAt(const Piece& piece, Known known) const {
  if (known == Known::kChain) return {Shape::kChain, kNoMark};
  std::uint32_t first_unary = kNoMark;
  for (std::uint32_t mark = piece.first_mark; mark < piece.last_mark; ++mark) {
    const char c = text_.CharOf(mark);
    if (c == '(') return {Shape::kGroup, mark};
    if (first_unary == kNoMark && Policy::IsUnary(c)) {
      first_unary = mark;
      if (known == Known::kNoGroup) break;
    }
  }
  return {first_unary == kNoMark ? Shape::kChain : Shape::kUnary, first_unary};
}

template <class Policy>
ZRTStatus Walk<Policy>::Solve() {
  const Piece whole = WholePiece(text_);
  const Shape shape = LookAt(whole, Known::kNothing).shape;
  if (shape == Shape::kChain) return DeliverChain(whole);
  ZRTStatus status = Enter(whole, shape == Shape::kGroup ? Known::kNothing : Known::kNoGroup);
  while (status == kOk && !frames_.empty()) status = Advance();
  return status;
}

template <class Policy>
ZRTStatus Walk<Policy>::DeliverChain(const Piece& piece) {
  Value running{};
  const ZRTStatus status = Chain(piece, running);
  if (status == kOk || Policy::kKeepsPartialChain) policy_.Deliver(running, false);
  return status;
}

// Goes down to the first chain of a piece, opening a frame for each level, and solves that chain.
template <class Policy>
ZRTStatus Walk<Policy>::Enter(Piece piece, Known known) {
  for (;;) {
    const auto [shape, mark] = LookAt(piece, known);
    if (shape == Shape::kChain) {
      values_.Push(Value{});
      return Chain(piece, values_.Top());
    }
    if (shape == Shape::kGroup) {
      const std::uint32_t close = text_.MatchOf(mark);
      if (close == kNoMark) return ErrUnbalancedParenthesis;
      Frame frame{piece, mark, close + 1};
      frame.is_group = true;
      // A group alone in its piece needs no frame, but for the outermost one, which delivers.
      const bool alone = text_.PositionOf(mark) == piece.begin && RightOf(frame).empty();
      if (!alone || frames_.empty()) frames_.Push(std::move(frame));
      piece = {text_.PositionOf(mark) + 1, text_.PositionOf(close), mark + 1, close};
      known = Known::kNothing;
    } else {
      if (!Policy::kHasUnaryPath) return ErrInvalidOperator;
      Piece operand{};
      frames_.Push(OpenUnary(piece, mark, operand));
      piece = operand;
      known = Policy::kUnaryOperandIsExpression ? Known::kNoGroup : Known::kChain;
    }
  }
}

template <class Policy>
Piece Walk<Policy>::RightOf(const Frame& frame) const {
  Piece right = frame.piece;
  right.first_mark = frame.right_mark;
  if (frame.is_group) {
    right.begin = text_.PositionOf(frame.right_mark - 1) + 1;
    return DropLeadingBlanks(text_, right);
  }
  const bool is_there = right.first_mark < right.last_mark;
  right.begin = is_there ? text_.PositionOf(right.first_mark) : right.end;
  return right;
}

// The operand ends at the first operator behind the unary one; what follows is the right text.
//
// Once a scan inside an operand has passed over a bracket, it finds nothing more. Usually it has
// met the very "]" that the scan which cut the operand went over, and goes on as that one did. Or
// the operand holds no "[" from there on; then the first scan hid nothing there either, and every
// operator left is the "-" of an exponent, which any scan passes over. The mark on the piece spares
// a scan to the same end at every level of ~a[~a[~a[1]...
template <class Policy>
typename Walk<Policy>::Frame Walk<Policy>::OpenUnary(const Piece& piece, std::uint32_t unary_mark,
                                                     Piece& operand) const {
  operand = piece;
  operand.begin = text_.PositionOf(unary_mark) + 1;
  operand.first_mark = unary_mark + 1;
  operand = DropLeadingBlanks(text_, operand);
  Frame frame{piece, unary_mark, piece.last_mark};
  if (const auto found = LeftMostOperator(text_, operand)) {
    frame.right_mark = found->mark;
    operand = PieceBefore(text_, operand, *found);
  }
  operand.bracket_ends_scan = true;
  return frame;
}

// The top frame has got a value: cuts and enters its next side, or combines what it has. The order
// of the sides shows where operands are rows that move on: a group's right side comes first.
template <class Policy>
ZRTStatus Walk<Policy>::Advance() {
  Frame& frame = frames_.Top();
  if (frame.sides_done == 0 && !frame.is_group) {
    policy_.ApplyUnary(values_.Top(), EntryOf(text_.CharOf(frame.middle_mark)).code);
  }
  while (frame.sides_done < 2) {
    const bool is_right = frame.is_group == (frame.sides_done == 0);
    ++frame.sides_done;
    std::optional<Piece> side;
    const ZRTStatus status = is_right ? CutRight(frame, side) : CutLeft(frame, side);
    if (status != kOk) return status;
    if (!side) continue;
    Known known = Known::kNoGroup;  // the first group is behind it, or the piece has none
    if (frame.is_group && is_right) known = Known::kNothing;
    if (!frame.is_group && !is_right) known = Known::kChain;  // the unary operator was the first
    return Enter(*side, known);
  }
  return Combine();
}

template <class Policy>
ZRTStatus Walk<Policy>::CutRight(Frame& frame, std::optional<Piece>& side) const {
  const Piece right = RightOf(frame);
  if (right.empty()) return kOk;
  const auto found = OperatorAtStart(text_, right);
  if (!found) return ErrMisplacedOperator;
  if (RefusesShift(found)) return ErrInvalidOperator;
  frame.has_right = true;
  frame.right_code = found->code;
  side = PieceBehind(text_, right, *found);
  return kOk;
}

template <class Policy>
ZRTStatus Walk<Policy>::CutLeft(Frame& frame, std::optional<Piece>& side) {
  Piece left = frame.piece;
  left.end = text_.PositionOf(frame.middle_mark);
  left.last_mark = frame.middle_mark;
  left.bracket_ends_scan = false;
  left = DropTrailingBlanks(text_, left);
  if (left.empty()) return kOk;
  RightScan scan(text_, left);
  auto found = scan.Last();
  if (frame.is_group) {
    const ZRTStatus status = CutNegations(frame, scan, found);
    if (status != kOk || scan.rest().empty()) return status;
  }
  if (!found || found->position == left.begin) return ErrMisplacedOperator;
  frame.has_left = true;
  frame.left_code = found->code;
  side = PieceBefore(text_, left, *found);
  return kOk;
}

// Deals with the "!" and "~" directly in front of a group.
template <class Policy>
ZRTStatus Walk<Policy>::CutNegations(Frame& frame, RightScan& scan,
                                     std::optional<FoundOperator>& found) {
  while (found && IsNegation(found->code)) {
    if (Policy::kGroupNegation == GroupNegation::kRefused) return ErrInvalidOperator;
    const OperatorCode code = found->code;
    const bool alone = PieceBefore(text_, scan.rest(), *found).empty();
    if (Policy::kGroupNegation == GroupNegation::kIfAlone && !alone) return kOk;
    // The group's value lies below the right side's, if there is one.
    policy_.ApplyUnary(values_.Below(frame.has_right ? 1 : 0), code);
    scan.CutBefore(*found);
    found = scan.Last();
  }
  return kOk;
}

// Joins (left op middle) op right. The values are the topmost ones, in the order they were solved:
// the middle first, then a group's right side before its left one, a unary operator's behind it.
template <class Policy>
ZRTStatus Walk<Policy>::Combine() {
  const Frame frame = frames_.Pop();
  const std::size_t side_count = (frame.has_left ? 1U : 0U) + (frame.has_right ? 1U : 0U);
  Value& middle = values_.Below(side_count);
  Value& first_side = values_.Below(side_count > 0 ? side_count - 1 : 0);
  Value& last_side = values_.Top();  // the same if there is but one
  Value& left = frame.is_group ? last_side : first_side;
  Value& right = frame.is_group ? first_side : last_side;

  const bool replaces = Policy::kGroupReplacesLeftUnderNone && frame.left_code == OpNone;
  const bool joins_left = frame.has_left && !replaces;
  Value& running = joins_left ? left : middle;
  const bool is_result = frames_.empty();
  if (is_result && side_count > 0) policy_.BeginResult(running);
  ZRTStatus status = kOk;
  if (joins_left) status = policy_.Apply(running, frame.left_code, middle);
  if (status == kOk && frame.has_right) status = policy_.Apply(running, frame.right_code, right);
  if (is_result) policy_.Deliver(running, side_count == 0);
  if (joins_left) middle = std::move(left);
  for (std::size_t side = 0; side < side_count; ++side) values_.Drop();
  return status;
}

// Reads the operand in front of `found`, or all of `piece` if there is no operator left.
template <class Policy>
ZRTStatus Walk<Policy>::ReadOperand(const Piece& piece, const std::optional<FoundOperator>& found,
                                    Value& value) {
  const Piece operand = found ? PieceBefore(text_, piece, *found) : piece;
  const ZRTStatus status = policy_.Read(ViewOf(text_, operand), value);
  return status == kOk && RefusesShift(found) ? ErrInvalidOperator : status;
}

template <class Policy>
ZRTStatus Walk<Policy>::Chain(Piece piece, Value& running) {
  auto found = LeftMostOperator(text_, piece);
  ZRTStatus status = ReadOperand(piece, found, running);
  while (status == kOk && found) {
    piece = PieceBehind(text_, piece, *found);
    if (piece.empty()) break;  // an operator at the end has nothing to act on
    const OperatorCode pending = found->code;
    found = LeftMostOperator(text_, piece);
    if (found && found->position == piece.begin) return ErrMissingOperand;
    Value operand{};
    status = ReadOperand(piece, found, operand);
    if (status == kOk) status = policy_.Apply(running, pending, operand);
  }
  return status;
}

}  // namespace zrt
