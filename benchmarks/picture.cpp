// Small panels with logarithmic axes both ways: work in proportion to size is a line of slope 1.
// Colours are classes, so that the picture follows the reader's choice of light or dark.
#include "picture.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>

namespace zrt_bench {

namespace {

constexpr double kPanelWidth = 380, kPanelHeight = 330;
constexpr double kPlotLeft = 58, kPlotTop = 88, kPlotWidth = 296, kPlotHeight = 196;
constexpr double kHeaderHeight = 64;
constexpr std::size_t kColumns = 3, kColours = 8;

constexpr const char* kStyle = R"(<style>
  .paper { fill: #ffffff } .ink { fill: #1f2328 } .faint { fill: #59636e }
  .grid { stroke: #d8dee4 } .limit { stroke: #59636e; stroke-dasharray: 5 3 }
  .c0 { stroke: #1f6feb } .c1 { stroke: #d4520a } .c2 { stroke: #12855a } .c3 { stroke: #8250df }
  .c4 { stroke: #b58600 } .c5 { stroke: #cf2a78 } .c6 { stroke: #0b7f99 } .c7 { stroke: #7a4a21 }
  text { font: 12px system-ui, sans-serif } .title { font-size: 14px; font-weight: 600 }
  .head { font-size: 18px; font-weight: 600 } .small { font-size: 11px }
  path, line { fill: none } path { stroke-width: 1.8 } path.limit { stroke-width: 1.4 }
  circle.paper { stroke-width: 1.4; stroke-dasharray: none }
  @media (prefers-color-scheme: dark) {
    .paper { fill: #0d1117 } .ink { fill: #e6edf3 } .faint { fill: #9198a1 }
    .grid { stroke: #2b3138 } .limit { stroke: #9198a1 }
    .c0 { stroke: #58a6ff } .c1 { stroke: #ff8f4d } .c2 { stroke: #3fcf8e } .c3 { stroke: #b48cff }
    .c4 { stroke: #e3b341 } .c5 { stroke: #ff77b0 } .c6 { stroke: #4cc9e0 } .c7 { stroke: #c99467 }
  }
</style>
)";

struct Panel {
  std::string title;
  std::vector<Line> lines;
};

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '<') {
      escaped += "&lt;";
    } else if (c == '&') {
      escaped += "&amp;";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

// The panel of that title, which is made if it is not there yet.
Panel& PanelOf(const std::string& title, std::vector<Panel>* panels) {
  const auto panel = std::find_if(panels->begin(), panels->end(),
                                  [&title](const Panel& p) { return p.title == title; });
  return panel == panels->end() ? panels->emplace_back(Panel{title, {}}) : *panel;
}

void AddUnlessThere(const Line& line, std::vector<Line>* lines) {
  const bool is_there = std::any_of(lines->begin(), lines->end(),
                                    [&line](const Line& other) { return other.name == line.name; });
  if (!is_there) lines->push_back(line);
}

// Rows of one panel share it; a limit that several of them have is drawn once, behind the others.
std::vector<Panel> PanelsOf(const std::vector<Row>& rows) {
  std::vector<Panel> panels;
  for (const Row& row : rows) {
    if (row.lines.empty()) continue;
    Panel& panel = PanelOf(row.panel, &panels);
    for (const Line& line : row.lines) AddUnlessThere(line, &panel.lines);
  }
  for (Panel& panel : panels) {
    std::stable_partition(panel.lines.begin(), panel.lines.end(),
                          [](const Line& line) { return line.role != Role::kLimit; });
  }
  return panels;
}

// "64 KiB": what stands at an axis is round.
std::string TickText(double amount, Unit unit) {
  std::string text = Shown(amount, unit);
  const std::size_t point = text.find('.'), blank = text.find(' ');
  if (point < blank) text.erase(point, blank - point);
  return text;
}

// From a number of bytes or seconds to a place on an axis that spans whole steps.
class Axis {
 public:
  Axis(double least, double most, double step, double start, double end)
      : first_(std::floor(std::log(least) / std::log(step) + 1e-9)),
        last_(std::max(first_ + 1, std::ceil(std::log(most) / std::log(step) - 1e-9))),
        step_(step),
        start_(start),
        end_(end) {}

  double At(double number) const {
    const double share = (std::log(number) / std::log(step_) - first_) / (last_ - first_);
    return start_ + share * (end_ - start_);
  }

  std::vector<double> Ticks() const {
    std::vector<double> ticks;
    const int step_count = static_cast<int>(last_ - first_);
    for (int i = 0; i <= step_count; ++i) ticks.push_back(std::pow(step_, first_ + i));
    return ticks;
  }

 private:
  double first_, last_, step_, start_, end_;
};

// An attribute of an element, with the blank before it. Lives no longer than what it refers to: in
// the statement that writes it.
template <typename Value>
struct Attribute {
  Attribute(const char* attribute_name, const Value& attribute_value)
      : name(attribute_name), value(attribute_value) {}

  const char* name;
  const Value& value;
};

template <typename Value>
std::ostream& operator<<(std::ostream& out, const Attribute<Value>& attribute) {
  return out << ' ' << attribute.name << "=\"" << attribute.value << '"';
}

void WriteText(const char* style, double x, double y, const std::string& text, std::ostream& out) {
  out << "<text" << Attribute("class", style) << Attribute("x", x) << Attribute("y", y) << '>'
      << Escaped(text) << "</text>\n";
}

class PanelWriter {
 public:
  PanelWriter(const Panel& panel, std::ostream& out)
      : panel_(panel),
        out_(out),
        x_(LeastOf(0), MostOf(0), 4, kPlotLeft, kPlotLeft + kPlotWidth),
        y_(LeastOf(1), MostOf(1), 10, kPlotTop + kPlotHeight, kPlotTop) {}

  void Write() {
    WriteText("ink title", 8, 18, panel_.title, out_);
    WriteAxes();
    std::size_t colour = 0;
    for (std::size_t i = 0; i < panel_.lines.size(); ++i) {
      const bool is_limit = panel_.lines[i].role == Role::kLimit;
      const std::string style =
          is_limit ? "limit" : "c" + std::to_string(std::min(colour, kColours - 1));
      if (!is_limit) ++colour;
      WriteLegend(panel_.lines[i], i, style);
      WriteLine(panel_.lines[i], style);
    }
  }

 private:
  std::vector<double> All(int coordinate) const {
    std::vector<double> all;
    for (const Line& line : panel_.lines) {
      for (const auto& [bytes, seconds] : line.points) {
        all.push_back(coordinate == 0 ? bytes : seconds);
      }
    }
    return all;
  }
  double LeastOf(int coordinate) const {
    const std::vector<double> all = All(coordinate);
    return *std::min_element(all.begin(), all.end());
  }
  double MostOf(int coordinate) const {
    const std::vector<double> all = All(coordinate);
    return *std::max_element(all.begin(), all.end());
  }

  void WriteAxes() {
    constexpr double kBottom = kPlotTop + kPlotHeight, kRight = kPlotLeft + kPlotWidth;
    for (const double bytes : x_.Ticks()) {
      const double x = x_.At(bytes);
      WriteGridLine(x, kPlotTop, x, kBottom);
      WriteTick("middle", x, kBottom + 16, TickText(bytes, Unit::kBytes));
    }
    for (const double seconds : y_.Ticks()) {
      const double y = y_.At(seconds);
      WriteGridLine(kPlotLeft, y, kRight, y);
      WriteTick("end", kPlotLeft - 6, y + 4, TickText(seconds, Unit::kSeconds));
    }
  }

  void WriteGridLine(double x1, double y1, double x2, double y2) {
    out_ << "<line" << Attribute("class", "grid") << Attribute("x1", x1) << Attribute("y1", y1)
         << Attribute("x2", x2) << Attribute("y2", y2) << "/>\n";
  }

  void WriteTick(const char* anchor, double x, double y, const std::string& text) {
    out_ << "<text" << Attribute("class", "faint small") << Attribute("text-anchor", anchor)
         << Attribute("x", x) << Attribute("y", y) << '>' << text << "</text>\n";
  }

  void WriteLegend(const Line& line, std::size_t place, const std::string& style) {
    constexpr double kEntryWidth = 124, kEntryHeight = 16;
    const std::size_t column = place % 3, row = place / 3;
    const double x = 8 + kEntryWidth * static_cast<double>(column);
    const double y = 36 + kEntryHeight * static_cast<double>(row);
    out_ << "<path" << Attribute("class", style) << " d=\"M" << x << ' ' << y << "h18\"/>\n";
    WriteText("ink small", x + 23, y + 4, line.name, out_);
  }

  void WriteLine(const Line& line, const std::string& style) {
    out_ << "<path" << Attribute("class", style) << " d=\"";
    for (std::size_t i = 0; i < line.points.size(); ++i) {
      const auto& [bytes, seconds] = line.points[i];
      out_ << (i == 0 ? 'M' : 'L') << x_.At(bytes) << ' ' << y_.At(seconds);
    }
    out_ << "\"><title>" << Escaped(line.name) << "</title></path>\n";
    for (const auto& [bytes, seconds] : line.points) {
      out_ << "<circle" << Attribute("class", "paper " + style) << Attribute("cx", x_.At(bytes))
           << Attribute("cy", y_.At(seconds)) << Attribute("r", 2.5) << "><title>"
           << Escaped(line.name) << ", " << Shown(bytes, Unit::kBytes) << ": "
           << Shown(seconds, Unit::kSeconds) << "</title></circle>\n";
    }
  }

  const Panel& panel_;
  std::ostream& out_;
  Axis x_, y_;
};

}  // namespace

void WritePicture(const std::vector<Row>& rows, const std::string& path) {
  const std::vector<Panel> panels = PanelsOf(rows);
  const std::size_t row_count = (panels.size() + kColumns - 1) / kColumns;
  const double width = kPanelWidth * static_cast<double>(std::min(kColumns, panels.size()));
  const double height = kHeaderHeight + kPanelHeight * static_cast<double>(row_count);
  std::ostringstream out;
  out.precision(5);
  out << R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 )" << width << ' ' << height << '"'
      << Attribute("width", width) << Attribute("height", height) << ">\n"
      << "<title>Time against size</title>\n"
      << kStyle << R"(<rect class="paper" width="100%" height="100%"/>)" << '\n';
  WriteText("ink head", 8, 26, "Time against size", out);
  WriteText("faint", 8, 46,
            "Both axes are logarithmic: work in proportion to size is a straight line of slope 1. "
            "Dashed: the limit.",
            out);
  for (std::size_t i = 0; i < panels.size(); ++i) {
    const std::size_t column = i % kColumns, row = i / kColumns;
    out << "<g transform=\"translate(" << kPanelWidth * static_cast<double>(column) << ' '
        << kHeaderHeight + kPanelHeight * static_cast<double>(row) << ")\">\n";
    PanelWriter(panels[i], out).Write();
    out << "</g>\n";
  }
  out << "</svg>\n";
  std::ofstream file(path);
  if (!(file << out.str())) throw std::runtime_error("cannot write " + path);
}

}  // namespace zrt_bench
