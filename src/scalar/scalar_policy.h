// What integers and floats tell the walk alike: operands are read by one template, and the outcome
// goes straight into the caller's number.
#pragma once

#include <string_view>
#include <utility>

#include "names/scopes.h"
#include "scalar/operand.h"
#include "solve/solve_text.h"
#include "solve/sweep.h"
#include "solve/walk_policy.h"

namespace zrt {

inline ValueView ViewOfNumber(int value) { return {.kind = ValueKind::kInteger, .integer = value}; }
inline ValueView ViewOfNumber(float value) {
  return {.kind = ValueKind::kFloat, .floating = value};
}

template <class Kind, class Number, class Watcher>
class ScalarPolicy : public Kind {
 public:
  using Value = Number;
  using Watch = Watcher;

  ScalarPolicy(const Scopes& scopes, Number& result, Watch watch)
      : scopes_(scopes), result_(result), watch_(watch) {}

  [[nodiscard]] Watch watch() const { return watch_; }

  ZRTStatus Read(std::string_view text, Number& value) {
    return ReadScalar(text, scopes_, value, watch_);
  }
  void Deliver(Number value, bool /*is_added*/) { result_ = value; }
  static ValueView Show(Number value) { return ViewOfNumber(value); }

 private:
  const Scopes& scopes_;
  Number& result_;
  [[no_unique_address]] Watch watch_;
};

/// Evaluates `text` by a policy of numbers. What reads them changes nothing, so that a sweep may be
/// tried, unless somebody watches in which order they are read.
template <class Policy>
ZRTStatus SolveNumbers(std::string_view text, Policy policy) {
  if constexpr (!kIsWatched<typename Policy::Watch>) {
    if (text.size() <= kLongestSweep && Sweep(policy, text)) return kOk;
  }
  return SolveText(text, std::move(policy));
}

}  // namespace zrt
