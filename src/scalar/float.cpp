// The float policy of the walk, and the float operators. Shifts are refused where a scan meets
// them, the other operators that floats lack where they would be applied.
#include "scalar/float.h"

#include "scalar/scalar_policy.h"

namespace zrt {
namespace {

template <class Watch>
struct FloatPolicy : ScalarPolicy<FloatKind, float, Watch> {
  using ScalarPolicy<FloatKind, float, Watch>::ScalarPolicy;

  static ZRTStatus Apply(float& value, OperatorCode code, float operand) {
    return ApplyToFloat(value, code, operand);
  }
};

}  // namespace

ZRTStatus ApplyToFloat(float& value, std::uint16_t code, float operand) {
  const Effect effect = EffectOf(code, &OperatorRow::on_floats, Effect::kIgnored);
  if (effect != Effect::kApplies) return effect == Effect::kIgnored ? kOk : ErrInvalidOperator;
  switch (code) {
    case OpAdd: value += operand; return kOk;
    case OpSubtract: value -= operand; return kOk;
    case OpMultiply: value *= operand; return kOk;
    case OpDivide: value /= operand; return kOk;
    default: return ErrInvalidOperator;
  }
}

template <class Watch>
ZRTStatus SolveFloat(std::string_view text, const Scopes& scopes, float& result, Watch watch) {
  return SolveNumbers(text, FloatPolicy<Watch>(scopes, result, watch));
}

template ZRTStatus SolveFloat(std::string_view, const Scopes&, float&, Unwatched);
template ZRTStatus SolveFloat(std::string_view, const Scopes&, float&, Watcher*);

}  // namespace zrt
