// Operators and run-length texts against the reference's: small widths and codes one and all,
// the rest by chance. Knows nothing of expressions.
#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "properties.h"
#include "zrtexpression/texts.h"

namespace {

// Calls `property` with inputs of up to so many bytes.
template <class Property>
void TryAnyBytes(std::size_t count, std::size_t max_size, const Property& property) {
  std::mt19937 random(20240601);
  for (std::size_t i = 0; i < count && !testing::Test::HasFailure(); ++i) {
    Bytes bytes(random() % max_size);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
    EXPECT_EQ(property(Input(bytes.data(), bytes.size())), "");
  }
}

TEST(Operators, OnNumbers) {
  ZRTExpression expression;
  constexpr int kMin = std::numeric_limits<int>::min(), kMax = std::numeric_limits<int>::max();
  const int numbers[] = {0,     1,       -1,      2,     -2,       3,        7,     8,
                         21,    -21,     30,      31,    32,       33,       -31,   63,
                         64,    255,     256,     46340, 46341,    65535,    65536, -65536,
                         65537, 1 << 24, 1 << 30, kMin,  kMin + 1, kMax - 1, kMax};
  constexpr std::uint16_t kCodes = reference::kOperators.size();
  for (std::uint16_t code = 0; code < kCodes; ++code) {
    const char op = reference::kOperators[code];
    for (const int left : numbers) {
      for (const int right : numbers) {
        int value = left, model = left;
        float real = static_cast<float>(left) / 2, real_model = real;
        const float operand = static_cast<float>(right) / 4;
        SCOPED_TRACE(std::to_string(left) + op + std::to_string(right));
        EXPECT_EQ(expression.ExecuteIntegerOperator(&value, code, right),
                  reference::StatusOf([&] { reference::Apply(model, op, right); }));
        EXPECT_EQ(expression.ExecuteFloatOperator(&real, code, operand),
                  reference::StatusOf([&] { reference::Apply(real_model, op, operand); }));
        EXPECT_EQ(value, model);
        EXPECT_TRUE(real == real_model || (std::isnan(real) && std::isnan(real_model))) << real;
        EXPECT_EQ(DifferenceAfter(reference::FromWord(left),
                                  {
                                      {code, reference::FromWord(right)}
        }),
                  "");
      }
    }
  }
}

TEST(Operators, OnTidyValuesOfSmallWidths) {
  std::vector<Stream> values = {{}};
  for (std::uint8_t number = 0; number < 32; ++number) {
    for (int width = 5; width > 0 && number >> width == 0; --width) {
      values.push_back({Bytes{number}, width});
    }
    if (number < 20) values.push_back(reference::FromWord(number));  // a count
  }
  for (const Stream& left : values) {
    for (const Stream& right : values) {
      for (std::uint16_t code = 0; code <= zrt::OpBitReverse + 1 && !HasFailure(); ++code) {
        EXPECT_EQ(DifferenceAfter(left,
                                  {
                                      {code, right}
        }),
                  "");
      }
    }
  }
}

// Values of up to eight bytes are computed in registers: lengths around those of bytes and words,
// all ones, one bit at either end, and spare bits that are set or bytes that are too many.
TEST(Operators, OnValuesAroundAWord) {
  std::vector<Stream> values = {reference::FromWord(3), reference::FromWord(64)};
  for (const int width : {0, 1, 7, 8, 9, 31, 33, 55, 56, 57, 63, 64, 65, 72}) {
    const auto size = static_cast<std::size_t>(width + 7) / 8;
    Bytes low(size), high(size);
    if (size > 0) {
      low.back() = 1;
      high.front() = static_cast<std::uint8_t>(1 << (width - 1) % 8);
    }
    for (const Bytes& bytes : {low, high, Bytes(size, 0xFF), Bytes(size + 1, 0xA5)}) {
      values.push_back({bytes, width});
    }
  }
  for (const Stream& left : values) {
    for (const Stream& right : values) {
      for (std::uint16_t code = 0; code <= zrt::OpBitReverse && !HasFailure(); ++code) {
        const std::vector<Step> steps = {
            {code, right}
        };
        EXPECT_EQ(DifferenceAfter(left, steps), "") << code;
      }
    }
  }
}

TEST(Operators, OnAnyStreams) { TryAnyBytes(20000, 400, OperatorsDiffer); }

TEST(RunLengths, OfAnyBytes) {
  TryAnyBytes(2000, 100, [](Input input) { return RunLengthsDiffer(input); });
  for (const int block_size : {0, 4, 7}) {
    EXPECT_EQ(RunLengthsDiffer(Bytes(3000, 0x55), block_size), "");
  }
  for (std::size_t bit = 0; bit < 8 * std::size_t{100}; ++bit) {  // a run that one bit ends
    Bytes bytes(100, 0x55);
    bytes[bit / 8] ^= static_cast<std::uint8_t>(1U << bit % 8);
    EXPECT_EQ(RunLengthsDiffer(bytes, 0), "");
  }
}

TEST(Streams, AreCopiedAndShared) {
  for (const int block_size : {0, 4, 7, 256}) {
    const BlockSize setting(block_size);
    RowDataStream source, target, shared(0, 5), empty;
    Fill(source, FromText("0102030405060708090A/75"));
    Fill(target, FromText("AABBCC/24"));
    target.CopyBlock(static_cast<RowDataStream*>(nullptr));
    target.CopyBlock(&source);
    EXPECT_EQ(Show(target), "AABBCC0102030405060708090A/75");
    const RowDataStream copy(source);
    shared = source;
    shared.WriteData(0, 0xEE);
    source.CopyBlock(&shared);  // onto its own end
    EXPECT_EQ(Show(shared), "EE02030405060708090AEE02030405060708090A/75");
    target.ClearBuffer();
    target.CopyBlock(&empty);
    EXPECT_EQ(Show(target), "/0");
    target = copy;
    EXPECT_EQ(Show(target), "0102030405060708090A/75");
  }
}

// Bytes that a length needs and that are missing, more than it needs, spare bits that are set; the
// longest in more than one block.
TEST(Streams, AreToldAsTexts) {
  struct Row {
    const char* stream;
    const char* cleared;
  };
  reference::closed = kClosed;
  for (const Row& row : {
           Row{"/0",                      "/0"                     },
           Row{"5A/-3",                   "/0"                     },
           Row{"FABC/12",                 "0ABC/12"                },
           Row{"AB/21",                   "0000AB/21"              },
           Row{"EEFF5A/9",                "015A/9"                 },
           Row{"F102030405060708090A/73", "0102030405060708090A/73"}
  }) {
    for (const int block_size : {0, 4, 7}) {
      const BlockSize setting(block_size);
      const Stream model = FromText(row.stream);
      RowDataStream stream;
      Fill(stream, model);
      std::string text = "older";
      EXPECT_TRUE(zrt::GetHexText(stream, &text));
      EXPECT_EQ(text, reference::HexText(model));
      Stream cleared{Bytes(zrt::ValidByteCount(stream)), std::max(model.bit_length, 0)};
      zrt::CopyValidBytes(stream, zrt::SpareBits::kCleared, cleared.bytes.data());
      EXPECT_EQ(Show(cleared), row.cleared);
      EXPECT_TRUE(zrt::GetDataExpression(stream, &text));
      EXPECT_EQ(text, reference::RunLengthText(model.bytes));
    }
  }
}

}  // namespace
