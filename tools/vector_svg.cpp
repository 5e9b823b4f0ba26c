// Three scales, chosen by size: bits, bytes, and a map of cells of many bytes.
#include "vector_svg.h"

#include <algorithm>
#include <vector>

#include "shown_text.h"
#include "svg.h"
#include "vector_cells.h"

namespace {

using Anchor = Svg::Anchor;

constexpr std::size_t kMostBitBytes = 256;  // that are shown bit by bit
constexpr std::size_t kMostRows = 160;
constexpr std::size_t kMostMapCells = 4096;
constexpr std::size_t kMostLegend = 40;
constexpr std::size_t kMostCharacters = 60;  // of a text in the legend
constexpr int kMargin = 16;
constexpr int kGutter = 84;  // in front of a row: the number of its first byte
constexpr int kCellHeight = 20;
constexpr int kLine = 22;  // of words

// The measures of one scale.
struct Scale {
  std::size_t per_row;  // bytes
  int bit_width;        // of a cell; 0 if cells are bytes
  int byte_width;       // what a byte takes, the gap to the next one included
};

int Int(std::size_t number) { return static_cast<int>(number); }

// "0A"
std::string HexByte(const VectorImage& image, std::size_t byte) {
  return HexBytes(image, byte, 1).substr(2);
}

class Painter {
 public:
  void Words(std::string_view words, std::string_view classes = "") {
    svg_.Text(kMargin, y_ + 15, Anchor::kStart, classes, words);
    Widen(kMargin + Svg::kCharacter * Int(ColumnsOf(words)));
    y_ += kLine;
  }

  void Rows(const VectorImage& image, const std::vector<CellRow>& rows, const Scale& scale) {
    for (const CellRow& row : rows) {
      if (row.skipped_rows > 0) {
        SkippedRows(row.skipped_rows, "more like this");
      } else if (scale.bit_width > 0) {
        BitRow(image, row, scale);
      } else {
        ByteRow(image, row, scale);
      }
    }
  }

  void Rows(const VectorComparison& comparison, const std::vector<CellRow>& rows,
            const Scale& scale) {
    for (const CellRow& row : rows) {
      if (row.skipped_rows > 0) {
        SkippedRows(row.skipped_rows, "without a difference");
      } else {
        PairRow(comparison, row, scale);
      }
    }
  }

  void BitRow(const VectorImage& image, const CellRow& row, const Scale& scale) {
    RowNumber(row.first, y_ + 30);
    for (std::size_t i = 0; i < row.count; ++i) {
      const int x = kGutter + scale.byte_width * Int(i);
      const int center = x + 4 * scale.bit_width;
      svg_.Text(center, y_ + 11, Anchor::kMiddle, "small faint", HexBytes(image, row.first + i, 1));
      for (std::size_t k = 0; k < 8; ++k) {
        BitCell(image, (row.first + i) * 8 + k, x + scale.bit_width * Int(k), y_ + 15, scale);
      }
    }
    ShareMarks(image, row, scale, y_ + 15 + kCellHeight);
    EndRow(row, scale, image.shares.size() > 1 ? 66 : 48);
  }

  void ByteRow(const VectorImage& image, const CellRow& row, const Scale& scale) {
    RowNumber(row.first, y_ + 15);
    for (std::size_t i = 0; i < row.count; ++i) {
      ByteCell(image, row.first + i, kGutter + scale.byte_width * Int(i), y_, scale, 0);
    }
    ShareMarks(image, row, scale, y_ + kCellHeight);
    EndRow(row, scale, image.shares.size() > 1 ? 48 : 24);
  }

