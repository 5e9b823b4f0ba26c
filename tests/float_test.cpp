// Float expressions: literals, rounding at each step, and the refusals in their order. A status
// stands where a value would: no value here lies between -518 and -500.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "scan/operators.h"
#include "support.h"

namespace {

constexpr float kKept = 77.0F;  // what a result holds before, and often behind a failure

struct Row {
  float outcome;
  std::string texts;          // with ";" between them
  float left_behind = kKept;  // in the result, by a failure
};

bool IsSame(float a, float b) {
  return a == b ? std::signbit(a) == std::signbit(b) : std::isnan(a) && std::isnan(b);
}

void Check(const std::vector<Row>& rows) {
  World world;
  using T = ZRTTokens;
  for (const T& token :
       {T::IntScalar("n", 3), T::IntScalar("odd", 16777217, 4), T::FloatScalar("f", 2.75F),
        T::FloatScalar("f3", -0.5F, 3), T::IntArray("arr", {10, 20}), T::IntArray("a8", {20}, 8),
        T::FloatArray("fa", {1.5F}), T::FloatArray("f7", {INFINITY}, 7), T::IntScalar("t", 1, 9)}) {
    world.local_tokens.Add(token);
  }
  for (const Row& row : rows) {
    std::istringstream texts(row.texts);
    for (std::string text; std::getline(texts, text, ';');) {
      float value = kKept;
      const int status = world.expression.GetFloatOperand(text.c_str(), &value);
      const float outcome = status == 0 ? value : static_cast<float>(status);
      EXPECT_TRUE(IsSame(outcome, row.outcome)) << text << " gives " << outcome;
      EXPECT_TRUE(status == 0 || IsSame(value, row.left_behind)) << text << " leaves " << value;
    }
  }
}

// Literals are rounded by way of a double.
TEST(Float, EachStepRounds) {
  const std::string zeros(400, '0'), tiny = "0." + zeros + zeros + "1";
  Check({
      {0.0F,        "0x10;#101;e5;.0;1e-46;0e999999999;1e-99999999999;" + zeros + "e9;" + tiny},
      {0.0F,        "1.0000001*1.0000001-1.0000002;16777216+1-16777216"                       },
      {-0.0F,       "0*f3;0-1/f7[0]*0"                                                        },
      {0.1F + 0.2F, "0.1+0.2"                                                                 },
      {4.0F / 6.0F, "(4)/2*3"                                                                 },
      {1.0F,        "1.;1e;1e-;1[1];1.00000005960464477540;1,2;1<2;1$2;1+;1,(2);(1)>n"        },
      {1.5F,        "1.5;fa[0];fa[ n-3 ] x;0" + zeros + "1.5"                                 },
      {5.0F,        "8-(2)-1;2*(1+2)-1;2 + 9 (3) * 1;1.5 + 2+f-1.25"                          },
      {20.0F,       "arr[1];arr[f/2];a8[0]"                                                   },
      {100.0F,      "1e2;1" + zeros + "e-398"                                                 },
      {16777216.0F, "16777217;odd;16777216+1+1;odd+0.9"                                       },
      {INFINITY,    "1e39;1" + zeros + "e-9;1e99999999999;f7[0];1/0;(1)/(0);34e37*2"          },
      {NAN,         "0/0;1/0-f7[0];1+(0/0)"                                                   },
  });
}

TEST(Float, RefusalsInTheirOrder) {
  Check({
      {ErrInvalidOperator,   "~1;!1;x+~2;fa[~0];]!;1<<x;1>>;1+2<<;1%2;1&2;1|2;1@2+x", kKept},
      {ErrInvalidOperator,   "!(1);x~(1);2(1)<<x;(1)<<;(1)+!x;x+(1)+1<<2;((1)%2)",    kKept},
      {ErrInvalidOperator,   "1<<(2);(1)%(2);1<<2(3);(1)%2+n;1,(2)&3",                1.0F },
      {ErrInvalidOperator,   "2*(3)%4;6@(1)+2",                                       6.0F },
      {ErrUnknownOperand,    ";x;1.5e3; 1.5;1.5 ;inf;nan;x<<1;1%x;-1.5;(1)+;();1)",   kKept},
      {ErrMissingOperand,    "1+<<2;1.5++2;1.5+*x",                                   kKept},
      {ErrMisplacedOperator, "2(3);(3)2;+(3);(1)2<<3;fa[(1)]",                        kKept},
      {ErrBadTokenType,      "arr;fa;n[1];f[0];t;t[0]",                               kKept},
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
