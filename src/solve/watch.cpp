// What a watcher keeps: the operand that is being read, that of an index inside it, and the
// failure.
#include "solve/watch.h"

#include <cstring>

#include "scan/number.h"
#include "scan/operand_text.h"
#include "scan/text.h"

namespace zrt {
namespace {

OperandEvent::Literal LiteralOf(std::string_view text) {
  switch (KindOfNumber(text)) {
    case NumberBinary:
    case NumberBinaryLong: return OperandEvent::Literal::kBinary;
    case NumberHex:
    case NumberHexLong: return OperandEvent::Literal::kHexadecimal;
    case NumberFloat: return OperandEvent::Literal::kFraction;
    case NumberDecimal: return OperandEvent::Literal::kDecimal;
    case NumberNone: break;
  }
  return OperandEvent::Literal::kNone;
}

std::string_view FirstOf(std::string_view text, char c) { return text.substr(text.find(c), 1); }

}  // namespace

ZRTStatus Watcher::Fail(ZRTStatus status, std::string_view where) {
  failure_ = {};
  failure_.status = status;
  failure_.place = PlaceOf(where);
  return status;
}

void Watcher::Cut(CutEvent::By by, std::string_view piece, std::string_view middle) {
  if (observer_) observer_->OnCut({by, PlaceOf(piece), PlaceOf(middle)});
}

void Watcher::Unread(std::string_view part) {
  if (observer_ && !part.empty()) observer_->OnUnread(PlaceOf(part));
}

void Watcher::BeginOperand(std::string_view text) {
  operand_text_ = text;
  operand_ = {};
}

void Watcher::NoteToken(ZRTTokens& token, OperandEvent::Scope scope) {
  operand_.meaning = OperandEvent::Meaning::kToken;
  operand_.scope = scope;
  operand_.token = &token;
}

void Watcher::NoteField(QLMDataField& field, OperandEvent::Scope scope) {
  operand_.meaning = OperandEvent::Meaning::kField;
  operand_.scope = scope;
  operand_.field = &field;
}

// Blanks belong to an operand without brackets, as they do when it is looked for.
void Watcher::FillOperandPlaces() {
  OperandText parts;
  operand_.place = PlaceOf(operand_text_);
  if (SplitOperand(operand_text_, parts) != kOk) return;
  operand_.name = PlaceOf(parts.name);
  if (operand_.meaning == OperandEvent::Meaning::kLiteral) operand_.literal = LiteralOf(parts.name);
  if (!parts.index) return;
  operand_.has_index = true;
  operand_.index = PlaceOf(*parts.index);
  const std::string_view whole = OperandThroughIndex();
  operand_.place = PlaceOf(whole);
  const std::string_view rest = DropLeadingBlanks(operand_text_.substr(whole.size()));
  if (!rest.empty()) operand_.unread = PlaceOf(rest);
}

ValueNumber Watcher::EndOperand(const ValueView& value) {
  const ValueNumber number = next_number_++;
  if (!observer_) return number;
  FillOperandPlaces();
  operand_.number = number;
  operand_.value = value;
  observer_->OnOperand(operand_);
  if (operand_.unread.length > 0) observer_->OnUnread(operand_.unread);
  return number;
}

// From the name through the "]"; all of an operand that has none.
std::string_view Watcher::OperandThroughIndex() const {
  const std::size_t open = operand_text_.find('[');
  if (open == std::string_view::npos) return operand_text_;
  const std::size_t close = operand_text_.find(']', open);
  return close == std::string_view::npos ? operand_text_ : operand_text_.substr(0, close + 1);
}

ZRTStatus Watcher::FailOperand(ZRTStatus status) {
  const std::string_view text = operand_text_;
  OperandText parts{text, {}};
  (void)SplitOperand(text, parts);
  switch (status) {
    case ErrUnknownOperand: return Fail(status, parts.name);
    case ErrBadTokenType: return Fail(status, OperandThroughIndex());
    case ErrMissingCloseBracket:
    case ErrMissingArrayName: return Fail(status, FirstOf(text, '['));
    case ErrStrayCloseBracket: return Fail(status, FirstOf(text, ']'));
    case ErrEmptyIndex: {
      const std::string_view whole = OperandThroughIndex();
      return Fail(status, whole.substr(whole.find('[')));
    }
    case ErrNegativeIndex:
      (void)Fail(status, *parts.index);
      failure_.cause_status = index_failure_.status;
      failure_.cause = index_failure_.place;
      return status;
    case ErrStreamWrite:
      // Else memory has run out, which is no fault of the operand's.
      if (operand_.meaning == OperandEvent::Meaning::kField ||
          operand_.meaning == OperandEvent::Meaning::kLiteral) {
        return Fail(status, OperandThroughIndex());
      }
      return status;
    default: return status;
  }
}

void Watcher::BeginIndex(std::string_view name, std::string_view index) {
  indexed_text_ = operand_text_;
  indexed_ = operand_;
  is_in_index_ = true;
  if (observer_) observer_->OnIndexBegin(PlaceOf(name), PlaceOf(index));
}

void Watcher::EndIndex(int status, int value) {
  if (observer_) observer_->OnIndexEnd(status, value);
  is_in_index_ = false;
  index_failure_ = status == kOk ? Failure{} : failure_;
  failure_ = {};
  operand_text_ = indexed_text_;
  operand_ = indexed_;
  operand_.index_status = status;
  operand_.index_value = value;
}

void Watcher::Operator(OperatorEvent event, std::string_view where, OperatorCode code) {
  if (!observer_) return;
  event.place = PlaceOf(where);
  event.text = operator_table::kRows[code].text;
  if (code == OpNone) event.text = {where.data(), 1};  // one of three
  observer_->OnOperator(event);
}

void Watcher::Result(ValueNumber number, const ValueView& value) {
  if (observer_) observer_->OnResult(number, value);
}

void Watcher::Outcome(ValueNumber number, const ValueView& value) {
  if (observer_ && !is_in_index_) observer_->OnOutcome(number, value);
}

void Watcher::Finish(int status, Failure* failure) {
  if (status == kOk || failure_.status != status) failure_ = {};
  if (failure_.status != status) {
    failure_.status = status;
    failure_.place.length = std::strlen(text_);
  }
  if (failure) *failure = failure_;
  if (observer_ && status != kOk) observer_->OnFailure(failure_);
}

}  // namespace zrt