  void PairRow(const VectorComparison& comparison, const CellRow& row, const Scale& scale) {
    is_comparison_ = true;
    RowNumber(row.first, y_ + 26);
    svg_.Text(kGutter - 10, y_ + 15, Anchor::kMiddle, "", "-");
    svg_.Text(kGutter - 10, y_ + 38, Anchor::kMiddle, "", "+");
    for (std::size_t i = 0; i < row.count; ++i) {
      const std::size_t pair = row.first + i;
      const std::uint8_t changed = comparison.ChangedAt(pair);
      const int x = kGutter + scale.byte_width * Int(i);
      PairSide(comparison.before(), comparison.BeforeAt(pair), changed, x, y_, scale);
      PairSide(comparison.after(), comparison.AfterAt(pair), changed, x, y_ + 23, scale);
      PairMarks(changed, x, y_ + 58, scale);
    }
    EndRow(row, scale, 70);
  }

  void SkippedRows(std::size_t count, const char* like) {
    svg_.Text(kGutter, y_ + 13, Anchor::kStart, "faint", Counted(count, "row") + ' ' + like);
    y_ += kLine;
  }

  // A cell for so many bytes, as full as `part_of` tells for its bytes.
  template <class PartOf>
  void Map(std::size_t byte_count, PartOf part_of, bool marks_parts, const char* words) {
    constexpr int kSide = 13;
    constexpr std::size_t kPerRow = 64;
    const std::size_t per_cell = BytesPerCell(byte_count, kMostMapCells);
    for (std::size_t first = 0, cell = 0; first < byte_count; first += per_cell, ++cell) {
      const int x = kGutter + kSide * Int(cell % kPerRow);
      if (cell % kPerRow == 0) RowNumber(first, y_ + 11);
      const std::size_t count = std::min(per_cell, byte_count - first);
      const VectorImage::Density part = part_of(first, count);
      const std::size_t percent = (part.ones * 100 + part.bits / 2) / std::max(part.bits, kOne);
      svg_.Rect(x, y_, kSide, kSide, marks_parts && part.ones > 0 ? "cell changed" : "cell",
                RangeWords({first, count}, "byte") + ": " + std::to_string(percent) + words);
      svg_.Shade(x, y_, kSide, kSide, TenthsOf(part.ones, part.bits));
      if (cell % kPerRow == kPerRow - 1 || first + per_cell >= byte_count) y_ += kSide;
    }
    Widen(kGutter + kSide * Int(kPerRow));
    y_ += 8;
    Words("a cell for " + Counted(per_cell, "byte") + ", the stronger, the more of its bits are " +
              (marks_parts ? "changed" : "1"),
          "faint");
  }

  void Legend(const VectorImage& image, bool shows_bits) {
    if (image.spare_bits() > 0 && shows_bits) Words("dashed: spare, above the length", "faint");
    if (image.shares.size() < 2) return;
    y_ += 8;
    const std::size_t count = std::min(image.shares.size(), kMostLegend);
    for (std::size_t share = 0; share < count; ++share) {
      const VectorImage::Share& part = image.shares[share];
      svg_.Rect(kMargin, y_ + 1, 26, 18, "cell " + ColorOf(share));
      svg_.Text(kMargin + 13, y_ + 15, Anchor::kMiddle, "", ShareLabel(share));
      const std::string words =
          Shown(part.text, kMostCharacters) + "  " + BitRangeWords(image, part);
      svg_.Text(kMargin + 36, y_ + 15, Anchor::kStart, "", words);
      Widen(kMargin + 36 + Svg::kCharacter * Int(ColumnsOf(words)));
      y_ += kLine;
    }
    if (count < image.shares.size()) {
      Words("and " + std::to_string(image.shares.size() - count) + " more", "faint");
    }
  }

  [[nodiscard]] std::string Picture(const std::string& id, std::string_view title,
                                    std::string_view description) const {
    return svg_.Picture(width_ + kMargin, y_ + kMargin, id, title, description);
  }

 private:
  static constexpr std::size_t kOne = 1;

  static std::string ColorOf(std::size_t share) {
    return "share" + std::to_string(share % kShareColors);
  }

