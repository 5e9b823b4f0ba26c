// Long values, which are laid straight into the room that the result's stream has, and long digits,
// which are read many at a time: the same wherever they stand.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "guarded.h"
#include "support.h"

namespace {

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
  return std::to_string(status) + ": " + Show(stream);
}

TEST(LongValues, AreTheSameWhereverTheyAreLaid) {
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
      "((" + literal + ")@0x5a",
      "stream",
      "(stream)",
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
TEST(LongValues, HexadecimalTextsOfEverySize) {
  World world;
  const std::string digits = Repeated("0123456789ABCDEFABCDEF", 28), no_digits = "/:?G`g_\x7F\xB0 ";
  std::string text(1400, '\0');
  const auto evaluate = [&](const std::string& given) {
    const int status = world.expression.GetBitStream(given.c_str(), text.data());
    return status == 0 ? text.substr(0, text.find('\0')) : std::to_string(status);
  };
  for (std::size_t count = 1; count < digits.size(); ++count) {
    const std::string start = digits.substr(0, count), rest = digits.substr(count);
    const std::string even_start = "0x" + start + (count % 2 == 0 ? "" : "0");
    const std::string even_rest = rest + (count % 2 == 0 ? "" : "0");
    EXPECT_EQ(evaluate("0x" + start), even_start);
    std::string cut = "0x" + digits, wrong = cut;
    cut.insert(2 + count, "@0x");
    EXPECT_EQ(evaluate(cut), even_start + even_rest);
    wrong.insert(2 + count, 1, no_digits[count % no_digits.size()]);
    EXPECT_EQ(evaluate(wrong), std::to_string(ErrUnknownOperand)) << count;
  }
}

// A literal of any length may be a name. It is asked for where it stands, if it ends its text, and
// texts may lie in memory that nobody may write.
TEST(LongValues, AreAskedForAsNames) {
  for (const std::size_t count : {4U, 62U, 63U, 507U, 508U, 509U, 510U, 511U, 512U, 40000U}) {
    const std::string literal = "0x" + Repeated("1", count);
    for (const std::string form : {"", "1@", "(", "~", " "}) {
      World world;
      GuardedRoom room;
      const char* text = room.Put(form + literal + (form == "(" ? ")" : ""));
      room.Seal();
      RowDataStream as_literal, as_token, as_field;
      const int status = world.expression.GetBitStream(text, &as_literal);
      EXPECT_EQ(status, form == " " ? ErrUnknownOperand : 0) << form << count;
      world.local_tokens.Add(
          ZRTTokens::IntScalar((form == " " ? form + literal : literal).c_str(), 0x55667788));
      EXPECT_EQ(world.expression.GetBitStream(text, &as_token), 0) << form << count;
      EXPECT_EQ(as_token.BitLength, form == "1@" ? 64 : 32) << form << count;
      world.local_data.AddField(literal.c_str())->AddRow(3, {5});
      EXPECT_EQ(world.expression.GetBitStream(text, &as_field), 0) << form << count;
      EXPECT_EQ(as_field.BitLength % 32, form == " " ? 0 : 3) << form << count;
    }
  }
}

}  // namespace
