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
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = from->ReadData(static_cast<int>(i));
  return bytes;
}

TEST(ByteBuffer, IndexesRunThroughTheChain) {
  for (const int size : {0, 1, 4, 7, 256}) {  // 0: blocks that grow; 1 counts as 4
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
    EXPECT_EQ(inner->WriteData(1), 1);
    EXPECT_EQ(inner->AllocateNewBlock()->WriteData(9), 1);
    EXPECT_EQ(inner->WriteData(2), 1);  // into a block that another follows
    EXPECT_EQ(Read(inner), (Bytes{1, 2, 9}));
    expected.insert(expected.end(), {1, 2, 9});
    EXPECT_EQ(head.WriteData(998, 0xEE), 1);
    expected[998] = 0xEE;
    LByteBuffer copy(head);
    std::thread other([&] { EXPECT_EQ(Read(&head), expected); });
    for (int i = 1002; i >= 0; --i) ASSERT_EQ(head.ReadData(i), expected[static_cast<unsigned>(i)]);
    other.join();
    for (const int outside : {-1, 1003}) {
      EXPECT_EQ(head.ReadData(outside), 0);
      EXPECT_EQ(head.WriteData(outside, 1), 0);
    }
    head.ClearBuffer();
    EXPECT_EQ(head.GetTotalSize(), 0U);
    Append(&head, 5);
    EXPECT_EQ(Read(&head), Bytes{5});
    EXPECT_EQ(Read(&copy), expected);
  }
}

TEST(ByteBuffer, FreesAMillionBlocksWithoutRecursion) {
  LByteBuffer head(4);
  LByteBuffer* last = &head;
  for (int i = 0; i < 1000000; ++i) last = last->AllocateNewBlock();
  EXPECT_EQ(head.GetLastBlock(&head), last);
}

// Final, so that an owning pointer may delete it: the base's destructor is not virtual.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor)
struct Buffer final : LByteBuffer {
  using LByteBuffer::LByteBuffer;
};

// Buffers that share, copy and end in any order, beside vectors that do the same.
TEST(ByteBuffer, SharesBlocksUntilTheLastOwnerEnds) {
  struct Pair {
    std::shared_ptr<Buffer> buffer = std::make_shared<Buffer>();
    std::shared_ptr<Bytes> model = std::make_shared<Bytes>();
  };
  std::vector<Pair> pairs(6);
  std::minstd_rand random(1);
  for (int step = 0; step < 20000; ++step) {
    Pair& pair = pairs[random() % pairs.size()];
    Pair& other = pairs[random() % pairs.size()];
    const auto b = static_cast<unsigned char>(random() % 256);
    LByteBuffer* last = pair.buffer->GetLastBlock(pair.buffer.get());
    const auto choice = random() % 24;
    if (choice == 0) {
      pair = Pair{std::make_shared<Buffer>(5)};
    } else if (choice == 1) {
      pair = {std::make_shared<Buffer>(*other.buffer), std::make_shared<Bytes>(*other.model)};
    } else if (choice == 2) {
      *pair.buffer = *other.buffer;
      pair.model = other.model;
    } else if (choice == 3) {
      pair.buffer->ClearBuffer();
      pair.model->clear();
    } else if (choice == 4 && last != pair.buffer.get()) {
      *last = *other.buffer;  // does nothing: a later block gives copies and does not share
      pair.model = std::make_shared<Bytes>(Read(last));
      pair.buffer->LByteBuffer::operator=(*last);
    } else {
      Append(pair.buffer.get(), b);
      pair.model->push_back(b);
      pair.buffer->WriteData(3, b);
      if (pair.model->size() > 3) (*pair.model)[3] = b;
    }
    for (Pair& each : pairs) ASSERT_EQ(Read(each.buffer.get()), *each.model) << step;
  }
}

