// Draws the layout of a cut item by item, each in its rows and columns; what has no layout is drawn
// as the list of its lines.
#include "cut_svg.h"

#include <algorithm>
#include <vector>

#include "cut_layout.h"
#include "diagnostic.h"
#include "picture.h"
#include "reading_text.h"
#include "shown_text.h"
#include "steps.h"
#include "svg.h"

namespace {

using Anchor = Svg::Anchor;
using Kind = CutLayout::Kind;

constexpr std::size_t kMostColumns = 120;
constexpr std::size_t kMostOperations = 30;
constexpr std::size_t kMostLines = 2000;
constexpr std::size_t kWordColumns = 76;   // of a line of words
constexpr std::size_t kMostFailure = 600;  // characters
constexpr int kMargin = 16;
constexpr int kRow = 24;
constexpr int kBaseline = 17;  // in a row

int WidthOf(std::size_t columns) { return static_cast<int>(columns) * Svg::kCharacter; }

struct Extent {
  int width;
  int height;
};

class LayoutPainter {
 public:
  explicit LayoutPainter(Svg* svg) : svg_(*svg) {}

  Extent Paint(const CutLayout& layout) {
    std::size_t columns = 0;
    for (const CutLayout::Item& item : layout.items) {
      Paint(item);
      columns = std::max(columns, item.column + item.text.size());
    }
    return {2 * kMargin + WidthOf(columns),
            2 * kMargin + kRow * static_cast<int>(layout.rows.size())};
  }

 private:
  void Paint(const CutLayout::Item& item) {
    x_ = kMargin + WidthOf(item.column);
    y_ = kMargin + kRow * static_cast<int>(item.row);
    width_ = WidthOf(item.text.size());
    const int middle = x_ + width_ / 2;
    switch (item.kind) {
      case Kind::kOperandText: return Put("name", item.text);
      case Kind::kOperatorText: return Put("", item.text);
      case Kind::kUnreadText: return Put("faint", item.text);
      case Kind::kPiece: return svg_.Line(x_, y_ + 6, x_ + width_, y_ + 6, "line");
      case Kind::kPieceName: return PutCentered("faint", item.text);
      case Kind::kValue: return PutCentered("one", item.text);
      case Kind::kFailure: return PutCentered("bad", item.text);
      case Kind::kLine: return svg_.Line(middle, y_, middle, y_ + kRow, "line");
      case Kind::kOperator:
        svg_.Line(middle, y_, middle, y_ + kRow, "line");
        return PutOperator(middle, item.text);
      case Kind::kJoin: return PutJoin(item.text);
    }
  }

  void Put(std::string_view classes, const std::string& text) {
    svg_.Text(x_, y_ + kBaseline, Anchor::kStart, classes, text);
  }

  // Characters have no middle where their count is even: there the column to the left of it is one.
  void PutCentered(std::string_view classes, const std::string& text) {
    if (text.size() % 2 == 0) x_ -= Svg::kCharacter / 2;
    Put(classes, text);
  }

  // "(+)" without its parentheses, which are what characters can do for a box.
  void PutOperator(int middle, const std::string& label) {
    const int width = WidthOf(label.size());
    svg_.Rect(middle - width / 2, y_ + 2, width, kRow - 4, "box");
    svg_.Text(middle, y_ + kBaseline, Anchor::kMiddle, "", label.substr(1, label.size() - 2));
  }

  void PutJoin(const std::string& join) {
    const int left = x_ + Svg::kCharacter / 2;
    const int right = x_ + width_ - Svg::kCharacter / 2 - 1;
    const int middle = left + WidthOf((join.size() - 1) / 2);
    const int level = y_ + kRow / 2;
    svg_.Line(left, level, right, level, "line");
    PutEnd(left, join.front() == 'x');
    PutEnd(right, join.back() == 'x');
    const int goes_on = join.front() == 'x' ? right : join.back() == 'x' ? left : middle;
    svg_.Line(goes_on, level, goes_on, y_ + kRow, "line");
    const std::size_t open = join.find('(');
    PutOperator(middle, join.substr(open, join.find(')') - open + 1));
  }

  void PutEnd(int x, bool is_dropped) {
    svg_.Line(x, y_, x, y_ + kRow / 2, "line");
    if (!is_dropped) return;
    svg_.Line(x - 5, y_ + kRow / 2 - 5, x + 5, y_ + kRow / 2 + 5, "drop");
    svg_.Line(x - 5, y_ + kRow / 2 + 5, x + 5, y_ + kRow / 2 - 5, "drop");
  }

