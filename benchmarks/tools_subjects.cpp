// The host program over a file of a million short texts, start and end of the program included.
#include <sys/resource.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <stdexcept>

#include "subject.h"
#include "world.h"

namespace zrt_bench {

namespace {

constexpr int kLineCount = 1000000;
constexpr double kWantedSeconds = kLineCount / 5e6;

// Over the names of the example scope.
constexpr const char* kTexts[] = {"1+2",    "rows*cols", "(1+2)*3+4", "mode&7", "(rows+1)*cols-1",
                                  "255>>4", "12-5+3",    "~mode&7"};

// A directory of its own that is gone afterwards.
class Place {
 public:
  Place() {
    std::string name = std::filesystem::temp_directory_path() / "zrt_bench_XXXXXX";
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make " + name);
    path_ = name;
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;
  ~Place() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }

  std::string File(const char* name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

void WriteLines(const std::string& path) {
  std::ofstream file(path);
  for (int i = 0; i < kLineCount; ++i) {
    file << kTexts[static_cast<std::size_t>(i) % std::size(kTexts)] << '\n';
  }
}

int Expected(const char* text) {
  ZRTTokenTree tokens;
  tokens.Add(ZRTTokens::IntScalar("rows", 6));
  tokens.Add(ZRTTokens::IntScalar("cols", 48));
  tokens.Add(ZRTTokens::IntScalar("mode", 5));
  ZRTExpression expression;
  expression.SetLocalTokenTree(&tokens);
  int value = 0;
  const int status = expression.GetIntegerOperand(text, &value);
  if (status != 0) throw std::runtime_error(std::string(text) + " gives " + StatusText(status));
  return value;
}

void CheckLines(const std::string& path) {
  std::vector<int> expected;
  for (const char* text : kTexts) expected.push_back(Expected(text));
  std::ifstream file(path);
  std::size_t count = 0;
  for (int value = 0; file >> value; ++count) {
    if (value != expected[count % expected.size()]) break;
  }
  if (count != kLineCount) {
    throw std::runtime_error("zrteval differs in line " + std::to_string(count + 1));
  }
}

void Run(const std::string& command) {
  if (std::system(command.c_str()) != 0) throw std::runtime_error(command + " fails");
}

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

// The processor time of all child processes that have ended.
double ChildrenNow() {
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

Row TimeLines(const Subject& subject, const Effort& effort) {
  const std::filesystem::path folder =
      std::filesystem::read_symlink("/proc/self/exe").parent_path();
  const Place place;
  WriteLines(place.File("texts"));
  const std::string command = "'" + (folder / ZRT_BENCH_TO_ZRTEVAL).string() +
                              "' int --batch --scope '" + (folder / ZRT_BENCH_TO_SCOPE).string() +
                              "' < '" + place.File("texts") + "' > ";
  Run(command + "'" + place.File("values") + "'");
  CheckLines(place.File("values"));
  double least = std::numeric_limits<double>::infinity();
  for (int round = 0; round < 2 * effort.fewest_rounds; ++round) {
    const double start = ChildrenNow();
    Run(command + "/dev/null");
    least = std::min(least, ChildrenNow() - start);
  }
  Row row{subject.id, subject.title, Unit::kSeconds, least, {}, {}, {}};
  row.AddRival("5 million lines/s", Role::kLimit, kWantedSeconds, least / kWantedSeconds);
  return row;
}

}  // namespace

void AddTools(Subjects* subjects) {
  subjects->push_back({"L", "zrteval int --batch, a million lines", TimeLines, true});
}

}  // namespace zrt_bench
