// The bit-vector policy of the walk: operands and operators come from their own files, and what is
// left here is where the outcome goes.
#include "bitstream/bit_expression.h"

#include <utility>

#include "bitstream/bit_operand.h"
#include "bitstream/bit_operators.h"
#include "bitstream/stream_bytes.h"
#include "solve/walk.h"

namespace zrt {
namespace {

class BitsPolicy : public WalkDefaults {
 public:
  using Value = BitValue;
  static constexpr bool kReversesBits = true;
  static constexpr bool kKeepsPartialChain = true;
  static constexpr GroupNegation kGroupNegation = GroupNegation::kThenLookAgain;

  BitsPolicy(const Scopes& scopes, LByteBuffer* older, std::size_t text_length,
             BitsOutcome& outcome)
      : scopes_(scopes), older_(older), place_(older, text_length), outcome_(outcome) {}

  ZRTStatus Read(std::string_view text, BitValue& value) {
    return ReadBits(text, scopes_, place_, value);
  }
  ZRTStatus Apply(BitValue& value, OperatorCode code, BitValue& operand) {
    return ApplyToBits(value, code, operand, place_);
  }
  void ApplyUnary(BitValue& value, OperatorCode code) { ApplyUnaryToBits(value, code, place_); }

  void BeginResult(BitValue& value) {
    const std::size_t older_size = older_ ? older_->GetTotalSize() : 0;
    if (older_size == 0) return;
    value.Reshape(0, older_size + value.byte_count());
    CopyBytes(*older_, value.OwnBytes().data());
  }
  void Deliver(BitValue& value, bool is_added) {
    outcome_.value = std::move(value);
    outcome_.place =
        is_added ? BitsOutcome::Place::kBehindOlder : BitsOutcome::Place::kInsteadOfOlder;
  }

 private:
  const Scopes& scopes_;
  LByteBuffer* older_;
  OutcomePlace place_;
  BitsOutcome& outcome_;
};

}  // namespace

ZRTStatus SolveBits(std::string_view text, const Scopes& scopes, LByteBuffer* older,
                    BitsOutcome& outcome) {
  return SolveText(text, BitsPolicy(scopes, older, text.size(), outcome));
}

ZRTStatus SolveBitsChain(std::string_view text, const Scopes& scopes, BitsOutcome& outcome) {
  return SolveTextAsChain(text, BitsPolicy(scopes, nullptr, text.size(), outcome));
}

}  // namespace zrt
