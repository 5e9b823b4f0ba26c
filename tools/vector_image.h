// A bit vector as it is looked at: its bytes, which operand each bit comes from, where it is even
// and where dense, and where it differs from another one. Knows no output.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "reading_tree.h"

/// Bits are counted from the top bit of the first byte, spare bits included.
struct VectorImage {
  /// What an operand, or what was computed of some, has given to a value that joins several.
  struct Share {
    std::string text;
    std::size_t first_bit;
    std::size_t bit_count;
  };

  std::vector<std::uint8_t> bytes;  // as many as the length needs
  std::size_t bit_count = 0;        // the length
  std::vector<Share> shares;        // in order, without those of no bits; together all valid bits

  [[nodiscard]] std::size_t spare_bits() const { return bytes.size() * 8 - bit_count; }
  [[nodiscard]] bool BitAt(std::size_t bit) const {
    return ((unsigned{bytes[bit / 8]} >> (7 - bit % 8)) & 1U) != 0;
  }

  /// Valid bits of the byte, 0xFF but for the first one.
  [[nodiscard]] std::uint8_t ValidMask(std::size_t byte) const;

  /// The number of the share that a valid bit belongs to.
  [[nodiscard]] std::size_t ShareAt(std::size_t bit) const;

  /// How many of the valid bits of these bytes are 1, and how many there are.
  struct Density {
    std::size_t ones;
    std::size_t bits;
  };
  [[nodiscard]] Density DensityOf(std::size_t first_byte, std::size_t byte_count) const;
};

/// The image of a value, read as `reading` tells.
VectorImage ImageOf(std::string_view text, const Reading& reading, RowDataStream* value);

/// The shares of a value that `tree` tells, if their lengths add up to `bit_count`; else one.
std::vector<VectorImage::Share> SharesOf(std::string_view text, const ReadingTree& tree,
                                         std::size_t spare_bits, std::size_t bit_count);

/// "a" to "z", "aa" to "zz", then "" of a share.
std::string ShareLabel(std::size_t share);

struct ByteRange {
  std::size_t first;
  std::size_t count;
};

/// The longest stretches of one and the same byte, `most` of them, at least `least` bytes long, in
/// order.
std::vector<ByteRange> LongestRuns(const VectorImage& image, std::size_t least, std::size_t most);

/// Two vectors byte beside byte. Of vectors of different sizes those bytes are paired, from the
/// first or from the last one on, that have more in common.
class VectorComparison {
 public:
  /// Both must outlive the comparison.
  VectorComparison(const VectorImage& before, const VectorImage& after);

  [[nodiscard]] const VectorImage& before() const { return before_; }
  [[nodiscard]] const VectorImage& after() const { return after_; }

  /// Pairs, of which one side may be missing.
  [[nodiscard]] std::size_t pair_count() const { return pair_count_; }
  [[nodiscard]] bool pairs_from_last() const { return pairs_from_last_; }

  /// The byte of a side that is in a pair; npos if there is none.
  static constexpr std::size_t kNone = SIZE_MAX;
  [[nodiscard]] std::size_t BeforeAt(std::size_t pair) const;
  [[nodiscard]] std::size_t AfterAt(std::size_t pair) const;

  /// The bits of a pair that differ; a valid bit differs from a missing or spare one.
  [[nodiscard]] std::uint8_t ChangedAt(std::size_t pair) const;

  [[nodiscard]] std::size_t changed_bits() const { return changed_bits_; }
  [[nodiscard]] std::size_t changed_bytes() const { return changed_bytes_; }

  /// Pairs that differ one behind the other, in order.
  [[nodiscard]] const std::vector<ByteRange>& ranges() const { return ranges_; }

 private:
  void Count();

  const VectorImage& before_;
  const VectorImage& after_;
  std::size_t pair_count_;
  bool pairs_from_last_ = true;
  std::size_t changed_bits_ = 0;
  std::size_t changed_bytes_ = 0;
  std::vector<ByteRange> ranges_;
};
