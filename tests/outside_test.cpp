// The stand-ins where a fault would hide behind right results of the evaluator: chains of blocks
// that are shared, copied and freed in any order, lookups, refused error lists.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
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
  void Expect(const Bytes& bytes, std::size_t count) const {
    model->insert(model->end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
  }

  LByteBuffer buffer;
  std::shared_ptr<Bytes> model = std::make_shared<Bytes>();
};

// As hosts append that know the contract alone.
void AppendEach(LByteBuffer* last, const Bytes& bytes) {
  for (const unsigned char b : bytes) {
    if (last->WriteData(b) == 0) (last = last->AllocateNewBlock())->WriteData(b);
  }
}

Bytes Read(LByteBuffer* from) {
  Bytes bytes(from->GetTotalSize());
  for (std::size_t i = bytes.size(); i-- > 0;) bytes[i] = from->ReadData(static_cast<int>(i));
  return bytes;
}

// Buffers of growing and of fixed blocks that share, copy, shrink and end in any order. Blocks that
// another follows before they are full make chains of uneven ones.
TEST(ByteBuffer, HoldsWhatAVectorWouldAndSharesIt) {
  std::vector<Pair> pairs(6);
  std::minstd_rand random(1);
  for (int step = 0; step < 20000; ++step) {
    Pair& pair = pairs[random() % pairs.size()];
    Pair& other = pairs[random() % pairs.size()];
    LByteBuffer* last = pair.buffer.GetLastBlock(&pair.buffer);
    Bytes bytes(random() % 100), copied = *other.model;
    for (unsigned char& b : bytes) b = static_cast<unsigned char>(random());
    const auto choice = random() % 20;
    if (choice == 0) pair = {LByteBuffer(step % 40), std::make_shared<Bytes>()};
    if (choice == 1) pair = Pair();
    if (choice == 2) pair = {other.buffer, std::make_shared<Bytes>(copied)};  // a copy
    if (choice == 3) {
      if (copied.empty()) continue;  // before its first byte a buffer has nothing to share
      pair = other;
    }
    if (choice == 4 || choice == 5) {
      LByteBuffer* cleared = choice == 4 ? last : &pair.buffer;
      pair.model->resize(pair.model->size() - cleared->GetTotalSize());
      cleared->ClearBuffer();
    }
    if (choice == 6 && last != &pair.buffer) {
      *last = other.buffer;  // does nothing: a later block gives copies and does not share
      pair.model = std::make_shared<Bytes>(Read(last));
      pair.buffer = *last;
    }
    if (choice == 7) pair.buffer.AllocateNewBlock();
    if (choice == 8 && pair.model->size() < 1000) {
      pair.buffer.CopyBlock(&other.buffer);  // be it of its own chain
      pair.Expect(copied, copied.size());
    }
    if (choice == 9) pair.Expect(bytes, last->AppendData(bytes.data(), bytes.size()));
    if (choice > 9) {
      choice < 15 ? AppendEach(last, bytes) : void(pair.buffer.Append(bytes));
      pair.Expect(bytes, bytes.size());
    }
    if (pair.buffer.WriteData(3, 99) == 1) pair.model->at(3) = 99;
    for (Pair& each : pairs) ASSERT_EQ(each.buffer.GetTotalSize(), each.model->size()) << step;
    ASSERT_EQ(Read(&pair.buffer), *pair.model) << step;
  }
}

TEST(ByteBuffer, IndexesCountFromTheBlockCalled) {
  LByteBuffer growing, fixed(1);  // blocks of 4
  for (LByteBuffer* head : {&growing, &fixed}) {
    head->Append(Bytes(1000, 3));
    LByteBuffer* inner = head->AllocateNewBlock();
    inner->WriteData(1);
    inner->AllocateNewBlock()->WriteData(9);
    EXPECT_EQ(Read(inner), (Bytes{1, 9}));
    for (const int i : {-1, 1002, INT_MIN, INT_MAX}) {
      EXPECT_EQ(head->ReadData(i) + head->WriteData(i, 1) + inner->ReadData(i), 0) << i;
    }
  }
}

