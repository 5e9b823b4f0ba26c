// The scans of text: operators from both sides, matching parentheses, kinds of number literals.
// What finds operators by marks is compared with a plain reading that cuts copies.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "support.h"

namespace {

constexpr unsigned short kNotWritten = 99;
constexpr std::string_view kByCode = ",&|!~<>+-/*%@^$";

struct Found {
  int position = -1;
  unsigned short code = kNotWritten;
  bool operator==(const Found&) const = default;
};

// The code of one character, which is doubled or not.
unsigned short CodeOf(char c, bool doubled) {
  const bool lone_angle = (c == '<' || c == '>') && !doubled;
  return lone_angle ? static_cast<unsigned short>(0) : static_cast<unsigned short>(kByCode.find(c));
}

int First(const std::string& text, std::string_view what) {
  return static_cast<int>(text.find(what));  // -1 if there is none
}

bool InFirstBrackets(const std::string& text, int k) {
  return First(text, "[") < k && First(text, "]") > k;
}

Found PlainLeft(std::string work) {
  int count = 0;
  for (;;) {
    const int lower = First(work, "e-"), upper = First(work, "E-");
    const int exponent = lower < 0 || upper < 0 ? std::max(lower, upper) : std::min(lower, upper);
    const auto k = static_cast<int>(work.find_first_of(kByCode));
    if (k < 0) return {};
    int last = k;
    if (InFirstBrackets(work, k)) {
      last = First(work, "]");
    } else if (exponent < 0 || exponent + 1 != k) {
      const char c = work[static_cast<std::size_t>(k)];
      return {count + k, CodeOf(c, work[static_cast<std::size_t>(k) + 1] == c)};
    }
    const auto rest = work.find_first_not_of(' ', static_cast<std::size_t>(last) + 1);
    count += static_cast<int>(std::min(rest, work.size()));
    work.erase(0, rest);
  }
}

Found PlainRight(std::string work) {
  for (;;) {
    const int exponent = std::max(First(work, "e-"), First(work, "E-"));
    const auto k = static_cast<int>(work.find_last_of(kByCode));
    if (k < 0 || InFirstBrackets(work, k)) return {};
    if (exponent < 0 || exponent + 1 != k) {
      const char c = work[static_cast<std::size_t>(k)];
      const bool doubled =
          (c == '<' || c == '>') && k > 0 && c == work[static_cast<std::size_t>(k) - 1];
      return {doubled ? k - 1 : k, CodeOf(c, doubled)};
    }
    work.resize(static_cast<std::size_t>(k));
    work.resize(work.find_last_not_of(' ') + 1);
  }
}

void ExpectPlainReading(const std::string& text) {
  ZRTExpression expression;
  Found left, right;
  left.position = GetLeftMostOperator(expression, text.c_str(), &left.code);
  right.position = GetRightMostOperator(expression, text.c_str(), &right.code);
  ASSERT_EQ(left, PlainLeft(text)) << text;
  ASSERT_EQ(right, PlainRight(text)) << text;
}

TEST(Scan, FindsOperatorsAsAPlainReadingDoes) {
  std::vector<std::string> texts{""};
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const std::string text = texts[i];
    ASSERT_NO_FATAL_FAILURE(ExpectPlainReading(text));
    if (text.size() == 5) continue;
    for (const char c : {'+', '<', '[', ']', 'e', 'E', '-', ' '}) texts.push_back(text + c);
  }
  constexpr std::string_view kAny = "+-*/%&|!<>~,^@$(<>[]]]e-E- aeeEE1111";
  std::minstd_rand random(1);
  for (int i = 0; i < 5000; ++i) {
    std::string text(random() % 60, ' ');
    for (char& c : text) c = kAny[random() % kAny.size()];
    ASSERT_NO_FATAL_FAILURE(ExpectPlainReading(text));
  }
}

TEST(Scan, FindsTheMatchingParenthesis) {
  struct Row {
    std::string text;
    int open, close, status;
  };
  for (Row row : {
           Row{"((a)b)", 0, 5, 0                       },
           Row{"((a)b)", 1, 3, 0                       },
           Row{"([)]",   0, 2, 0                       },
           Row{"x(a",    1, 2, ErrUnbalancedParenthesis},
           Row{"(",      0, 0, ErrUnbalancedParenthesis},
           Row{"(()",    0, 2, ErrUnbalancedParenthesis}
  }) {
    SCOPED_TRACE(row.text);
    ZRTExpression expression;
    int close = -1;
    EXPECT_EQ(GetSubExpression(expression, row.text.data(), row.open, &close), row.status);
    EXPECT_EQ(close, row.close);
  }
}

TEST(Scan, KnowsTheKindsOfNumbers) {
  enum : int { kNone, kBinary, kBinaryLong, kHex, kHexLong, kFloat, kDecimal };
  struct Row {
    int kind;
    std::vector<std::string> texts;
  };
  const std::string bits32(32, '1'), hex8 = "89abCDEF";
  const Row rows[] = {
      {kDecimal,    {"0", "00", "12", "1.", "1e", "1E", "1e-", "12345678901234567890"}                 },
      {kFloat,      {"1.5", ".5", "1e5", "1E5", "1e-5", "e5", "e-5", "E-5", "1e5-", "1e5-5", "e-5"}    },
      {kBinary,     {"#0", "#101", "#" + bits32}                                                       },
      {kBinaryLong, {"#0" + bits32, "#" + bits32 + bits32}                                             },
      {kHex,        {"0x1", "0xfF", "0x" + hex8}                                                       },
      {kHexLong,    {"0x0" + hex8, "0x" + hex8 + hex8}                                                 },
      {kNone,       {"", "0x", "#", ".", "e", "e-", ".e", "1.5e3", "1.e5", "1.2.3", "1e--5", "1e-5-"}  },
      {kNone,       {"1e+5", "0X1", "0xG", "#012", "-1", "+1", "1+2", " 1", "1 ", "1\t", "00x1", "1#0"}},
      {kNone,       {"0x1 ", "#1.", "1e5.", "1,5", "0x" + hex8 + "g", "#" + bits32 + "2", "\xB2"}      },
  };
  ZRTExpression expression;
  EXPECT_EQ(IsNumber(expression, nullptr), kNone);
  for (const Row& row : rows) {
    for (const std::string& text : row.texts) {
      EXPECT_EQ(IsNumber(expression, text.c_str()), row.kind) << text;
    }
  }
  for (const char c : std::string_view("09AFaf")) EXPECT_TRUE(IsHexDigit(expression, c)) << c;
  for (const char c : std::string_view("/:@G`g\xB1")) EXPECT_FALSE(IsHexDigit(expression, c)) << c;
}

}  // namespace
