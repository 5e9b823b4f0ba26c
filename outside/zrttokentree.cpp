// Tokens and their tree. A wrong type code is kept, not judged: that is the evaluator's part.
#include "zrttokentree.h"

#include <memory>
#include <utility>

namespace {

template <typename Value>
Value ElementAt(const std::vector<Value>& values, int index) {
  if (index < 0 || static_cast<std::size_t>(index) >= values.size()) return Value{};
  return values[static_cast<std::size_t>(index)];
}

}  // namespace

int ZRTTokens::GetIntArrayValue(int index) { return ElementAt(ints_, index); }

float ZRTTokens::GetFloatArrayValue(int index) { return ElementAt(floats_, index); }

ZRTTokens ZRTTokens::IntScalar(const char* name, int value, unsigned short type) {
  return IntArray(name, {value}, type);
}

ZRTTokens ZRTTokens::FloatScalar(const char* name, float value, unsigned short type) {
  return FloatArray(name, {value}, type);
}

ZRTTokens ZRTTokens::IntArray(const char* name, std::vector<int> values, unsigned short type) {
  ZRTTokens token(name, type);
  token.ints_ = std::move(values);
  return token;
}

ZRTTokens ZRTTokens::FloatArray(const char* name, std::vector<float> values, unsigned short type) {
  ZRTTokens token(name, type);
  token.floats_ = std::move(values);
  return token;
}

ZRTTokens* ZRTTokenTree::Add(ZRTTokens token) {
  if (ZRTTokens* known = GetToken(token.name_.data())) {
    *known = std::move(token);
    return known;
  }
  auto added = std::make_unique<ZRTTokens>(std::move(token));
  Insert(added->GetName(), added.get());
  return added.release();
}
