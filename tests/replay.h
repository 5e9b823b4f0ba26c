// Observers that are not taken at their word. Of an evaluation each event must stand in the text,
// name values that were told before, and end with the outcome. What is read and cut on the way must
// be what is told without evaluating.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "support.h"

inline std::string Show(const zrt::ValueView& view) {
  if (view.kind == zrt::ValueKind::kInteger) return std::to_string(view.integer);
  if (view.kind == zrt::ValueKind::kFloat) return std::to_string(view.floating);
  Stream stream{Bytes(view.byte_count), view.bit_length};
  view.CopyBytes(0, stream.bytes.size(), stream.bytes.data());
  return Show(stream);
}

/// The way through a text: its pieces, names and operators, without values.
class Path : public zrt::Observer {
 public:
  void OnCut(const zrt::CutEvent& event) noexcept override {
    Note({'c', Number(event.by)});
    Note({event.piece, event.middle});
  }
  void OnIndexBegin(zrt::Place name, zrt::Place index) noexcept override {
    Note({'i'});
    Note({name, index});
  }
  void OnIndexEnd(int status, int /*value*/) noexcept override {
    ends_early_ = ends_early_ || status != 0;
    Note({'e'});
  }
  void OnOperand(const zrt::OperandEvent& event) noexcept override {
    Note({'o', event.number, Number(event.meaning), Number(event.literal), Number(event.scope),
          reinterpret_cast<std::uintptr_t>(event.token),
          reinterpret_cast<std::uintptr_t>(event.field)});
    Note({event.place, event.name, event.index, event.unread});
  }
  void OnOperator(const zrt::OperatorEvent& event) noexcept override {
    Note({'x', Number(event.effect), Number(event.is_unary), event.left, event.right});
    Note({event.place});
  }
  void OnUnread(zrt::Place place) noexcept override {
    Note({'u'});
    Note({place});
  }

  /// Whether `whole`, of the same text, goes the same way as far as this one goes; and no further,
  /// if both have the same end. An index that fails ends a path: of that an evaluation may have
  /// told less.
  [[nodiscard]] bool IsBeginningOf(const Path& whole, bool is_same_end) const {
    return path_.size() <= whole.path_.size() &&
           std::equal(path_.begin(), path_.end(), whole.path_.begin()) &&
           (ends_early_ || !is_same_end || path_.size() == whole.path_.size());
  }

 private:
  void Note(std::initializer_list<std::uint64_t> numbers) {
    if (!ends_early_) path_.insert(path_.end(), numbers);
  }
  void Note(std::initializer_list<zrt::Place> places) {
    for (const zrt::Place& place : places) Note({place.offset, place.length});
  }
  static std::uint64_t Number(auto value) { return static_cast<std::uint64_t>(value); }

  std::vector<std::uint64_t> path_;
  bool ends_early_ = false;
};

class Replay : public Path {
 public:
  /// Operators beside the outermost middle work on older bytes of the result too. The names are
  /// those of `world`.
  void Begin(const std::string& text, bool has_older_bytes, World& world) {
    *this = Replay();
    text_ = text;
    index_ = {0, text.size()};
    has_older_bytes_ = has_older_bytes;
    world_ = &world;
  }

