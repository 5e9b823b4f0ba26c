// Each event becomes an entry of its table and a step. An observer must not throw: where memory
// runs out, the rest is left out and the reading says so.
#include "reading.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {

ReadValue Copied(const zrt::ValueView& view) {
  ReadValue value;
  value.kind = view.kind;
  value.integer = view.integer;
  value.floating = view.floating;
  value.bit_length = view.bit_length;
  value.byte_count = view.byte_count;
  if (view.kind != zrt::ValueKind::kBits) return value;
  const std::size_t count = view.byte_count;
  if (value.is_whole()) {
    view.CopyBytes(0, count, value.bytes.data());
  } else {
    view.CopyBytes(0, ReadValue::kEnd, value.bytes.data());
    view.CopyBytes(count - ReadValue::kEnd, ReadValue::kEnd, value.bytes.data() + ReadValue::kEnd);
  }
  return value;
}

bool LosesFraction(const zrt::OperandEvent& event) {
  if (event.token == nullptr || event.value.kind != zrt::ValueKind::kInteger) return false;
  const bool is_float = event.token->GetTokenType() % 2 == 1;
  const float value = event.has_index ? event.token->GetFloatArrayValue(event.index_value)
                                      : event.token->GetFloatValue();
  return is_float && value != static_cast<float>(event.value.integer);
}

Reading::Operand Copied(const zrt::OperandEvent& event) {
  Reading::Operand operand{};
  operand.place = event.place;
  operand.name = event.name;
  operand.index = event.index;
  operand.unread = event.unread;
  operand.meaning = event.meaning;
  operand.scope = event.scope;
  operand.literal = event.literal;
  operand.has_index = event.has_index;
  operand.index_status = event.index_status;
  operand.index_value = event.index_value;
  operand.token_type = event.token == nullptr ? 0 : event.token->GetTokenType();
  operand.loses_fraction = LosesFraction(event);
  operand.row = zrt::RowNumberOf(event);
  operand.row_count = event.field == nullptr ? 0 : event.field->GetRowCount();
  operand.field = event.field;
  operand.number = event.number;
  operand.value = Copied(event.value);
  return operand;
}

// Takes the operands of GetNames alone.
class NameCollector : public zrt::Observer {
 public:
  explicit NameCollector(std::vector<Reading::Operand>* operands) : operands_(operands) {}

  void OnOperand(const zrt::OperandEvent& event) noexcept override {
    try {
      operands_->push_back(Copied(event));
    } catch (const std::bad_alloc&) {
      return;  // a hint tells less
    }
  }

 private:
  std::vector<Reading::Operand>* operands_;
};

}  // namespace

template <class Table>
void Reading::Keep(Step::Kind kind, Table& table, typename Table::value_type entry) noexcept {
  if (!is_complete_) return;
  try {
    steps_.push_back({kind, static_cast<std::uint32_t>(table.size())});
    table.push_back(std::move(entry));
  } catch (const std::bad_alloc&) {
    is_complete_ = false;
  }
}

void Reading::Clear() {
  steps_.clear();
  cuts_.clear();
  operands_.clear();
  operations_.clear();
  unread_.clear();
  indexes_.clear();
  looked_up_.clear();
  has_outcome_ = false;
  is_complete_ = true;
  outcome_ = 0;
  outcome_value_ = ReadValue();
  failure_ = zrt::Failure();
}

void Reading::LookUp(ZRTExpression* expression, const std::string& text, zrt::ValueKind kind) {
  looked_up_.clear();
  NameCollector collector(&looked_up_);
  zrt::Failure failure;
  expression->GetNames(text.c_str(), kind, &collector,
                       &failure);  // names up to a failure are enough
  if (text[failure.place.offset] == '(') LookUpBefore(expression, text, kind, failure.place.offset);
  if (kind == zrt::ValueKind::kBits) return;
  for (Operand& operand : looked_up_) {
    if (operand.meaning != zrt::OperandEvent::Meaning::kUnknown) continue;
    std::vector<Operand> found;
    NameCollector bits(&found);
    const std::string name = text.substr(operand.name.offset, operand.name.length);
    expression->GetNames(name.c_str(), zrt::ValueKind::kBits, &bits);
    if (found.size() != 1 || found.front().field == nullptr) continue;
    operand.meaning = found.front().meaning;
    operand.scope = found.front().scope;
    operand.field = found.front().field;
    operand.row_count = found.front().row_count;
  }
}

// A group is read before what stands in front of it, so nothing has looked at a name that is taken
// for a function's.
void Reading::LookUpBefore(ZRTExpression* expression, const std::string& text, zrt::ValueKind kind,
                           std::size_t end) {
  const std::size_t begin = text.substr(0, end).find_last_of("+-*/%&|@^~!$,<>()[] ") + 1;
  const std::size_t first = looked_up_.size();
  NameCollector collector(&looked_up_);
  if (begin < end) expression->GetNames(text.substr(begin, end - begin).c_str(), kind, &collector);
  for (std::size_t at = first; at < looked_up_.size(); ++at) {
    looked_up_[at].name.offset += begin;
    looked_up_[at].place.offset += begin;
  }
}

const Reading::Operand* Reading::LookedUp(std::size_t offset) const {
  const auto found =
      std::find_if(looked_up_.begin(), looked_up_.end(),
                   [offset](const Operand& operand) { return operand.name.offset == offset; });
  return found == looked_up_.end() ? nullptr : &*found;
}

void Reading::OnCut(const zrt::CutEvent& event) noexcept {
  Keep(Step::Kind::kCut, cuts_, {event.by, event.piece, event.middle});
}

void Reading::OnIndexBegin(zrt::Place name, zrt::Place index) noexcept {
  Keep(Step::Kind::kIndexBegin, indexes_, {name, index, 0, 0});
}

void Reading::OnIndexEnd(int status, int value) noexcept {
  if (!is_complete_ || indexes_.empty()) return;
  Index index = indexes_.back();
  index.status = status;
  index.value = value;
  indexes_.back() = index;
  try {
    steps_.push_back({Step::Kind::kIndexEnd, static_cast<std::uint32_t>(indexes_.size() - 1)});
  } catch (const std::bad_alloc&) {
    is_complete_ = false;
  }
}

void Reading::OnOperand(const zrt::OperandEvent& event) noexcept {
  Keep(Step::Kind::kOperand, operands_, Copied(event));
}

void Reading::OnOperator(const zrt::OperatorEvent& event) noexcept {
  Keep(Step::Kind::kOperation, operations_,
       {event.effect, event.is_unary, event.place, std::string(event.text), event.left, event.right,
        Copied(event.left_value), Copied(event.right_value), false, ReadValue()});
}

void Reading::OnResult(zrt::ValueNumber /*number*/, const zrt::ValueView& value) noexcept {
  if (!is_complete_ || operations_.empty()) return;
  operations_.back().has_result = true;
  operations_.back().result = Copied(value);
}

void Reading::OnUnread(zrt::Place place) noexcept { Keep(Step::Kind::kUnread, unread_, place); }

void Reading::OnOutcome(zrt::ValueNumber number, const zrt::ValueView& value) noexcept {
  has_outcome_ = true;
  outcome_ = number;
  outcome_value_ = Copied(value);
}

void Reading::OnFailure(const zrt::Failure& failure) noexcept { failure_ = failure; }
