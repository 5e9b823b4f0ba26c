// The stand-ins where a fault would hide behind right results of the evaluator: chains of blocks
// that are shared, copied and freed in any order.
#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <thread>

#include "support.h"

namespace {

// A buffer beside a vector that is to hold the same.
struct Pair {
  LByteBuffer buffer;
  std::shared_ptr<Bytes> model = std::make_shared<Bytes>();
};

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
    std::size_t added = 0;
    if (choice == 0) pair = {LByteBuffer(step % 40), std::make_shared<Bytes>()};
    if (choice == 1) pair = Pair();
    if (choice == 2) pair = {other.buffer, std::make_shared<Bytes>(copied)};  // a copy
    if (choice == 3 && !copied.empty()) pair = other;  // there is nothing to share before
    if (choice == 4 || choice == 5) {
      LByteBuffer* cleared = choice == 4 ? last : &pair.buffer;
      pair.model->resize(pair.model->size() - cleared->GetTotalSize());
      cleared->ClearBuffer();
    }
    if (choice == 6 && last != &pair.buffer) {
      *last = other.buffer;  // does nothing: a later block gives copies and does not share
      pair.model = std::make_shared<Bytes>(BytesOf(*last));
      pair.buffer = *last;
    }
    if (choice == 7) pair.buffer.AllocateNewBlock();
    if (choice == 8 && pair.model->size() < 1000) {
      pair.buffer.CopyBlock(&other.buffer);  // be it of its own chain
      bytes = copied;
      added = bytes.size();
    }
    if (choice == 9) added = last->AppendData(bytes.data(), bytes.size());
    if (choice > 9) {
      choice < 15 ? Fill(pair.buffer, bytes) : void(pair.buffer.Append(bytes));
      added = bytes.size();
    }
    pair.model->insert(pair.model->end(), bytes.data(), bytes.data() + added);
    if (pair.buffer.WriteData(3, 99) == 1) pair.model->at(3) = 99;
    for (Pair& each : pairs) ASSERT_EQ(each.buffer.GetTotalSize(), each.model->size()) << step;
    ASSERT_EQ(BytesOf(pair.buffer), *pair.model) << step;
  }
}

TEST(ByteBuffer, TakesWhatItHoldsAndRefusesTheRest) {
  const Bytes bytes(10, 1);
  LByteBuffer fixed(6), growing, huge(INT_MAX);
  for (LByteBuffer* buffer : {&fixed, &growing}) {
    EXPECT_EQ(buffer->AppendData(bytes.data(), 5), 5U);
    LByteBuffer* inner = buffer->AllocateNewBlock();
    EXPECT_EQ(buffer->WriteData(1), 0);  // another block follows
    EXPECT_EQ(buffer->AppendData(bytes.data(), 5), 0U);
    inner->WriteData(1);
    inner->AllocateNewBlock()->WriteData(9);
    EXPECT_EQ(BytesOf(*inner), (Bytes{1, 9}));  // indexes count from the block called
    for (const int i : {-1, 7, INT_MIN, INT_MAX}) {
      EXPECT_EQ(buffer->ReadData(i) + buffer->WriteData(i, 1) + inner->ReadData(i), 0) << i;
    }
    buffer->ClearBuffer();
    EXPECT_EQ(buffer->AppendData(bytes.data(), 5), 5U);
    EXPECT_TRUE(buffer->Append({buffer->GetDataBlock(), 5}));  // its own bytes, while it moves them
    EXPECT_EQ(buffer->GetDataSize(), buffer == &fixed ? 6 : 10);
    EXPECT_EQ(BytesOf(*buffer), bytes);
  }
  for (const std::size_t size : {10U, 20U, 40U}) {
    EXPECT_EQ(growing.AppendData(growing.GetDataBlock(), size), size);
  }
  EXPECT_EQ(BytesOf(growing), Bytes(80, 1));

  // What is laid in the room is appended in its place; bytes never move to make room.
  EXPECT_EQ(growing.RoomToAppend(1000).size() + fixed.RoomToAppend(7).size(), 0U);
  growing.ClearBuffer();
  const auto room = growing.RoomToAppend(1000);
  std::fill(room.begin(), room.end(), static_cast<unsigned char>(1));
  EXPECT_EQ(growing.AppendData(room.data(), 10), 10U);
  EXPECT_EQ(growing.GetDataBlock(), room.data());
  EXPECT_EQ(growing.RoomToAppend(1).data(), room.data() + 10);
  EXPECT_EQ(BytesOf(growing), bytes);
  EXPECT_EQ(huge.WriteData(1) == 1 && huge.AllocateNewBlock() != nullptr, false);
}

TEST(ByteBuffer, FreesBlocksThatThreadsHaveReadWithoutRecursion) {
  const Bytes bytes(1000000, 5);
  LByteBuffer head(4);  // 250000 blocks
  EXPECT_TRUE(head.Append(bytes));
  const std::jthread reader([&] { EXPECT_EQ(BytesOf(head), bytes); });
  EXPECT_EQ(BytesOf(head), bytes);
}

}  // namespace
