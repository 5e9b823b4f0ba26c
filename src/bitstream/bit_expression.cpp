// The bit-vector policy of the walk: operands and operators come from their own files, and what is
// left here is where the outcome goes.
#include "bitstream/bit_expression.h"

#include <type_traits>
#include <utility>

#include "bits/exhausted_memory.h"
#include "bitstream/bit_operand.h"
#include "bitstream/bit_operators.h"
#include "bitstream/joined_literals.h"
#include "bitstream/stream_bytes.h"
#include "bitstream/waiting_values.h"
#include "bitstream/word_operators.h"
#include "scan/text.h"
#include "solve/solve_text.h"
#include "solve/sweep.h"

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
        effort_left_(4 * text_length),
        outcome_(outcome),
        watch_(watch) {}

  [[nodiscard]] Watch watch() const { return watch_; }

  ZRTStatus Read(std::string_view text, BitValue& value) {
    return ReadBits(text, scopes_, place_, value, watch_);
  }
  // Joined literals. They are not worth a try in short texts, nor again where one has failed.
  static constexpr bool kReadsAtOnce = !kIsWatched<Watch>;
  [[nodiscard]] bool MayReadAtOnce(std::string_view text) const {
    constexpr std::size_t kShortest = 64;  // characters
    if (text.size() < kShortest) return false;
    const bool is_new = text.data() > failed_at_ || text.data() + text.size() <= failed_at_;
    return is_new && text.size() <= effort_left_ && MayBeJoinedLiterals(text);
  }
  bool ReadAtOnce(std::string_view text, BitValue& value) {
    effort_left_ -= text.size();
    const OutcomePlace place_before = place_;
    const JoinedLiterals joined = OnExhaustedMemory(
        JoinedLiterals{}, [&] { return ReadJoinedLiterals(text, scopes_, place_, value); });
    if (!joined.are_read) {
      failed_at_ = text.data() + joined.read_count;
      place_ = place_before;
    }
    is_group_ = joined.are_a_group;
    return joined.are_read;
  }

  // The same for the whole text.
  bool SolveAtOnce(std::string_view text) {
    if (!MayReadAtOnce(text)) return false;
    BitValue value;
    const bool is_read = ReadAtOnce(text, value);
    if (is_read) Deliver(value, is_group_);
    return is_read;
  }

  // Whoever watches has numbers for the values too, and time.
  template <class Solved>
  using Values =
      std::conditional_t<kIsWatched<Watch>, BitsKind::Values<Solved>, WaitingValues<Solved>>;

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
    outcome_.place = BitsOutcome::PlaceOf(is_added);
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
  std::size_t effort_left_;          // characters: all tries together stay linear
  const char* failed_at_ = nullptr;  // by the last one
  bool is_group_ = false;
  BitsOutcome& outcome_;
  [[no_unique_address]] Watch watch_;
};

// Values in registers, for a sweep. What has no place there, or is no such value, fails by whatever
// status: the walk finds the right one.
class WordsPolicy : public BitsKind {
 public:
  using Value = BitWord;

  WordsPolicy(const Scopes& scopes, BitsOutcome& outcome) : scopes_(scopes), outcome_(outcome) {}

  ZRTStatus Read(std::string_view text, BitWord& value) {
    return ReadBitWord(text, scopes_, value) ? kOk : ErrUnknownOperand;
  }
  static ZRTStatus Apply(BitWord& value, OperatorCode code, const BitWord& operand) {
    return ApplyToWord(value, code, operand) ? kOk : ErrInvalidOperator;
  }
  static void ApplyUnary(BitWord& value, OperatorCode code) { ApplyUnaryToWord(value, code); }
  void Deliver(const BitWord& value, bool is_added) {
    outcome_.value.Set(value);
    outcome_.place = BitsOutcome::PlaceOf(is_added);
  }

 private:
  const Scopes& scopes_;
  BitsOutcome& outcome_;
};

// A text that begins with a name mostly begins with a row, which is not for a sweep.
bool MayBeOfWords(std::string_view text) {
  constexpr std::size_t kLongest = 64;  // characters
  return !text.empty() && text.size() <= kLongest && PlaceBehind('a', text.front() | ' ') >= 26;
}

}  // namespace

// Two kinds of texts are tried by ways of their own, unless there are older bytes, on which
// operators might work: short ones of short values, and long ones of literals.
template <class Watch>
ZRTStatus SolveBits(std::string_view text, const Scopes& scopes, LByteBuffer* older,
                    BitsOutcome& outcome, Watch watch) {
  const bool may_be_tried = !kIsWatched<Watch> && (!older || older->GetTotalSize() == 0);
  if (may_be_tried && MayBeOfWords(text)) {
    WordsPolicy words(scopes, outcome);
    if (Sweep(words, text)) return kOk;
  }
  BitsPolicy<Watch> policy(scopes, older, text.size(), outcome, watch);
  if constexpr (BitsPolicy<Watch>::kReadsAtOnce) {
    if (may_be_tried && text.size() <= kMaxTextLength && policy.SolveAtOnce(text)) return kOk;
  }
  return SolveText(text, std::move(policy));
}

template ZRTStatus SolveBits(std::string_view, const Scopes&, LByteBuffer*, BitsOutcome&,
                             Unwatched);
template ZRTStatus SolveBits(std::string_view, const Scopes&, LByteBuffer*, BitsOutcome&, Watcher*);

ZRTStatus SolveBitsChain(std::string_view text, const Scopes& scopes, BitsOutcome& outcome) {
  return SolveTextAsChain(text, BitsPolicy<Unwatched>(scopes, nullptr, text.size(), outcome, {}));
}

}  // namespace zrt
