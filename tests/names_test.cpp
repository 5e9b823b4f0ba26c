// Names: the order of the scopes, the mask names, and the second search for the fuse array's data.
#include <gtest/gtest.h>

#include <string>

#include "support.h"

namespace {

TEST(Names, TheInnermostScopeThatHoldsANameWins) {
  World world;
  std::string name = "n";
  for (ZRTTokenTree* tree : {&world.global_tokens, &world.local_tokens}) {
    ZRTTokens* token = tree->Add(ZRTTokens::IntScalar("n", 1));
    EXPECT_EQ(SearchToken(world.expression, name.data()), token);
    EXPECT_EQ(GetTokenFromTree(world.expression, tree, name.data()), token);
  }
  for (QLMPlusData* data : {&world.global_data, &world.local_data, &world.external_data}) {
    QLMDataField* field = data->AddField("n");
    EXPECT_EQ(world.expression.SearchDataField(name.data()), field);
    EXPECT_EQ(world.expression.SearchDataFieldSTAPLimpl(name.data()), field);
  }
}

TEST(Names, MaskNamesAreFieldsOfOneEmptyRow) {
  World world;
  for (std::string name : {"Usercode_MASK", "FuseArray_MASK", "EFuseArray_MASK", "ID_MASK",
                           "FuseArray_MASK_TDO", "FuseArray_MASK_TDI", "FuseArray_DMASK"}) {
    EXPECT_TRUE(IsIgnoreInst(world.expression, name.data())) << name;
    QLMDataField* first = world.expression.SearchDataField(name.data());
    QLMDataField* second = world.expression.SearchDataFieldSTAPLimpl(name.data());
    ASSERT_TRUE(first && second && first != second) << name;
    EXPECT_EQ(first->GetFieldName(), name);  // still there after the second search
    EXPECT_EQ(first->GetRowCount(), 1);
  }
  for (std::string name : {"id_mask", "ID_MASK2", "ID_MAS", "", "FuseArray_TDO"}) {
    EXPECT_FALSE(IsIgnoreInst(world.expression, name.data())) << name;
  }
}

TEST(Names, FuseArrayOutputFallsBackToItsInput) {
  const std::string out = "FuseArray_TDO", in = "FuseArray_TDI";
  for (const std::string& held : {out, in, std::string("x")}) {
    World world;
    QLMDataField* field = world.local_data.AddField(held.c_str());
    std::string name = out;
    QLMDataField* const exact = held == out ? field : nullptr;
    EXPECT_EQ(world.expression.SearchDataFieldSTAPLimpl(name.data()), exact);
    EXPECT_EQ(name, out);
    EXPECT_EQ(world.expression.SearchDataField(name.data()), held == "x" ? nullptr : field);
    EXPECT_EQ(name, held == out ? out : in);  // rewritten, whatever comes of the search
  }
  // The token search behind a failed second search sees the new name; integers ask as written.
  World world;
  world.local_tokens.Add(ZRTTokens::IntScalar(in.c_str(), 7));
  int value = 0;
  EXPECT_TRUE(IsToken(world.expression, out.c_str()));
  EXPECT_EQ(Evaluate(world.expression, out.c_str()), "00000007/32");
  EXPECT_EQ(world.expression.GetIntegerOperand(out.c_str(), &value), ErrUnknownOperand);
}

TEST(Names, IsTokenCutsAtTheFirstDotAndBracket) {
  World world;
  world.global_tokens.Add(ZRTTokens::IntScalar("Speed", 1));
  world.global_tokens.Add(ZRTTokens::IntScalar(".hidden", 1));
  world.external_data.AddField("a");
  for (const char* text :
       {".hidden", ".hidden[1]", "Speed", "Speed.unit", "Speed[2]", "a[1].b", "FuseArray_MASK.x"}) {
    EXPECT_TRUE(IsToken(world.expression, text)) << text;
  }
  for (const char* text : {"", "Speed [2]", ".Speed", "[3]", "speed"}) {
    EXPECT_FALSE(IsToken(world.expression, text)) << text;
  }
}

}  // namespace
