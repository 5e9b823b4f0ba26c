// The steps of a walk: an operand is read, an operator is applied, and a chain is the two by turns.
// Whoever watches is told here. How a text is cut into chains is the walk's to know (walk.h).
#pragma once

#include <cstdint>
#include <string_view>

#include "ErrorCodes.h"
#include "scan/marks.h"
#include "scan/operator_scan.h"
#include "solve/watch.h"

namespace zrt {

template <class Policy>
class WalkSteps {
 public:
  WalkSteps(Policy& policy, const MarkedText& text) : policy_(policy), text_(text) {}

  /// Solves the whole text as one chain, whatever it holds.
  ZRTStatus SolveChain();

 protected:
  using Value = typename Policy::Value;
  using Watch = typename Policy::Watch;

  struct Solved {
    Value value{};
    [[no_unique_address]] IfWatched<Watch, ValueNumber> number{};
  };
  static_assert(kIsWatched<Watch> || sizeof(Solved) == sizeof(Value));

  /// Runs a piece without groups and unary operators from the left.
  ZRTStatus Chain(const Piece& whole, Solved& running);

  /// One operator, between two values or in front of one.
  ZRTStatus Apply(Solved& left, const FoundOperator& found, Solved& right);
  void ApplyUnary(Solved& operand, const FoundOperator& found);

  // What observers are told beside what every evaluation says anyway; nothing if nobody watches.
  using Does = OperatorEvent::Effect;
  void TellOperator(Does effect, const FoundOperator& found, Solved& left, Solved* right);
  void TellUnread(const Piece& piece, const FoundOperator& found);
  void TellResult(Solved& result);
  void TellOutcome(Solved& outcome);

  // Parts of the text as failures and observers are told of them.
  [[nodiscard]] std::string_view Part(std::uint32_t begin, std::uint32_t end) const {
    return {text_.text().data() + begin, end - begin};
  }
  [[nodiscard]] std::string_view Part(const FoundOperator& found) const {
    return Part(found.position, found.position + OperatorWidth(found.code()));
  }
  [[nodiscard]] Watch watch() const { return policy_.watch(); }

  // The walk, which alone stands on these steps, works on both as well.
  Policy& policy_;          // NOLINT(misc-non-private-member-variables-in-classes)
  const MarkedText& text_;  // NOLINT(misc-non-private-member-variables-in-classes)

 private:
  ZRTStatus ReadOperand(const Piece& piece, const FoundOperator& found, Solved& operand);
};

// Reads the operand in front of `found`, or all of `piece` if there is no operator left. Inline,
// since the compiler would rather set the policy's reading in here and call the whole: ten
// instructions an operand.
template <class Policy>
[[gnu::always_inline]] inline ZRTStatus WalkSteps<Policy>::ReadOperand(const Piece& piece,
                                                                       const FoundOperator& found,
                                                                       Solved& operand) {
  const Piece cut = found.is_there() ? PieceBefore(text_, piece, found) : piece;
  const std::string_view text = ViewOf(text_, cut);
  watch()->BeginOperand(text);
  const ZRTStatus status = policy_.Read(text, operand.value);
  if (status != kOk) return watch()->FailOperand(status);
  if constexpr (kIsWatched<Watch>)
    operand.number = watch()->EndOperand(policy_.Show(operand.value));
  if constexpr (Policy::kRefusesShifts) {
    if (IsShift(found.code())) return watch()->Fail(ErrInvalidOperator, Part(found));
  }
  return kOk;
}

template <class Policy>
ZRTStatus WalkSteps<Policy>::SolveChain() {
  Solved running;
  const ZRTStatus status = Chain(WholePiece(text_), running);
  if (status == kOk) TellOutcome(running);
  if (status == kOk || Policy::kKeepsPartialChain) policy_.Deliver(running.value, false);
  return status;
}

template <class Policy>
ZRTStatus WalkSteps<Policy>::Chain(const Piece& whole, Solved& running) {
  Piece piece = whole;
  watch()->Cut(CutEvent::By::kChain, ViewOf(text_, piece), ViewOf(text_, piece));
  FoundOperator found = LeftMostOperator(text_, piece);
  ZRTStatus status = ReadOperand(piece, found, running);
  while (status == kOk && found.is_there()) {
    piece = PieceBehind(text_, piece, found);
    if (piece.empty()) {  // an operator at the end has nothing to act on
      TellOperator(Does::kTrailing, found, running, nullptr);
      break;
    }
    const FoundOperator pending = found;
    found = LeftMostOperator(text_, piece);
    if (found.is_there() && found.position == piece.begin) {
      return watch()->Fail(ErrMissingOperand, Part(found));
    }
    Solved operand;
    status = ReadOperand(piece, found, operand);
    if (status == kOk) status = Apply(running, pending, operand);
  }
  return status;
}

template <class Policy>
ZRTStatus WalkSteps<Policy>::Apply(Solved& left, const FoundOperator& found, Solved& right) {
  TellOperator(Does::kApplies, found, left, &right);
  const ZRTStatus status = policy_.Apply(left.value, found.code(), right.value);
  if (status != kOk) return watch()->Fail(status, Part(found));
  TellResult(left);
  return status;
}

template <class Policy>
void WalkSteps<Policy>::ApplyUnary(Solved& operand, const FoundOperator& found) {
  TellOperator(Does::kApplies, found, operand, nullptr);
  policy_.ApplyUnary(operand.value, found.code());
  TellResult(operand);
}

template <class Policy>
void WalkSteps<Policy>::TellOperator(Does effect, const FoundOperator& found, Solved& left,
                                     Solved* right) {
  if constexpr (kIsWatched<Watch>) {
    OperatorEvent event;
    const Effect told = EffectOf(found.code(), Policy::kEffects, Effect::kIgnored);
    event.effect = effect == Does::kApplies && told == Effect::kIgnored ? Does::kIgnored : effect;
    event.is_unary = effect == Does::kApplies && !right;
    event.left = left.number;
    event.left_value = policy_.Show(left.value);
    if (right) {
      event.right = right->number;
      event.right_value = policy_.Show(right->value);
    }
    watch()->Operator(event, Part(found), found.code());
  }
}

// Of the text in front of a middle nobody reads what stands behind its last operator: 1+2(3).
template <class Policy>
void WalkSteps<Policy>::TellUnread(const Piece& piece, const FoundOperator& found) {
  if constexpr (kIsWatched<Watch>) watch()->Unread(ViewOf(text_, PieceBehind(text_, piece, found)));
}

template <class Policy>
void WalkSteps<Policy>::TellResult(Solved& result) {
  if constexpr (kIsWatched<Watch>) watch()->Result(result.number, policy_.Show(result.value));
}

template <class Policy>
void WalkSteps<Policy>::TellOutcome(Solved& outcome) {
  if constexpr (kIsWatched<Watch>) watch()->Outcome(outcome.number, policy_.Show(outcome.value));
}

}  // namespace zrt
