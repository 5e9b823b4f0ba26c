// The token library as its contract has it and nothing more.
#pragma once

#include "hq4170.h"

class ZRTTokens {
 public:
  // NOLINTNEXTLINE(readability-make-member-function-const): nobody is to rely on it
  unsigned short GetTokenType() { return type_; }
  int GetIntValue() { return ints_.at(0); }
  float GetFloatValue() { return floats_.at(0); }
  int GetIntArrayValue(int index) { return ElementOf(ints_, index); }
  float GetFloatArrayValue(int index) { return ElementOf(floats_, index); }

 private:
  friend struct ContractHost;

  template <class Number>
  static Number ElementOf(const std::vector<Number>& numbers, int index) {
    const auto place = static_cast<std::size_t>(index);
    return index >= 0 && place < numbers.size() ? numbers[place] : Number{7};
  }

  unsigned short type_ = 0;
  std::vector<int> ints_;
  std::vector<float> floats_;
};

class ZRTTokenTree : public RBTree {
 public:
  ZRTTokens* GetToken(char* name) {
    RBTreeNode* node = Search(GetRoot(), name);
    return node ? static_cast<ZRTTokens*>(node->GetObject()) : nullptr;
  }
};
