// The run-length writer: its texts, from buffers in one block and in many, and the way back.
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>

#include "reference.h"
#include "round_trip.h"

namespace {

// "55x7" is seven times the byte 55, "." the empty text.
TEST(DataExpression, Texts) {
  std::istringstream cases(R"(
    = .   55 = .   55x6 = .   11 22 11 22 11 22 11 22 = .   01 55x7 = .   55x6 66x6 77x6 = .
    55x7 = (0x55^7)   55x8 = (0x55^8)   55x7 01 = (0x55^7)@0x01   55x7 01 02 03 = (0x55^7)@0x010203
    01 55x8 = (0x0155@(0x55^7))   01 02 55x7 03 04 = (0x0102@(0x55^7)@0x0304)
    55x3 66x9 = (0x55555566@(0x66^8))   55x7 66x7 = (0x55^7)@0x66666666666666
    55x7 66x8 = (0x55^7)@0x66@(0x66^7)  00x10 1F 22x9 = (0x00^10)@0x1F@(0x22^9)
    AAx1000 BB = (0xAA^1000)@0xBB       01 02 02 03x8 04 = (0x01020203@(0x03^7)@0x04))");
  std::string bytes;
  for (std::string word; cases >> word;) {
    if (word != "=") {
      const std::size_t count = word.size() == 2 ? 1 : std::stoul(word.substr(3));
      bytes.append(count, static_cast<char>(std::stoi(word.substr(0, 2), nullptr, 16)));
      continue;
    }
    cases >> word;
    for (const int block_size : {0, 4, 256}) {
      EXPECT_EQ(RoundTrip(bytes, block_size), word == "." ? "" : word) << block_size;
    }
    bytes.clear();
  }
}

TEST(DataExpression, RoundTripsOfAnyBuffer) {
  std::mt19937 random(20240601);
  for (unsigned round = 0; round < 500; ++round) {
    const unsigned size = round % 61 == 0 ? 20000 : round;
    const unsigned max_run = round % 5 == 0 ? size + 1 : 3 * (round % 5) * (round % 5);
    const unsigned kinds = 1 + round % 7 * 40;  // 1: all equal
    std::string bytes;
    while (bytes.size() < size) {
      bytes.append(1 + random() % max_run, static_cast<char>(random() % kinds));
    }
    const std::string text = RoundTrip(bytes, 0);
    ASSERT_EQ(RoundTrip(bytes, 7), text);
    ASSERT_EQ(reference::RunLengthText({bytes.begin(), bytes.end()}), text);
  }
}

}  // namespace
