// The edges of sizes and of numbers: results, literals and texts as long as a bit length or a
// position can tell, and those one longer; numbers at which 32 bits begin, end or wrap. What takes
// gigabytes is run where ZRT_HUGE is set.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>

#include "bits/bit_value.h"
#include "environment.h"
#include "scan/operators.h"
#include "support.h"

namespace {

constexpr int kMax = std::numeric_limits<int>::max();

// Streams tell more bits than they hold, so that both sides of the edge are in reach.
TEST(Edges, ResultsThatAreTooLongCostNothing) {
  struct Row {
    const char* left;
    unsigned short code;
    const char* right;
  };
  const std::string bytes = Repeated("5A", 100);
  const std::string longest = bytes + "/2147483647", half = bytes + "/1073741824";
  for (const Row& row : {
           Row{longest.c_str(),  zrt::OpConcat,    "01/1"         },
           Row{"01/1",           zrt::OpConcat,    longest.c_str()},
           Row{half.c_str(),     zrt::OpConcat,    half.c_str()   },
           Row{"5A/-2147483648", zrt::OpConcat,    "/-1"          },
           Row{half.c_str(),     zrt::OpReplicate, "00000002/32"  },
           Row{longest.c_str(),  zrt::OpReplicate, "7FFFFFFF/32"  },
           Row{"5A/-1073741825", zrt::OpReplicate, "00000002/32"  }
  }) {
    ZRTExpression expression;
    RowDataStream left, right;
    Fill(left, FromText(row.left));
    Fill(right, FromText(row.right));
    const long before = memory.allocation_count;
    EXPECT_EQ(expression.ExecuteBitStreamOperator(&left, row.code, &right), ErrStreamWrite);
    EXPECT_EQ(memory.allocation_count, before) << row.left << " " << row.right;
    EXPECT_EQ(Show(left), row.left);
    EXPECT_EQ(Show(right), row.right);
  }
}

// Whatever room the value had before: what is rebuilt stands at the buffer's front.
TEST(Edges, ARebuiltValueFillsItsBuffer) {
  zrt::BitValue value;
  (void)value.RebuildWithRoom(100, zrt::BitValue::Growth::kInFront);
  (void)value.Rebuild(300);
  EXPECT_FALSE(value.HasRoomFor(0, 301));
}

// Bytes and bit length of a value of ones, which is what most of these are: "268435456/2147483647".
std::string Ones(RowDataStream& stream) {
  const unsigned int size = stream.GetTotalSize();
  const unsigned char* const data = stream.GetDataBlock();
  const auto spare_bits = static_cast<int>(8 * std::size_t{size}) - stream.BitLength;
  const bool are_ones = size > 0 && spare_bits < 8 && data[0] == 0xFF >> spare_bits &&
                        std::all_of(data + 1, data + size, [](auto byte) { return byte == 0xFF; });
  return are_ones ? std::to_string(size) + "/" + std::to_string(stream.BitLength) : Show(stream);
}

struct Huge : testing::Test {
  void SetUp() override {
    if (!IsHuge()) GTEST_SKIP() << "takes gigabytes: set ZRT_HUGE to run it";
  }

  void Expect(const std::string& text, int status, const std::string& ones) {
    RowDataStream stream;
    EXPECT_EQ(world.expression.GetBitStream(text.c_str(), &stream), status) << text.substr(0, 99);
    EXPECT_EQ(Ones(stream), ones) << text.substr(0, 99);
  }

  World world;
};

TEST_F(Huge, Results) {
  const std::string longest = "268435456/2147483647";
  Expect("#1^2147483647", 0, longest);
  Expect("(#1^0x3FFFFFFF)@#1@(#1^0x3FFFFFFF)", 0, longest);
  Expect("#1^2147483647@#1", ErrStreamWrite, longest);
  Expect("#1^2147483647^2", ErrStreamWrite, longest);
  Expect("(#1^2147483647)@#1", ErrStreamWrite, longest);
  Expect("#1@(#1^2147483647)", ErrStreamWrite, "1/1");
  Expect("#1@((#1^2147483647)@#1)@#1", ErrStreamWrite, "/0");
  Expect("(#1^2147483647)@(#1^2147483647)", ErrStreamWrite, longest);
}

TEST_F(Huge, Literals) {
  const std::size_t most_digits = 2 * (std::size_t{kMax} / 8);  // of whole bytes
  Expect("0x" + std::string(most_digits, 'f'), 0, "268435455/2147483640");
  Expect("0x" + std::string(most_digits + 1, 'f'), ErrStreamWrite, "/0");
  Expect("#" + std::string(std::size_t{kMax} - 1, '1'), 0, "268435456/2147483646");
}

// A text as long as a position can tell is read, a longer one not at all.
TEST_F(Huge, Texts) {
  for (const bool is_too_long : {false, true}) {
    std::string text(std::size_t{kMax} + (is_too_long ? 1 : 0), '1');
    text.front() = text.back() = '+';
    const int status = is_too_long ? ErrStreamWrite : ErrUnknownOperand;
    ZRTExpression& expression = world.expression;
    int integer = 77;
    float real = 77;
    RowDataStream stream, chain;
    Fill(stream, FromText("5A/3"));
    Fill(chain, FromText("5A/3"));
    unsigned short code = 77;
    char hex_text[] = "as it was";
    std::string given = text;
    EXPECT_EQ(expression.GetIntegerOperand(text.c_str(), &integer), status);
    EXPECT_EQ(expression.GetFloatOperand(text.c_str(), &real), status);
    EXPECT_EQ(expression.GetBitStream(text.c_str(), &stream), status);
    EXPECT_EQ(expression.GetBitStream(text.c_str(), hex_text), status);
    EXPECT_EQ(expression.SolveBitStreamExpression(given.data(), &chain), status);
    EXPECT_EQ(expression.GetLeftMostOperator(text.c_str(), &code), is_too_long ? -1 : 0);
    EXPECT_EQ(expression.GetRightMostOperator(text.c_str(), &code), is_too_long ? -1 : kMax - 1);
    EXPECT_EQ(code, is_too_long ? 77 : zrt::OpAdd);
    EXPECT_EQ(integer, 77);
    EXPECT_EQ(real, 77);
    EXPECT_STREQ(hex_text, "as it was");
    EXPECT_EQ(Show(stream) + Show(chain), is_too_long ? "5A/35A/3" : "/0/0");
  }
}

}  // namespace
