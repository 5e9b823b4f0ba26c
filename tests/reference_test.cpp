// The library against the language written down a second time: any text, right or damaged, must
// give the same status and value, leave the same behind after a failure and take the same rows.
//
// A longer run, of other texts:
//
//   ZRT_REFERENCE_TEXTS=5000000 ZRT_REFERENCE_SEED=2 zrt_tests --gtest_filter='Reference.*'
#include "reference.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <random>

#include "text_generator.h"
#include "twins.h"

namespace {

struct Reference : testing::Test {
  // Results hold older bytes in every second text, in others the rows go on where they are; blocks
  // are short in every seventh.
  void Compare(const std::string& text) {
    ++text_count;
    const BlockSize setting(text_count % 7 == 0 ? 4 : 0);
    const Stream before = text_count % 2 == 0 ? Stream() : FromText("FF5A01/9");
    Twins& twins = all_twins[text_count % std::size(all_twins)];
    if (text_count % 4 < 2) twins.ResetRows();
    for (const int kind :
         {+kInteger, +kFloat, +kBits, kChain + static_cast<int>(text_count % 11)}) {
      EXPECT_EQ(twins.Difference(static_cast<Kind>(kind), text, before), "")
          << "in scope " << text_count % std::size(all_twins);
    }
    EXPECT_TRUE(ScansAgree(twins.expression, text)) << text;
  }

