// The stand-ins where a fault would hide behind right results of the evaluator: chains of blocks
// that are shared, copied and freed in any order, lookups, the row pointer, refused error lists.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support.h"

namespace {

using Bytes = std::vector<unsigned char>;

// A buffer beside a vector that is to hold the same.
struct Pair {
  void Append(int value) {
    model->push_back(static_cast<unsigned char>(value));
    LByteBuffer* last = buffer.GetLastBlock(&buffer);
    if (last->WriteData(model->back()) == 0) last->AllocateNewBlock()->WriteData(model->back());
  }

  LByteBuffer buffer;
  std::shared_ptr<Bytes> model = std::make_shared<Bytes>();
};

Bytes Read(LByteBuffer* from) {
  Bytes bytes(from->GetTotalSize());
  for (std::size_t i = bytes.size(); i-- > 0;) bytes[i] = from->ReadData(static_cast<int>(i));
  return bytes;
}

TEST(ByteBuffer, IndexesRunThroughTheChain) {
  for (const int size : {0, 1, 7}) {  // 0: blocks that grow; 1 counts as 4
    LByteBuffer::SetDefaultBlockSize(size);
    Pair pair;
    LByteBuffer& head = pair.buffer;
    LByteBuffer::SetDefaultBlockSize(0);
    for (int i = 0; i < 1000; ++i) pair.Append(i * 7);
    LByteBuffer* inner = head.AllocateNewBlock();
    EXPECT_EQ(inner->WriteData(1), 1);
    EXPECT_EQ(inner->AllocateNewBlock()->WriteData(9), 1);
    EXPECT_EQ(inner->WriteData(2), 1);  // into a block that another follows
    EXPECT_EQ(Read(inner), (Bytes{1, 2, 9}));
    pair.model->insert(pair.model->end(), {1, 2, 9});
    std::thread other([&] { EXPECT_EQ(Read(&head), *pair.model); });
    EXPECT_EQ(Read(&head), *pair.model);
    other.join();
    for (const int i : {-1, 1003}) EXPECT_EQ(head.ReadData(i) + head.WriteData(i, 1), 0);
  }
}

TEST(ByteBuffer, FreesAMillionBlocksWithoutRecursion) {
  LByteBuffer head(4);
  LByteBuffer* last = &head;
  for (int i = 0; i < 1000000; ++i) last = last->AllocateNewBlock();
}

// Buffers that share, copy and end in any order.
TEST(ByteBuffer, SharesBlocksUntilTheLastOwnerEnds) {
  std::vector<Pair> pairs(6);
  std::minstd_rand random(1);
  for (int step = 0; step < 20000; ++step) {
    Pair& pair = pairs[random() % pairs.size()];
    const Pair& other = pairs[random() % pairs.size()];
    LByteBuffer* last = pair.buffer.GetLastBlock(&pair.buffer);
    const auto choice = random() % 24;
    if (choice == 0) pair = {LByteBuffer(5), std::make_shared<Bytes>()};
    if (choice == 1) pair = {other.buffer, std::make_shared<Bytes>(*other.model)};  // a copy
    if (choice == 2) pair = other;
    if (choice == 3) {
      pair.buffer.ClearBuffer();
      pair.model->clear();
    }
    if (choice == 4 && last != &pair.buffer) {
      *last = other.buffer;  // does nothing: a later block gives copies and does not share
      pair.model = std::make_shared<Bytes>(Read(last));
      pair.buffer = *last;
    }
    if (choice > 4) pair.Append(step);
    if (pair.buffer.WriteData(3, 99) == 1) pair.model->at(3) = 99;
    for (Pair& each : pairs) ASSERT_EQ(Read(&each.buffer), *each.model) << step;
  }
}

// Names in sorted order are the worst case of a tree that does not balance itself.
TEST(TokenTree, FindsEveryNameAmongManyAndKeepsPlaces) {
  ZRTTokenTree tree;
  for (int i = 100000; i < 200000; ++i) {
    const std::string name = std::to_string(i);
    ZRTTokens* token = tree.Add(ZRTTokens::FloatScalar(name.c_str(), 1.0F));
    EXPECT_EQ(tree.Add(ZRTTokens::IntArray(name.c_str(), {-i, i}, 9)), token);
  }
  for (int i = 99999; i <= 200000; ++i) {
    ZRTTokens* token = tree.GetToken(std::to_string(i).data());
    ASSERT_EQ(token != nullptr, i >= 100000 && i < 200000);
    EXPECT_EQ(token ? token->GetIntArrayValue(1) : i, i);
  }
}

TEST(ErrorList, IsTakenWholeOrRefusedWithItsLine) {
  const std::pair<const char*, int> texts_and_wrong_lines[] = {
      {"# 1\n\n \t# x\r\n\r\n65036 8\t65535 M m \r\n-500 9 1 N", 0},
      {"1 8 1 a\n-500 8 1\n",                                    2},
      {"-500 8 65536 a\n",                                       1},
      {"-32769 8 1 a\n",                                         1},
      {"\n-500 8 1 a\n65036 8 1 b\n",                            3},
  };
  for (const auto& [text, wrong_line] : texts_and_wrong_lines) {
    SCOPED_TRACE(text);
    ErrorHandler handler;
    Directory directory("-500 8 7 old\n");
    std::string path = directory.path() + std::string("/ErrorList.txt");
    ASSERT_EQ(handler.Initialize(path.data(), 8), 0);
    std::ofstream(path) << text;
    EXPECT_EQ(handler.Initialize(path.data(), 8) == ErrorHandler::kListWrongLine, wrong_line > 0);
    EXPECT_EQ(handler.GetErrorLine(), wrong_line);
    std::filesystem::remove(path);
    EXPECT_EQ(handler.Initialize(path.data(), 8), ErrorHandler::kListUnreadable);
    ErrorElement* entry = handler.GetErrorElement(65036, 8);
    ASSERT_NE(entry, nullptr);
    const std::string found = entry->GetErrorMessage() + std::to_string(entry->GetErrorField());
    EXPECT_EQ(found, wrong_line == 0 ? "M m65535" : "old7");
  }
}

}  // namespace
