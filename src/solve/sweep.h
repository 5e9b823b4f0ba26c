// The sweep: a short text solved from left to right as it is read, without marks and without cuts.
//
// It takes texts that hold nothing unusual: operands, operators with one on either side, groups and
// unary operators, brackets behind a name. What is unusual or fails it leaves to the walk, which
// says the same of every text and is what the sweep is held against. The walk solves sides in an
// order of its own and the sweep in another, so it is for values that do not depend on when they
// are read. Knows nothing else of values, as the walk does.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "ErrorCodes.h"
#include "scan/operators.h"
#include "scan/plain_text.h"

namespace zrt {

/// Longer texts are not worth a try that may fail.
inline constexpr std::size_t kLongestSweep = 1024;  // characters

/// The values of a sweep: runs of operands that are joined from the left as they are read, each
/// above the one that waits for it. Any status of the policy's but kOk ends the sweep.
template <class Policy>
class Runs {
 public:
  using Value = typename Policy::Value;

  /// What a run is to the one below it. The right side of a group is all that follows. So is that
  /// of a unary operand, up to a group: ~1-2-3 is ~1-(2-3), but ~1-2-(3) is (~1-2)-(3).
  enum class Kind : std::uint8_t { kText, kGroup, kRightOfGroup, kRightOfUnary };

  struct Run {
    Value value;
    Kind kind;
    OperatorCode code;
    bool has_value;
  };
  static constexpr std::size_t kMostRuns = 64;

  /// The runs' memory, an object of its own: as values are read into it, the compiler could not
  /// keep in a register what stands beside it. Left uninitialised, which would cost time.
  using Memory = std::array<Run, kMostRuns>;

  Runs(Policy& policy, Memory& runs) : policy_(policy), top_(runs.data()), last_(&runs.back()) {
    Set(Kind::kText);
  }

  /// Begins a run, above one whose operator waits for its value. False if there are too many.
  bool Begin(Kind kind) {
    if (top_ == last_) return false;
    ++top_;
    Set(kind);
    return true;
  }

  bool Read(std::string_view text, OperatorCode unary);
  bool OpenGroup();
  bool CloseGroup();

  /// The top run's operator, which waits for what comes next.
  void Expect(OperatorCode code) { top_->code = code; }

  /// Delivers the value of the text. `is_cut`: what was read last is a group or a unary operand.
  bool Finish(bool is_cut);

 private:
  void Set(Kind kind) {
    top_->value = Value{};
    top_->kind = kind;
    top_->code = kNoOperator;
    top_->has_value = false;
  }

  // Joins the value of the top run to the one below.
  bool JoinTop() {
    Run& below = top_[-1];
    if (policy_.Apply(below.value, below.code, top_->value) != kOk) return false;
    --top_;
    return true;
  }
  bool JoinRightSides() {
    while (top_->kind >= Kind::kRightOfGroup) {
      if (!JoinTop()) return false;
    }
    return true;
  }

  Policy& policy_;
  Run* top_;
  Run* last_;
};

/// Solves a whole text by a policy such as the walk's, of whose values reading changes nothing.
/// False, with nothing delivered, if the text is the walk's to solve. Throws std::bad_alloc, if
/// reading does, with nothing delivered.
template <class Policy>
bool Sweep(Policy& policy, std::string_view text) {
  using Kind = typename Runs<Policy>::Kind;
  PlainText rest(text, Policy::kReversesBits);
  typename Runs<Policy>::Memory room;  // NOLINT(*-member-init)
  Runs<Policy> runs(policy, room);
  for (;;) {
    for (; rest.Next() == '('; rest.Skip()) {
      if (!runs.OpenGroup()) return false;
    }
    const OperatorCode unary = rest.TakeUnary();
    if (!runs.Read(rest.TakeOperand(), unary)) return false;
    Kind behind = unary == kNoOperator ? Kind::kText : Kind::kRightOfUnary;
    for (; rest.Next() == ')'; rest.Skip()) {
      if (!runs.CloseGroup()) return false;
      behind = Kind::kRightOfGroup;
    }
    if (rest.is_read()) return runs.Finish(behind != Kind::kText);
    const OperatorCode code = rest.TakeOperator();
    if (code == OpNone) return false;
    runs.Expect(code);
    if (behind != Kind::kText && !runs.Begin(behind)) return false;
  }
}

template <class Policy>
bool Runs<Policy>::Read(std::string_view text, OperatorCode unary) {
  if (text.empty()) return false;
  Value operand{};
  Value& value = top_->has_value ? operand : top_->value;
  if (policy_.Read(text, value) != kOk) return false;
  if constexpr (Policy::kHasUnaryPath) {
    if (unary != kNoOperator) policy_.ApplyUnary(value, unary);
  } else if (unary != kNoOperator) {
    return false;
  }
  if (top_->has_value) return policy_.Apply(top_->value, top_->code, operand) == kOk;
  top_->has_value = true;
  return true;
}

// What stands in front of a group is solved by itself.
template <class Policy>
bool Runs<Policy>::OpenGroup() {
  while (top_->kind == Kind::kRightOfUnary) {
    const OperatorCode waits = top_->code;
    if (!top_->has_value) {
      --top_;
    } else if (JoinTop()) {
      top_->code = waits;
    } else {
      return false;
    }
  }
  return Begin(Kind::kGroup);
}

template <class Policy>
bool Runs<Policy>::CloseGroup() {
  if (!JoinRightSides() || top_->kind != Kind::kGroup) return false;
  Run& below = top_[-1];
  if (below.has_value) return JoinTop();
  below.value = top_->value;
  below.has_value = true;
  --top_;
  return true;
}

template <class Policy>
bool Runs<Policy>::Finish(bool is_cut) {
  const bool is_alone = is_cut && top_->kind == Kind::kText && top_->code == kNoOperator;
  if (!JoinRightSides() || top_->kind != Kind::kText) return false;
  policy_.Deliver(top_->value, is_alone);
  return true;
}

}  // namespace zrt