  // Where two vectors are compared, colours would be too much.
  [[nodiscard]] bool ShowsShares(const VectorImage& image) const {
    return !is_comparison_ && image.shares.size() > 1;
  }

  void Widen(int width) { width_ = std::max(width_, width); }

  void RowNumber(std::size_t byte, int y) {
    svg_.Text(kGutter - 20, y, Anchor::kEnd, "small faint", std::to_string(byte));
  }

  void EndRow(const CellRow& row, const Scale& scale, int height) {
    Widen(kGutter + scale.byte_width * Int(row.count));
    y_ += height;
  }

  void BitCell(const VectorImage& image, std::size_t bit, int x, int y, const Scale& scale) {
    const bool is_spare = bit < image.spare_bits();
    const bool is_one = image.BitAt(bit);
    const std::size_t share = is_spare ? 0 : image.ShareAt(bit);
    const bool has_color = !is_spare && ShowsShares(image);
    svg_.Rect(x, y, scale.bit_width, kCellHeight,
              is_spare    ? "spare"
              : has_color ? "cell " + ColorOf(share)
                          : "cell",
              BitTitle(image, bit,
                       is_spare    ? "spare"
                       : has_color ? ShareLabel(share)
                                   : ""));
    svg_.Text(x + scale.bit_width / 2, y + 15, Anchor::kMiddle,
              is_spare ? "faint"
              : is_one ? "one"
                       : "",
              is_one ? "1" : "0");
  }

  static std::string BitTitle(const VectorImage& image, std::size_t bit, const std::string& note) {
    std::string title = "byte " + std::to_string(bit / 8) + ", bit " +
                        std::to_string(image.bytes.size() * 8 - 1 - bit);
    return note.empty() ? title : title + ", " + note;
  }

  void ByteCell(const VectorImage& image, std::size_t byte, int x, int y, const Scale& scale,
                std::uint8_t changed) {
    const std::size_t share =
        ShowsShares(image) ? image.ShareAt(std::max(byte * 8, image.spare_bits())) : 0;
    svg_.Rect(x, y, scale.byte_width - 2, kCellHeight,
              ShowsShares(image) ? "cell " + ColorOf(share) : "cell",
              "byte " + std::to_string(byte));
    if (changed != 0) svg_.Rect(x, y, scale.byte_width - 2, kCellHeight, "changed");
    const int center = x + (scale.byte_width - 2) / 2;
    svg_.Text(center, y + 15, Anchor::kMiddle, changed != 0 ? "one" : "", HexByte(image, byte));
  }

  // Bars below the cells, each with the letter of its share.
  void ShareMarks(const VectorImage& image, const CellRow& row, const Scale& scale, int y) {
    if (image.shares.size() < 2) return;
    const auto x_of = [&](std::size_t bit) {
      const std::size_t in_row = bit - row.first * 8;
      const int in_byte = scale.bit_width > 0 ? scale.bit_width * Int(in_row % 8)
                                              : (scale.byte_width - 2) * Int(in_row % 8) / 8;
      return kGutter + scale.byte_width * Int(in_row / 8) + in_byte;
    };
    int free_x = 0;  // where a letter would touch none
    for (const ShareStretch& stretch : StretchesOf(image, row.first, row.count)) {
      const int begin = x_of(stretch.first_bit);
      const int unit = std::max(scale.bit_width, 1);
      const int end = x_of(stretch.first_bit + stretch.bit_count - 1) + unit;
      svg_.Rect(begin, y + 3, std::max(end - begin - 1, 1), 4, "cell " + ColorOf(stretch.share));
      const std::string label = ShareLabel(stretch.share);
      const int half = 7 * Int(label.size()) / 2;
      const int center = (begin + end) / 2;
      if (center - half < free_x) continue;
      svg_.Text(center, y + 19, Anchor::kMiddle, "small", label);
      free_x = center + half + 2;
    }
  }

