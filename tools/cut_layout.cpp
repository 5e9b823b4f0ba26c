// The text spaced out, then two rows for each operation in the order in which they happened. What
// would touch is tried again with wider gaps.
#include "cut_layout.h"

#include <algorithm>
#include <utility>

#include "reading_text.h"

namespace {

using Effect = zrt::OperatorEvent::Effect;
using StepKind = Reading::Step::Kind;

constexpr std::size_t kMostStretch = 12;
constexpr std::string_view kOperatorCharacters = "+-*/%&|@^~!$,<>";

std::size_t EndOf(zrt::Place place) { return place.offset + place.length; }

// A part of the text that stands together.
struct Element {
  enum class Kind { kOperand, kOperator, kParenthesis, kOther };

  Kind kind;
  zrt::Place place;
  const Reading::Operand* operand = nullptr;  // null if it has not been read
  bool is_binary = false;                     // of an operator that has been applied
  std::size_t column = 0;
};

std::size_t WidthOf(const Element& element) { return element.place.length; }
std::size_t CenterOf(const Element& element) { return element.column + (WidthOf(element) - 1) / 2; }

// What stands where, by the events; what they do not tell is taken apart by characters.
class Elements {
 public:
  Elements(std::string_view text, const Reading& reading) : text_(text) {
    std::size_t depth = 0;  // of indexes: their operands are part of another one
    for (const Reading::Step& step : reading.steps()) {
      if (step.kind == StepKind::kIndexBegin) ++depth;
      if (step.kind == StepKind::kIndexEnd) --depth;
      if (depth == 0) AddStep(reading, step);
    }
    const zrt::Place failed = reading.failure().place;
    if (failed.length > 0 && failed.length < text.size()) {
      told_.push_back({Element::Kind::kOther, failed});
    }
    std::stable_sort(told_.begin(), told_.end(), [](const Element& a, const Element& b) {
      return a.place.offset < b.place.offset;
    });
    std::size_t done = 0;
    for (const Element& element : told_) {
      if (element.place.offset < done) continue;
      AddUntold(done, element.place.offset);
      all_.push_back(element);
      done = EndOf(element.place);
    }
    AddUntold(done, text.size());
  }

  std::vector<Element>& all() { return all_; }

 private:
  void AddStep(const Reading& reading, const Reading::Step& step) {
    if (step.kind == StepKind::kOperand) {
      const Reading::Operand& operand = reading.operands()[step.at];
      told_.push_back({Element::Kind::kOperand, operand.place, &operand});
    } else if (step.kind == StepKind::kUnread) {
      told_.push_back({Element::Kind::kOther, reading.unread()[step.at]});
    } else if (step.kind == StepKind::kOperation) {
      const Reading::Operation& operation = reading.operations()[step.at];
      told_.push_back({Element::Kind::kOperator, operation.place, nullptr, !operation.is_unary});
    }
  }

  void AddUntold(std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) {
      const char c = text_[i];
      if (c == ' ') continue;
      const bool is_parenthesis = c == '(' || c == ')';
      const bool is_operator = kOperatorCharacters.find(c) != std::string_view::npos;
      std::size_t last = i + 1;
      while (!is_parenthesis && !is_operator && last < end && text_[last] != ' ' &&
             text_[last] != '(' && text_[last] != ')' &&
             kOperatorCharacters.find(text_[last]) == std::string_view::npos) {
        ++last;
      }
      all_.push_back({
          is_parenthesis ? Element::Kind::kParenthesis
          : is_operator  ? Element::Kind::kOperator
                         : Element::Kind::kOther,
          {i, last - i}
      });
      i = last - 1;
    }
  }

  std::string_view text_;
  std::vector<Element> told_;
  std::vector<Element> all_;
};

// Fills a layout. Nothing may be put on or directly beside something else.
class Canvas {
 public:
  using Kind = CutLayout::Kind;

  explicit Canvas(std::size_t columns) : columns_(columns) {}

  void AddRow() { layout_.rows.emplace_back(); }
  [[nodiscard]] bool is_good() const { return is_good_; }

  void Put(Kind kind, std::size_t column, std::string_view text) {
    std::string& row = layout_.rows.back();
    const std::size_t end = column + text.size();
    if (end > columns_) is_good_ = false;
    if (!is_good_) return;
    if (row.size() < end + 1) row.resize(end + 1, ' ');
    const std::size_t before = column == 0 ? 0 : column - 1;
    for (std::size_t i = before; i <= end; ++i) is_good_ = is_good_ && row[i] == ' ';
    row.replace(column, text.size(), text);
    layout_.items.push_back({kind, layout_.rows.size() - 1, column, std::string(text)});
  }
  void PutCentered(Kind kind, std::size_t center, std::string_view text) {
    Put(kind, center - std::min(center, (text.size() - 1) / 2), text);
  }
  void PutLine(std::size_t column) { Put(Kind::kLine, column, "|"); }
  void Refuse() { is_good_ = false; }

