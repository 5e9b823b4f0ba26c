// The entry points that no text reaches through an evaluator, or that tell more than one evaluation
// does. What texts evaluate to stands in the examples.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "scan/operators.h"
#include "support.h"

namespace {

constexpr int kKept = 77;

TEST(EntryPoints, IntegerSolverAndOperators) {
  ZRTExpression expression;
  int value = kKept;
  EXPECT_EQ(SolveIntegerExpression(expression, "6@(1)+2", &value), ErrInvalidOperator);
  EXPECT_EQ(value, 6);
  const int no = ErrInvalidOperator;
  const int outcomes[] = {21, 1, 23, no, no, 168, 2, 24, 18, 7, 63, 0, no, no, 21, 21};
  for (unsigned short code = 0; code < 16; ++code) {
    value = 21;
    const int status = ExecuteIntegerOperator(expression, &value, code, 3);
    EXPECT_EQ(status == 0 ? value : status, outcomes[code]) << code;
    EXPECT_TRUE(status == 0 || value == 21) << code;
  }
}

TEST(EntryPoints, FloatSolverAndOperators) {
  ZRTExpression expression;
  char text[] = "1+2.5";
  float value = kKept;
  EXPECT_EQ(GetFloatValue(expression, text, &value), ErrUnknownOperand);
  EXPECT_EQ(ExecuteFloatOperator(expression, &value, zrt::OpModulo, 2.0F), ErrInvalidOperator);
  EXPECT_EQ(value, kKept);
  EXPECT_EQ(SolveFloatExpression(expression, text, &value), 0);
  EXPECT_EQ(ExecuteFloatOperator(expression, &value, zrt::OpSubtract, 2.0F), 0);
  EXPECT_EQ(value, 1.5F);
}

// A close below 0 is the last character read without a match, and then the status tells so.
TEST(EntryPoints, MatchingParenthesis) {
  ZRTExpression expression;
  struct Row {
    std::string text;
    int open, close;
  };
  for (Row row : {
           Row{"((a)b)", 0, 5 },
           Row{"((a)b)", 1, 3 },
           Row{"([)]",   0, 2 },
           Row{"x(a",    1, -2},
           Row{"(()",    0, -2},
           Row{"x(",     1, -1}
  }) {
    int found = 99;
    const int status = GetSubExpression(expression, row.text.data(), row.open, &found);
    EXPECT_EQ(status, row.close < 0 ? ErrUnbalancedParenthesis : 0) << row.text;
    EXPECT_EQ(status == 0 ? found : -found, row.close) << row.text;
  }
}

TEST(EntryPoints, Digits) {
  ZRTExpression expression;
  EXPECT_EQ(IsNumber(expression, nullptr), 0);
  EXPECT_EQ(IsNumber(expression, "\xB2"), 0);
  for (const char c : std::string_view("09AFaf")) EXPECT_TRUE(IsHexDigit(expression, c)) << c;
  for (const char c : std::string_view("/:@G`g\xB1")) EXPECT_FALSE(IsHexDigit(expression, c)) << c;
}

TEST(EntryPoints, NoPartOfAnOperandHasALimit) {
  const std::string name(300, 'n'), zeros(300, '0');
  RichWorld world;
  world.local_tokens.Add(ZRTTokens::IntScalar(name.c_str(), 5));
  int value = 0;
  EXPECT_EQ(world.expression.GetIntegerOperand((name + "+t[" + zeros + "1]").c_str(), &value), 0);
  EXPECT_EQ(value, 25);
  float number = 0;
  EXPECT_EQ(world.expression.GetFloatOperand(("1" + zeros + "e-298").c_str(), &number), 0);
  EXPECT_EQ(number, 100.0F);
  EXPECT_EQ(world.expression.GetFloatOperand(("0." + zeros + zeros + "1").c_str(), &number), 0);
  EXPECT_EQ(number, 0.0F);
  EXPECT_EQ(Evaluate(world.expression, ("#" + zeros + "1").c_str()), zeros.substr(226) + "01/301");
  EXPECT_EQ(Evaluate(world.expression, ("0x1" + zeros + "5").c_str()), "1" + zeros + "5/1208");
}

TEST(EntryPoints, RowsMoveOnFromTextToText) {
  RichWorld world;
  const auto evaluate = [&](const char* text) { return Evaluate(world.expression, text); };
  EXPECT_EQ(evaluate("B[3]@B"), "3311/16");
  EXPECT_EQ(evaluate("nosuch@(B)"), "-511") << "the group has taken its row";
  EXPECT_EQ(evaluate("B@nosuch"), "-511");
  EXPECT_EQ(evaluate("B@hidden@B[1]@hidden"), "44ABC11ABC/40");
  EXPECT_EQ(evaluate("B"), "-518");
}

TEST(RowDataStream, CopyBlock) {
  for (const int block_size : {0, 4, 7, 256}) {
    const BlockSize setting(block_size);
    RowDataStream source, target, shared(0, 5), empty;
    Fill(source, "0102030405060708090A/75");
    Fill(target, "AABBCC/24");
    target.CopyBlock(static_cast<RowDataStream*>(nullptr));
    target.CopyBlock(&source);
    EXPECT_EQ(Hex(target), "AABBCC0102030405060708090A/75");
    const RowDataStream copy(source);
    shared = source;
    shared.WriteData(0, 0xEE);
    source.CopyBlock(&shared);
    EXPECT_EQ(Hex(shared), "EE02030405060708090AEE02030405060708090A/75");
    target.ClearBuffer();
    target.CopyBlock(&empty);
    EXPECT_EQ(Hex(target), "/0");
    target = copy;
    EXPECT_EQ(Hex(target), "0102030405060708090A/75");
  }
}

// The streams of one table: what they hold, the room behind it, and whether a row of the text is
// the same bytes. Blocks of 256 never have room for a long value.
std::string LongOutcome(const std::string& text, int block_size, std::size_t older,
                        std::size_t room, bool is_row) {
  const BlockSize setting(block_size);
  World world;
  const std::vector<unsigned char> bytes(2000, 0x5A), spare(room, 0xEE);
  world.local_data.AddField("row")->AddRow(16000, bytes);
  world.local_data.AddField("bit")->AddRow(1, {1});
  LByteBuffer* row = world.local_data.AddField("stream")->AddRow(static_cast<int>(8 * older));
  RowDataStream stream;
  LByteBuffer& filled = is_row ? *row : stream;
  filled.Append(spare);
  filled.ClearBuffer();
  filled.Append({bytes.data(), older});
  if (is_row) static_cast<LByteBuffer&>(stream) = *row;
  stream.BitLength = static_cast<int>(8 * older);
  const int status = world.expression.GetBitStream(text.c_str(), &stream);
  return std::to_string(status) + ": " + Hex(stream);
}

TEST(EntryPoints, LongBitsAreTheSameWhereverTheyAreLaid) {
  const std::string literal = "0x" + Repeated("0123456789aBcDeF", 130);
  const std::string texts[] = {
      literal,
      literal + "@" + literal + "@#101",
      "(#1@" + literal + ")@(" + literal + "<<3)",
      "~row",
      "$row@stream",
      "row<<3&row",
      "(row|" + literal + ")@row",
      "stream@row",
      "1@(row@bit@stream)",
      "~stream&(row>>9)@(bit^9000)",
      "(0x5a^3000)@stream",
      literal + "g",
      "row<<1@nobody",
      "(" + literal + ")/2",
  };
  for (const std::string& text : texts) {
    for (const std::size_t older : {0U, 3U, 1500U}) {
      for (const bool is_row : {false, true}) {
        const std::string expected = LongOutcome(text, 256, older, 0, is_row);
        for (const std::size_t room : {0U, 2000U, 9000U}) {
          EXPECT_EQ(LongOutcome(text, 0, older, room, is_row), expected)
              << text << " behind " << older << " bytes, room " << room << ", row " << is_row;
        }
      }
    }
  }
}

// Digits are read and marks are found many at a time: literals of every size, with what is no digit
// at every place, and cut in two at every place.
TEST(EntryPoints, HexadecimalTextsOfEverySize) {
  World world;
  const std::string digits = Repeated("0123456789ABCDEFABCDEF", 14), no_digits = "/:?G`g_\x7F\xB0 ";
  std::string text(400, '\0');
  const auto evaluate = [&](const std::string& given) {
    const int status = world.expression.GetBitStream(given.c_str(), text.data());
    return status == 0 ? text.substr(0, text.find('\0')) : std::to_string(status);
  };
  for (std::size_t count = 1; count < digits.size(); ++count) {
    const std::string start = digits.substr(0, count), rest = digits.substr(count);
    const std::string even_start = "0x" + start + (count % 2 == 0 ? "" : "0");
    const std::string even_rest = rest + (count % 2 == 0 ? "" : "0");
    EXPECT_EQ(evaluate("0x" + start), even_start);
    EXPECT_EQ(evaluate("0x" + start + "@0x" + rest), even_start + even_rest);
    const char no_digit = no_digits[count % no_digits.size()];
    EXPECT_EQ(evaluate("0x" + start + no_digit + rest), std::to_string(ErrUnknownOperand)) << count;
  }
}

}  // namespace