  Svg& svg_;
  int x_ = 0;
  int y_ = 0;
  int width_ = 0;
};

// Sides that are groups stand further in, between lines that hold them together.
Extent PaintLines(const std::vector<CutLine>& lines, Svg* svg) {
  static constexpr std::size_t kMostIndents = 30;
  static constexpr int kIndent = 20;
  constexpr int kSymbol = 3 * Svg::kCharacter, kGap = 3 * Svg::kCharacter;
  const std::size_t count = std::min(lines.size(), kMostLines);
  const auto start_of = [](const CutLine& line) {
    return kMargin + kIndent * static_cast<int>(std::min(line.depth, kMostIndents));
  };
  int value_x = 0;
  std::size_t value_columns = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const CutLine& line = lines[i];
    value_x = std::max(value_x, start_of(line) + kSymbol + WidthOf(ColumnsOf(line.side)) + kGap);
    value_columns = std::max(value_columns, ColumnsOf(line.value));
  }
  int y = kMargin;
  for (std::size_t i = 0; i < count; ++i, y += kRow) {
    const CutLine& line = lines[i];
    const int x = start_of(line);
    for (int guide = kMargin; guide < x; guide += kIndent) {
      svg->Line(guide + kSymbol / 2, y, guide + kSymbol / 2, y + kRow, "line guide");
    }
    if (!line.symbol.empty()) {
      svg->Rect(x, y + 2, kSymbol - 4, kRow - 4, "box");
      svg->Text(x + kSymbol / 2 - 2, y + kBaseline, Anchor::kMiddle, "", line.symbol);
    }
    const bool is_bracket = line.side == "(" || line.side == ")";
    svg->Text(x + kSymbol, y + kBaseline, Anchor::kStart, is_bracket ? "" : "name", line.side);
    if (line.value.empty()) continue;
    svg->Text(value_x, y + kBaseline, Anchor::kStart, "one", "= " + line.value);
  }
  if (count < lines.size()) {
    const std::string more = "and " + Counted(lines.size() - count, "line") + " more";
    svg->Text(kMargin, y + kBaseline, Anchor::kStart, "faint", more);
    y += kRow;
  }
  return {value_x + WidthOf(value_columns + 2) + kMargin, y + kMargin};
}

// The place of a failure below what there is, and the words.
void PaintFailure(std::string_view text, zrt::Place place, std::string_view failure, Extent* extent,
                  Svg* svg) {
  const Diagnostic diagnostic = MakeDiagnostic(ArgumentSource(text), place, kMostColumns);
  const int y = extent->height += 8;
  svg->Text(kMargin, y + kBaseline - kMargin, Anchor::kStart, "", diagnostic.window);
  const int x = kMargin + WidthOf(diagnostic.caret);
  svg->Line(x, y + kRow - kMargin, x + WidthOf(diagnostic.underlined), y + kRow - kMargin, "drop");
  std::size_t columns = ColumnsOf(diagnostic.window);
  extent->height += kRow + 4;
  for (const std::string& line : Wrapped(Shown(failure, kMostFailure), kWordColumns)) {
    svg->Text(kMargin, extent->height + kBaseline - kMargin, Anchor::kStart, "bad", line);
    columns = std::max(columns, ColumnsOf(line));
    extent->height += kRow;
  }
  extent->width = std::max(extent->width, 2 * kMargin + WidthOf(columns));
}

// What a person is told who does not see the picture.
std::string Description(std::string_view text, const ReadingTree& tree, std::string_view failure) {
  constexpr std::size_t kMostCharacters = 4000;
  const Reading& reading = tree.reading();
  std::string description;
  if (tree.root() != ReadingTree::kNone) {
    description += "Reads as " + Shown(tree.Brackets(text, tree.root()), kMostCharacters) + ". ";
  }
  std::string steps;
  for (const StepWords& step : StepsInWords(text, reading)) {
    if (steps.size() > kMostCharacters) break;
    steps += ' ' + step.what + (step.remark.empty() ? ";" : ", " + step.remark + ';');
  }
  if (!steps.empty()) description += "Steps:" + steps + ' ';
  if (reading.has_outcome()) description += "Gives " + ValueText(reading.outcome_value()) + ". ";
  if (!reading.has_outcome()) description += "It fails. ";
  return description + std::string(failure);
}

}  // namespace

std::string CutSvg(std::string_view text, const ReadingTree& tree, std::string_view failure,
                   const std::string& id) {
  constexpr std::size_t kMostTitle = 80;
  Svg svg;
  Extent extent{0, 2 * kMargin};
  if (const auto layout = LayOutCut(text, tree.reading(), kMostColumns, kMostOperations)) {
    extent = LayoutPainter(&svg).Paint(*layout);
  } else if (const auto lines = CutLines(text, tree); !lines.empty()) {
    extent = PaintLines(lines, &svg);
  }
  if (!failure.empty()) PaintFailure(text, tree.reading().failure().place, failure, &extent, &svg);
  return svg.Picture(extent.width, extent.height, id, "How " + Shown(text, kMostTitle) + " is read",
                     Description(text, tree, failure));
}
