// Drawings as SVG text: shapes in pixels with the classes of one style sheet, light and dark, on
// paper and on screens. Knows nothing of what is drawn.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// `text` as it may stand in markup, in attributes too: as Shown(), with entities.
std::string Markup(std::string_view text);

/// The classes "share0" to "share7" tell parts apart.
constexpr std::size_t kShareColors = 8;

class Svg {
 public:
  static constexpr int kCharacter = 9;  // width of one in text()

  enum class Anchor { kStart, kMiddle, kEnd };

  void Rect(int x, int y, int width, int height, std::string_view classes);

  /// The same with words that show where it is pointed at.
  void Rect(int x, int y, int width, int height, std::string_view classes, std::string_view title);

  /// A rectangle between empty and full, in tenths.
  void Shade(int x, int y, int width, int height, std::size_t tenths);

  void Line(int x1, int y1, int x2, int y2, std::string_view classes);

  /// A text with its baseline at `y`. Each character takes kCharacter, of class "small" 7, whatever
  /// the font: nothing that was laid out can overlap.
  void Text(int x, int y, Anchor anchor, std::string_view classes, std::string_view text);

  /// The picture with what a screen reader says of it. `id` is unique in its page.
  [[nodiscard]] std::string Picture(int width, int height, const std::string& id,
                                    std::string_view title, std::string_view description) const;

 private:
  std::string shapes_;
};
