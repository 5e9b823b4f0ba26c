// Shapes become elements as they come. Colours are in the style sheet alone.
#include "svg.h"

#include "shown_text.h"

namespace {

constexpr std::string_view kStyle = R"(
.zrt{font-family:monospace;font-size:15px}
@media print{.zrt:root{width:100%;height:auto}}
.zrt text{fill:#1b1f24}
.zrt .small{font-size:11.5px}
.zrt .faint{fill:#59636e}
.zrt .name{fill:#0550ae}
.zrt .bad{fill:#b3261e;font-weight:bold}
.zrt .paper{fill:#fff}
.zrt .line{stroke:#59636e;stroke-width:1.5;fill:none}
.zrt .guide{stroke:#c4cbd3}
.zrt .drop{stroke:#b3261e;stroke-width:2}
.zrt .box{fill:#eef1f4;stroke:#8c959f}
.zrt .cell{fill:#f3f5f7;stroke:#8c959f;stroke-width:.5}
.zrt .one{font-weight:bold}
.zrt .spare{fill:none;stroke:#8c959f;stroke-dasharray:2 2}
.zrt .changed{fill:none;stroke:#b3261e;stroke-width:2}
.zrt .dense{fill:#1b1f24}
.zrt .share0{fill:#cfe3ff}.zrt .share1{fill:#ffe0b3}.zrt .share2{fill:#c9efd0}.zrt .share3{fill:#f7cfe2}
.zrt .share4{fill:#e2d4fb}.zrt .share5{fill:#f4eaa5}.zrt .share6{fill:#c3edf0}.zrt .share7{fill:#e3dcd2}
@media screen and (prefers-color-scheme:dark){
.zrt text{fill:#e6edf3}
.zrt .faint{fill:#9aa5b1}
.zrt .name{fill:#79b8ff}
.zrt .bad{fill:#ff8a80}
.zrt .paper{fill:#14181d}
.zrt .line{stroke:#9aa5b1}
.zrt .guide{stroke:#3a424b}
.zrt .drop{stroke:#ff8a80}
.zrt .box{fill:#262d35;stroke:#6b7682}
.zrt .cell{fill:#20262d;stroke:#6b7682}
.zrt .spare{stroke:#6b7682}
.zrt .changed{stroke:#ff8a80}
.zrt .dense{fill:#e6edf3}
.zrt .share0{fill:#1d4473}.zrt .share1{fill:#6b4410}.zrt .share2{fill:#1d5a2c}.zrt .share3{fill:#6e2a4b}
.zrt .share4{fill:#4a3580}.zrt .share5{fill:#5a5210}.zrt .share6{fill:#175a60}.zrt .share7{fill:#55493a}
}
)";

std::string Attribute(std::string_view name, std::string_view value) {
  return ' ' + std::string(name) + "=\"" + std::string(value) + '"';
}
std::string Attribute(std::string_view name, int value) {
  return Attribute(name, std::to_string(value));
}

}  // namespace

std::string Markup(std::string_view text) {
  std::string markup;
  const std::string shown = Shown(text);
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const char c = shown[i];
    // Two characters that no document may hold.
    if (shown.compare(i, 3, "\xEF\xBF\xBE") == 0 || shown.compare(i, 3, "\xEF\xBF\xBF") == 0) {
      markup += shown[i + 2] == '\xBE' ? "\\uFFFE" : "\\uFFFF";
      i += 2;
      continue;
    }
    switch (c) {
      case '&': markup += "&amp;"; break;
      case '<': markup += "&lt;"; break;
      case '>': markup += "&gt;"; break;
      case '"': markup += "&quot;"; break;
      default: markup += c;
    }
  }
  return markup;
}

void Svg::Rect(int x, int y, int width, int height, std::string_view classes) {
  Rect(x, y, width, height, classes, "");
}

void Svg::Rect(int x, int y, int width, int height, std::string_view classes,
               std::string_view title) {
  shapes_ += "<rect" + Attribute("class", classes) + Attribute("x", x) + Attribute("y", y) +
             Attribute("width", width) + Attribute("height", height);
  shapes_ += title.empty() ? "/>\n" : "><title>" + Markup(title) + "</title></rect>\n";
}

void Svg::Shade(int x, int y, int width, int height, std::size_t tenths) {
  if (tenths == 0) return;
  const std::string opacity = tenths >= 10 ? "1" : "." + std::to_string(tenths);
  shapes_ += R"(<rect class="dense" pointer-events="none")" + Attribute("x", x) +
             Attribute("y", y) + Attribute("width", width) + Attribute("height", height) +
             Attribute("fill-opacity", opacity) + "/>\n";
}

void Svg::Line(int x1, int y1, int x2, int y2, std::string_view classes) {
  shapes_ += "<line" + Attribute("class", classes) + Attribute("x1", x1) + Attribute("y1", y1) +
             Attribute("x2", x2) + Attribute("y2", y2) + "/>\n";
}

void Svg::Text(int x, int y, Anchor anchor, std::string_view classes, std::string_view text) {
  constexpr int kSmallCharacter = 7;
  const bool is_small = classes.find("small") != std::string_view::npos;
  const int width = static_cast<int>(ColumnsOf(text)) * (is_small ? kSmallCharacter : kCharacter);
  if (width == 0) return;
  // Started at its left edge, since viewers differ in what they centre of a text of given length.
  if (anchor == Anchor::kMiddle) x -= width / 2;
  if (anchor == Anchor::kEnd) x -= width;
  shapes_ += "<text" + Attribute("class", classes) + Attribute("x", x) + Attribute("y", y) +
             Attribute("textLength", width) + " lengthAdjust=\"spacingAndGlyphs\"" +
             " xml:space=\"preserve\">" + Markup(text) + "</text>\n";
}

std::string Svg::Picture(int width, int height, const std::string& id, std::string_view title,
                         std::string_view description) const {
  return R"(<svg xmlns="http://www.w3.org/2000/svg" class="zrt" role="img")" +
         Attribute("aria-labelledby", id + "-title " + id + "-desc") + Attribute("width", width) +
         Attribute("height", height) +
         Attribute("viewBox", "0 0 " + std::to_string(width) + ' ' + std::to_string(height)) +
         ">\n<title" + Attribute("id", id + "-title") + '>' + Markup(title) + "</title>\n<desc" +
         Attribute("id", id + "-desc") + '>' + Markup(description) + "</desc>\n<style>" +
         std::string(kStyle) +
         "</style>\n<rect class=\"paper\" width=\"100%\" height=\"100%\"/>\n" + shapes_ +
         "</svg>\n";
}
