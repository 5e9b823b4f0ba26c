// The layout as it is, indented.
#include "picture.h"

#include "cut_layout.h"

std::string CutPicture(std::string_view text, const Reading& reading, std::size_t columns) {
  constexpr std::size_t kMostOperations = 12;
  constexpr std::size_t kIndent = 4;
  if (columns <= kIndent || text.size() > columns) return "";
  const auto layout = LayOutCut(text, reading, columns - kIndent, kMostOperations);
  if (!layout) return "";
  std::string picture;
  for (const std::string& row : layout->rows) {
    picture += (std::string(kIndent, ' ') + row).substr(0, kIndent + row.find_last_not_of(' ') + 1);
    picture += '\n';
  }
  return picture;
}
