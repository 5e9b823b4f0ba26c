// The run-length writer: texts, the room they take, and the way back through evaluation, from
// buffers in one block and in many. Knows nothing of how evaluation works.
#include "DataExpression.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <sstream>
#include <string>

#include "support.h"

namespace {

using Bytes = std::basic_string<unsigned char>;

// The text of `bytes` in blocks of that size. Nothing is written behind the room asked for.
std::string Write(const Bytes& bytes, int block_size) {
  const BlockSize setting(block_size);
  LByteBuffer data;
  LByteBuffer* block = &data;
  for (const unsigned char byte : bytes) {
    if (block->WriteData(byte) == 0) (block = block->AllocateNewBlock())->WriteData(byte);
  }
  std::string text(2 * bytes.size() + 4, '|');
  fnGetDataExpression(&data, text.data());
  EXPECT_EQ(text.back(), '|');
  return text.c_str();
}

TEST(DataExpression, Texts) {
  std::istringstream cases(R"(
    = .   55 = .   55x6 = .   11 22 11 22 11 22 11 22 = .   01 55x7 = .   55x6 66x6 77x6 = .
    55x7 = (0x55^7)   55x8 = (0x55^8)   55x7 01 = (0x55^7)@0x01   55x7 01 02 03 = (0x55^7)@0x010203
    01 55x8 = (0x0155@(0x55^7))   01 02 55x7 03 04 = (0x0102@(0x55^7)@0x0304)
    55x3 66x9 = (0x55555566@(0x66^8))   55x7 66x7 = (0x55^7)@0x66666666666666
    55x7 66x8 = (0x55^7)@0x66@(0x66^7)  00x10 1F 22x9 = (0x00^10)@0x1F@(0x22^9)
    AAx1000 BB = (0xAA^1000)@0xBB       01 02 02 03x8 04 = (0x01020203@(0x03^7)@0x04))");
  Bytes bytes;
  for (std::string word; cases >> word;) {
    if (word != "=") {
      const std::size_t count = word.size() == 2 ? 1 : std::stoul(word.substr(3));
      bytes.append(count, static_cast<unsigned char>(std::stoi(word.substr(0, 2), nullptr, 16)));
      continue;
    }
    cases >> word;
    for (const int block_size : {0, 4, 256}) {
      EXPECT_EQ(Write(bytes, block_size), word == "." ? "" : word) << "blocks of " << block_size;
    }
    bytes.clear();
  }
}

TEST(DataExpression, RoundTrips) {
  std::mt19937 random(20240601);
  const auto below = [&random](unsigned limit) { return static_cast<unsigned>(random() % limit); };
  ZRTExpression expression;
  for (unsigned round = 0; round < 1000; ++round) {
    const unsigned size = round % 100 == 0 ? 20000 : below(120);
    const unsigned most = round % 5 == 0 ? size + 1 : 3 * (round % 5) * (round % 5);  // in a run
    const unsigned kinds = 1 + round % 7 * 40;  // 1: all equal
    Bytes bytes;
    while (bytes.size() < size) {
      bytes.append(1 + below(most), static_cast<unsigned char>(below(kinds)));
    }
    const std::string text = Write(bytes, 0);
    ASSERT_EQ(text, Write(bytes, 4 + static_cast<int>(below(60))));
    if (text.empty()) continue;
    RowDataStream stream;
    ASSERT_EQ(expression.GetBitStream(text.c_str(), &stream), 0) << text;
    ASSERT_EQ(stream.BitLength, 8 * static_cast<int>(bytes.size()));
    ASSERT_TRUE(bytes == Bytes(stream.GetDataBlock(), stream.GetTotalSize())) << text;
  }
}

}  // namespace
