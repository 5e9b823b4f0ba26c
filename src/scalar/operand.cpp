// Reading integer and float operands, all but the plain ones: tokens, indexes and literals.
#include "scalar/operand.h"

#include "names/token_shape.h"
#include "scalar/integer.h"
#include "scan/number.h"

namespace zrt {

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

template <class Number>
ZRTStatus ReadLiteral(std::string_view text, Number& value) {
  if (KindOfNumber(text) == NumberNone) return ErrUnknownOperand;
  FromLiteral(text, value);
  return kOk;
}

template <class Watch>
ZRTStatus EvaluateIndex(const OperandText& operand, const Scopes& scopes, int& index, Watch watch) {
  index = kNoIndex;
  if (!operand.index) return kOk;
  watch->BeginIndex(operand.name, *operand.index);
  const ZRTStatus status = SolveInteger(*operand.index, scopes, index, watch);
  watch->EndIndex(status, index);
  return status;
}

template <class Number, class Watch>
ZRTStatus ReadIndexedScalar(std::string_view text, const Scopes& scopes, Number& value,
                            Watch watch) {
  OperandText operand;
  if (const ZRTStatus status = SplitOperand(text, operand); status != kOk) return status;
  int index = kNoIndex;
  const ZRTStatus status = EvaluateIndex(operand, scopes, index, watch);
  if (operand.index && (status != kOk || index < 0)) return ErrNegativeIndex;
  if (scopes.has_tokens()) {
    NameBuffer name(operand.name);
    if (ZRTTokens* token = scopes.FindToken(name.text())) {
      NoteToken(watch, scopes, *token, name.text());
      return ReadToken(*token, index, value);
    }
  }
  watch->NoteLiteral();
  return ReadLiteral(operand.name, value);
}

template ZRTStatus EvaluateIndex(const OperandText&, const Scopes&, int&, Unwatched);
template ZRTStatus EvaluateIndex(const OperandText&, const Scopes&, int&, Watcher*);
template ZRTStatus ReadIndexedScalar(std::string_view, const Scopes&, int&, Unwatched);
template ZRTStatus ReadIndexedScalar(std::string_view, const Scopes&, int&, Watcher*);
template ZRTStatus ReadIndexedScalar(std::string_view, const Scopes&, float&, Unwatched);
template ZRTStatus ReadIndexedScalar(std::string_view, const Scopes&, float&, Watcher*);
template ZRTStatus ReadToken<int>(ZRTTokens&, int, int&);
template ZRTStatus ReadToken<float>(ZRTTokens&, int, float&);
template ZRTStatus ReadLiteral<int>(std::string_view, int&);
template ZRTStatus ReadLiteral<float>(std::string_view, float&);

}  // namespace zrt
