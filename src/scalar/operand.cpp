// Reading integer and float operands. A token is asked for before the text is looked at as a
// number, so a token may hide a literal.
#include "scalar/operand.h"

#include <algorithm>

#include "scalar/convert.h"
#include "scalar/integer.h"
#include "scalar/token_type.h"
#include "scan/number.h"
#include "scan/text.h"

namespace zrt {
namespace {

// A scalar token wants no index and an array token wants one; anything else is the wrong type.
template <class Number>
ZRTStatus ReadToken(ZRTTokens& token, int index, Number& value) {
  const bool has_index = index != kNoIndex;
  switch (ShapeOfToken(token.GetTokenType())) {
    case TokenShape::kFloat:
      if (has_index) return ErrBadTokenType;
      value = FromFloat<Number>(token.GetFloatValue());
      return kOk;
    case TokenShape::kInteger:
      if (has_index) return ErrBadTokenType;
      value = FromInteger<Number>(token.GetIntValue());
      return kOk;
    case TokenShape::kFloatArray:
      if (!has_index) return ErrBadTokenType;
      value = FromFloat<Number>(token.GetFloatArrayValue(index));
      return kOk;
    case TokenShape::kIntegerArray:
      if (!has_index) return ErrBadTokenType;
      value = FromInteger<Number>(token.GetIntArrayValue(index));
      return kOk;
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

ZRTStatus SplitOperand(std::string_view text, Operand& operand) {
  const auto is_bracket = [](char c) { return c == '[' || c == ']'; };
  const auto bracket = std::find_if(text.begin(), text.end(), is_bracket);
  if (bracket == text.end()) {
    operand = {text, std::nullopt};
    return kOk;
  }
  const auto open = std::find(bracket, text.end(), '[');  // a "]" before it is harmless
  if (open == text.end()) return ErrStrayCloseBracket;
  if (open == text.begin()) return ErrMissingArrayName;
  std::string_view index = DropLeadingBlanks({open + 1, text.end()});
  const std::size_t close = index.find(']');
  if (close == std::string_view::npos) return ErrMissingCloseBracket;
  index = DropTrailingBlanks(index.substr(0, close));
  if (index.empty()) return ErrEmptyIndex;
  operand = {DropTrailingBlanks({text.begin(), open}), index};
  return kOk;
}

ZRTStatus EvaluateIndex(const Operand& operand, const Scopes& scopes, int& index) {
  index = kNoIndex;
  return operand.index ? SolveInteger(*operand.index, scopes, index) : kOk;
}

template <class Number>
ZRTStatus ReadScalar(std::string_view text, const Scopes& scopes, Number& value) {
  Operand operand;
  if (const ZRTStatus status = SplitOperand(text, operand); status != kOk) return status;
  int index = kNoIndex;
  const ZRTStatus status = EvaluateIndex(operand, scopes, index);
  if (operand.index && (status != kOk || index < 0)) return ErrNegativeIndex;
  if (ZRTTokens* token = FindToken(operand.name, scopes)) return ReadToken(*token, index, value);
  if (KindOfNumber(operand.name) == NumberNone) return ErrUnknownOperand;
  value = FromLiteral<Number>(operand.name);
  return kOk;
}

template ZRTStatus ReadScalar<int>(std::string_view, const Scopes&, int&);
template ZRTStatus ReadScalar<float>(std::string_view, const Scopes&, float&);

}  // namespace zrt
