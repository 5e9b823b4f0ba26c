// The code of the documents and of the public headers' comments, run. What comments fence here
// stands in the file that they name, to the letter.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>

#include "DataExpression.h"
#include "support.h"

namespace {

TEST(Docs, Readme) {
  // ```README.md
  ZRTTokenTree tokens;
  tokens.Add(ZRTTokens::IntScalar("rows", 6));

  ZRTExpression expression;
  expression.SetLocalTokenTree(&tokens);

  RowDataStream stream;
  expression.GetBitStream("(0xFF^rows)@0x1234", &stream);  // FF FF FF FF FF FF 12 34, 64 bits
  // ```
  EXPECT_EQ(Hex(stream), "FFFFFFFFFFFF1234/64");
}

TEST(Docs, ZRTExpressionHeader) {
  // ```ZRTExpression.h
  ZRTTokenTree tokens;  // filled by the host, kept alive by the host
  // ```
  tokens.Add(ZRTTokens::IntScalar("size", 8));
  // ```ZRTExpression.h
  ZRTExpression expression;
  expression.SetLocalTokenTree(&tokens);
  int value = 0;
  int status = expression.GetIntegerOperand("(size + 3) * 8", &value);
  // ```
  EXPECT_EQ(std::pair(status, value), std::pair(0, 88));
  // ```ZRTExpression.h
  expression.GetIntegerOperand("2+3*4", &value);  // 20: no operator precedence
  // ```
  EXPECT_EQ(value, 20);
  // ```ZRTExpression.h
  expression.GetIntegerOperand("2+(3*4)", &value);  // 14
  // ```
  EXPECT_EQ(value, 14);
  RowDataStream stream;
  // ```ZRTExpression.h
  expression.GetBitStream("(0xFF^2)@0x12", &stream);  // FF FF 12, BitLength 24
  // ```
  EXPECT_EQ(Hex(stream), "FFFF12/24");
}

TEST(Docs, OtherHeaders) {
  ZRTExpression expression;
  // ```RowDataStream.h
  RowDataStream stream;
  expression.GetBitStream("0xFF^4", &stream);   // FF FF FF FF
  unsigned byte_count = stream.GetTotalSize();  // 4
  int bit_count = stream.BitLength;             // 32
  // ```
  EXPECT_EQ(Hex(stream), "FFFFFFFF/32");
  EXPECT_EQ(std::pair(byte_count, bit_count), std::pair(4U, 32));
  // ```ErrorCodes.h
  int value = 0;
  bool is_unknown = expression.GetIntegerOperand("1+x", &value) == ErrUnknownOperand;
  // ```
  EXPECT_TRUE(is_unknown);
}

TEST(Docs, Tokens) {
  // ```embedding.md
  ZRTTokenTree tokens;
  tokens.Add(ZRTTokens::IntScalar("size", 8));
  tokens.Add(ZRTTokens::IntArray("order", {10, 20, 30, 40}));

  ZRTExpression expression;
  expression.SetLocalTokenTree(&tokens);

  int value = 0;
  const int status = expression.GetIntegerOperand("order[1]+size", &value);  // 0, value is 28
  // ```
  EXPECT_EQ(std::pair(status, value), std::pair(0, 28));
}

TEST(Docs, StreamsAndRows) {
  // ```embedding.md
  QLMPlusData data;
  QLMDataField* fuses = data.AddField("fuses");
  fuses->AddRow(8, {0x11});
  fuses->AddRow(8, {0x22});

  ZRTExpression expression;
  expression.SetExternalZRTData(&data);

  RowDataStream stream;
  int status = expression.GetBitStream("(0xFF^2)@fuses@fuses", &stream);  // FF FF 11 22, 32 bits
  // ```
  EXPECT_EQ(std::to_string(status) + " " + Hex(stream), "0 FFFF1122/32");
  // ```embedding.md
  fuses->ResetRowPointer();  // without it the third reading of "fuses" is ErrStreamWrite
  stream.ClearBuffer();      // empties the bytes alone
  stream.BitLength = 0;
  status = expression.GetBitStream("fuses@(#101)", &stream);  // 00 8D, 11 bits
  // ```
  EXPECT_EQ(std::to_string(status) + " " + Hex(stream), "0 008D/11");
  // ```embedding.md
  char text[2 * 4 + 3];  // room for a value of up to 32 bits
  status = expression.GetBitStream("0xABC@#1", text);
  // ```
  EXPECT_EQ(std::to_string(status) + " " + text, "0 0x015781");
}

// ```embedding.md
std::string RunLengthText(LByteBuffer& data) {
  std::string text(2 * std::size_t{data.GetTotalSize()} + 3, '\0');
  fnGetDataExpression(&data, text.data());
  text.resize(std::strlen(text.data()));
  return text;
}
// ```

TEST(Docs, RunLengthText) {
  RowDataStream stream;
  Fill(stream, "55555555555555/56");
  EXPECT_EQ(RunLengthText(stream), "(0x55^7)");
}

// ```embedding.md
std::string MessageFor(ZRTExpression& expression, int status) {
  ErrorHandler* handler = expression.GetErrorHandler();  // null before Initialize
  const auto code = static_cast<unsigned short>(status);
  ErrorElement* entry = handler ? handler->GetErrorElement(code, 8) : nullptr;
  return entry ? entry->GetErrorMessage() : "status " + std::to_string(status);
}
// ```

TEST(Docs, Messages) {
  ZRTExpression expression;
  Directory directory("-511 8 2 No number.\n");
  EXPECT_EQ(expression.Initialize(directory.path()), 0);
  EXPECT_EQ(MessageFor(expression, ErrUnknownOperand), "No number.");
  EXPECT_EQ(MessageFor(expression, -1), "status -1");
}

}  // namespace
