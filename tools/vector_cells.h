// How a vector is laid out in rows, and its words. Pictures for terminals and for pages have them
// in common.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "vector_image.h"

/// "12 bits in 2 bytes, 4 spare", "no bits".
std::string SizeWords(const VectorImage& image);

/// "2 of 4 bytes differ, in 3 bits; paired from the last byte".
std::string DifferenceWords(const VectorComparison& comparison);

/// "byte 5", "bytes 5 to 9"; "5 to 9" alone.
std::string RangeWords(const ByteRange& range, const char* noun);
std::string RangeWords(const ByteRange& range);

/// "bits 15 to 4", as they are counted in a value: the last one is bit 0.
std::string BitRangeWords(const VectorImage& image, const VectorImage::Share& share);

/// "0x0ABC", of many bytes the first ones and "...".
std::string HexBytes(const VectorImage& image, std::size_t first, std::size_t count);

/// A range of pairs that differ: its bytes on both sides, "none" where there are none.
struct ChangeWords {
  std::string where;
  std::string before;
  std::string after;
};
ChangeWords WordsOf(const VectorComparison& comparison, const ByteRange& range);

/// The runs that are worth telling: the longest ones, in order.
std::vector<ByteRange> NotableRuns(const VectorImage& image);

/// A row of pairs or bytes that is shown, or a count of rows like the one in front that are not.
struct CellRow {
  std::size_t first;
  std::size_t count;
  std::size_t skipped_rows;  // then the others are 0
};

/// Rows of `per_row` bytes. Of rows that are equal in bytes and share, three and more in a row,
/// only the first one is shown.
std::vector<CellRow> RowsOf(const VectorImage& image, std::size_t per_row);

/// Rows of pairs; those without a difference are left out but for the ones beside a difference.
std::vector<CellRow> RowsOf(const VectorComparison& comparison, std::size_t per_row);

/// A stretch of a row of bits in one share, spare bits aside.
struct ShareStretch {
  std::size_t share;
  std::size_t first_bit;
  std::size_t bit_count;
};
std::vector<ShareStretch> StretchesOf(const VectorImage& image, std::size_t first_byte,
                                      std::size_t byte_count);

/// How many bytes a cell of a map stands for so that `cells` are enough: a power of two.
std::size_t BytesPerCell(std::size_t byte_count, std::size_t cells);

/// 0 to 10: no bit, about so many tenths of the bits, every bit.
std::size_t TenthsOf(std::size_t part, std::size_t whole);

/// Bits that differ in pairs.
std::size_t ChangedIn(const VectorComparison& comparison, std::size_t first, std::size_t count);
