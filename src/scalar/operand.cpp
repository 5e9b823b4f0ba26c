// Reading integer and float operands. A token is asked for before the text is looked at as a
// number, so a token may hide a literal.
#include "scalar/operand.h"

#include "names/token_shape.h"
#include "scalar/convert.h"
#include "scalar/integer.h"
#include "scan/number.h"

namespace zrt {
namespace {

// A scalar token wants no index and an array token wants one; anything else is the wrong type.
template <class Number>
ZRTStatus ReadToken(ZRTTokens& token, int index, Number& value) {
  const TokenShape shape = ShapeOfToken(token.GetTokenType());
  const bool is_array = shape == TokenShape::kFloatArray || shape == TokenShape::kIntegerArray;
  if (is_array != (index != kNoIndex)) return ErrBadTokenType;
  switch (shape) {
    case TokenShape::kFloat: FromFloat(token.GetFloatValue(), value); return kOk;
    case TokenShape::kInteger: FromInteger(token.GetIntValue(), value); return kOk;
    case TokenShape::kFloatArray: FromFloat(token.GetFloatArrayValue(index), value); return kOk;
    case TokenShape::kIntegerArray: FromInteger(token.GetIntArrayValue(index), value); return kOk;
    case TokenShape::kUnknown: break;
  }
  return ErrBadTokenType;
}

ZRTTokens* FindToken(std::string_view name, const Scopes& scopes) {
  if (!scopes.has_tokens()) return nullptr;
  NameBuffer buffer(name);
  return scopes.FindToken(buffer.text());
}

}  // namespace

ZRTStatus EvaluateIndex(const OperandText& operand, const Scopes& scopes, int& index) {
  index = kNoIndex;
  return operand.index ? SolveInteger(*operand.index, scopes, index) : kOk;
}

template <class Number>
ZRTStatus ReadScalar(std::string_view text, const Scopes& scopes, Number& value) {
  OperandText operand;
  if (const ZRTStatus status = SplitOperand(text, operand); status != kOk) return status;
  int index = kNoIndex;
  const ZRTStatus status = EvaluateIndex(operand, scopes, index);
  if (operand.index && (status != kOk || index < 0)) return ErrNegativeIndex;
  if (ZRTTokens* token = FindToken(operand.name, scopes)) return ReadToken(*token, index, value);
  if (KindOfNumber(operand.name) == NumberNone) return ErrUnknownOperand;
  FromLiteral(operand.name, value);
  return kOk;
}

template ZRTStatus ReadScalar<int>(std::string_view, const Scopes&, int&);
template ZRTStatus ReadScalar<float>(std::string_view, const Scopes&, float&);

}  // namespace zrt
