// The scans of text: operators from both sides, matching parentheses, kinds of number literals.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>

#include "support.h"

namespace {

constexpr std::string_view kByCode = ",&|!~<>+-/*%@^$";

// Position and operator, as "3+"; "<" is "<<", the lone ones are ",". "-1?" where none is found.
std::string Find(const decltype(GetLeftMostOperator)& scan, const std::string& text) {
  ZRTExpression expression;
  unsigned short code = 99;
  const int position = scan(expression, text.c_str(), &code);
  return std::to_string(position) + (code < kByCode.size() ? kByCode[code] : '?');
}

// The first "[" and the first "]" hide what stands between them, and a scan from the right ends
// there. To that one only the first "e-" and the first "E-" are exponents.
TEST(Scan, FindsOperatorsFromBothSides) {
  std::istringstream cases(R"(
    x -1? -1?         ''1'+'2*3' 4+ 7*   -(1+2)-3 0- 6-    1<2>3 1, 3,    1<<<2 1< 2<    >>< 0> 2,
    1e-5 -1? -1?      1E-'5'-'2 6- 6-    e-- 2- 2-         1e-5+2E-3 4+ 4+      1E-5+2e-3 4+ 4+
    1e-5+2e-3 4+ 7-   1e-5E-6e-7 -1? 8-  a[1+2] -1? -1?    a[1+2]''-3 8- 8-     1+a[2-3] 1+ -1?
    a[1+2]+b[3-4] 6+ 10-    a[1-2]b[3-4]+5 12+ 12+         a[b[1]+2] 6+ 6+      1+[2]e-3 1+ 1+
    1+2]-3 4- 4-      1+2[ 1+ 1+         1]+[2-3] 2+ 5-)");
  for (std::string text, left, right; cases >> text >> left >> right;) {
    std::ranges::replace(text, '\'', ' ');
    EXPECT_EQ(Find(GetLeftMostOperator, text), left) << text;
    EXPECT_EQ(Find(GetRightMostOperator, text), right) << text;
  }
  EXPECT_EQ(Find(GetRightMostOperator, ""), "-1?");
}

TEST(Scan, FindsTheMatchingParenthesis) {
  ZRTExpression expression;
  std::istringstream cases("((a)b) 0 5  ((a)b) 1 3  ([)] 0 2  x(a 1 -2  (() 0 -2  x( 1 -1");
  std::string text;
  for (int open = 0, close = 0; cases >> text >> open >> close;) {
    int found = -1;  // a close below 0 is the last character read without a match
    const int status = GetSubExpression(expression, text.data(), open, &found);
    EXPECT_EQ(status == 0 ? found : -found, close) << text;
  }
}

TEST(Scan, KnowsTheKindsOfNumbers) {
  const std::string bits32(32, '1'), hex8 = "89abCDEF";
  const std::string by_kind[] = {
      ";0x;#;.;e;e-;.e;1.5e3;1.e5;1.2.3;1e--5;1e-5-;1e+5;0X1;0xG;#012;-1;+1;1+2; 1;1 ;1\t;00x1;1#0",
      "#0;#101;#" + bits32,
      "#0" + bits32 + ";#" + bits32 + bits32,
      "0x1;0xfF;0x" + hex8,
      "0x0" + hex8 + ";0x" + hex8 + hex8,
      "1.5;.5;1e5;1E5;1e-5;e5;e-5;E-5;1e5-;1e5-5",
      "0;00;12;1.;1e;1E;1e-;12345678901234567890",
      "0x1 ;#1.;1e5.;1,5;0x" + hex8 + "g;#" + bits32 + "2;\xB2",
  };
  ZRTExpression expression;
  EXPECT_EQ(IsNumber(expression, nullptr), 0);
  for (int kind = 0; kind < 8; ++kind) {
    std::istringstream texts(by_kind[kind]);
    for (std::string text; std::getline(texts, text, ';');) {
      EXPECT_EQ(IsNumber(expression, text.c_str()), kind % 7) << text;
    }
  }
  for (const char c : std::string_view("09AFaf")) EXPECT_TRUE(IsHexDigit(expression, c)) << c;
  for (const char c : std::string_view("/:@G`g\xB1")) EXPECT_FALSE(IsHexDigit(expression, c)) << c;
}

}  // namespace
