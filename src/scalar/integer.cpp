// The integer policy of the walk, and the integer operators.
#include "scalar/integer.h"

#include <limits>

#include "scalar/scalar_policy.h"

namespace zrt {
namespace {

int Wrapped(std::uint32_t bits) { return static_cast<int>(bits); }

// The one quotient that 32 bits do not hold.
bool Overflows(int value, int operand) {
  return value == std::numeric_limits<int>::min() && operand == -1;
}

ZRTStatus Divide(int& value, int operand) {
  if (operand == 0 || Overflows(value, operand)) return ErrInvalidOperator;
  value /= operand;
  return kOk;
}

ZRTStatus Modulo(int& value, int operand) {
  if (operand == 0) return ErrInvalidOperator;
  value = Overflows(value, operand) ? 0 : value % operand;
  return kOk;
}

template <class Watch>
struct IntegerPolicy : ScalarPolicy<IntegerKind, int, Watch> {
  using ScalarPolicy<IntegerKind, int, Watch>::ScalarPolicy;

  static ZRTStatus Apply(int& value, OperatorCode code, int operand) {
    return ApplyToInteger(value, code, operand);
  }
  static void ApplyUnary(int& value, OperatorCode code) {
    value = code == OpBitwiseNot ? ~value : static_cast<int>(value == 0);
  }
};

}  // namespace

ZRTStatus ApplyToInteger(int& value, std::uint16_t code, int operand) {
  const Effect effect = EffectOf(code, &OperatorRow::on_integers, Effect::kIgnored);
  if (effect != Effect::kApplies) return effect == Effect::kIgnored ? kOk : ErrInvalidOperator;
  const auto left = static_cast<std::uint32_t>(value);
  const auto right = static_cast<std::uint32_t>(operand);
  const int shift = operand & 31;
  switch (code) {
    case OpAnd: value &= operand; return kOk;
    case OpOr: value |= operand; return kOk;
    case OpShiftLeft: value = Wrapped(left << shift); return kOk;
    case OpShiftRight: value >>= shift; return kOk;
    case OpAdd: value = Wrapped(left + right); return kOk;
    case OpSubtract: value = Wrapped(left - right); return kOk;
    case OpMultiply: value = Wrapped(left * right); return kOk;
    case OpDivide: return Divide(value, operand);
    case OpModulo: return Modulo(value, operand);
    default: return ErrInvalidOperator;
  }
}

template <class Watch>
ZRTStatus SolveInteger(std::string_view text, const Scopes& scopes, int& result, Watch watch) {
  return SolveNumbers(text, IntegerPolicy<Watch>(scopes, result, watch));
}

template ZRTStatus SolveInteger(std::string_view, const Scopes&, int&, Unwatched);
template ZRTStatus SolveInteger(std::string_view, const Scopes&, int&, Watcher*);

}  // namespace zrt
