// The operators on bit vectors against a naive model on strings of 0 and 1: tidy values of small
// widths one and all, untidy ones of all widths by chance in chains of operators. Examples hold
// both to their word. Knows nothing of texts.
#include <gtest/gtest.h>

#include <algorithm>
#include <bitset>
#include <functional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "bitstream/bit_operators.h"
#include "scalar/integer.h"
#include "support.h"

namespace zrt {
namespace {

std::string ToBits(std::span<const std::uint8_t> bytes) {
  std::string bits;
  for (const std::uint8_t byte : bytes) bits += std::bitset<8>(byte).to_string();
  return bits;
}

// A value: its stored bits, eight a byte, most significant first, and its bit length.
struct Model {
  std::string bits;
  int bit_length = 0;
};

std::string Show(const Model& model) { return model.bits + "/" + std::to_string(model.bit_length); }

BitValue ToValue(const Model& model) {
  BitValue value;
  std::size_t place = 0;
  for (std::uint8_t& byte : value.Rebuild(model.bits.size() / 8)) {
    byte = static_cast<std::uint8_t>(std::bitset<8>(model.bits, place, 8).to_ulong());
    place += 8;
  }
  value.set_bit_length(model.bit_length);
  return value;
}

std::string Zeros(std::size_t count) { return std::string().append(count, '0'); }

// The low `count` bits, with zeros above where there are not so many.
std::string Low(const std::string& bits, std::size_t count) {
  return (Zeros(count) + bits).substr(bits.size());
}

// Joins the low bits that both have; a bit of `left` without a partner stays.
template <class Join>
void JoinLow(std::string& left, const std::string& right, Join join) {
  for (std::size_t k = 1; k <= std::min(left.size(), right.size()); ++k) {
    char& bit = left[left.size() - k];
    bit = join(bit == '1', right[right.size() - k] == '1') ? '1' : '0';
  }
}

int Word(const Model& model) {
  return static_cast<int>(std::bitset<32>((model.bits + Zeros(32)).substr(0, 32)).to_ulong());
}

struct Placed {
  int at;  // the place of the lowest bit; below 0 there is none
  std::string bits;
};

// Writes whole bytes, from the one that the lowest bit lies in upward; only in that one do older
// bits stay. False if a byte of the piece falls outside.
bool Lay(std::string& target, const Placed& piece) {
  if (piece.at < 0) return piece.bits.empty();
  const std::size_t inside = static_cast<unsigned>(piece.at) % 8;
  const std::size_t begin = static_cast<unsigned>(piece.at) - inside;
  const std::size_t room = target.size() - std::min(begin, target.size());
  std::string laid = Low(piece.bits + Zeros(inside), piece.bits.size() + (inside > 0 ? 8 : 0));
  if (inside > 0 && room > 0) JoinLow(laid, target.substr(room - 8, 8), std::logical_or<>());
  const std::size_t count = std::min(room, laid.size());
  target.replace(room - count, count, Low(laid, count));
  return begin + piece.bits.size() <= target.size();
}

ZRTStatus LayAll(Model& left, int bit_length, const std::vector<Placed>& pieces) {
  std::string target = Zeros(static_cast<std::size_t>(bit_length + 7) / 8 * 8);
  const bool fits =
      std::ranges::all_of(pieces, [&](const Placed& piece) { return Lay(target, piece); });
  left = {target, fits ? bit_length : left.bit_length};
  return fits ? kOk : ErrStreamWrite;
}

ZRTStatus Apply(Model& left, std::uint16_t code, const Model& right) {
  std::string& bits = left.bits;
  const std::size_t size = bits.size();
  const bool calculates = code >= OpAdd && code <= OpModulo;
  if (calculates || code == OpShiftLeft || code == OpShiftRight || code == OpReplicate) {
    if (right.bits.size() > 32 || (calculates && size > 32)) return ErrOperandTooWide;
    const int count = std::max(Word(right), 0);
    const std::size_t moved = std::min<std::size_t>(static_cast<unsigned>(count), size);
    if (code == OpShiftLeft) bits = Low(bits + Zeros(moved), size);
    if (code == OpShiftRight) bits = Low(bits.substr(0, size - moved), size);
    std::vector<Placed> copies;
    for (int i = 0; code == OpReplicate && i < count; ++i) {
      copies.push_back({i * left.bit_length, bits});
    }
    if (code == OpReplicate) return LayAll(left, count * left.bit_length, copies);
    int word = Word(left);
    const ZRTStatus status = calculates ? ApplyToInteger(word, code, Word(right)) : kOk;
    if (calculates) bits = std::bitset<32>(static_cast<unsigned>(word)).to_string().substr(0, size);
    return status;
  }
  if (code == OpConcat) {
    const int above = static_cast<int>(right.bits.size()) - (8 - right.bit_length % 8) % 8;
    const Placed low{0, right.bits}, high{above, bits};
    return LayAll(left, left.bit_length + right.bit_length, {low, high});
  }
  if (code == OpAnd) JoinLow(bits, right.bits, std::logical_and<>());
  if (code == OpOr) JoinLow(bits, right.bits, std::logical_or<>());
  if (code == OpBitwiseNot) JoinLow(bits, bits, [](bool bit, bool) { return !bit; });
  for (std::size_t i = 0; code == OpLogicalNot && i < size; i += 8) {
    bits.replace(i, 8, bits.substr(i, 8) == Zeros(8) ? "00000001" : Zeros(8));
  }
  if (code == OpBitReverse) bits = std::string(right.bits.rbegin(), right.bits.rend());
  bits.resize(size, '0');
  return code <= OpBitReverse ? kOk : ErrInvalidOperator;
}

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

struct Step {
  std::uint16_t code = OpNone;
  Model right;
  bool is_swapped = false;  // the operand on the left
};

// Values are not looked at between the operators, so that they stand shifted and with slack around.
void Compare(Model model, const std::vector<Step>& steps) {
  std::string told = Show(model);
  BitValue value = ToValue(model);
  for (auto [code, right, is_swapped] : steps) {
    if (model.bits.size() > 4000) break;
    told += (is_swapped ? " after " : " ") + std::to_string(code) + " " + Show(right);
    BitValue operand = ToValue(right);
    if (is_swapped) std::swap(model, right);
    if (is_swapped) std::swap(value, operand);
    const int status = Apply(model, code, right);
    EXPECT_EQ(ApplyToBits(value, code, operand), status) << told;
  }
  EXPECT_EQ(Show({ToBits(value.Bytes()), value.bit_length()}), Show(model)) << told;
}

TEST(BitsOperator, TidyValuesOfSmallWidths) {
  std::vector<Model> values = {{}};
  for (unsigned number = 0; number < 32; ++number) {
    const std::string bits = std::bitset<32>(number).to_string();
    for (int width = 5; width > 0 && number >> width == 0; --width) {
      values.push_back({Low(bits, 8), width});
    }
    if (number < 20) values.push_back({bits, 32});  // a count
  }
  for (const Model& left : values) {
    for (const Model& right : values) {
      for (std::uint16_t code = OpNone; code <= OpBitReverse + 1 && !HasFailure(); ++code) {
        const Step step{code, right};
        if (code != OpReplicate || Word(right) <= 20) Compare(left, {step});
      }
    }
  }
}

class Chance {
 public:
  unsigned Below(unsigned limit) { return static_cast<unsigned>(engine_() % limit); }

