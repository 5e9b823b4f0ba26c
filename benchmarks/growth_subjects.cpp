// How time grows with size: a megabyte in ever more groups, and the exponent of each shape and each
// operation over all sizes, with its lines for the picture.
#include <algorithm>
#include <cmath>

#include "bits_contestants.h"
#include "run_length_contestants.h"
#include "shapes.h"
#include "subject.h"
#include "text_contestants.h"

namespace zrt_bench {

namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20U;

// `bytes` as literals in groups of even size, joined.
std::string GroupsOf(const Bytes& bytes, std::size_t group_count) {
  std::string text;
  for (std::size_t i = 0; i < group_count; ++i) {
    const std::size_t first = bytes.size() * i / group_count;
    const std::size_t behind = bytes.size() * (i + 1) / group_count;
    text += (i == 0 ? "(" : "@(") + Literal(&bytes[first], behind - first) + ")";
  }
  return text;
}

std::vector<Contestant> JoinedGroups(std::size_t group_count) {
  const Bytes bytes = RandomBytes(kMiB);
  std::vector<Contestant> contestants =
      Contest(TextToStream(GroupsOf(bytes, group_count)), DecodeByModp(bytes));
  if (group_count > 10000) {
    contestants.push_back(TextToStream(GroupsOf(bytes, 100), {}, 0, "100 groups", Role::kLimit));
  }
  return contestants;
}

using MakeBySize = std::function<std::vector<Contestant>(std::size_t byte_count)>;

// The slope of the line through the logarithms that fits best.
double Exponent(const std::vector<std::pair<double, double>>& points) {
  double x_sum = 0, y_sum = 0, xx_sum = 0, xy_sum = 0;
  for (const auto& [bytes, seconds] : points) {
    const double x = std::log(bytes), y = std::log(seconds);
    x_sum += x;
    y_sum += y;
    xx_sum += x * x;
    xy_sum += x * y;
  }
  const auto count = static_cast<double>(points.size());
  return (count * xy_sum - x_sum * y_sum) / (count * xx_sum - x_sum * x_sum);
}

Row Grow(const Subject& subject, const Effort& effort, const char* panel, const MakeBySize& make) {
  constexpr std::size_t kSmallest = std::size_t{64} << 10U, kStep = 4;
  Effort each = effort;
  each.subject_seconds /= 4;  // many sizes share the time of a subject
  each.fewest_rounds = 2;
  Row row{subject.id, subject.title, Unit::kCount, 0, {}, panel, {}};
  for (std::size_t size = kSmallest; size <= effort.longest_text_bytes; size *= kStep) {
    const std::vector<Contestant> contestants = make(size);
    const std::vector<double> seconds = Measure(contestants, each);
    row.lines.resize(contestants.size());
    for (std::size_t i = 0; i < contestants.size(); ++i) {
      row.lines[i].name = contestants[i].name;
      row.lines[i].role = contestants[i].role;
      row.lines[i].points.emplace_back(static_cast<double>(size), seconds[i]);
    }
  }
  row.amount = Exponent(row.lines[0].points);
  row.AddRival("exponent", Role::kLimit, 0, row.amount);
  return row;
}

void AddGrowing(Subjects* subjects, const std::string& name, const char* panel,
                const std::string& line_name, MakeBySize make) {
  const auto run = [panel, line_name, make = std::move(make)](const Subject& subject,
                                                              const Effort& effort) {
    Row row = Grow(subject, effort, panel, make);
    row.lines[0].name = line_name;
    return row;
  };
  subjects->push_back({"G2/" + name, "exponent of growth, " + std::string(panel), run});
}

}  // namespace

void AddGroups(Subjects* subjects) {
  for (const std::size_t count : {100U, 10000U, 70000U}) {
    subjects->push_back(Timed("G1/" + std::to_string(count),
                              "1 MiB in " + std::to_string(count) + " groups",
                              [count] { return JoinedGroups(count); }));
  }
}

void AddGrowth(Subjects* subjects) {
  for (const Shape& shape : Shapes()) {
    AddGrowing(subjects, shape.name, shape.panel, shape.name,
               [&shape](std::size_t bytes) { return ShapeContestants(shape, bytes); });
  }
  const std::string library = "this library";
  AddGrowing(subjects, "row<<3", "row<<3", library, ShiftLeft);
  AddGrowing(subjects, "row&other", "row&other", library, And);
  AddGrowing(subjects, "$row", "$row", library, Reverse);
  AddGrowing(subjects, "row@other", "row@other", library,
             [](std::size_t bytes) { return Join(bytes, 5); });
  AddGrowing(subjects, "row", "Row to text", library, WriteHex);
  AddGrowing(subjects, "literal", "Literal to stream", library, ReadHex);
  AddGrowing(subjects, "write runs", "Run-length text, written", library,
             [](std::size_t bytes) { return WriteRunLength(bytes, Runs::kHalf); });
  AddGrowing(subjects, "read runs", "Run-length text, read", library,
             [](std::size_t bytes) { return ReadRunLength(bytes, Runs::kHalf); });
}

}  // namespace zrt_bench
