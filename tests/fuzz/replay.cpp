// Runs a fuzz target over the files of the directories that the command line names: what fuzzing
// found once is tried with every compiler and by every run of the tests.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  std::vector<std::filesystem::path> paths;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) paths.push_back(entry);
  }
  std::ranges::sort(paths);
  for (const auto& path : paths) {
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);  // the last one told is the one that does not hold
    std::ifstream file(path, std::ios::binary);
    const std::vector<std::uint8_t> input(std::istreambuf_iterator<char>(file), {});
    LLVMFuzzerTestOneInput(input.data(), input.size());
  }
  return paths.empty() ? 1 : 0;
}
