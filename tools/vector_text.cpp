// Each row is written from cells of equal width; three scales as pages have them, but smaller.
#include "vector_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>
#include <vector>

#include "shown_text.h"
#include "vector_cells.h"

namespace {

constexpr std::size_t kMostBitBytes = 64;
constexpr std::size_t kMostRows = 48;
constexpr std::size_t kMapRows = 16;
constexpr std::size_t kMostLegend = 24;

constexpr const char* kPlain = "\033[0m";
constexpr const char* kFaint = "\033[2m";
constexpr const char* kChanged = "\033[1;31m";
constexpr std::array<const char*, 6> kColors = {"\033[36m", "\033[33m", "\033[32m",
                                                "\033[35m", "\033[34m", "\033[31m"};

class Writer {
 public:
  Writer(std::size_t byte_count, bool is_comparison, const Style& style)
      : style_(style),
        is_comparison_(is_comparison),
        number_width_(std::to_string(byte_count).size() + (is_comparison ? 1 : 0)) {}

  void ChooseScale(bool shows_bits) {
    shows_bits_ = shows_bits;
    cell_width_ = shows_bits ? 8 : 2;
    const std::size_t most = shows_bits ? 8 : 32;
    const std::size_t room = style_.columns - std::min(style_.columns, margin());
    per_row_ = std::min(std::bit_floor((room + 1) / (cell_width_ + 1)), most);
    per_row_ = std::max<std::size_t>(per_row_, 1);
  }
  [[nodiscard]] std::size_t per_row() const { return per_row_; }

  void Words(const std::string& words) { out_ += words + '\n'; }
  void Blank() { out_ += '\n'; }

  void Row(const VectorImage& image, const CellRow& row) {
    if (shows_bits_) {
      std::string head(margin() + 2, ' ');
      for (std::size_t i = 0; i < row.count; ++i) {
        head += HexBytes(image, row.first + i, 1) + "     ";
      }
      Line(head);
    }
    std::string line = Margin("", row.first);
    for (std::size_t i = 0; i < row.count; ++i) {
      line += i > 0 ? " " : "";
      line += Cell(image, row.first + i, 0);
    }
    Line(line);
    Marks(image, row);
  }

  void PairRow(const VectorComparison& comparison, const CellRow& row) {
    std::string before = Margin("-", row.first), after = Margin("+", row.first);
    std::string marks(margin(), ' ');
    for (std::size_t i = 0; i < row.count; ++i) {
      const std::size_t pair = row.first + i;
      const std::uint8_t changed = comparison.ChangedAt(pair);
      const char* gap = i > 0 ? " " : "";
      before += gap + Cell(comparison.before(), comparison.BeforeAt(pair), changed);
      after += gap + Cell(comparison.after(), comparison.AfterAt(pair), changed);
      marks += gap;
      for (std::size_t k = 0; k < cell_width_; ++k) {
        const bool is_marked =
            shows_bits_ ? ((unsigned{changed} >> (7 - k)) & 1U) != 0 : changed != 0;
        marks += is_marked ? '^' : ' ';
      }
    }
    Line(before);
    Line(after);
    Line(marks);
  }

  void SkippedRows(std::size_t count, const char* like) {
    Line(std::string(margin(), ' ') + Painted("... " + Counted(count, "row") + ' ' + like, kFaint));
  }

  // A character for so many bytes: "." for no bit, digits for tenths, "#" for each bit.
  template <class PartOf>
  void Map(std::size_t byte_count, PartOf part_of, const char* meaning) {
    const std::size_t room = style_.columns - std::min(style_.columns, margin());
    const std::size_t width = std::max<std::size_t>(std::bit_floor(room), 1);
    const std::size_t per_cell = BytesPerCell(byte_count, width * kMapRows);
    for (std::size_t first = 0; first < byte_count; first += width * per_cell) {
      std::string line = Margin("", first);
      for (std::size_t i = 0; i < width && first + i * per_cell < byte_count; ++i) {
        const std::size_t cell = first + i * per_cell;
        const VectorImage::Density part = part_of(cell, std::min(per_cell, byte_count - cell));
        line += ".123456789#"[TenthsOf(part.ones, part.bits)];
      }
      Line(line);
    }
    Blank();
    Words("a character is " + Counted(per_cell, "byte") + ":");
    Words(std::string(". no bit ") + meaning + ", 5 half of them, # all");
  }

