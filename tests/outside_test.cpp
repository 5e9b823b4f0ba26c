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
    EXPECT_EQ(buffer->AppendData(bytes.data(), 5), 5U);
    buffer->AllocateNewBlock();
    EXPECT_EQ(buffer->WriteData(1), 0);  // another block follows
    EXPECT_EQ(buffer->AppendData(bytes.data(), 5), 0U);
    buffer->ClearBuffer();
    EXPECT_EQ(buffer->AppendData(bytes.data(), 5), 5U);
    EXPECT_TRUE(buffer->Append({buffer->GetDataBlock(), 5}));  // its own bytes, while it moves them
    EXPECT_EQ(buffer->GetDataSize(), buffer == &fixed ? 6 : 10);
    EXPECT_EQ(Read(buffer), bytes);
  }
  for (const std::size_t size : {10U, 20U, 40U}) {
    EXPECT_EQ(growing.AppendData(growing.GetDataBlock(), size), size);
  }
  EXPECT_EQ(Read(&growing), Bytes(80, 1));

  // What is laid in the room is appended in its place; bytes never move to make room.
  EXPECT_EQ(growing.RoomToAppend(1000).size() + fixed.RoomToAppend(7).size(), 0U);
  growing.ClearBuffer();
  const auto room = growing.RoomToAppend(1000);
  std::fill(room.begin(), room.end(), static_cast<unsigned char>(1));
  EXPECT_EQ(growing.AppendData(room.data(), 10), 10U);
  EXPECT_EQ(growing.GetDataBlock(), room.data());
  EXPECT_EQ(growing.RoomToAppend(1).data(), room.data() + 10);
  EXPECT_EQ(Read(&growing), bytes);
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

TEST(Names, AreFoundAmongManyAndKeepTheirPlaces) {
  ZRTTokenTree tree;
  QLMPlusData data;
  std::vector<std::string> names = {"", "\xFF", "\xFF\x01", "a"};
  for (int i = 1000; i < 3000; ++i) names.push_back(std::to_string(i));
  const std::size_t count = names.size();
  names.insert(names.end(), {"b", "1", "3000", "\xFF\xFF"});  // not added
  for (std::size_t i = 0; i < names.size(); ++i) {
    char* name = names[i].data();
    EXPECT_EQ(tree.Search(tree.GetRoot(), name), nullptr);
    EXPECT_EQ(data.GetDataField(name), nullptr);
    if (i >= count) continue;
    ZRTTokens* token = tree.Add(ZRTTokens::FloatScalar(name, 1.0F));
    EXPECT_EQ(tree.Add(ZRTTokens::IntArray(name, {-1, static_cast<int>(i)}, 9)), token);
    EXPECT_EQ(data.AddField(name), data.AddField(name));
  }
  for (std::size_t i = 0; i < count; ++i) {
    char* name = names[i].data();
    EXPECT_EQ(tree.GetToken(name)->GetIntArrayValue(1), static_cast<int>(i));
    EXPECT_EQ(tree.Search(tree.GetRoot(), name)->GetObject(), tree.GetToken(name));
    EXPECT_EQ(data.GetDataField(name), data.AddField(name));
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
