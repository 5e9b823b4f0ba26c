// The stand-ins where a fault would hide behind right results of the evaluator: chains of blocks
// that are shared, copied and freed in any order, lookups, the row pointer, refused error lists.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "hq4170.h"
#include "qlmplusdata.h"
#include "zrttokentree.h"

namespace {

using Bytes = std::vector<unsigned char>;

void Append(LByteBuffer* head, unsigned char b) {
  LByteBuffer* last = head->GetLastBlock(head);
  if (last->WriteData(b) == 0) last->AllocateNewBlock()->WriteData(b);
}

Bytes Read(LByteBuffer* from) {
  Bytes bytes(from->GetTotalSize());
  for (std::size_t i = bytes.size(); i-- > 0;) bytes[i] = from->ReadData(static_cast<int>(i));
  return bytes;
}

TEST(ByteBuffer, IndexesRunThroughTheChain) {
  for (const int size : {0, 1, 7}) {  // 0: blocks that grow; 1 counts as 4
    SCOPED_TRACE(size);
    LByteBuffer::SetDefaultBlockSize(size);
    LByteBuffer head;
    LByteBuffer::SetDefaultBlockSize(0);
    Bytes expected;
    for (int i = 0; i < 1000; ++i) {
      expected.push_back(static_cast<unsigned char>(i * 7));
      Append(&head, expected.back());
    }
    EXPECT_EQ(head.GetDataSize(), size == 0 ? 1000 : std::max(size, 4));
    LByteBuffer* inner = head.AllocateNewBlock();
    for (const unsigned char b : {1, 2}) EXPECT_EQ(inner->WriteData(b), 1);
    EXPECT_EQ(inner->AllocateNewBlock()->WriteData(9), 1);
    EXPECT_EQ(inner->WriteData(3), 1);  // into a block that another follows
    EXPECT_EQ(head.WriteData(998, 0xEE), 1);
    EXPECT_EQ(Read(inner), (Bytes{1, 2, 3, 9}));
    expected[998] = 0xEE;
    expected.insert(expected.end(), {1, 2, 3, 9});
    std::thread other([&] { EXPECT_EQ(Read(&head), expected); });
    EXPECT_EQ(Read(&head), expected);
    other.join();
    for (const int outside : {-1, 1004}) {
      EXPECT_EQ(head.ReadData(outside), 0);
      EXPECT_EQ(head.WriteData(outside, 1), 0);
    }
  }
}

TEST(ByteBuffer, FreesAMillionBlocksWithoutRecursion) {
  LByteBuffer head(4);
  LByteBuffer* last = &head;
  for (int i = 0; i < 1000000; ++i) last = last->AllocateNewBlock();
}

// Buffers that share, copy and end in any order, beside vectors that do the same.
TEST(ByteBuffer, SharesBlocksUntilTheLastOwnerEnds) {
  struct Pair {
    LByteBuffer buffer;
    std::shared_ptr<Bytes> model = std::make_shared<Bytes>();
  };
  std::vector<Pair> pairs(6);
  std::minstd_rand random(1);
  for (int step = 0; step < 20000; ++step) {
    Pair& pair = pairs[random() % pairs.size()];
    const Pair& other = pairs[random() % pairs.size()];
    LByteBuffer* last = pair.buffer.GetLastBlock(&pair.buffer);
    const auto choice = random() % 24;
    if (choice == 0) pair = {LByteBuffer(5), std::make_shared<Bytes>()};
    if (choice == 1) pair = {other.buffer, std::make_shared<Bytes>(*other.model)};  // a copy
    if (choice == 2) pair = other;                                                  // shares
    if (choice == 3) {
      pair.buffer.ClearBuffer();
      pair.model->clear();
    } else if (choice == 4 && last != &pair.buffer) {
      *last = other.buffer;  // does nothing: a later block gives copies and does not share
      pair.model = std::make_shared<Bytes>(Read(last));
      pair.buffer = *last;
    } else if (choice > 4) {
      pair.model->push_back(static_cast<unsigned char>(step));
      Append(&pair.buffer, pair.model->back());
      if (pair.buffer.WriteData(3, 99) == 1) pair.model->at(3) = 99;
    }
    for (Pair& each : pairs) ASSERT_EQ(Read(&each.buffer), *each.model) << step;
  }
}

TEST(String, CutsWithinTheTextAndInPlace) {
  LString string;
  char text[16] = " \t ab  ";
  string.TrimRight(text);
  string.TrimLeft(text);
  util_strncat(text, text, 0, 0);
  EXPECT_STREQ(text, "\t ab\t ab");
  EXPECT_EQ(string.FindOneOf(text, "ba"), 2);
  EXPECT_EQ(string.ReverseFindOneOf(text, "ab"), 7);
  string.Mid(text, text, 2, 99);
  string.Right(text, text, 4);
  string.Left(text, text, 3);
  EXPECT_STREQ(text, "\t a");
}

// Names in sorted order are the worst case of a tree that does not balance itself.
TEST(Lookups, FindEveryNameAmongManyAndKeepPlaces) {
  constexpr int kFirst = 100000, kEnd = 200000;
  ZRTTokenTree tree;
  QLMPlusData data;
  for (int i = kFirst; i < kEnd; ++i) {
    const std::string name = std::to_string(i);
    ZRTTokens* token = tree.Add(ZRTTokens::FloatScalar(name.c_str(), 1.0F));
    EXPECT_EQ(tree.Add(ZRTTokens::IntArray(name.c_str(), {-i, i}, 9)), token);
    EXPECT_EQ(data.AddField(name.c_str()), data.AddField(name.c_str()));
  }
  for (int i = kFirst - 1; i <= kEnd; ++i) {
    std::string name = std::to_string(i);
    ZRTTokens* token = tree.GetToken(name.data());
    QLMDataField* field = data.GetDataField(name.data());
    ASSERT_EQ(token != nullptr, i >= kFirst && i < kEnd);
    ASSERT_EQ(field != nullptr, token != nullptr);
    if (token == nullptr) continue;
    EXPECT_EQ(name, field->GetFieldName());
    EXPECT_EQ(token->GetIntArrayValue(1), i);
    for (const int outside : {-1, 2}) EXPECT_EQ(token->GetIntArrayValue(outside), 0);
  }
}

TEST(DataField, RowPointerStaysBehindTheLastRow) {
  QLMDataField field;
  for (int count = 0; count < 3; ++count) {
    field.ResetRowPointer();
    for (int i = 1; i <= count + 2; ++i) {
      EXPECT_EQ(field.GetCurrentRowWidth(), i <= count ? 10 * i : 0);
      EXPECT_EQ(field.GetRowWidth(i), i <= count ? 10 * i : 0);
      LByteBuffer* row = field.GetCurrentRow();
      EXPECT_EQ(row != nullptr, i <= count);
      EXPECT_EQ(field.GetRow(i), row);
    }
    for (const int outside : {-1, 0}) EXPECT_EQ(field.GetRow(outside), nullptr);
    LByteBuffer* added = field.AddRow(10 * (count + 1));
    EXPECT_EQ(field.GetCurrentRow(), added);
  }
}

TEST(ErrorList, IsTakenWholeOrRefusedWithItsLine) {
  const std::pair<const char*, int> texts_and_wrong_lines[] = {
      {"# 1\n\n \t# x\r\n\r\n-500 8 65535 M m \r\n", 0},
      {"65036\t8\t65535\tM m\n-500 9 1 N",           0},
      {"1 8 1 a\n-500 8 1\n",                        2},
      {"-500 8 1  \n",                               1},
      {"-500 8 65536 a\n",                           1},
      {"-500 -1 1 a\n",                              1},
      {"-32769 8 1 a\n",                             1},
      {"99999999999 8 1 a\n",                        1},
      {"-500 8 1a\n",                                1},
      {"\n-500 8 1 a\n65036 8 1 b\n",                3},
  };
  std::string name = "zrt_error_list_" + std::to_string(getpid());
  const std::string path = testing::TempDir() + "/" + name;
  for (const auto& [text, wrong_line] : texts_and_wrong_lines) {
    SCOPED_TRACE(text);
    ErrorHandler handler;
    handler.SetDefaultDir(testing::TempDir().c_str());
    std::ofstream(path) << "7 7 7 old\n-500 8 65535 M m\n";
    ASSERT_EQ(handler.Initialize(name.data(), 8), 0);
    std::ofstream(path) << text;
    const int status = wrong_line == 0 ? 0 : ErrorHandler::kListWrongLine;
    EXPECT_EQ(handler.Initialize(name.data(), 8), status);
    EXPECT_EQ(handler.GetErrorLine(), wrong_line);
    EXPECT_EQ(handler.GetErrorElement(7, 7) == nullptr, status == 0);
    unlink(path.c_str());
    EXPECT_EQ(handler.Initialize(name.data(), 8), ErrorHandler::kListUnreadable);
    ErrorElement* entry = handler.GetErrorElement(65036, 8);
    ASSERT_NE(entry, nullptr);
    EXPECT_STREQ(entry->GetErrorMessage(), "M m");
    EXPECT_EQ(entry->GetErrorField(), 65535);
  }
}

}  // namespace
