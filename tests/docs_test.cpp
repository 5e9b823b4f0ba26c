// The code of the documents and of the public headers' comments, run. What comments fence here
// stands in the file that they name, to the letter.
#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "support.h"
#include "zrtexpression/texts.h"
#include "zrtexpression/words.h"

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
  EXPECT_EQ(Show(stream), "FFFFFFFFFFFF1234/64");
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
  EXPECT_EQ(Show(stream), "FFFF12/24");
}

TEST(Docs, OtherHeaders) {
  ZRTExpression expression;
  // ```RowDataStream.h
  RowDataStream stream;
  expression.GetBitStream("0xFF^4", &stream);   // FF FF FF FF
  unsigned byte_count = stream.GetTotalSize();  // 4
  int bit_count = stream.BitLength;             // 32
  // ```
  EXPECT_EQ(Show(stream), "FFFFFFFF/32");
  EXPECT_EQ(std::pair(byte_count, bit_count), std::pair(4U, 32));
  // ```ErrorCodes.h
  int value = 0;
  bool is_unknown = expression.GetIntegerOperand("1+x", &value) == ErrUnknownOperand;
  // ```
  EXPECT_TRUE(is_unknown);
}

// ```trace.h
struct Printer : zrt::Observer {
  void OnOperand(const zrt::OperandEvent& event) noexcept override {
    std::cout << event.place.offset << ": " << event.value.integer << "\n";
  }
};
// ```

TEST(Docs, HeadersOfFailuresAndTraces) {
  ZRTTokenTree tokens;
  tokens.Add(ZRTTokens::IntScalar("size", 8));
  ZRTExpression expression;
  expression.SetLocalTokenTree(&tokens);
  int value = 0;
  testing::internal::CaptureStdout();
  // ```trace.h
  Printer printer;
  expression.WatchInteger("(size+1)*2", &value, nullptr, &printer);  // 1: 8, 6: 1, 9: 2
  // ```
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "1: 8\n6: 1\n9: 2\n");
  // ```failure.h
  zrt::Failure failure;
  if (expression.WatchInteger("1+rowz", &value, &failure) != 0) {
    // failure.status is ErrUnknownOperand, failure.place is {2, 4}: "rowz"
  }
  // ```
  EXPECT_EQ(std::tuple(failure.status, failure.place.offset, failure.place.length),
            std::tuple(ErrUnknownOperand, 2U, 4U));
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
  EXPECT_EQ(std::to_string(status) + " " + Show(stream), "0 FFFF1122/32");
  // ```embedding.md
  fuses->ResetRowPointer();  // without it the third reading of "fuses" is ErrStreamWrite
  stream.ClearBuffer();      // empties the bytes alone
  stream.BitLength = 0;
  status = expression.GetBitStream("fuses@(#101)", &stream);  // 00 8D, 11 bits
  // ```
  EXPECT_EQ(std::to_string(status) + " " + Show(stream), "0 008D/11");
  // ```embedding.md
  char text[2 * 4 + 3];  // room for a value of up to 32 bits
  status = expression.GetBitStream("0xABC@#1", text);
  // ```
  EXPECT_EQ(std::to_string(status) + " " + text, "0 0x015781");
  // ```embedding.md
  RowDataStream value;
  expression.GetBitStream("0xABC@#1", &value);
  std::string hex_text;
  bool is_written = zrt::GetHexText(value, &hex_text);  // false: memory has run out
  std::vector<std::uint8_t> bytes(zrt::ValidByteCount(value));
  zrt::CopyValidBytes(value, zrt::SpareBits::kCleared, bytes.data());  // 01 57 81
  // ```
  EXPECT_EQ(std::pair(is_written, hex_text), std::pair(true, std::string(text)));
  EXPECT_EQ(bytes, (std::vector<std::uint8_t>{0x01, 0x57, 0x81}));
}

TEST(Docs, Failures) {
  ZRTTokenTree tokens;
  tokens.Add(ZRTTokens::IntArray("order", {10, 20, 30, 40}));
  ZRTExpression expression;
  expression.SetLocalTokenTree(&tokens);
  // ```embedding.md
  zrt::Failure failure;
  int number = 0;
  expression.WatchInteger("4*order[rowz+1]", &number, &failure);
  // failure.status is ErrNegativeIndex at {8, 6}, "rowz+1",
  // failure.cause_status is ErrUnknownOperand at {8, 4}, "rowz"
  const char* name = zrt::StatusName(failure.cause_status);          // "ErrUnknownOperand"
  const char* sentence = zrt::StatusSentence(failure.cause_status);  // for a person
  // ```
  EXPECT_EQ(std::tuple(failure.status, failure.place.offset, failure.place.length),
            std::tuple(ErrNegativeIndex, 8U, 6U));
  EXPECT_EQ(std::pair(failure.cause.offset, failure.cause.length), std::pair(8UL, 4UL));
  EXPECT_EQ(std::string(name), "ErrUnknownOperand");
  EXPECT_NE(std::string(sentence), "");
}

// ```embedding.md
class Steps : public zrt::Observer {
 public:
  void OnOperand(const zrt::OperandEvent& event) noexcept override {
    Set(event.number, event.value);
  }
  void OnResult(zrt::ValueNumber number, const zrt::ValueView& value) noexcept override {
    Set(number, value);
  }
  void OnOutcome(zrt::ValueNumber number, const zrt::ValueView& /*value*/) noexcept override {
    outcome = values[number];
  }

  std::vector<int> values;  // by number
  int outcome = 0;

 private:
  void Set(zrt::ValueNumber number, const zrt::ValueView& value) {
    if (values.size() <= number) values.resize(number + 1);
    values[number] = value.integer;
  }
};
// ```

TEST(Docs, Steps) {
  Steps steps;
  int value = 0;
  EXPECT_EQ(ZRTExpression().WatchInteger("10+2*(1+2)-3*4", &value, nullptr, &steps), 0);
  EXPECT_EQ(std::pair(value, steps.outcome), std::pair(24, 24));
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
  EXPECT_EQ(expression.Initialize(directory.path), 0);
  EXPECT_EQ(MessageFor(expression, ErrUnknownOperand), "No number.");
  EXPECT_EQ(MessageFor(expression, -1), "status -1");
}

}  // namespace
