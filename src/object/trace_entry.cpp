// What an observer may ask of an event, and the entry point that tells names without evaluating.
#include "zrtexpression/trace.h"

#include "ZRTExpression.h"
#include "bits/bit_value.h"
#include "bitstream/bit_operand.h"
#include "names/scopes.h"
#include "object/watched.h"
#include "scalar/operand.h"
#include "scan/operand_text.h"
#include "solve/solve_text.h"

namespace zrt {
namespace {

// Walks as the kind does and reads nothing: each operand is looked up and told. No operand of an
// index has an index of its own, since the text of an index holds no "]".
template <class Kind, bool kInIndex = false>
class NamesPolicy : public Kind {
 public:
  struct Value {};
  using Watch = Watcher*;

  NamesPolicy(const Scopes& scopes, Watch watch) : scopes_(scopes), watch_(watch) {}

  [[nodiscard]] Watch watch() const { return watch_; }

  ZRTStatus Read(std::string_view text, Value& /*value*/) {
    OperandText operand;
    if (const ZRTStatus status = SplitOperand(text, operand); status != kOk) return status;
    if constexpr (!kInIndex) {
      if (operand.index && TellIndex(operand) != kOk) return ErrNegativeIndex;
    }
    NameBuffer name(operand.name);
    Tell(operand.name, name.text());
    return kOk;
  }
  static ZRTStatus Apply(Value& /*value*/, OperatorCode /*code*/, Value& /*operand*/) {
    return kOk;
  }
  static void ApplyUnary(Value& /*value*/, OperatorCode /*code*/) {}
  static void Deliver(Value /*value*/, bool /*is_added*/) {}
  static ValueView Show(Value /*value*/) { return {}; }

 private:
  ZRTStatus TellIndex(const OperandText& operand) {
    watch_->BeginIndex(operand.name, *operand.index);
    const ZRTStatus status =
        SolveText(*operand.index, NamesPolicy<IntegerKind, true>(scopes_, watch_));
    watch_->EndIndex(status, kNoIndex);
    return status;
  }
  void Tell(std::string_view name, char* buffer) {
    Meaning meaning;
    if constexpr (Kind::kReversesBits) {
      meaning = MeaningOf(name, buffer, scopes_);
    } else {
      meaning.token = scopes_.FindToken(buffer);
    }
    if (meaning.is_there() || KindOfNumber(name) != NumberNone) {
      NoteMeaning(meaning, buffer, scopes_, watch_);
    }
  }

  const Scopes& scopes_;
  Watch watch_;
};

ZRTStatus TellNames(std::string_view text, ValueKind kind, const Scopes& scopes, Watcher* watch) {
  switch (kind) {
    case ValueKind::kInteger: return SolveText(text, NamesPolicy<IntegerKind>(scopes, watch));
    case ValueKind::kFloat: return SolveText(text, NamesPolicy<FloatKind>(scopes, watch));
    case ValueKind::kBits: break;
  }
  return SolveText(text, NamesPolicy<BitsKind>(scopes, watch));
}

}  // namespace

void ValueView::CopyBytes(std::size_t first, std::size_t count, std::uint8_t* to) const {
  static_cast<const BitValue*>(bits)->CopyTo(first, {to, count});
}

int RowNumberOf(const OperandEvent& event) noexcept {
  if (!event.field || !event.row) return 0;
  for (int number = event.field->GetRowCount(); number > 0; --number) {
    if (event.field->GetRow(number) == event.row) return number;
  }
  return 0;
}

}  // namespace zrt

int ZRTExpression::GetNames(const char* text, zrt::ValueKind kind, zrt::Observer* observer,
                            zrt::Failure* failure) {
  return zrt::WatchedStatusOf(text, failure, observer, [&](zrt::Watcher* watch) {
    return zrt::TellNames(text, kind, CurrentScopes(), watch);
  });
}
