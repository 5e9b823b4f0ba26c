// The integer policy of the walk, and the integer operators.
#include "scalar/integer.h"

#include <limits>

#include "scalar/operand.h"
#include "solve/walk.h"

namespace zrt {
namespace {

int Wrapped(std::uint32_t bits) { return static_cast<int>(bits); }

ZRTStatus Divide(int& value, std::uint16_t code, int operand) {
  const bool overflows = value == std::numeric_limits<int>::min() && operand == -1;
  if (operand == 0 || (overflows && code == OpDivide)) return ErrInvalidOperator;
  if (code == OpDivide) {
    value /= operand;
  } else {
    value = overflows ? 0 : value % operand;
  }
  return kOk;
}

class IntegerPolicy {
 public:
  using Value = int;
  static constexpr bool kRefusesShifts = false;
  static constexpr bool kHasUnaryPath = true;
  static constexpr bool kUnaryOperandIsExpression = true;
  static constexpr bool kGroupReplacesLeftUnderNone = true;
  static constexpr bool kKeepsPartialChain = false;
  static constexpr GroupNegation kGroupNegation = GroupNegation::kIfAlone;
  static constexpr bool IsUnary(char c) { return c == '~' || c == '!'; }

  IntegerPolicy(const Scopes& scopes, int& result) : scopes_(scopes), result_(result) {}

  ZRTStatus Read(std::string_view text, int& value) { return ReadScalar(text, scopes_, value); }
  static ZRTStatus Apply(int& value, OperatorCode code, int operand) {
    return ApplyToInteger(value, code, operand);
  }
  static void ApplyUnary(int& value, OperatorCode code) {
    value = code == OpBitwiseNot ? ~value : static_cast<int>(value == 0);
  }
  static void BeginResult(int&) {}
  void Deliver(int value, bool /*is_added*/) { result_ = value; }

 private:
  const Scopes& scopes_;
  int& result_;
};

}  // namespace

ZRTStatus ApplyToInteger(int& value, std::uint16_t code, int operand) {
  const Effect effect = EffectOf(code, &OperatorRow::on_integers, Effect::kIgnored);
  if (effect != Effect::kApplies) return effect == Effect::kIgnored ? kOk : ErrInvalidOperator;
  const auto left = static_cast<std::uint32_t>(value);
  const auto right = static_cast<std::uint32_t>(operand);
  const std::uint32_t shift = right & 31U;
  switch (code) {
    case OpAnd: value &= operand; break;
    case OpOr: value |= operand; break;
    case OpShiftLeft: value = Wrapped(left << shift); break;
    case OpShiftRight: value >>= shift; break;
    case OpAdd: value = Wrapped(left + right); break;
    case OpSubtract: value = Wrapped(left - right); break;
    case OpMultiply: value = Wrapped(left * right); break;
    default: return Divide(value, code, operand);
  }
  return kOk;
}

ZRTStatus SolveInteger(std::string_view text, const Scopes& scopes, int& result) {
  if (text.size() > kMaxTextLength) return ErrStreamWrite;
  const MarkedText marked(text, MarkedText::Parentheses::kMarked);
  IntegerPolicy policy(scopes, result);
  return Walk<IntegerPolicy>(policy, marked).Solve();
}

}  // namespace zrt
