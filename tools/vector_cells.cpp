// Counting and comparing rows; nothing is drawn.
#include "vector_cells.h"

#include <algorithm>
#include <bit>

#include "output.h"
#include "shown_text.h"

std::string SizeWords(const VectorImage& image) {
  if (image.bit_count == 0) return "no bits";
  std::string words =
      Counted(image.bit_count, "bit") + " in " + Counted(image.bytes.size(), "byte");
  if (image.spare_bits() > 0) words += ", " + std::to_string(image.spare_bits()) + " spare";
  return words;
}

std::string DifferenceWords(const VectorComparison& comparison) {
  const bool is_same_size = comparison.before().bit_count == comparison.after().bit_count;
  std::string words;
  if (comparison.changed_bits() == 0) {
    words = "no difference";
  } else {
    words = std::to_string(comparison.changed_bytes()) + " of " +
            Counted(comparison.pair_count(), "byte") +
            (comparison.changed_bytes() == 1 ? " differs, in " : " differ, in ") +
            Counted(comparison.changed_bits(), "bit");
  }
  if (is_same_size) return words;
  return words + (comparison.pairs_from_last() ? "; paired from the last byte"
                                               : "; paired from the first byte");
}

std::string RangeWords(const ByteRange& range) {
  const std::string first = std::to_string(range.first);
  return range.count == 1 ? first : first + " to " + std::to_string(range.first + range.count - 1);
}

std::string RangeWords(const ByteRange& range, const char* noun) {
  return noun + std::string(range.count == 1 ? " " : "s ") + RangeWords(range);
}

std::string BitRangeWords(const VectorImage& image, const VectorImage::Share& share) {
  const std::size_t low = image.bytes.size() * 8 - share.first_bit - share.bit_count;
  if (share.bit_count == 1) return "bit " + std::to_string(low);
  return "bits " + std::to_string(low + share.bit_count - 1) + " to " + std::to_string(low);
}

std::string HexBytes(const VectorImage& image, std::size_t first, std::size_t count) {
  constexpr std::size_t kMost = 8;
  const auto* bytes = reinterpret_cast<const char*>(image.bytes.data());  // NOLINT: chars are bytes
  return HexText(std::string(bytes + first, std::min(count, kMost))) + (count > kMost ? "..." : "");
}

ChangeWords WordsOf(const VectorComparison& comparison, const ByteRange& range) {
  const auto side = [&](const VectorImage& image,
                        std::size_t (VectorComparison::*at)(std::size_t) const) -> std::string {
    std::size_t first = VectorComparison::kNone;
    std::size_t count = 0;
    for (std::size_t pair = range.first; pair < range.first + range.count; ++pair) {
      const std::size_t byte = (comparison.*at)(pair);
      if (byte == VectorComparison::kNone) continue;
      if (count++ == 0) first = byte;
    }
    return count == 0 ? "none" : HexBytes(image, first, count);
  };
  return {RangeWords(range), side(comparison.before(), &VectorComparison::BeforeAt),
          side(comparison.after(), &VectorComparison::AfterAt)};
}

std::vector<ByteRange> NotableRuns(const VectorImage& image) {
  constexpr std::size_t kLeast = 16, kMost = 12;
  return LongestRuns(image, kLeast, kMost);
}

std::vector<CellRow> RowsOf(const VectorImage& image, std::size_t per_row) {
  const std::vector<std::uint8_t>& bytes = image.bytes;
  const auto is_like_last = [&](std::size_t first) {
    if (first < per_row || first + per_row > bytes.size()) return false;
    if (first == per_row && image.spare_bits() > 0) return false;
    return std::equal(&bytes[first], &bytes[first] + per_row, &bytes[first - per_row]) &&
           image.ShareAt((first - per_row) * 8) == image.ShareAt((first + per_row) * 8 - 1);
  };
  std::vector<CellRow> rows;
  for (std::size_t first = 0; first < bytes.size(); first += per_row) {
    const bool is_left_out =
        is_like_last(first) &&
        (rows.back().skipped_rows > 0 || is_like_last(first + per_row));  // one saves nothing
    if (!is_left_out) {
      rows.push_back({first, std::min(per_row, bytes.size() - first), 0});
    } else if (rows.back().skipped_rows > 0) {
      ++rows.back().skipped_rows;
    } else {
      rows.push_back({0, 0, 1});
    }
  }
  return rows;
}

std::vector<CellRow> RowsOf(const VectorComparison& comparison, std::size_t per_row) {
  const std::size_t count = comparison.pair_count();
  const std::size_t row_count = (count + per_row - 1) / per_row;
  std::vector<CellRow> rows;
  std::size_t next = 0;  // the first row that is not told yet
  const auto skip_to = [&](std::size_t row) {
    if (row > next) rows.push_back({0, 0, row - next});
    next = std::max(next, row);
  };
  for (const ByteRange& range : comparison.ranges()) {
    const std::size_t first = range.first / per_row;
    const std::size_t last = (range.first + range.count - 1) / per_row;
    skip_to(first == 0 ? 0 : first - 1);
    for (; next < std::min(last + 2, row_count); ++next) {
      rows.push_back({next * per_row, std::min(per_row, count - next * per_row), 0});
    }
  }
  skip_to(row_count);
  return rows;
}

std::vector<ShareStretch> StretchesOf(const VectorImage& image, std::size_t first_byte,
                                      std::size_t byte_count) {
  std::vector<ShareStretch> stretches;
  std::size_t bit = std::max(first_byte * 8, image.spare_bits());
  const std::size_t end = (first_byte + byte_count) * 8;
  if (image.shares.empty()) return stretches;
  for (std::size_t share = image.ShareAt(bit); bit < end; ++share) {
    const VectorImage::Share& whole = image.shares[share];
    const std::size_t last = std::min(whole.first_bit + whole.bit_count, end);
    stretches.push_back({share, bit, last - bit});
    bit = last;
  }
  return stretches;
}

std::size_t BytesPerCell(std::size_t byte_count, std::size_t cells) {
  return std::bit_ceil((byte_count + cells - 1) / cells);
}

std::size_t TenthsOf(std::size_t part, std::size_t whole) {
  if (part == 0) return 0;
  if (part == whole) return 10;
  return std::clamp<std::size_t>((part * 10 + whole / 2) / whole, 1, 9);
}

std::size_t ChangedIn(const VectorComparison& comparison, std::size_t first, std::size_t count) {
  std::size_t changed = 0;
  for (std::size_t pair = first; pair < first + count; ++pair) {
    changed += static_cast<std::size_t>(std::popcount(comparison.ChangedAt(pair)));
  }
  return changed;
}
