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

template <class Watcher>
class BitsPolicy : public BitsKind {
 public:
  using Value = BitValue;
  using Watch = Watcher;

  BitsPolicy(const Scopes& scopes, LByteBuffer* older, std::size_t text_length,
             BitsOutcome& outcome, Watch watch)
      : scopes_(scopes),
        older_(older),
        place_(older, text_length),
        outcome_(outcome),
        watch_(watch) {}

  [[nodiscard]] Watch watch() const { return watch_; }

  ZRTStatus Read(std::string_view text, BitValue& value) {
    return ReadBits(text, scopes_, place_, value, watch_);
  }
  ZRTStatus Apply(BitValue& value, OperatorCode code, BitValue& operand) {
    return ApplyToBits(value, code, operand, place_);
  }
  void ApplyUnary(BitValue& value, OperatorCode code) { ApplyUnaryToBits(value, code, place_); }

  void BeginResult(BitValue& value) {
    const std::size_t older_size = older_ ? SizeOf(*older_) : 0;
    if (older_size == 0) return;
    value.Reshape(0, older_size + value.byte_count());
    CopyBytes(*older_, value.OwnBytes().data());
  }
  void Deliver(BitValue& value, bool is_added) {
    outcome_.value = std::move(value);
    outcome_.place =
        is_added ? BitsOutcome::Place::kBehindOlder : BitsOutcome::Place::kInsteadOfOlder;
  }
  static ValueView Show(const BitValue& value) {
    return {.kind = ValueKind::kBits,
            .bit_length = value.bit_length(),
            .byte_count = value.byte_count(),
            .bits = &value};
  }

 private:
  const Scopes& scopes_;
  LByteBuffer* older_;
  OutcomePlace place_;
  BitsOutcome& outcome_;
  [[no_unique_address]] Watch watch_;
};

}  // namespace

template <class Watch>
ZRTStatus SolveBits(std::string_view text, const Scopes& scopes, LByteBuffer* older,
                    BitsOutcome& outcome, Watch watch) {
  return SolveText(text, BitsPolicy<Watch>(scopes, older, text.size(), outcome, watch));
}

template ZRTStatus SolveBits(std::string_view, const Scopes&, LByteBuffer*, BitsOutcome&,
                             Unwatched);
template ZRTStatus SolveBits(std::string_view, const Scopes&, LByteBuffer*, BitsOutcome&, Watcher*);

ZRTStatus SolveBitsChain(std::string_view text, const Scopes& scopes, BitsOutcome& outcome) {
  return SolveTextAsChain(text, BitsPolicy<Unwatched>(scopes, nullptr, text.size(), outcome, {}));
}

}  // namespace zrt