TEST(ByteBuffer, TakesWhatItHoldsAndRefusesTheRest) {
  const Bytes bytes(10, 1);
  LByteBuffer fixed(6), growing, huge(INT_MAX);
  for (LByteBuffer* buffer : {&fixed, &growing}) {
    const std::size_t most = buffer == &fixed ? 6 : 10;
    EXPECT_EQ(buffer->AppendData(bytes.data(), 10), most);
    buffer->AllocateNewBlock();
    EXPECT_EQ(buffer->WriteData(1), 0);  // another block follows
    EXPECT_EQ(buffer->AppendData(bytes.data(), 10), 0U);
    buffer->ClearBuffer();
    EXPECT_EQ(buffer->AppendData(bytes.data(), 10), most);
    EXPECT_EQ(Read(buffer), Bytes(most, 1));
  }
  for (const std::size_t size : {10U, 20U, 40U}) {  // its own bytes, while it grows
    EXPECT_EQ(growing.AppendData(growing.GetDataBlock(), size), size);
  }
  EXPECT_EQ(Read(&growing), Bytes(80, 1));
  EXPECT_EQ(huge.WriteData(1) == 1 && huge.AllocateNewBlock() != nullptr, false);
}

TEST(ByteBuffer, FreesBlocksThatThreadsHaveReadWithoutRecursion) {
  const Bytes bytes(1000000, 5);
  LByteBuffer head(4);  // 250000 blocks
  EXPECT_TRUE(head.Append(bytes));
  std::thread reader([&] { EXPECT_EQ(Read(&head), bytes); });
  EXPECT_EQ(Read(&head), bytes);
  reader.join();
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
  const std::string longest(65536, '#'), nul(1, '\0');
  std::string too_long;
  too_long.resize(16777217, '\n');
  // -1: no line, but the file as a whole is refused.
  const std::pair<std::string, int> texts_and_wrong_lines[] = {
      {"# 1\n\n \t# x\r\n\r\n65036 8\t65535 M m \r\n-500 9 1 N", 0 },
      {longest + "\r\n65036 8 65535 M m",                        0 },
      {"1 8 1 a\n-500 8 1\n",                                    2 },
      {"-500 8 65536 a\n",                                       1 },
      {"-32769 8 1 a\n",                                         1 },
      {"\n-500 8 1 a\n65036 8 1 b\n",                            3 },
      {"\n-500 8 1 a" + nul + "b\n",                             2 },
      {"\n#" + longest,                                          2 },
      {too_long,                                                 -1},
  };
  for (const auto& [text, wrong_line] : texts_and_wrong_lines) {
    const int status = wrong_line > 0 ? ErrorHandler::kListWrongLine : wrong_line;
    SCOPED_TRACE(text.substr(0, 40));
    ErrorHandler handler;
    Directory directory("-500 8 7 old\n");
    std::string path = directory.path() + std::string("/ErrorList.txt");
    ASSERT_EQ(handler.Initialize(path.data(), 8), 0);
    std::ofstream(path) << text;
    EXPECT_EQ(handler.Initialize(path.data(), 8), status);
    EXPECT_EQ(handler.GetErrorLine(), std::max(wrong_line, 0));
    EXPECT_EQ(std::string(handler.GetListError()).empty(), status == 0);
    std::filesystem::remove(path);
    EXPECT_EQ(handler.Initialize(path.data(), 8), ErrorHandler::kListUnreadable);
    ErrorElement* entry = handler.GetErrorElement(65036, 8);
    ASSERT_NE(entry, nullptr);
    const std::string found = entry->GetErrorMessage() + std::to_string(entry->GetErrorField());
    EXPECT_EQ(found, status == 0 ? "M m65535" : "old7");
  }
}

}  // namespace
