// Counts bits and bytes. Which share a bit belongs to follows from the lengths that the evaluation
// told of both sides of each "@".
#include "vector_image.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "reading_text.h"
#include "zrtexpression/texts.h"

namespace {

using Node = ReadingTree::Node;

std::size_t LengthOf(const ReadValue& value) {
  return static_cast<std::size_t>(std::max(value.bit_length, 0));
}

// As much further in one direction as it takes to find as many parentheses, blanks between them.
std::size_t Through(std::string_view text, std::size_t at, std::ptrdiff_t count, bool is_forward) {
  const char wanted = is_forward ? ')' : '(';
  for (std::size_t found = at; count > 0;) {
    if (is_forward ? found >= text.size() : found == 0) break;
    const char c = text[is_forward ? found : found - 1];
    if (c != ' ' && c != wanted) break;
    found = is_forward ? found + 1 : found - 1;
    if (c != wanted) continue;
    at = found;
    --count;
  }
  return at;
}

// A node as it stands in the text. Its span ends at operands: parentheses are added that belong to
// those inside.
std::string_view Spelling(std::string_view text, const Reading& reading, const Node& node) {
  if (node.kind == Node::Kind::kOperand) return PartOf(text, reading.operands()[node.at].place);
  std::ptrdiff_t depth = 0, least = 0;
  for (const char c : PartOf(text, node.span)) {
    if (c == '(') ++depth;
    if (c == ')') least = std::min(least, --depth);
  }
  const std::size_t begin = Through(text, node.span.offset, -least, false);
  const std::size_t end = Through(text, node.span.offset + node.span.length, depth - least, true);
  return text.substr(begin, end - begin);
}

}  // namespace

std::uint8_t VectorImage::ValidMask(std::size_t byte) const {
  return static_cast<std::uint8_t>(byte == 0 ? 0xFFU >> spare_bits() : 0xFFU);
}

std::size_t VectorImage::ShareAt(std::size_t bit) const {
  const auto behind =
      std::upper_bound(shares.begin(), shares.end(), bit,
                       [](std::size_t at, const Share& share) { return at < share.first_bit; });
  return behind == shares.begin() ? 0 : static_cast<std::size_t>(behind - shares.begin() - 1);
}

VectorImage::Density VectorImage::DensityOf(std::size_t first_byte, std::size_t byte_count) const {
  Density density{0, byte_count * 8};
  for (std::size_t i = first_byte; i < first_byte + byte_count; ++i) {
    density.ones += static_cast<std::size_t>(std::popcount(bytes[i]));
  }
  if (first_byte > 0 || byte_count == 0) return density;
  const auto spare = static_cast<std::uint8_t>(unsigned{bytes[0]} & ~unsigned{ValidMask(0)});
  density.ones -= static_cast<std::size_t>(std::popcount(spare));
  density.bits -= spare_bits();
  return density;
}

VectorImage ImageOf(std::string_view text, const Reading& reading, RowDataStream* value) {
  VectorImage image;
  image.bit_count = static_cast<std::size_t>(std::max(value->BitLength, 0));
  image.bytes.resize(zrt::ValidByteCount(*value));
  zrt::CopyValidBytes(*value, zrt::SpareBits::kAsTheyAre, image.bytes.data());
  const ReadingTree tree(reading);
  image.shares = SharesOf(text, tree, image.spare_bits(), image.bit_count);
  return image;
}

std::vector<VectorImage::Share> SharesOf(std::string_view text, const ReadingTree& tree,
                                         std::size_t spare_bits, std::size_t bit_count) {
  struct Piece {
    ReadingTree::NodeNumber node;
    std::size_t bit_count;
  };
  const Reading& reading = tree.reading();
  std::vector<VectorImage::Share> shares;
  if (bit_count == 0) return shares;
  std::vector<Piece> pieces;  // the next one last
  if (tree.root() != ReadingTree::kNone) pieces.push_back({tree.root(), bit_count});
  std::size_t first_bit = spare_bits;
  while (!pieces.empty()) {
    const Piece piece = pieces.back();
    pieces.pop_back();
    const Node& node = tree.nodes()[piece.node];
    if (node.kind == Node::Kind::kBinary && reading.operations()[node.at].text == "@") {
      const Reading::Operation& join = reading.operations()[node.at];
      pieces.push_back({node.right, LengthOf(join.right_value)});
      pieces.push_back({node.left, LengthOf(join.left_value)});
    } else if (piece.bit_count > 0) {
      shares.push_back({std::string(Spelling(text, reading, node)), first_bit, piece.bit_count});
      first_bit += piece.bit_count;
    }
  }
  if (first_bit != spare_bits + bit_count) {
    shares.clear();
    shares.push_back({std::string(text), spare_bits, bit_count});
  }
  return shares;
}

