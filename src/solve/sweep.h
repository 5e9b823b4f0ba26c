// The sweep: a short text solved from left to right as it is read, without marks and without cuts.
//
// It takes texts that hold nothing unusual: operands, operators with one on either side, groups and
// unary operators, brackets behind a name. What is unusual or fails, and what would read a row, it
// leaves to the walk, which says the same of every text and is what the sweep is held against. The
// walk solves sides in an order of its own; the sweep may choose another, since what it reads stays
// as it is. Knows nothing of values, as the walk does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "ErrorCodes.h"
#include "scan/operators.h"
#include "solve/small_stack.h"

namespace zrt {

/// Longer texts are not worth a try that may fail.
inline constexpr std::size_t kLongestSweep = 1024;  // characters

/// Works by a policy as the walk does, one whose Read() changes nothing but the value. Any status
/// of the policy's but kOk makes the text the walk's.
template <class Policy>
class Sweep {
 public:
  /// Solves the whole text and delivers its value. False, with nothing delivered, if it is the
  /// walk's to solve. Throws std::bad_alloc, with nothing delivered.
  static bool Solve(Policy& policy, std::string_view text) { return Sweep(policy, text).Solve(); }

 private:
  using Value = typename Policy::Value;

  // What a run of operands is to the one below it. A group's right side is all that follows. So is
  // that of a unary operand, up to a group: ~1-2-3 is ~1-(2-3), but ~1-2-(3) is (~1-2)-(3).
  enum class Kind : std::uint8_t { kText, kGroup, kRightOfGroup, kRightOfUnary };

  // Operands that are joined from the left as they are read.
  struct Run {
    Value value{};
    Kind kind = Kind::kText;
    OperatorCode code = kNoOperator;  // waits for what comes next, in this run or in the one above
    bool has_value = false;
  };

  Sweep(Policy& policy, std::string_view text)
      : policy_(policy), at_(text.data()), end_(text.data() + text.size()) {}

  bool Solve();
  bool SolveOperand(OperatorCode unary);
  bool OpenGroup();
  bool CloseGroup();
  bool Finish(Kind behind);

  std::string_view TakeOperand();
  OperatorCode TakeUnary();
  bool TakeOperator(Kind behind);
  bool SkipIndex();
  void SkipBlanks() {
    while (Next() == ' ') ++at_;
  }
  // The next character; one that nothing begins with at the end.
  [[nodiscard]] char Next() const { return at_ < end_ ? *at_ : '\0'; }

  Run& PushRun(Kind kind) {
    Run& run = runs_.Push();
    run.kind = kind;
    return run;
  }
  bool Join(Run& run, Value& value) { return policy_.Apply(run.value, run.code, value) == kOk; }
  bool JoinRightSides();

  Policy& policy_;
  const char* at_;
  const char* end_;
  SmallStack<Run, 64> runs_;
};

template <class Policy>
bool Sweep<Policy>::Solve() {
  runs_.Push();
  for (;;) {
    while (Next() == '(') {
      if (!OpenGroup()) return false;
    }
    const OperatorCode unary = TakeUnary();
    if (!SolveOperand(unary)) return false;
    Kind behind = unary == kNoOperator ? Kind::kText : Kind::kRightOfUnary;
    while (Next() == ')') {
      if (!CloseGroup()) return false;
      behind = Kind::kRightOfGroup;
    }
    if (at_ == end_) return Finish(behind);
    if (!TakeOperator(behind)) return false;
  }
}

template <class Policy>
bool Sweep<Policy>::SolveOperand(OperatorCode unary) {
  const std::string_view text = TakeOperand();
  if (text.empty()) return false;
  Run& run = runs_.Top();
  const auto read = [&](Value& value) {
    if (policy_.Read(text, value) != kOk) return false;
    if constexpr (Policy::kHasUnaryPath) {
      if (unary != kNoOperator) policy_.ApplyUnary(value, unary);
    }
    return true;
  };
  if (!run.has_value) {
    run.has_value = true;
    return read(run.value);
  }
  Value operand{};
  return read(operand) && Join(run, operand);
}

// What stands in front of a group is solved by itself.
template <class Policy>
bool Sweep<Policy>::OpenGroup() {
  ++at_;
  while (runs_.Top().kind == Kind::kRightOfUnary) {
    Run& right = runs_.Top();
    Run& below = runs_.Below(1);
    if (right.has_value) {
      if (!Join(below, right.value)) return false;
      below.code = right.code;
    }
    runs_.Drop();
  }
  PushRun(Kind::kGroup);
  return true;
}

template <class Policy>
bool Sweep<Policy>::CloseGroup() {
  ++at_;
  if (!JoinRightSides()) return false;
  Run& group = runs_.Top();
  if (group.kind != Kind::kGroup) return false;
  Run& below = runs_.Below(1);
  if (below.has_value) {
    if (!Join(below, group.value)) return false;
  } else {
    below.has_value = true;
    below.value = std::move(group.value);
  }
  runs_.Drop();
  return true;
}

template <class Policy>
bool Sweep<Policy>::Finish(Kind behind) {
  const Run& last = runs_.Top();
  const bool is_alone =
      behind != Kind::kText && last.kind == Kind::kText && last.code == kNoOperator;
  if (!JoinRightSides() || runs_.Top().kind != Kind::kText) return false;
  policy_.Deliver(runs_.Top().value, is_alone);
  return true;
}

template <class Policy>
bool Sweep<Policy>::JoinRightSides() {
  while (runs_.Top().kind >= Kind::kRightOfGroup) {
    if (!Join(runs_.Below(1), runs_.Top().value)) return false;
    runs_.Drop();
  }
  return true;
}

template <class Policy>
OperatorCode Sweep<Policy>::TakeUnary() {
  if (!Policy::kHasUnaryPath || !IsUnary(Next(), Policy::kReversesBits)) return kNoOperator;
  const OperatorCode code = EntryOf(*at_++).code;
  SkipBlanks();
  return code;
}

// One that stands between two things. Where one may be part of a number, the walk knows.
template <class Policy>
bool Sweep<Policy>::TakeOperator(Kind behind) {
  const char before = at_[-1];
  SkipBlanks();
  const char c = Next();
  if (c == '-' && (before == 'e' || before == 'E')) return false;
  OperatorCode code = EntryOf(c).code;
  ++at_;
  if ((c == '<' || c == '>') && Next() == c) {
    code = c == '<' ? OpShiftLeft : OpShiftRight;
    ++at_;
  }
  if (code == OpNone || IsUnary(c, Policy::kReversesBits)) return false;
  SkipBlanks();
  runs_.Top().code = code;
  if (behind != Kind::kText) PushRun(behind);
  return true;
}

// A name with its index, or a literal. Empty if it is neither.
template <class Policy>
std::string_view Sweep<Policy>::TakeOperand() {
  const char* const begin = at_;
  while (at_ < end_ && IsOfOperands(*at_)) ++at_;
  if (Next() == '[' && !SkipIndex()) return {};
  return {begin, static_cast<std::size_t>(at_ - begin)};
}

// An index that holds nothing by which the walk would cut the text, with nothing between it and the
// next operator.
template <class Policy>
bool Sweep<Policy>::SkipIndex() {
  for (++at_; at_ < end_ && *at_ != ']'; ++at_) {
    if (IsUnary(*at_, Policy::kReversesBits) || ClassOf(*at_) > CharClass::kOperator) return false;
  }
  return at_ < end_ && (++at_ == end_ || !IsOfOperands(*at_));
}

}  // namespace zrt
