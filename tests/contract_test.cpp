// The object over closed libraries that are their contracts and nothing more: how it sets up its
// error handler. What it evaluates to there, the other tests of this program tell.
#include <gtest/gtest.h>

#include "DataExpression.h"
#include "scan/operators.h"
#include "support.h"

namespace {

TEST(Contract, SetUp) {
  ZRTExpression expression;
  std::string here = ".", nowhere = "nowhere";
  ErrorHandler::list_status_ = -42;
  EXPECT_EQ(expression.Initialize(here.data()), -42);
  ErrorHandler& handler = *expression.GetErrorHandler();
  EXPECT_EQ(handler.request_ + handler.record_, "./ErrorList.txt 8\nZRT Template Process Error.\n");
  handler.list_[{65036, 8}].message_ = "M";
  ErrorHandler::list_status_ = 3;
  const ZRTExpression copy(expression);
  EXPECT_EQ(expression.Initialize(here.data()), 3);
  EXPECT_EQ(expression.Initialize(nowhere.data()), ErrBadDirectory);
  EXPECT_EQ(handler.request_ + handler.record_, "./ErrorList.txt 8\nM\nnowhere\n");
}

// Two blocks may hold more than an index reaches. What cannot be read is refused.
TEST(Contract, RefusesBytesBeyondAnIndex) {
  if (!IsHuge()) GTEST_SKIP() << "takes gigabytes: set ZRT_HUGE to run it";
  for (const unsigned int byte_count : {0x7FFFFFFFU, 0x80000000U}) {
    const bool fits = byte_count < 0x80000000U;
    World world;
    AddRows(world.local_data, "long", {FromText("/8")});
    std::string name = "long";
    LByteBuffer& row = *world.local_data.GetDataField(name.data())->GetRow(1);
    row.block_->bytes.resize(byte_count - byte_count / 2, 0xAB);
    row.AllocateNewBlock()->block_->bytes.resize(byte_count / 2, 0xCD);
    RowDataStream stream, small;
    static_cast<LByteBuffer&>(stream) = row;
    Fill(small, FromText("5A/8"));
    const int status = fits ? 0 : ErrStreamWrite;
    EXPECT_EQ(Evaluate(world.expression, "0x12|long"), fits ? "DF/8" : std::to_string(status));
    EXPECT_EQ(world.expression.ExecuteBitStreamOperator(&small, zrt::OpAnd, &stream), status);
    EXPECT_EQ(Show(small), fits ? "48/8" : "5A/8");
    if (fits) continue;
    EXPECT_EQ(world.expression.ExecuteBitStreamOperator(&stream, zrt::OpAnd, &small), status);
    EXPECT_EQ(world.expression.GetBitStream("1+(2)", &stream), status);
    char text[] = "1";
    fnGetDataExpression(&stream, text);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(stream.GetTotalSize(), byte_count);
    RowDataStream copy;
    copy.CopyBlock(&stream);
    EXPECT_EQ(copy.GetTotalSize(), byte_count - 1);
  }
}

}  // namespace