std::string ShareLabel(std::size_t share) {
  constexpr std::size_t kLetters = 26;
  const auto letter = [](std::size_t at) { return static_cast<char>('a' + at); };
  if (share < kLetters) return {letter(share)};
  share -= kLetters;
  if (share >= kLetters * kLetters) return "";
  return {letter(share / kLetters), letter(share % kLetters)};
}

std::vector<ByteRange> LongestRuns(const VectorImage& image, std::size_t least, std::size_t most) {
  std::vector<ByteRange> runs;
  const auto longer = [](const ByteRange& a, const ByteRange& b) { return a.count > b.count; };
  const auto keep_longest = [&](std::size_t count) {
    if (runs.size() <= count) return;
    std::stable_sort(runs.begin(), runs.end(), longer);
    runs.resize(count);
  };
  const std::vector<std::uint8_t>& bytes = image.bytes;
  for (std::size_t first = 0; first < bytes.size();) {
    std::size_t end = first + 1;
    while (end < bytes.size() && bytes[end] == bytes[first]) ++end;
    if (end - first >= least) runs.push_back({first, end - first});
    if (runs.size() >= most + 4096) keep_longest(most);
    first = end;
  }
  keep_longest(most);
  std::sort(runs.begin(), runs.end(),
            [](const ByteRange& a, const ByteRange& b) { return a.first < b.first; });
  return runs;
}

VectorComparison::VectorComparison(const VectorImage& before, const VectorImage& after)
    : before_(before),
      after_(after),
      pair_count_(std::max(before.bytes.size(), after.bytes.size())) {
  Count();
  // From the first byte on, bits pair only where both have as many spare ones.
  if (before.bytes.size() == after.bytes.size()) return;
  if (before.spare_bits() != after.spare_bits()) return;
  const std::size_t changed_from_last = changed_bits_;
  pairs_from_last_ = false;
  Count();
  if (changed_bits_ < changed_from_last) return;
  pairs_from_last_ = true;
  Count();
}

void VectorComparison::Count() {
  changed_bits_ = changed_bytes_ = 0;
  ranges_.clear();
  for (std::size_t pair = 0; pair < pair_count_; ++pair) {
    const std::uint8_t changed = ChangedAt(pair);
    if (changed == 0) continue;
    changed_bits_ += static_cast<std::size_t>(std::popcount(changed));
    ++changed_bytes_;
    if (!ranges_.empty() && ranges_.back().first + ranges_.back().count == pair) {
      ++ranges_.back().count;
    } else {
      ranges_.push_back({pair, 1});
    }
  }
}

std::size_t VectorComparison::BeforeAt(std::size_t pair) const {
  const std::size_t missing = pairs_from_last_ ? pair_count_ - before_.bytes.size() : 0;
  const std::size_t byte = pair - missing;  // wraps to what is out of range
  return byte < before_.bytes.size() ? byte : kNone;
}

std::size_t VectorComparison::AfterAt(std::size_t pair) const {
  const std::size_t missing = pairs_from_last_ ? pair_count_ - after_.bytes.size() : 0;
  const std::size_t byte = pair - missing;
  return byte < after_.bytes.size() ? byte : kNone;
}

std::uint8_t VectorComparison::ChangedAt(std::size_t pair) const {
  const std::size_t old_at = BeforeAt(pair);
  const std::size_t new_at = AfterAt(pair);
  const unsigned old_mask = old_at == kNone ? 0 : before_.ValidMask(old_at);
  const unsigned new_mask = new_at == kNone ? 0 : after_.ValidMask(new_at);
  const unsigned old_byte = old_at == kNone ? 0 : before_.bytes[old_at];
  const unsigned new_byte = new_at == kNone ? 0 : after_.bytes[new_at];
  const unsigned in_both = old_mask & new_mask;
  return static_cast<std::uint8_t>(((old_byte ^ new_byte) & in_both) | (old_mask ^ new_mask));
}
