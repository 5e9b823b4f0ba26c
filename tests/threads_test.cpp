// What threads may share: token trees that nobody changes, data sets that are read by index, and
// the error list of copied objects.
#include <gtest/gtest.h>

#include <optional>
#include <thread>

#include "support.h"

namespace {

// What a thread sees that evaluates by a copy of its own, with its own fields in front of the rest.
std::string SeenBy(const ZRTExpression& shared) {
  QLMPlusData own;
  AddRows(own, "own", {FromText("01/8"), FromText("22/8"), FromText("0ABC/12")});
  ZRTExpression expression;
  expression = ZRTExpression(shared);
  expression.SetLocalZRTData(&own);
  std::ostringstream seen;
  for (const char* text : {"own@(Long[1]|t[n-1])@own", "hidden[1]@ID_MASK[1]@A[n]@own", "own",
                           "~(A[n])", "t[1]*(n+neg)-10", "f*t[2]", "FuseArray_TDO"}) {
    int integer = 0;
    float number = 0;
    seen << Evaluate(expression, text) << expression.GetIntegerOperand(text, &integer)
         << expression.GetFloatOperand(text, &number) << " " << integer << " " << number << "\n";
  }
  std::string mask = "ID_MASK";
  seen << (expression.SearchDataField(mask.data()) ? mask : "")
       << expression.GetErrorHandler()->GetErrorElement(65025, 8)->GetErrorMessage();
  return seen.str();
}

TEST(Threads, EvaluateOverSharedScopes) {
  const BlockSize setting(4);  // rows of several blocks, through which readers have to look
  RichWorld world;
  Directory directory("-511 8 2 No number.\n");
  ASSERT_EQ(world.expression.Initialize(directory.path), 0);
  const std::string seen_alone = SeenBy(world.expression);
  std::vector<std::jthread> threads;
  threads.reserve(4);
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] {
      for (int i = 0; i < 500 && !HasFailure(); ++i)
        EXPECT_EQ(SeenBy(world.expression), seen_alone);
    });
  }
}

// Copies that share blocks may come and go in any thread: the last of them frees the blocks, once.
TEST(Threads, ShareBlocksThatTheLastOwnerFrees) {
  const BlockSize setting(4);
  const Bytes bytes(20, 0x5A);
  std::optional<LByteBuffer> first(std::in_place);
  Fill(*first, bytes);
  LByteBuffer last;
  {
    std::vector<std::jthread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread) {
      threads.emplace_back([&shared = *first, &bytes] {
        LByteBuffer held;
        for (int i = 0; i < 2000; ++i) {
          LByteBuffer other;
          other = shared;
          held = i % 3 == 0 ? LByteBuffer() : other;
        }
        held = shared;
        EXPECT_EQ(BytesOf(held), bytes);
      });
    }
    last = *first;
  }
  first.reset();
  EXPECT_EQ(BytesOf(last), bytes);
}

}  // namespace
