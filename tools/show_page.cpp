// Tables beside the picture tell in words what it shows.
#include "show_page.h"

#include <algorithm>

#include "page.h"
#include "shown_text.h"
#include "vector_cells.h"
#include "vector_svg.h"

namespace {

constexpr std::size_t kMostRows = 1000;
constexpr std::size_t kMostHeading = 200;

std::string Heading(std::string_view text) {
  return "<h1>" + HtmlCode(Shown(text, kMostHeading)) + "</h1>\n";
}

std::string More(std::size_t count) {
  return count <= kMostRows ? "" : "<p>and " + std::to_string(count - kMostRows) + " more</p>\n";
}

}  // namespace

std::string ShowBody(std::string_view text, const VectorImage& image, const std::string& id) {
  std::string body = Heading(text) + HtmlFigure(VectorSvg(text, image, id));
  std::vector<std::vector<std::string>> rows;
  for (std::size_t i = 0; i < std::min(image.shares.size(), kMostRows); ++i) {
    const VectorImage::Share& share = image.shares[i];
    rows.push_back({ShareLabel(i), Shown(share.text, kMostHeading), std::to_string(share.bit_count),
                    BitRangeWords(image, share)});
  }
  if (rows.size() > 1) {
    body += HtmlTable("Shares", {"", "text", "bits", "where"}, rows) + More(image.shares.size());
  }
  rows.clear();
  for (const ByteRange& run : NotableRuns(image)) {
    rows.push_back({RangeWords(run), HexBytes(image, run.first, 1), std::to_string(run.count)});
  }
  if (!rows.empty()) body += HtmlTable("Longest runs", {"bytes", "of", "count"}, rows);
  return body;
}

std::string ComparisonBody(std::string_view text, std::string_view against,
                           const VectorComparison& comparison, const std::string& id) {
  std::string body = Heading(text) + "<p>against " + HtmlCode(Shown(against, kMostHeading)) +
                     "</p>\n" + HtmlFigure(ComparisonSvg(text, comparison, id));
  std::vector<std::vector<std::string>> rows;
  const std::vector<ByteRange>& ranges = comparison.ranges();
  for (std::size_t i = 0; i < std::min(ranges.size(), kMostRows); ++i) {
    const ChangeWords words = WordsOf(comparison, ranges[i]);
    rows.push_back({words.where, words.before, words.after});
  }
  if (rows.empty()) return body;
  return body + HtmlTable("What differs", {"bytes", "before", "after"}, rows) + More(ranges.size());
}
