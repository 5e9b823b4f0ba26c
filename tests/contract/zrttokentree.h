// The token library as its contract has it and nothing more.
#pragma once

#include "hq4170.h"

// NOLINTBEGIN(readability-make-member-function-const,readability-identifier-naming)

class ZRTTokens {
 public:
  unsigned short GetTokenType() { return type_; }
  int GetIntValue() { return GetIntArrayValue(0); }
  float GetFloatValue() { return GetFloatArrayValue(0); }
  int GetIntArrayValue(int index) {
    return static_cast<unsigned>(index) < ints_.size() ? ints_[static_cast<unsigned>(index)] : 7;
  }
  float GetFloatArrayValue(int index) {
    return static_cast<unsigned>(index) < floats_.size() ? floats_[static_cast<unsigned>(index)]
                                                         : 7;
  }

  unsigned short type_ = 0;
  std::vector<int> ints_;
  std::vector<float> floats_;
};

struct ZRTTokenTree : RBTree {
  ZRTTokens* GetToken(char* name) {
    RBTreeNode* node = Search(GetRoot(), name);
    return node ? static_cast<ZRTTokens*>(node->GetObject()) : nullptr;
  }
};

// NOLINTEND(readability-make-member-function-const,readability-identifier-naming)
