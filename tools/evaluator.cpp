// A text that failed is evaluated once more to see why, so that one that has a value costs what it
// costs any host. Only where that would take further rows is a text watched from the start.
#include "evaluator.h"

#include <cmath>

#include "shown_text.h"

void TextEvaluator::Use(Scope* scope) {
  scope_ = scope;
  scope->Attach(&expression_);
}

bool TextEvaluator::Evaluate(const std::string& text, zrt::ValueKind kind) {
  // Of longer texts the hints are not worth the memory of all that was read.
  constexpr std::size_t kMostWatchedBytes = 1U << 16U;
  Begin(text, kind);
  Reading* reading = text.size() <= kMostWatchedBytes ? &reading_ : nullptr;
  const bool moves_rows = kind == zrt::ValueKind::kBits && scope_->has_several_rows();
  if (moves_rows && options_.fresh_rows) scope_->ResetRows();
  const bool is_once = moves_rows && !options_.fresh_rows;
  const int status = is_once ? Watch(options_.is_quick ? nullptr : reading) : EvaluateUnwatched();
  if (status == 0) {
    failure_ = {};
  } else if (!is_once) {
    if (moves_rows) scope_->ResetRows();
    Watch(reading);
    failure_.status = status;  // memory may have run out the first time alone
  }
  return status == 0 && IsSmall();
}

bool TextEvaluator::EvaluateWatched(const std::string& text, zrt::ValueKind kind) {
  Begin(text, kind);
  return Watch(&reading_) == 0 && IsSmall();
}

bool TextEvaluator::IsSmall() {
  if (bit_length() <= options_.max_bits) return true;
  refusal_ = "the value has " + Counted(static_cast<std::size_t>(bit_length()), "bit") +
             ", the limit is " + std::to_string(options_.max_bits);
  return false;
}

void TextEvaluator::Begin(const std::string& text, zrt::ValueKind kind) {
  kind_ = kind;
  text_ = &text;
  EmptyStream();
  refusal_.clear();
  reading_.Clear();
}

void TextEvaluator::EmptyStream() {
  stream_.ClearBuffer();
  stream_.BitLength = 0;
}

int TextEvaluator::EvaluateUnwatched() {
  const char* text = text_->c_str();
  switch (kind_) {
    case zrt::ValueKind::kInteger: return expression_.GetIntegerOperand(text, &integer_);
    case zrt::ValueKind::kFloat: return expression_.GetFloatOperand(text, &floating_);
    case zrt::ValueKind::kBits: break;
  }
  return expression_.GetBitStream(text, &stream_);
}

int TextEvaluator::Watch(zrt::Observer* observer) {
  const char* text = text_->c_str();
  switch (kind_) {
    case zrt::ValueKind::kInteger:
      return expression_.WatchInteger(text, &integer_, &failure_, observer);
    case zrt::ValueKind::kFloat:
      return expression_.WatchFloat(text, &floating_, &failure_, observer);
    case zrt::ValueKind::kBits: break;
  }
  EmptyStream();
  return expression_.WatchBits(text, &stream_, &failure_, observer);
}

std::string TextEvaluator::ValueText(BitFormat format) {
  switch (kind_) {
    case zrt::ValueKind::kInteger: return std::to_string(integer_);
    case zrt::ValueKind::kFloat: return FloatText(floating_);
    case zrt::ValueKind::kBits: break;
  }
  return BitText(&stream_, format);
}

void TextEvaluator::AddValue(JsonLine* line) {
  const std::string value = ValueText(BitFormat::kHex);
  if (kind_ == zrt::ValueKind::kBits) {
    line->AddText("hex", value).AddNumber("bits", bit_length());
  } else if (kind_ == zrt::ValueKind::kFloat && !std::isfinite(floating_)) {
    line->AddText("value", value);
  } else {
    line->AddWritten("value", value);
  }
}

std::vector<Hint> TextEvaluator::Hints() {
  reading_.LookUp(&expression_, *text_, kind_);
  return FailureHints(*text_, kind_, failure_, reading_, scope_->names(), options_.names_from);
}

void TextEvaluator::PrintFailure(std::ostream& out, const Source& source, Explainer* explainer,
                                 const Style& style) {
  if (refusal_.empty()) {
    ::PrintFailure(out, source, failure_, Hints(), explainer, style);
  } else {
    PrintPlace(out, source, {0, text_->size()}, refusal_, style);
  }
}

std::string TextEvaluator::FailureWords(Explainer* explainer) {
  if (!refusal_.empty()) return refusal_;
  if (failure_.status == 0) return "";
  std::string words = explainer->Message(failure_.status);
  for (const Hint& hint : Hints()) words += "; " + HintMessage(hint);
  return words;
}

void TextEvaluator::AddAnswer(JsonLine* line, Explainer* explainer) {
  line->AddText("text", *text_).AddText("kind", KindName(kind_));
  if (!refusal_.empty()) {
    line->AddText("error", refusal_);
  } else if (failure_.status != 0) {
    AddFailure(line, failure_, Hints(), explainer);
  } else {
    AddValue(&line->AddNumber("status", 0));
  }
}