  void PairSide(const VectorImage& image, std::size_t byte, std::uint8_t changed, int x, int y,
                const Scale& scale) {
    if (byte == VectorComparison::kNone) {
      return svg_.Rect(x, y, scale.bit_width > 0 ? 8 * scale.bit_width : scale.byte_width - 2,
                       kCellHeight, "spare");
    }
    if (scale.bit_width == 0) return ByteCell(image, byte, x, y, scale, changed);
    for (std::size_t k = 0; k < 8; ++k) {
      const int bit_x = x + scale.bit_width * Int(k);
      BitCell(image, byte * 8 + k, bit_x, y, scale);
      if (((unsigned{changed} >> (7 - k)) & 1U) == 0) continue;
      svg_.Rect(bit_x + 1, y + 1, scale.bit_width - 2, kCellHeight - 2, "changed");
    }
  }

  void PairMarks(std::uint8_t changed, int x, int y, const Scale& scale) {
    if (scale.bit_width == 0 && changed != 0) {
      return svg_.Text(x + (scale.byte_width - 2) / 2, y, Anchor::kMiddle, "bad", "^");
    }
    for (std::size_t k = 0; k < 8; ++k) {
      if (((unsigned{changed} >> (7 - k)) & 1U) == 0) continue;
      svg_.Text(x + scale.bit_width * Int(k) + scale.bit_width / 2, y, Anchor::kMiddle, "bad", "^");
    }
  }

  Svg svg_;
  int y_ = kMargin;
  int width_ = 0;
  bool is_comparison_ = false;
};

constexpr Scale kBits = {8, 14, 8 * 14 + 8};
constexpr Scale kFewBits = {4, 14, 8 * 14 + 8};
constexpr Scale kBytes = {32, 0, 28};

}  // namespace

std::string VectorSvg(std::string_view text, const VectorImage& image, const std::string& id) {
  Painter painter;
  painter.Words(SizeWords(image));
  const bool shows_bits = image.bytes.size() <= kMostBitBytes;
  const Scale& scale = image.bytes.size() <= 32 ? kFewBits : shows_bits ? kBits : kBytes;
  const std::vector<CellRow> rows = RowsOf(image, scale.per_row);
  if (!shows_bits && rows.size() > kMostRows) {
    painter.Map(
        image.bytes.size(),
        [&](std::size_t first, std::size_t count) { return image.DensityOf(first, count); }, false,
        " % ones");
  } else {
    painter.Rows(image, rows, scale);
  }
  painter.Legend(image, shows_bits);
  std::string description = SizeWords(image) + ".";
  for (std::size_t share = 0; image.shares.size() > 1 && share < image.shares.size(); ++share) {
    if (share == kMostLegend) break;
    description += ' ' + Shown(image.shares[share].text, kMostCharacters) + ": " +
                   Counted(image.shares[share].bit_count, "bit") + '.';
  }
  return painter.Picture(id, "The bits of " + Shown(text, kMostCharacters), description);
}

std::string ComparisonSvg(std::string_view text, const VectorComparison& comparison,
                          const std::string& id) {
  Painter painter;
  painter.Words("- " + SizeWords(comparison.before()));
  painter.Words("+ " + SizeWords(comparison.after()));
  painter.Words(DifferenceWords(comparison));
  const bool shows_bits = RowsOf(comparison, kBits.per_row).size() <= kMostRows / 4;
  const Scale& scale = comparison.pair_count() <= 32 ? kFewBits : shows_bits ? kBits : kBytes;
  const std::vector<CellRow> rows = RowsOf(comparison, scale.per_row);
  if (rows.size() > kMostRows) {
    painter.Map(
        comparison.pair_count(),
        [&](std::size_t first, std::size_t count) {
          return VectorImage::Density{ChangedIn(comparison, first, count), count * 8};
        },
        true, " % changed");
  } else {
    painter.Rows(comparison, rows, scale);
  }
  return painter.Picture(id, "What differs in " + Shown(text, kMostCharacters),
                         DifferenceWords(comparison) + ".");
}
