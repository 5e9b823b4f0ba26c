// Float expressions: literals, rounding at each step, and the refusals in their order.
#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "scalar_rows.h"
#include "scan/operators.h"

namespace {

// One run of all tests asks for a locale that writes numbers with a comma.
const char* const kLocale = std::getenv("ZRT_TEST_LOCALE");
const bool kLocaleIsSet = !kLocale || std::setlocale(LC_ALL, kLocale);

TEST(Float, LocaleIsTheOneAskedFor) { EXPECT_TRUE(kLocaleIsSet) << kLocale; }

void Check(const std::vector<Row<float>>& rows) {
  CheckRows(std::mem_fn(&ZRTExpression::GetFloatOperand), rows);
}

// Literals are rounded by way of a double.
TEST(Float, EachStepRounds) {
  const std::string zeros(400, '0'), tiny = "0." + zeros + zeros + "1";
  Check({
      {0.0F,        "0x10;#101;e5;.0;1e-46;0e999999999;1e-99999999999;" + zeros + "e9;" + tiny},
      {0.0F,        "1.0000001*1.0000001-1.0000002;16777216+1-16777216"                       },
      {-0.0F,       "0*h;0-1/f7[1]*0"                                                         },
      {1.0F,        "1.;1e;1e-;1[1];1.00000005960464477540;1,2;1<2;1$2;1+;1,(2);(1)>a"        },
      {1.5F,        "1.5;fa[0];fa[ a-5 ] x;0" + zeros + "1.5"                                 },
      {5.0F,        "8-(2)-1;2*(1+2)-1;2 + 9 (3) * 1;1.5 + 2+f-1.25"                          },
      {20.0F,       "arr[1];arr[f/2];b8[1]"                                                   },
      {100.0F,      "1e2;1" + zeros + "e-398"                                                 },
      {16777216.0F, "16777217;odd;16777216+1+1;odd+0.9"                                       },
      {INFINITY,    "1e39;1" + zeros + "e-9;1e99999999999;f7[1];1/0;(1)/(0);34e37*2"          },
      {NAN,         "0/0;1/0-f7[1];1+(0/0)"                                                   },
  });
}

TEST(Float, RefusalsInTheirOrder) {
  Check({
      {ErrInvalidOperator,   "~1;!1;x+~2;fa[~0];]!;1<<x;1>>;1+2<<;1%2;1&2;1|2;1@2+x", kKept},
      {ErrInvalidOperator,   "!(1);x~(1);2(1)<<x;(1)<<;(1)+!x;x+(1)+1<<2;((1)%2)",    kKept},
      {ErrInvalidOperator,   "1<<(2);(1)%(2);1<<2(3);(1)%2+a;1,(2)&3",                1.0F },
      {ErrInvalidOperator,   "2*(3)%4;6@(1)+2",                                       6.0F },
      {ErrUnknownOperand,    ";x;1.5e3; 1.5;1.5 ;inf;x<<1;1%x;-1.5;(1)+;();1)",       kKept},
      {ErrMissingOperand,    "1+<<2;1.5++2;1.5+*x",                                   kKept},
      {ErrMisplacedOperator, "2(3);(3)2;+(3);(1)2<<3;fa[(1)]",                        kKept},
      {ErrBadTokenType,      "arr;fa;a[1];f[0];t9;t9[0]",                             kKept},
      {ErrNegativeIndex,     "fa[0-1];fa[x]",                                         kKept},
  });
}

TEST(Float, DoorsToSolverAndOperators) {
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

}  // namespace
