// The float policy of the walk, and the float operators. Shifts are refused where a scan meets
// them, the other operators that floats lack where they would be applied.
#include "scalar/float.h"

#include "scalar/operand.h"
#include "solve/walk.h"

namespace zrt {
namespace {

class FloatPolicy {
 public:
  using Value = float;
  static constexpr bool kRefusesShifts = true;
  static constexpr bool kHasUnaryPath = false;
  static constexpr bool kUnaryOperandIsExpression = false;
  static constexpr bool kGroupReplacesLeftUnderNone = false;
  static constexpr bool kKeepsPartialChain = false;
  static constexpr GroupNegation kGroupNegation = GroupNegation::kRefused;
  static constexpr bool IsUnary(char c) { return c == '~' || c == '!'; }

  FloatPolicy(const Scopes& scopes, float& result) : scopes_(scopes), result_(result) {}

  ZRTStatus Read(std::string_view text, float& value) { return ReadScalar(text, scopes_, value); }
  static ZRTStatus Apply(float& value, OperatorCode code, float operand) {
    return ApplyToFloat(value, code, operand);
  }
  static void ApplyUnary(float&, OperatorCode) {}  // never reached: there are none
  static void BeginResult(float&) {}
  void Deliver(float value, bool /*is_added*/) { result_ = value; }

 private:
  const Scopes& scopes_;
  float& result_;
};

}  // namespace

ZRTStatus ApplyToFloat(float& value, std::uint16_t code, float operand) {
  const Effect effect = EffectOf(code, &OperatorRow::on_floats, Effect::kIgnored);
  if (effect != Effect::kApplies) return effect == Effect::kIgnored ? kOk : ErrInvalidOperator;
  switch (code) {
    case OpAdd: value += operand; break;
    case OpSubtract: value -= operand; break;
    case OpMultiply: value *= operand; break;
    default: value /= operand; break;
  }
  return kOk;
}

ZRTStatus SolveFloat(std::string_view text, const Scopes& scopes, float& result) {
  if (text.size() > kMaxTextLength) return ErrStreamWrite;
  const MarkedText marked(text, MarkedText::Parentheses::kMarked);
  FloatPolicy policy(scopes, result);
  return Walk<FloatPolicy>(policy, marked).Solve();
}

}  // namespace zrt
