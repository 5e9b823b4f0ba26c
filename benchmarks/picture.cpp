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

// Rows of one panel share it; a limit that several of them have is drawn once, behind the others.
std::vector<Panel> PanelsOf(const std::vector<Row>& rows) {
  std::vector<Panel> panels;
  for (const Row& row : rows) {
    if (row.lines.empty()) continue;
    auto panel = std::find_if(panels.begin(), panels.end(),
                              [&row](const Panel& p) { return p.title == row.panel; });
    if (panel == panels.end()) panel = panels.insert(panels.end(), Panel{row.panel, {}});
    for (const Line& line : row.lines) {
      const bool is_there =
          std::any_of(panel->lines.begin(), panel->lines.end(),
                      [&line](const Line& other) { return other.name == line.name; });
      if (!is_there) panel->lines.push_back(line);
    }
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
    for (double power = first_; power <= last_; ++power) ticks.push_back(std::pow(step_, power));
    return ticks;
  }

 private:
  double first_, last_, step_, start_, end_;
};

class PanelWriter {
 public:
  PanelWriter(const Panel& panel, std::ostream& out)
      : panel_(panel),
        out_(out),
        x_(LeastOf(0), MostOf(0), 4, kPlotLeft, kPlotLeft + kPlotWidth),
        y_(LeastOf(1), MostOf(1), 10, kPlotTop + kPlotHeight, kPlotTop) {}

  void Write() {
    out_ << "<text class=\"ink title\" x=\"8\" y=\"18\">" << Escaped(panel_.title) << "</text>\n";
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
    const std::vector<double> sizes = x_.Ticks();
    for (std::size_t i = 0; i < sizes.size(); ++i) {
      const double x = x_.At(sizes[i]);
      out_ << "<line class=\"grid\" x1=\"" << x << "\" y1=\"" << kPlotTop << "\" x2=\"" << x
           << "\" y2=\"" << kBottom << "\"/>\n";
      out_ << "<text class=\"faint small\" text-anchor=\"middle\" x=\"" << x << "\" y=\""
           << kBottom + 16 << "\">" << TickText(sizes[i], Unit::kBytes) << "</text>\n";
    }
    for (const double seconds : y_.Ticks()) {
      const double y = y_.At(seconds);
      out_ << "<line class=\"grid\" x1=\"" << kPlotLeft << "\" y1=\"" << y << "\" x2=\"" << kRight
           << "\" y2=\"" << y << "\"/>\n";
      out_ << "<text class=\"faint small\" text-anchor=\"end\" x=\"" << kPlotLeft - 6 << "\" y=\""
           << y + 4 << "\">" << TickText(seconds, Unit::kSeconds) << "</text>\n";
    }
  }

  void WriteLegend(const Line& line, std::size_t place, const std::string& style) {
    constexpr double kEntryWidth = 124, kEntryHeight = 16;
    const double x = 8 + kEntryWidth * static_cast<double>(place % 3);
    const double y = 36 + kEntryHeight * static_cast<double>(place / 3);
    out_ << "<path class=\"" << style << "\" d=\"M" << x << ' ' << y << "h18\"/>\n";
    out_ << "<text class=\"ink small\" x=\"" << x + 23 << "\" y=\"" << y + 4 << "\">"
         << Escaped(line.name) << "</text>\n";
  }

  void WriteLine(const Line& line, const std::string& style) {
    out_ << "<path class=\"" << style << "\" d=\"";
    for (std::size_t i = 0; i < line.points.size(); ++i) {
      const auto& [bytes, seconds] = line.points[i];
      out_ << (i == 0 ? 'M' : 'L') << x_.At(bytes) << ' ' << y_.At(seconds);
    }
    out_ << "\"><title>" << Escaped(line.name) << "</title></path>\n";
    for (const auto& [bytes, seconds] : line.points) {
      out_ << "<circle class=\"paper " << style << "\" cx=\"" << x_.At(bytes) << "\" cy=\""
           << y_.At(seconds) << "\" r=\"2.5\"><title>" << Escaped(line.name) << ", "
           << Shown(bytes, Unit::kBytes) << ": " << Shown(seconds, Unit::kSeconds)
           << "</title></circle>\n";
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
  out << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " << width << ' ' << height
      << "\" width=\"" << width << "\" height=\"" << height << "\">\n"
      << "<title>Time against size</title>\n"
      << kStyle << "<rect class=\"paper\" width=\"100%\" height=\"100%\"/>\n"
      << "<text class=\"ink head\" x=\"8\" y=\"26\">Time against size</text>\n"
      << "<text class=\"faint\" x=\"8\" y=\"46\">Both axes are logarithmic: work in proportion to "
         "size is a straight line of slope 1. Dashed: the limit.</text>\n";
  for (std::size_t i = 0; i < panels.size(); ++i) {
    out << "<g transform=\"translate(" << kPanelWidth * static_cast<double>(i % kColumns) << ' '
        << kHeaderHeight + kPanelHeight * static_cast<double>(i / kColumns) << ")\">\n";
    PanelWriter(panels[i], out).Write();
    out << "</g>\n";
  }
  out << "</svg>\n";
  std::ofstream file(path);
  if (!(file << out.str())) throw std::runtime_error("cannot write " + path);
}

}  // namespace zrt_bench
