// The operators on bit vectors against the reference's: tidy values of small widths one and all,
// untidy ones of all widths by chance in chains of operators. Knows nothing of texts.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "operator_steps.h"
#include "support.h"

namespace zrt {
namespace {

using reference::Bytes;
using reference::Stream;

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
