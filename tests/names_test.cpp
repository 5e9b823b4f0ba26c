// Names: the order of the scopes, mask names, the fuse array's second name, and how long what a
// lookup made stays valid.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "support.h"

namespace {

const char kOut[] = "FuseArray_TDO";
const char kIn[] = "FuseArray_TDI";

TEST(Names, TheInnerScopeWins) {
  World world;
  ZRTExpression& expression = world.expression;
  char name[] = "ID_MASK", empty[] = "";  // a mask name that is held is a name like any other
  QLMPlusData* const sets[] = {&world.global_data, &world.local_data, &world.external_data};
  for (QLMPlusData* set : sets) {
    QLMDataField* field = AddRows(*set, name, {"AA/8"});
    EXPECT_EQ(expression.SearchDataField(name), field);
    EXPECT_EQ(expression.SearchDataFieldSTAPLimpl(name), field);
  }
  for (ZRTTokenTree* tree : {&world.global_tokens, &world.local_tokens}) {
    EXPECT_EQ(SearchToken(expression, empty), nullptr);
    EXPECT_EQ(GetTokenFromTree(expression, tree, name), nullptr);
    ZRTTokens* token = tree->Add(ZRTTokens::IntScalar(name, 1));
    EXPECT_EQ(SearchToken(expression, name), token);
    EXPECT_EQ(GetTokenFromTree(expression, tree, name), token);
  }
  ZRTTokens* token = world.global_tokens.GetToken(name);
  expression.SetLocalTokenTree(nullptr);
  expression.SetExternalZRTData(nullptr);
  expression.SetLocalZRTData(nullptr);
  EXPECT_EQ(SearchToken(expression, name), token);
  EXPECT_EQ(expression.SearchDataField(name), world.global_data.GetDataField(name));
  expression.SetGlobalTokenTree(nullptr);
  expression.SetGlobalZRTData(nullptr);
  EXPECT_EQ(SearchToken(expression, name), nullptr);
  EXPECT_EQ(SearchToken(expression, nullptr), nullptr);
  EXPECT_EQ(expression.SearchDataField(nullptr), nullptr);
  EXPECT_EQ(expression.SearchDataFieldSTAPLimpl(nullptr), nullptr);
}

TEST(Names, MaskNamesMakeFieldsThatLiveAsLongAsTheObject) {
  auto expression = std::make_unique<ZRTExpression>();
  for (std::string name : {"Usercode_MASK", "FuseArray_MASK", "EFuseArray_MASK", "ID_MASK",
                           "FuseArray_MASK_TDO", "FuseArray_MASK_TDI", "FuseArray_DMASK"}) {
    SCOPED_TRACE(name);
    QLMDataField* first = expression->SearchDataField(name.data());
    QLMDataField* second = expression->SearchDataFieldSTAPLimpl(name.data());
    ASSERT_TRUE(first && second);
    EXPECT_NE(first, second);
    EXPECT_EQ(Evaluate(*expression, name.c_str()), "/0");
    *expression = ZRTExpression();  // takes a set-up over; what was handed out stays
    EXPECT_EQ(first->GetFieldName(), name);
    EXPECT_EQ(first->GetRowCount(), 1);
    EXPECT_EQ(first->GetRowWidth(1), 0);
    EXPECT_EQ(first->GetRow(1)->GetTotalSize(), 0U);
    EXPECT_TRUE(IsIgnoreInst(*expression, name.data()));
  }
  for (std::string name : {"", "usercode_mask", "ID_MASK2", "ID_MAS", kOut, kIn}) {
    EXPECT_FALSE(IsIgnoreInst(*expression, name.data())) << name;
    EXPECT_EQ(expression->SearchDataFieldSTAPLimpl(name.data()), nullptr) << name;
    EXPECT_EQ(expression->SearchDataField(name.data()), nullptr);
  }
}

TEST(Names, TheFuseArrayHasASecondName) {
  World world;
  ZRTExpression& expression = world.expression;
  std::string name = kOut;
  EXPECT_EQ(expression.SearchDataFieldSTAPLimpl(name.data()), nullptr);
  EXPECT_EQ(name, kOut);
  EXPECT_EQ(expression.SearchDataField(name.data()), nullptr);
  EXPECT_EQ(name, kIn);  // rewritten, whatever came of the search

  // Behind the failed search, vectors and IsToken ask for the second name, integers do not.
  int value = 0;
  world.global_tokens.Add(ZRTTokens::IntScalar(kOut, 7));
  EXPECT_EQ(Evaluate(expression, kOut), std::to_string(ErrUnknownOperand));
  EXPECT_FALSE(IsToken(expression, kOut));
  EXPECT_EQ(expression.GetIntegerOperand(kOut, &value), 0);
  world.local_tokens.Add(ZRTTokens::IntScalar(kIn, 9));
  EXPECT_EQ(Evaluate(expression, kOut), "00000009/32");
  EXPECT_TRUE(IsToken(expression, kOut));

  QLMDataField* in = AddRows(world.global_data, kIn, {"5A/8"});
  EXPECT_EQ(expression.SearchDataField((name = kOut).data()), in);
  EXPECT_EQ(Evaluate(expression, kOut), "5A/8");
  QLMDataField* out = AddRows(world.global_data, kOut, {"A5/8"});
  EXPECT_EQ(expression.SearchDataField((name = kOut).data()), out);
  EXPECT_EQ(name, kOut);
}

TEST(Names, IsTokenCutsTheTextDownToTheName) {
  World world;
  const std::string long_name(300, 'n');
  for (const char* name : {"Speed", "a", ".abc", "b]", long_name.c_str()}) {
    world.local_tokens.Add(ZRTTokens::IntScalar(name, 1));
  }
  AddRows(world.local_data, "Field", {"01/8"});
  for (const std::string& text :
       {std::string("Speed"), std::string("Speed.unit"), std::string("Speed[2]"),
        std::string("a[1].b"), std::string("a.b[1"), std::string(".abc"), std::string("Field[0]"),
        std::string("ID_MASK.x"), long_name + "[1]"}) {
    EXPECT_TRUE(IsToken(world.expression, text.c_str())) << text;
  }
  for (const char* text : {"", "Speed [2]", " Speed", "[3]", ".a", "Spee", "Speed+1", "ID_MASK "}) {
    EXPECT_FALSE(IsToken(world.expression, text)) << text;
  }
}

}  // namespace
