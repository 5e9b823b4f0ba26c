// Edit distance, and how close is close enough.
#include "nearest_name.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace {

// The least count of insertions, deletions and replacements that turn one word into the other.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t k = 0; k < b.size(); ++k) {
      const std::size_t replaced = diagonal + (a[i] == b[k] ? 0 : 1);
      diagonal = row[k + 1];
      row[k + 1] = std::min({replaced, row[k] + 1, diagonal + 1});
    }
  }
  return row.back();
}

bool IsSameButForCase(std::string_view a, std::string_view b) {
  const auto small = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [small](char x, char y) { return small(x) == small(y); });
}

}  // namespace

std::string NearestName(std::string_view word, const std::vector<std::string>& names) {
  std::size_t least = 3;
  std::string nearest;
  if (word.empty()) return nearest;
  for (const std::string& name : names) {
    const bool continues = name.size() > 2 && (word.starts_with(name) || name.starts_with(word));
    const bool is_so = continues || IsSameButForCase(word, name);
    const std::size_t distance = is_so ? 0 : Distance(word.substr(0, 2 * name.size()), name);
    if (distance >= least || distance * 2 >= name.size()) continue;  // short words are all close
    least = distance;
    nearest = name;
  }
  return nearest;
}
