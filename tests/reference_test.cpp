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
#include <string>
#include <string_view>

#include "text_generator.h"
#include "twins.h"

namespace {

class Reference : public testing::Test {
 protected:
  // Results hold older bytes in every second text, blocks are short in every seventh.
  void Compare(const std::string& text) {
    ++texts_;
    const BlockSize setting(texts_ % 7 == 0 ? 4 : 0);
    const Stream before = texts_ % 2 == 0 ? Stream()
                                          : Stream{
                                                reference::Bytes{0xFF, 0x5A, 0x01},
                                                9
    };
    Twins& twins = twins_[texts_ % std::size(twins_)];
    for (const Kind kind : {kInteger, kFloat, kBits, static_cast<Kind>(kChain + texts_ % 5)}) {
      try {
        const Outcome right = twins.ByReference(kind, text, before);
        const Outcome outcome = twins.ByLibrary(kind, text, before, right.hex_text.size());
        values_ += outcome.status == 0 ? 1 : 0;
        if (outcome == right) continue;
        ADD_FAILURE() << kNames[kind] << " \"" << text << "\" in scope "
                      << texts_ % std::size(twins_) << " gives\n  " << outcome << "\nand not\n  "
                      << right;
      } catch (const reference::TooLarge&) {
      }
    }
    EXPECT_TRUE(ScansAgree(text)) << text;
  }

  std::size_t texts_ = 0, values_ = 0;

 private:
  Twins twins_[3] = {Twins(nullptr), Twins("FuseArray_TDI"), Twins("FuseArray_TDO")};
};

std::uint64_t Setting(const char* name, std::uint64_t otherwise) {
  const char* value = std::getenv(name);
  return value == nullptr ? otherwise : std::stoull(value);
}

TEST_F(Reference, GeneratedTexts) {
  std::mt19937_64 random(Setting("ZRT_REFERENCE_SEED", 1));
  TextGenerator generator([&random] { return random(); }, RichNames());
  const std::uint64_t count = Setting("ZRT_REFERENCE_TEXTS", 100000);
  for (std::uint64_t i = 0; i < count && !HasFailure(); ++i) Compare(generator.Text());
  EXPECT_GT(values_, texts_ / 2) << "too few of the texts have a value";
}

// Every text of up to four characters, of which each stands for one kind: a digit, a name, both
// brackets and parentheses, an operator that is unary and one that is not, half a shift, the blank,
// and what literals and exponents are made of.
TEST_F(Reference, ShortTexts) {
  constexpr std::string_view kCharacters = "1A#.e-~@<()[] ";
  constexpr std::size_t kKinds = kCharacters.size(), kSquare = kKinds * kKinds;
  constexpr std::size_t kTexts = 1 + kKinds + kSquare + kKinds * kSquare + kSquare * kSquare;
  for (std::size_t number = 0; number < kTexts && !HasFailure(); ++number) {
    std::string text;
    for (std::size_t n = number; n > 0; n = (n - 1) / kKinds) text += kCharacters[(n - 1) % kKinds];
    Compare(text);
  }
}

}  // namespace
