// The walk and the sweep by themselves, over values that only tell what was read and applied. Knows
// no kind of value.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "scan/operand_text.h"
#include "solve/solve_text.h"
#include "solve/sweep.h"

namespace zrt {
namespace {

// A number that stands for all that went into a value, in its order.
using Trace = std::uint64_t;

Trace Mixed(Trace trace, Trace more) {
  return (trace ^ more) * 0x9E3779B97F4A7C15U + (trace >> 29);
}

// Cuts texts as integers do.
template <bool kTrusts>
struct TracePolicy : WalkDefaults {
  using Value = Trace;
  static constexpr bool kUnaryOperandIsExpression = true;
  static constexpr GroupNegation kGroupNegation = GroupNegation::kIfAlone;
  static constexpr bool kTrustsBracketInvariant = kTrusts;

  explicit TracePolicy(Trace& result) : result_(result) {}

  static ZRTStatus Read(std::string_view text, Trace& value) {
    value = 0;
    for (const char c : text) value = Mixed(value, static_cast<unsigned char>(c));
    OperandText operand;
    return text.empty() ? ErrUnknownOperand : SplitOperand(text, operand);
  }
  static ZRTStatus Apply(Trace& value, OperatorCode code, Trace operand) {
    value = Mixed(Mixed(value, 256 + code), operand);
    return value % 8 == 0 ? ErrInvalidOperator : kOk;
  }
  static void ApplyUnary(Trace& value, OperatorCode code) { value = Mixed(value, 512 + code); }
  void Deliver(Trace value, bool is_added) { result_ = is_added ? ~value : value; }

 private:
  Trace& result_;
};

template <bool kTrusts>
std::pair<int, Trace> Outcome(std::string_view text) {
  Trace result = 0;
  const int status = SolveText(text, TracePolicy<kTrusts>(result));
  return {status, result};
}

// Every text of up to `longest` of eight characters.
template <class Try>
void ForEachText(std::string_view alphabet, std::size_t longest, const Try& try_text) {
  std::string text;
  for (std::size_t length = 0; length <= longest; ++length) {
    const std::uint32_t count = 1U << (3 * length);
    for (std::uint32_t number = 0; number < count && !testing::Test::HasFailure(); ++number) {
      text.clear();
      for (std::size_t i = 0; i < length; ++i) text += alphabet[(number >> (3 * i)) & 7U];
      try_text(text);
    }
  }
}

// A scan that ends behind brackets because a piece says so must find what one that goes on finds:
// every text of up to seven of the characters that have a part in it.
TEST(Walk, EndsScansBehindBracketsWhereNothingFollows) {
  ForEachText("~a[]+e-1", 7, [](const std::string& text) {
    if (Outcome<true>(text) != Outcome<false>(text)) ADD_FAILURE() << text;
  });
}

// A sweep that solves a text solves it as the walk does; some texts of each alphabet it does solve.
TEST(Sweep, SaysWhatTheWalkSays) {
  for (const std::string_view alphabet : {"a(~)+ <-", "a[]~+(e-", "1(-)~@,!", "1+~()-[]"}) {
    int solved = 0;
    ForEachText(alphabet, 7, [&](const std::string& text) {
      Trace result = 0;
      TracePolicy<true> policy(result);
      if (!Sweep(policy, text)) return;
      ++solved;
      if (Outcome<true>(text) != std::pair(int{kOk}, result)) ADD_FAILURE() << text;
    });
    EXPECT_GT(solved, 100) << alphabet;
  }
}

}  // namespace
}  // namespace zrt