  void OnCut(const zrt::CutEvent& event) noexcept override {
    Path::OnCut(event);
    Check(IsIn(event.piece), "piece");
    Check(IsIn(event.middle, event.piece), "middle");
    // A piece is all of the text, or of an index, or what a cut that was told has left of another.
    const auto holds = [&](const zrt::CutEvent& cut) {
      return cut.by != zrt::CutEvent::By::kChain && IsIn(event.piece, cut.piece);
    };
    Check(IsIn(index_, event.piece) || std::ranges::any_of(cuts_, holds), "cut");
    cuts_.push_back(event);
  }
  void OnOperand(const zrt::OperandEvent& event) noexcept override {
    Path::OnOperand(event);
    Check(IsIn(event.place) && IsIn(event.name, event.place), "operand");
    Check(event.number == values_.size(), "number");
    Check((event.row != nullptr) == (event.field != nullptr), "row");
    Check(event.field == nullptr || zrt::RowNumberOf(event) > 0, "row's number");
    Check(MeansWhatIsTold(event), "meaning");
    Check(!event.has_index ||
              (event.index_status == index_status_ && event.index_value == index_value_ &&
               IsIn(event.index, index_) && IsIn(index_, event.index)),
          "index");
    values_.push_back(Show(event.value));
  }
  void OnIndexBegin(zrt::Place name, zrt::Place index) noexcept override {
    Path::OnIndexBegin(name, index);
    index_ = index;
  }
  void OnIndexEnd(int status, int value) noexcept override {
    Path::OnIndexEnd(status, value);
    const auto is_value = [&](const std::string& told) { return told == std::to_string(value); };
    Check(status != 0 || std::ranges::any_of(values_, is_value), "index's value");
    Check(status <= 0, "index's status");
    index_status_ = status;
    index_value_ = value;
  }
  void OnOperator(const zrt::OperatorEvent& event) noexcept override {
    Path::OnOperator(event);
    using Effect = zrt::OperatorEvent::Effect;
    Check(IsIn(event.place) && event.place.length == event.text.size(), "operator");
    Check(IsTold(event.left, event.left_value), "left side");
    is_ignored_ = event.effect == Effect::kIgnored;
    const bool has_right = !event.is_unary && event.effect != Effect::kTrailing;
    Check(!has_right || IsTold(event.right, event.right_value), "right side");
  }
  void OnResult(zrt::ValueNumber number, const zrt::ValueView& value) noexcept override {
    Check(!is_ignored_ || has_older_bytes_ || values_.at(number) == Show(value), "ignored");
    values_.at(number) = Show(value);
  }
  void OnUnread(zrt::Place place) noexcept override {
    Path::OnUnread(place);
    Check(IsIn(place), "unread");
  }
  void OnOutcome(zrt::ValueNumber number, const zrt::ValueView& value) noexcept override {
    Check(IsTold(number, value), "outcome");
    outcome_ = values_.at(number);
  }
  void OnFailure(const zrt::Failure& failure) noexcept override { failure_ = failure; }

  /// "" or what was wrong with the events and the failure of an evaluation. Its value is not looked
  /// at if it is "".
  std::string Fault(int status, const zrt::Failure& failure, const std::string& value) {
    Check(failure.status == status && failure_.status == status, "status");
    Check(IsIn(failure.place) && IsIn(failure.cause), "place");
    Check(failure.cause_status == 0 || IsIn(failure.cause, failure.place), "cause");
    Check(status != 0 || failure.place.offset + failure.place.length == 0, "no failure");
    Check(status != 0 || value.empty() || outcome_ == value, "value");
    return fault_;
  }

 private:
  void Check(bool holds, const char* what) {
    if (!holds) fault_ = what;
  }
  bool IsIn(zrt::Place place) const {
    return place.offset <= text_.size() && place.length <= text_.size() - place.offset;
  }
  static bool IsIn(zrt::Place inner, zrt::Place outer) {
    return inner.offset >= outer.offset &&
           inner.offset + inner.length <= outer.offset + outer.length;
  }
  bool MeansWhatIsTold(const zrt::OperandEvent& event) const {
    using Event = zrt::OperandEvent;
    using enum Event::Literal;
    constexpr Event::Literal kLiterals[] = {kNone,        kBinary,   kBinary, kHexadecimal,
                                            kHexadecimal, kFraction, kDecimal};
    const std::string name = text_.substr(event.name.offset, event.name.length);
    const char* const data = event.scope == Event::Scope::kExternal ? "external_data"
                             : event.scope == Event::Scope::kLocal  ? "local_data"
                                                                    : "global_data";
    const auto stands_for = [&](std::string sought) {
      if (event.meaning == Event::Meaning::kField)
        return DataOf(*world_, data).GetDataField(sought.data()) == event.field;
      const bool is_local = event.scope == Event::Scope::kLocal;
      ZRTTokenTree& tree = is_local ? world_->local_tokens : world_->global_tokens;
      return tree.GetToken(sought.data()) == event.token;
    };
    switch (event.meaning) {
      case Event::Meaning::kLiteral:
        return event.literal == kLiterals[reference::KindOfNumber(name)] &&
               event.scope == Event::Scope::kNone;
      case Event::Meaning::kMaskName: return name.find("MASK") != std::string::npos;
      default: return stands_for(name) || (name == "FuseArray_TDO" && stands_for("FuseArray_TDI"));
    }
  }
  bool IsTold(zrt::ValueNumber number, const zrt::ValueView& value) const {
    return number < values_.size() && (has_older_bytes_ || values_[number] == Show(value));
  }

  std::string text_;
  std::vector<zrt::CutEvent> cuts_;
  World* world_ = nullptr;
  bool has_older_bytes_ = false, is_ignored_ = false;
  zrt::Place index_;
  int index_status_ = 0, index_value_ = 0;
  std::vector<std::string> values_;  // by number
  std::string outcome_, fault_;
  zrt::Failure failure_;
};
