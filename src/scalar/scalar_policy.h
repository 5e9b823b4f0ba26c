// What integers and floats tell the walk alike: operands are read by one template, and the outcome
// goes straight into the caller's number.
#pragma once

#include <string_view>

#include "names/scopes.h"
#include "scalar/operand.h"
#include "solve/walk_policy.h"

namespace zrt {

template <class Number>
class ScalarPolicy : public WalkDefaults {
 public:
  using Value = Number;

  ScalarPolicy(const Scopes& scopes, Number& result) : scopes_(scopes), result_(result) {}

  ZRTStatus Read(std::string_view text, Number& value) { return ReadScalar(text, scopes_, value); }

  void Deliver(Number value, bool /*is_added*/) { result_ = value; }

 private:
  const Scopes& scopes_;
  Number& result_;
};

}  // namespace zrt