  // One in six has more or fewer bytes than its length needs, half of them have spare bits.
  Model Value() {
    const unsigned bit_length = Below(Below(4) == 0 ? 500 : 90);
    const unsigned byte_count = (bit_length + 7) / 8 + (Below(4) == 0 ? Below(3) : 1);
    std::string bits;
    while (bits.size() / 8 + 1 < byte_count) {
      bits += std::bitset<8>(Below(2) == 0 ? Below(256) : Below(2) * 0xFF).to_string();
    }
    return {Low(Low(bits, Below(2) == 0 ? bit_length : bits.size()), bits.size()),
            static_cast<int>(bit_length)};
  }

 private:
  std::mt19937 engine_{20240601};
};

TEST(BitsOperator, ChainsOverUntidyValues) {
  Chance chance;
  for (int round = 0; round < 10000 && !HasFailure(); ++round) {
    std::vector<Step> steps(1 + chance.Below(9));
    for (auto& [code, right, is_swapped] : steps) {
      code = static_cast<std::uint16_t>(chance.Below(2) == 0 ? +OpConcat : chance.Below(15));
      const bool is_count = code == OpReplicate || chance.Below(3) == 0;
      right =
          is_count
              ? Model{std::bitset<32>(chance.Below(code == OpReplicate ? 40 : 300) - 2).to_string(),
                      32}
              : chance.Value();
      is_swapped = code == OpConcat && chance.Below(3) == 0;
    }
    Compare(chance.Value(), steps);
  }
}

}  // namespace
}  // namespace zrt