  void Legend(const VectorImage& image, bool has_spare_marks) {
    const std::size_t count = std::min(image.shares.size(), kMostLegend);
    if (count < 2 && !has_spare_marks) return;
    Blank();
    if (has_spare_marks) Words("  -   spare, above the length");
    if (count < 2) return;
    std::size_t width = 0;
    const std::size_t most = std::max<std::size_t>(style_.columns, 40) - 30;
    for (std::size_t i = 0; i < count; ++i) {
      width = std::max(width, ColumnsOf(Shown(image.shares[i].text, most)));
    }
    for (std::size_t i = 0; i < count; ++i) {
      Words("  " + Painted(Padded(ShareLabel(i), 2), ColorOf(i)) + "  " +
            Padded(Shown(image.shares[i].text, most), width) + "  " +
            BitRangeWords(image, image.shares[i]));
    }
    if (count < image.shares.size()) {
      Words("  and " + std::to_string(image.shares.size() - count) + " more");
    }
  }

  [[nodiscard]] std::string Take() { return std::move(out_); }

 private:
  [[nodiscard]] std::size_t margin() const { return number_width_ + 3; }

  [[nodiscard]] std::string Margin(const char* sign, std::size_t byte) const {
    const std::string number = std::to_string(byte);
    std::string text = sign;
    text.resize(1 + number_width_ - number.size(), ' ');
    return text + number + "  ";
  }

  void Line(const std::string& line) {
    out_ += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
  }

  [[nodiscard]] std::string Painted(const std::string& text, const char* color) const {
    return style_.is_colored ? color + text + kPlain : text;
  }
  static const char* ColorOf(std::size_t share) { return kColors[share % kColors.size()]; }

  // Where two vectors are compared, colours tell what differs alone.
  [[nodiscard]] bool ShowsShares(const VectorImage& image) const {
    return !is_comparison_ && image.shares.size() > 1;
  }

  std::string Cell(const VectorImage& image, std::size_t byte, std::uint8_t changed) {
    std::string cell(byte == VectorComparison::kNone ? cell_width_ : 0, '.');
    if (byte == VectorComparison::kNone) return cell;
    if (!shows_bits_) {
      const std::string digits = HexBytes(image, byte, 1).substr(2);
      const std::size_t bit = std::max(byte * 8, image.spare_bits());
      if (changed != 0) return Painted(digits, kChanged);
      return ShowsShares(image) ? Painted(digits, ColorOf(image.ShareAt(bit))) : digits;
    }
    for (std::size_t bit = byte * 8; bit < byte * 8 + 8; ++bit) {
      const std::string digit = image.BitAt(bit) ? "1" : "0";
      if (bit < image.spare_bits()) {
        cell += Painted(digit, kFaint);
      } else if (((unsigned{changed} >> (7 - bit % 8)) & 1U) != 0) {
        cell += Painted(digit, kChanged);
      } else {
        cell += ShowsShares(image) ? Painted(digit, ColorOf(image.ShareAt(bit))) : digit;
      }
    }
    return cell;
  }

  // Where the shares of a row begin, and its spare bits.
  void Marks(const VectorImage& image, const CellRow& row) {
    const std::size_t unit = shows_bits_ ? 1 : 4;  // bits in a character
    const auto column_of = [&](std::size_t bit) {
      const std::size_t in_row = bit - row.first * 8;
      return in_row / 8 * (cell_width_ + 1) + in_row % 8 / unit;
    };
    std::string marks(row.count * (cell_width_ + 1), ' ');
    const auto mark = [&](std::size_t first, std::size_t count, const std::string& label, char c) {
      for (std::size_t bit = first; bit < first + count; bit += unit) marks[column_of(bit)] = c;
      const std::size_t begin = column_of(first);
      const std::size_t room = column_of(first + count - 1) + 1 - begin;
      marks.replace(begin, std::min(room, label.size()), label.substr(0, room));
    };
    if (image.shares.size() > 1) {
      for (const ShareStretch& stretch : StretchesOf(image, row.first, row.count)) {
        mark(stretch.first_bit, stretch.bit_count, ShareLabel(stretch.share), '.');
      }
    }
    if (row.first == 0 && image.spare_bits() > 0 && shows_bits_) {
      mark(0, image.spare_bits(), "", '-');
    }
    if (marks.find_first_not_of(' ') == std::string::npos) return;
    Line(std::string(margin(), ' ') + marks);
  }