  [[nodiscard]] CutLayout Take() { return std::move(layout_); }

 private:
  std::size_t columns_;
  bool is_good_ = true;
  CutLayout layout_;
};

// Where the cut of the whole text stands, if it has one.
const Reading::Cut* OutermostCut(const Reading& reading) {
  for (const Reading::Cut& cut : reading.cuts()) {
    if (cut.by == zrt::CutEvent::By::kChain) return nullptr;
    if (cut.middle.length < cut.piece.length) return &cut;
  }
  return nullptr;
}

class Layouter {
 public:
  Layouter(std::string_view text, const Reading& reading, std::vector<Element> elements,
           std::size_t columns)
      : text_(text),
        reading_(reading),
        cut_(OutermostCut(reading)),
        elements_(std::move(elements)),
        canvas_(columns) {}

  std::optional<CutLayout> LayOut(std::size_t stretch) {
    PlaceElements(stretch);
    DrawText();
    if (cut_ != nullptr && reading_.has_outcome()) DrawPieces();
    DrawOperands();
    std::size_t depth = 0;
    for (const Reading::Step& step : reading_.steps()) {
      if (step.kind == StepKind::kIndexBegin) ++depth;
      if (step.kind == StepKind::kIndexEnd) --depth;
      if (depth > 0 || step.kind != StepKind::kOperation) continue;
      DrawOperation(reading_.operations()[step.at]);
      if (!canvas_.is_good()) return std::nullopt;
    }
    if (!canvas_.is_good()) return std::nullopt;
    return canvas_.Take();
  }

 private:
  using Kind = CutLayout::Kind;

  struct Line {
    zrt::ValueNumber number;
    std::size_t column;
  };

  // Gaps around the operators of the outermost cut are wider, so that its pieces are seen.
  [[nodiscard]] bool IsBesideCut(const Element& element) const {
    if (element.kind != Element::Kind::kOperator) return false;
    return cut_ == nullptr || &element == left_operator_ || &element == right_operator_;
  }

  void FindCutOperators() {
    if (cut_ == nullptr) return;
    for (Element& element : elements_) {
      if (element.kind != Element::Kind::kOperator || !element.is_binary) continue;
      if (element.place.offset < cut_->middle.offset) left_operator_ = &element;
      if (element.place.offset >= EndOf(cut_->middle) && right_operator_ == nullptr) {
        right_operator_ = &element;
      }
    }
  }

  void PlaceElements(std::size_t stretch) {
    FindCutOperators();
    std::size_t column = 0;
    const Element* before = nullptr;
    for (Element& element : elements_) {
      if (before != nullptr) {
        const bool is_wide = IsBesideCut(*before) || IsBesideCut(element);
        const bool is_close = before->kind == Element::Kind::kParenthesis ||
                              element.kind == Element::Kind::kParenthesis;
        column += is_wide ? stretch + 1 : is_close ? 1 : stretch;
      }
      element.column = column;
      column += WidthOf(element);
      before = &element;
    }
  }

  static Kind KindOf(const Element& element) {
    switch (element.kind) {
      case Element::Kind::kOperand: return Kind::kOperandText;
      case Element::Kind::kOperator:
      case Element::Kind::kParenthesis: return Kind::kOperatorText;
      case Element::Kind::kOther: break;
    }
    return Kind::kUnreadText;
  }

  void DrawText() {
    canvas_.AddRow();
    for (const Element& element : elements_) {
      canvas_.Put(KindOf(element), element.column, PartOf(text_, element.place));
    }
  }

