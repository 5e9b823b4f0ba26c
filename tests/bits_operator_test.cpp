// The operators on bit vectors against the reference's: tidy values of small widths one and all,
// untidy ones of all widths by chance in chains of operators; and examples. Knows nothing of texts.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "operator_steps.h"
#include "support.h"

namespace zrt {
namespace {

using reference::Bytes;
using reference::kOperators;
using reference::Stream;

// Left stream, operator, right stream, and what the left stream holds then, behind a status if
// there is one. "none" is no right stream, "same" the left one itself.
constexpr const char* kExamples = R"(
  123456/24 & 0F/8 = 123406/24     F0/8 & 12FF/16 = F0/8          1234/16 & none = 1234/16
  10/8 | AA01/16 = 11/8            00FF01/24 ! none = 010000/24   05/3 ~ same = FA/3
  7FFFFFFF/32 + 00000001/32 = 80000000/32    00000005/32 + same = 0000000A/32    /0 + 01/8 = /0
  1234/16 + 00010000/32 = 1235/16            FFFFFFF9/32 % 00000002/32 = FFFFFFFF/32
  80000000/32 / FFFFFFFF/32 = -510:80000000/32    00000005/32 * none = 00000000/32
  12/8 % none = -510:12/8    0102030405/40 + 01/8 = -517:0102030405/40    1234/16 >> none = 1234/16
  05/3 << 00000001/32 = 0A/3   123456/24 << 00000009/32 = 68AC00/24   12/8 << 04/8 = 00/8
  1234/16 << FFFFFFFF/32 = 1234/16   FA/3 >> 00000001/32 = 7D/3   12/8 >> 0000000004/40 = -517:12/8
  0A/4 @ 01FF/9 = 15FF/13    FA/3 @ 03/2 = EB/5         01/1 @ FA/3 = FA/4   12/16 @ 34/8 = 001234/24
  05/3 @ 0003/3 = -518:03/3  0005/3 @ 03/3 = -518:2B/3  12/8 @ /4 = -518:0000/8    12/8 , 34/8 = 12/8
  15/5 ^ 00000003/32 = 56B5/15   05/3 ^ FFFFFFFF/32 = /0   05/3 ^ 0000000001/40 = -517:05/3
  FA/3 ^ 00000002/32 = FA/6      0102/8 ^ 00000002/32 = -518:0202/8   AB/0 ^ 00000003/32 = -518:/0
  0ABC/12 $ same = 3D50/12       AABB/16 $ none = 0000/16             AABBCC/24 $ 1234/16 = 2C4800/24)";

TEST(BitsOperator, Examples) {
  World world;
  std::istringstream examples(kExamples);
  std::string before, text, right, equals, after;
  while (examples >> before >> text >> right >> equals >> after) {
    SCOPED_TRACE(testing::Message() << before << ' ' << text << ' ' << right);
    const auto code = std::ranges::find(operator_table::kRows, text, &OperatorRow::text)->code;
    const std::string operand = right == "same" ? before : right == "none" ? "/0" : right;
    for (const int block_size : {0, 4, 7, 256}) {
      const BlockSize setting(block_size);
      RowDataStream left, other;
      Fill(left, before);
      Fill(other, operand);
      RowDataStream* const given = right == "same" ? &left : right == "none" ? nullptr : &other;
      const int status = ExecuteBitStreamOperator(world.expression, &left, code, given);
      const std::string outcome = status == 0 ? "" : std::to_string(status) + ":";
      EXPECT_EQ(outcome + Hex(left), after) << "blocks of " << block_size;
      EXPECT_EQ(Hex(other), operand);
    }
  }
}

void Compare(const Stream& left, const std::vector<Step>& steps) {
  EXPECT_EQ(DifferenceAfter(left, steps), "");
}

TEST(BitsOperator, TidyValuesOfSmallWidths) {
  std::vector<Stream> values = {{}};
  for (std::uint8_t number = 0; number < 32; ++number) {
    for (int width = 5; width > 0 && number >> width == 0; --width) {
      values.push_back(Stream{Bytes{number}, width});
    }
    if (number < 20) values.push_back(reference::FromWord(number));  // a count
  }
  for (const Stream& left : values) {
    for (const Stream& right : values) {
      for (std::uint16_t code = OpNone; code <= OpBitReverse + 1 && !HasFailure(); ++code) {
        const Step step{code, right};
        Compare(left, {step});
      }
    }
  }
}

class Chance {
 public:
  unsigned Below(unsigned limit) { return static_cast<unsigned>(engine_() % limit); }

  // One in six has more or fewer bytes than its length needs, half of them have spare bits.
  Stream Value() {
    const int bit_length = static_cast<int>(Below(Below(4) == 0 ? 500 : 90));
    const int byte_count =
        (bit_length + 7) / 8 - 1 + static_cast<int>(Below(4) == 0 ? Below(3) : 1);
    const bool has_spare_bits = Below(2) == 0;
    Stream stream{{}, bit_length};
    for (int low = 8 * (byte_count - 1); low >= 0; low -= 8) {
      const unsigned byte = Below(2) == 0 ? Below(256) : Below(2) * 0xFF;
      const int bits = has_spare_bits ? 8 : std::clamp(bit_length - low, 0, 8);
      stream.bytes.push_back(static_cast<std::uint8_t>(byte & ((1U << bits) - 1)));
    }
    return stream;
  }

 private:
  std::mt19937 engine_{20240601};
};

TEST(BitsOperator, ChainsOverUntidyValues) {
  Chance chance;
  for (int round = 0; round < 10000 && !HasFailure(); ++round) {
    std::vector<Step> steps(1 + chance.Below(9));
    for (auto& [code, right, is_swapped, is_borrowed] : steps) {
      code = static_cast<std::uint16_t>(chance.Below(2) == 0 ? +OpConcat : chance.Below(15));
      const bool is_count = code == OpReplicate || chance.Below(3) == 0;
      right = chance.Value();
      if (is_count) {
        const unsigned count = chance.Below(code == OpReplicate ? 40 : 300) - 2;
        right = reference::FromWord(static_cast<int>(count));
      }
      is_swapped = code == OpConcat && chance.Below(3) == 0;
      is_borrowed = chance.Below(2) == 0;
    }
    Compare(chance.Value(), steps);
  }
}

}  // namespace
}  // namespace zrt