TEST(String, CutsWithinTheTextAndInPlace) {
  LString string;
  char text[16] = " \t ab  ";
  string.TrimRight(text);
  string.TrimLeft(text);
  EXPECT_STREQ(text, "\t ab");
  util_strncat(text, text, 0, 0);
  EXPECT_STREQ(text, "\t ab\t ab");
  EXPECT_EQ(string.FindOneOf(text, "ba"), 2);
  EXPECT_EQ(string.ReverseFindOneOf(text, "ab"), 7);
  string.Mid(text, text, 2, 99);
  string.Right(text, text, 4);
  string.Left(text, text, 3);
  EXPECT_STREQ(text, "\t a");
  string.Mid(text, text, 4, 1);
  EXPECT_STREQ(text, "");
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
    EXPECT_EQ(token->GetTokenType(), 9);
    EXPECT_EQ(token->GetIntArrayValue(1), i);
    for (const int outside : {-1, 2}) EXPECT_EQ(token->GetIntArrayValue(outside), 0);
  }
}

TEST(DataField, RowPointerStaysBehindTheLastRow) {
  for (const int count : {0, 1, 3}) {
    SCOPED_TRACE(count);
    QLMDataField field;
    for (int i = 1; i <= count; ++i) field.AddRow(10 * i, {1, 2});
    for (int round = 0; round < 2; ++round) {
      for (int i = 1; i <= count + 2; ++i) {
        const int width = i <= count ? 10 * i : 0;
        EXPECT_EQ(field.GetCurrentRowWidth(), width);
        EXPECT_EQ(field.GetRowWidth(i), width);
        LByteBuffer* row = field.GetCurrentRow();
        EXPECT_EQ(row != nullptr, width != 0);
        EXPECT_EQ(field.GetRow(i), row);
      }
      field.ResetRowPointer();
    }
    for (const int outside : {-1, 0}) EXPECT_EQ(field.GetRow(outside), nullptr);
    for (int i = 0; i < count + 2; ++i) field.GetCurrentRow();
    LByteBuffer* added = field.AddRow(7);
    EXPECT_EQ(field.GetCurrentRow(), added);
  }
}

TEST(ErrorList, IsTakenWholeOrRefusedWithItsLine) {
  struct Row {
    const char* text;
    int status, line;
  };
  const Row rows[] = {
      {"# 1\n\n \t# x\r\n\r\n-500 8 65535 M m \r\n", 0,  0},
      {"-500\t8\t65535\tM m",                        0,  0},
      {"65036 8 65535 M m\n-500 9 1 N\n",            0,  0},
      {"1 8 1 a\n-500 8 1\n",                        -2, 2},
      {"-500 8 1  \n",                               -2, 1},
      {"-500 8 65536 a\n",                           -2, 1},
      {"-500 -1 1 a\n",                              -2, 1},
      {"-32769 8 1 a\n",                             -2, 1},
      {"99999999999 8 1 a\n",                        -2, 1},
      {"-500 8 1a\n",                                -2, 1},
      {"\n-500 8 1 a\n65036 8 1 b\n",                -2, 3},
  };
  std::string name = "zrt_error_list_" + std::to_string(getpid());
  const std::string path = testing::TempDir() + "/" + name;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    ErrorHandler handler;
    handler.SetDefaultDir(testing::TempDir().c_str());
    std::ofstream(path) << "7 7 7 old\n" << (row.status == 0 ? "" : "-500 8 65535 M m\n");
    ASSERT_EQ(handler.Initialize(name.data(), 8), 0);
    std::ofstream(path) << row.text;
    EXPECT_EQ(handler.Initialize(name.data(), 8), row.status);
    EXPECT_EQ(handler.GetErrorLine(), row.line);
    EXPECT_EQ(handler.GetErrorElement(7, 7) == nullptr, row.status == 0);
    ErrorElement* entry = handler.GetErrorElement(65036, 8);
    ASSERT_NE(entry, nullptr);
    EXPECT_STREQ(entry->GetErrorMessage(), "M m");
    EXPECT_EQ(entry->GetErrorField(), 65535);
    unlink(path.c_str());
    EXPECT_EQ(handler.Initialize(name.data(), 8), ErrorHandler::kListUnreadable);
    EXPECT_EQ(handler.GetErrorElement(65036, 8), entry);
  }
}

}  // namespace