  // One line below the pieces of the outermost cut, and what they are.
  void DrawPieces() {
    const bool is_group = cut_->by == zrt::CutEvent::By::kGroup;
    struct Span {
      const char* label;
      std::size_t begin;
      std::size_t end;
    };
    std::vector<Span> spans = {
        {"left",                         SIZE_MAX, 0},
        {is_group ? "group" : "operand", SIZE_MAX, 0},
        {"right",                        SIZE_MAX, 0}
    };
    const std::size_t left_end = left_operator_ == nullptr ? 0 : left_operator_->place.offset;
    const std::size_t right_begin =
        right_operator_ == nullptr ? text_.size() : EndOf(right_operator_->place);
    for (const Element& element : elements_) {
      const std::size_t offset = element.place.offset;
      const bool is_middle = offset >= cut_->middle.offset && offset < EndOf(cut_->middle);
      if (!is_middle && offset >= left_end && offset < right_begin) continue;
      Span& span = spans[is_middle ? 1 : offset < left_end ? 0 : 2];
      span.begin = std::min(span.begin, element.column);
      span.end = element.column + WidthOf(element);
    }
    canvas_.AddRow();
    for (const Span& span : spans) {
      if (span.end > 0)
        canvas_.Put(Kind::kPiece, span.begin, std::string(span.end - span.begin, '-'));
    }
    canvas_.AddRow();
    for (const Span& span : spans) {
      if (span.end > 0)
        canvas_.PutCentered(Kind::kPieceName, (span.begin + span.end - 1) / 2, span.label);
    }
  }

  void DrawOperands() {
    canvas_.AddRow();
    for (const Element& element : elements_) {
      if (element.operand == nullptr) continue;
      const std::string value = ValueText(element.operand->value);
      const bool is_said = value == PartOf(text_, element.place);
      PutValue(CenterOf(element), is_said ? "" : value);
      lines_.push_back({element.operand->number, CenterOf(element)});
    }
  }

  // A value that needs no telling is a line that goes on.
  void PutValue(std::size_t center, const std::string& value) {
    if (value.empty()) return canvas_.PutLine(center);
    canvas_.PutCentered(value == "fails" ? Kind::kFailure : Kind::kValue, center, value);
  }

  void DrawLines(const Line* first, const Line* second) {
    for (const Line& line : lines_) {
      if (&line != first && &line != second) canvas_.PutLine(line.column);
    }
  }

  Line* LineOf(zrt::ValueNumber number) {
    const auto found = std::find_if(lines_.begin(), lines_.end(),
                                    [number](const Line& line) { return line.number == number; });
    return found == lines_.end() ? nullptr : &*found;
  }

  void DrawOperation(const Reading::Operation& operation) {
    if (operation.effect == Effect::kTrailing) return;
    Line* left = LineOf(operation.left);
    Line* right = operation.is_unary ? left : LineOf(operation.right);
    if (left == nullptr || right == nullptr) return;
    canvas_.AddRow();
    DrawLines(left, right);
    const std::string label = "(" + operation.text + ")";
    const std::size_t from = std::min(left->column, right->column);
    const std::size_t to = std::max(left->column, right->column);
    std::size_t middle = (from + to) / 2;
    if (operation.is_unary) {
      canvas_.PutCentered(Kind::kOperator, middle, label);
    } else {
      if (to - from < label.size() + 1) return canvas_.Refuse();  // no room
      std::string join(to - from + 1, '-');
      join.replace((join.size() - label.size()) / 2, label.size(), label);
      const bool is_ignored = operation.effect == Effect::kIgnored || IsLeftOnly(operation);
      join.front() = operation.effect == Effect::kReplaces ? 'x' : '+';
      join.back() = is_ignored ? 'x' : '+';
      canvas_.Put(Kind::kJoin, from, join);
      if (operation.effect != Effect::kApplies) middle = join.front() == 'x' ? to : from;
    }
    canvas_.AddRow();
    DrawLines(left, right);
    PutValue(middle, operation.effect != Effect::kApplies ? ""
                     : operation.has_result               ? ValueText(operation.result)
                                                          : "fails");
    left->column = middle;
    if (!operation.is_unary) lines_.erase(lines_.begin() + (right - lines_.data()));
  }

  std::string_view text_;
  const Reading& reading_;
  const Reading::Cut* cut_;
  std::vector<Element> elements_;
  const Element* left_operator_ = nullptr;
  const Element* right_operator_ = nullptr;
  std::vector<Line> lines_;
  Canvas canvas_;
};

bool IsPlainText(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

}  // namespace

std::optional<CutLayout> LayOutCut(std::string_view text, const Reading& reading,
                                   std::size_t columns, std::size_t most_operations) {
  const std::size_t operation_count = reading.operations().size();
  if (operation_count == 0 || operation_count > most_operations) return std::nullopt;
  if (text.size() > columns || !IsPlainText(text)) return std::nullopt;
  Elements elements(text, reading);
  for (std::size_t stretch = 1; stretch <= kMostStretch; ++stretch) {
    Layouter layouter(text, reading, elements.all(), columns);
    if (auto layout = layouter.LayOut(stretch)) return layout;
  }
  return std::nullopt;
}
