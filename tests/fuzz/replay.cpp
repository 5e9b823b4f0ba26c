// Runs a fuzz target over the files of the directories that the command line names: what fuzzing
// found once is tried with every compiler and by every run of the tests.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  is_replay = true;
  int count = 0;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      std::cout << entry.path() << std::endl;  // the last one told is the one that does not hold
      std::ifstream file(entry.path(), std::ios::binary);
      const std::vector<std::uint8_t> input(std::istreambuf_iterator<char>(file), {});
      count += LLVMFuzzerTestOneInput(input.data(), input.size()) == 0 ? 1 : 0;
    }
  }
  return count > 0 ? 0 : 1;
}
