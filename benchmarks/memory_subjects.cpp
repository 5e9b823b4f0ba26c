// The memory of one evaluation, as the system counts it: what is resident at the peak.
#include "memory_subjects.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <stdexcept>

#include "shapes.h"
#include "subject.h"

namespace zrt_bench {

namespace {

// A size in the process's status, in bytes.
double SizeOf(const std::string& name) {
  std::ifstream file("/proc/self/status");
  for (std::string word; file >> word;) {
    double kibibytes = 0;
    if (word == name && file >> kibibytes) return 1024 * kibibytes;
  }
  throw std::runtime_error("the system does not tell " + name);
}

double PeakOfChild(std::size_t shape_index, std::size_t text_bytes) {
  const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
  const std::string command = "'" + program + "' --peak-memory " + std::to_string(shape_index) +
                              " " + std::to_string(text_bytes);
  std::FILE* output = popen(command.c_str(), "r");
  if (output == nullptr) throw std::runtime_error("cannot run " + command);
  std::array<char, 64> line{};
  double bytes = 0;
  const bool is_read = std::fgets(line.data(), line.size(), output) != nullptr &&
                       std::istringstream(line.data()) >> bytes;
  if (pclose(output) != 0 || !is_read) throw std::runtime_error(command + " fails");
  return bytes;
}

Row MeasurePeak(const Subject& subject, std::size_t shape_index, std::size_t text_bytes) {
  const Shape& shape = Shapes()[shape_index];
  const double bound =
      8 * static_cast<double>(text_bytes) + 3 * static_cast<double>(ResultBytes(shape, text_bytes));
  const double peak = PeakOfChild(shape_index, text_bytes);
  Row row{subject.id, subject.title, Unit::kBytes, peak, {}, {}, {}};
  row.AddRival("8 x text, 3 x result", Role::kLimit, bound, peak / bound);
  return row;
}

}  // namespace

int PrintPeakMemory(std::size_t shape_index, std::size_t text_bytes) {
  const Contestant library = ShapeContestant(Shapes().at(shape_index), text_bytes);
  const double before = SizeOf("VmRSS:");
  library.repeat(1);
  library.value();
  std::cout << std::fixed << std::setprecision(0) << SizeOf("VmHWM:") - before << '\n';
  return 0;
}

void AddMemory(Subjects* subjects) {
  for (std::size_t i = 0; i < Shapes().size(); ++i) {
    const Shape& shape = Shapes()[i];
    subjects->push_back({"G3/" + std::string(shape.name),
                         std::string("peak memory, ") + shape.panel,
                         [i](const Subject& subject, const Effort& effort) {
                           const std::size_t text_bytes = effort.longest_text_bytes / 4;
                           return MeasurePeak(subject, i, text_bytes);
                         }});
  }
}

}  // namespace zrt_bench
