// The object over closed libraries that are their contracts and nothing more: how it sets up its
// error handler. What it evaluates to there, the other tests of this program tell.
#include <gtest/gtest.h>

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

}  // namespace