  std::size_t text_count = 0;
  Twins all_twins[3] = {Twins(), Twins("FuseArray_TDI"), Twins("FuseArray_TDO")};
};

std::uint64_t Setting(const char* name, std::uint64_t otherwise) {
  const char* value = std::getenv(name);
  return value == nullptr ? otherwise : std::stoull(value);
}

TEST_F(Reference, GeneratedTexts) {
  std::mt19937_64 random(Setting("ZRT_REFERENCE_SEED", 1));
  TextGenerator generator([&random] { return random(); });
  const std::uint64_t count = Setting("ZRT_REFERENCE_TEXTS", ZRT_IS_SANITIZED ? 30000 : 100000);
  for (std::uint64_t i = 0; i < count && !HasFailure(); ++i) Compare(generator.Text());
  const std::size_t values =
      all_twins[0].value_count() + all_twins[1].value_count() + all_twins[2].value_count();
  EXPECT_GT(values, text_count / 2) << "too few of the texts have a value";
}

// Every text of up to four characters, of which each stands for one kind: a digit, a name, both
// brackets and parentheses, an operator that is unary and one that is not, half a shift, the blank,
// and what literals and exponents are made of.
TEST_F(Reference, ShortTexts) {
  constexpr std::string_view kCharacters = "1A#.e-~@<()[] ";
  constexpr std::size_t kCount = kCharacters.size(), kSquare = kCount * kCount;
  constexpr std::size_t kTexts = 1 + kCount + kSquare + kCount * kSquare + kSquare * kSquare;
  for (std::size_t number = 0; number < kTexts && !HasFailure(); ++number) {
    std::string text;
    for (std::size_t n = number; n > 0; n = (n - 1) / kCount) text += kCharacters[(n - 1) % kCount];
    Compare(text);
  }
}

// Groups within groups, deeper than a walk has places for, with and without something on their
// sides. Where they stand directly inside one another, the walk remembers less of them.
TEST_F(Reference, DeepTexts) {
  constexpr const char* kAround[][2] = {
      {"(",     ")"    },
      {"(",     ")+1"  },
      {"7-(",   ")"    },
      {"2*(",   ") - 3"},
      {"(2)-(", ")+3"  },
      {"((",    ")+5)" },
      {"!(",    ")"    },
      {"~(",    ")"    },
      {"~1+(",  ")"    },
      {"1+2 (", ")+(4)"},
      {"(",     ")@#1" },
      {"#1@(",  ")"    },
      {"#1@ (", ")@n"  },
  };
  constexpr std::size_t kOfKinds[] = {6, 10, std::size(kAround)};  // of floats, integers, bits
  std::mt19937_64 random(11);
  int value_count = 0;
  for (int i = 0; i < 600 && !HasFailure(); ++i) {
    std::string text = "3";
    for (std::uint64_t level = 60 + random() % 140; level > 0; --level) {
      const auto& around = kAround[random() % kOfKinds[i % 3]];
      std::string outer = around[0];
      outer += text;
      outer += around[1];
      text.swap(outer);
    }
    Compare(text);
    if (int value = 0; all_twins[0].expression.GetIntegerOperand(text.c_str(), &value) == 0) {
      ++value_count;
    }
  }
  EXPECT_GT(value_count, 200);
}

// Each piece waits for those behind it: more of them than a walk keeps whole, of all sizes, in
// front of the first group or behind it.
TEST_F(Reference, ValuesThatWait) {
  constexpr std::size_t kUnaryCount = 4;
  constexpr const char* kPieces[] = {
      "~#101", "~0",         "$Less[0]",  "~0x123456789ABCDEF01", "(#101)",
      "(n)",   "(Odd[2]@n)", "~(row[0])", "(0x0123456789ABCDEF)"};
  constexpr const char* kOperators[] = {"@", "@", "&", "|"};
  std::mt19937_64 random(13);
  int value_count = 0;
  for (unsigned i = 0; i < 300 && !HasFailure(); ++i) {
    std::string text = "#1";
    const std::uint64_t count = 100 + random() % 200;
    const std::uint64_t first_group = count * (i % 3) / 2;
    for (std::uint64_t piece = 0; piece < count; ++piece) {
      text += kOperators[random() % std::size(kOperators)];
      text += kPieces[random() % (piece < first_group ? kUnaryCount : std::size(kPieces))];
    }
    Compare(text);
    RowDataStream value;
    value_count += all_twins[0].expression.GetBitStream(text.c_str(), &value) == 0 ? 1 : 0;
  }
  EXPECT_GT(value_count, 200);
}

// A host need not hand in all scopes. The names are some that several scopes have, and one of more
// bytes than a value keeps in itself.
TEST_F(Reference, ScopesThatAreMissing) {
  std::mt19937_64 random(7);
  TextGenerator generator([&random] { return random(); });
  for (unsigned missing = 0; missing < 32 && !HasFailure(); ++missing) {
    Twins twins;
    twins.TakeAway(missing);
    std::vector<std::string> texts = {"n",
                                      "hidden",
                                      "A",
                                      "A@Three",
                                      "row",
                                      "(row)@row[1]",
                                      "row[(1)2]",
                                      "row[(1)@~(+(1))]",
                                      "row[+(1)]",
                                      "FuseArray_TDO",
                                      "FuseArray_DMASK[1]"};
    while (texts.size() < 40) texts.push_back(generator.Text());
    for (const std::string& text : texts) {
      for (int kind = 0; kind < kKinds; ++kind) {
        twins.ResetRows();
        EXPECT_EQ(twins.Difference(static_cast<Kind>(kind), text), "") << "without " << missing;
      }
    }
  }
}

TEST_F(Reference, Lookups) {
  std::vector<std::string> names = {"nosuch", "id_mask", "FuseArray_TDO", "ID_MASK2", "ID_MAS", ""};
  names.insert(names.end(), std::begin(reference::kMaskNames), std::end(reference::kMaskNames));
  for (const Named& named : NamesOfWorld()) names.push_back(named.name);
  for (Twins& twins : all_twins) {
    for (const std::string& name : names) {
      for (const char* const behind : {"", ".x", "[1]", "[1].x", " [1]", "x", ".x[1]"}) {
        EXPECT_TRUE(LookupsAgree(twins, name + behind)) << name << behind;
        EXPECT_TRUE(LookupsAgree(twins, "." + name + behind)) << name << behind;
      }
    }
  }
  World empty;
  EXPECT_TRUE(LookupsAgree(empty, "n") && LookupsAgree(empty, "FuseArray_TDO"));
  EXPECT_EQ(empty.expression.IsNumber(nullptr), 0);
  EXPECT_EQ(empty.expression.SearchDataField(nullptr), nullptr);
  EXPECT_EQ(empty.expression.SearchToken(nullptr), nullptr);
  EXPECT_EQ(empty.expression.GetTokenFromTree(&empty.local_tokens, nullptr), nullptr);
}

}  // namespace
