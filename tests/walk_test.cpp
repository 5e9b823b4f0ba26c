// The walk by itself, over values that only tell what was read and applied. Knows no kind of value.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "scan/operand_text.h"
#include "solve/walk.h"

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
    for (const char c : text) value = Mixed(value, static_cast<unsigned char>(c));
    OperandText operand;
    return text.empty() ? ErrUnknownOperand : SplitOperand(text, operand);
  }
  static ZRTStatus Apply(Trace& value, OperatorCode code, Trace operand) {
    value = Mixed(Mixed(value, 256 + code), operand);
    return kOk;
  }
  static void ApplyUnary(Trace& value, OperatorCode code) { value = Mixed(value, 512 + code); }
  void Deliver(Trace value, bool /*is_added*/) { result_ = value; }

 private:
  Trace& result_;
};

template <bool kTrusts>
std::pair<int, Trace> Outcome(std::string_view text) {
  Trace result = 0;
  const int status = SolveText(text, TracePolicy<kTrusts>(result));
  return {status, result};
}

// A scan that ends behind brackets because a piece says so must find what one that goes on finds:
// every text of up to seven of the characters that have a part in it.
TEST(Walk, EndsScansBehindBracketsWhereNothingFollows) {
  constexpr std::string_view kAlphabet = "~a[]+e-1";
  std::string text;
  for (std::size_t length = 0; length <= 7; ++length) {
    const std::uint32_t count = 1U << (3 * length);
    for (std::uint32_t number = 0; number < count && !HasFailure(); ++number) {
      text.clear();
      for (std::size_t i = 0; i < length; ++i) text += kAlphabet[(number >> (3 * i)) & 7U];
      if (Outcome<true>(text) != Outcome<false>(text)) ADD_FAILURE() << text;
    }
  }
}

}  // namespace
}  // namespace zrt