  Style style_;
  bool is_comparison_;
  std::size_t number_width_;
  bool shows_bits_ = true;
  std::size_t cell_width_ = 8;
  std::size_t per_row_ = 1;
  std::string out_;
};

// All rows of a window, which nothing is left out of.
std::vector<CellRow> RowsOfWindow(const ByteRange& window, std::size_t per_row) {
  std::vector<CellRow> rows;
  const std::size_t end = window.first + window.count;
  for (std::size_t first = window.first; first < end; first += per_row) {
    rows.push_back({first, std::min(per_row, end - first), 0});
  }
  return rows;
}

}  // namespace

std::string VectorText(const VectorImage& image, const std::optional<ByteRange>& window,
                       const Style& style) {
  const std::size_t count = window ? window->count : image.bytes.size();
  Writer writer(image.bytes.size(), false, style);
  writer.Words(SizeWords(image));
  if (window && count == 0) writer.Words("there is no byte " + std::to_string(window->first));
  if (count == 0) return writer.Take();
  writer.Blank();
  const bool shows_bits = count <= kMostBitBytes;
  writer.ChooseScale(shows_bits);
  const std::vector<CellRow> rows =
      window ? RowsOfWindow(*window, writer.per_row()) : RowsOf(image, writer.per_row());
  const bool is_map = !window && !shows_bits && rows.size() > kMostRows;
  if (is_map) {
    const auto density = [&](std::size_t first, std::size_t bytes) {
      return image.DensityOf(first, bytes);
    };
    writer.Map(image.bytes.size(), density, "is 1");
    for (const ByteRange& run : NotableRuns(image)) {
      writer.Words("  " + RangeWords(run, "byte") + ": " + std::to_string(run.count) + " times " +
                   HexBytes(image, run.first, 1));
    }
  }
  for (const CellRow& row : is_map ? std::vector<CellRow>() : rows) {
    if (row.skipped_rows > 0) {
      writer.SkippedRows(row.skipped_rows, "more like this");
    } else {
      writer.Row(image, row);
    }
  }
  const bool has_first = !window || window->first == 0;
  writer.Legend(image, shows_bits && has_first && image.spare_bits() > 0);
  return writer.Take();
}

std::string ComparisonText(const VectorComparison& comparison,
                           const std::optional<ByteRange>& window, const Style& style) {
  Writer writer(comparison.pair_count(), true, style);
  writer.Words("- " + SizeWords(comparison.before()));
  writer.Words("+ " + SizeWords(comparison.after()));
  writer.Words(DifferenceWords(comparison));
  if (window && window->count == 0) {
    writer.Words("there is no byte " + std::to_string(window->first));
    return writer.Take();
  }
  if (comparison.changed_bits() == 0 && !window) return writer.Take();
  writer.Blank();
  std::vector<CellRow> rows;
  for (const bool shows_bits : {true, false}) {
    writer.ChooseScale(shows_bits);
    rows = window ? RowsOfWindow(*window, writer.per_row()) : RowsOf(comparison, writer.per_row());
    if (rows.size() <= kMostRows / 3) break;
  }
  if (!window && rows.size() > kMostRows) {
    const auto changed = [&](std::size_t first, std::size_t count) {
      return VectorImage::Density{ChangedIn(comparison, first, count), count * 8};
    };
    writer.Map(comparison.pair_count(), changed, "changed");
    const std::size_t count = comparison.ranges().size();
    const std::size_t told = std::min(count, kMostLegend);
    for (std::size_t i = 0; i < told; ++i) {
      const ChangeWords words = WordsOf(comparison, comparison.ranges()[i]);
      writer.Words("  " + words.where + ": " + words.before + " -> " + words.after);
    }
    if (told < count) writer.Words("  and " + std::to_string(count - told) + " more");
    return writer.Take();
  }
  for (const CellRow& row : rows) {
    if (row.skipped_rows > 0) {
      writer.SkippedRows(row.skipped_rows, "without a difference");
    } else {
      writer.PairRow(comparison, row);
    }
  }
  return writer.Take();
}
