// The token library's contract: named integer and float values, scalars and arrays, in a tree. This
// is a stand-in with a host side to build them; it knows nothing of expressions.
#pragma once

#include <string>
#include <vector>

#include "hq4170.h"

/// One named value. The type code says how it is meant to be read: 1 and 3 are float scalars, 2 and
/// 4 integer scalars, 5 and 7 float arrays, 6 and 8 integer arrays.
class ZRT_OUTSIDE_EXPORT ZRTTokens : public LObject {
 public:
  // NOLINTNEXTLINE(readability-make-member-function-const): no caller is to rely on it
  unsigned short GetTokenType() { return type_; }

  /// The value of a scalar.
  int GetIntValue() { return GetIntArrayValue(0); }
  float GetFloatValue() { return GetFloatArrayValue(0); }

  /// The element at `index`; 0 outside the array, -1 included, and for a value of the other kind.
  int GetIntArrayValue(int index);
  float GetFloatArrayValue(int index);

  // ---- Host side -----------------------------------------------------------------------------

  /// Tokens of each kind. A `type` that does not suit the kind, or that does not exist, is kept as
  /// it is, so that a host can try what becomes of wrong tokens. A null name is the empty one.
  static ZRTTokens IntScalar(const char* name, int value, unsigned short type = 2);
  static ZRTTokens FloatScalar(const char* name, float value, unsigned short type = 1);
  static ZRTTokens IntArray(const char* name, std::vector<int> values, unsigned short type = 6);
  static ZRTTokens FloatArray(const char* name, std::vector<float> values, unsigned short type = 5);

  const char* GetName() const { return name_.c_str(); }

 private:
  friend class ZRTTokenTree;

  ZRTTokens(const char* name, unsigned short type)
      : name_(name == nullptr ? "" : name), type_(type) {}

  std::string name_;
  unsigned short type_;
  std::vector<int> ints_;  // a scalar is an array of one
  std::vector<float> floats_;
};

/// A scope of tokens. It owns them; it cannot be copied.
class ZRT_OUTSIDE_EXPORT ZRTTokenTree : public RBTree {
 public:
  /// The token of that name, or null.
  ZRTTokens* GetToken(char* name) {
    RBTreeNode* node = Find(name);
    // Add() puts nothing else into the tree
    return node == nullptr ? nullptr : static_cast<ZRTTokens*>(node->GetObject());
  }

  // ---- Host side -----------------------------------------------------------------------------

  /// Adds a token. If the name is there already, the token in the tree takes over type and value of
  /// the new one and stays where it is. Returns the token in the tree. Throws std::bad_alloc.
  ZRTTokens* Add(ZRTTokens token);
};
