// Float expressions: literals, rounding at each step, and the refusals in their order. A status
// stands where a value would: no value here lies between -518 and -500.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "support.h"

namespace {

constexpr float kUntouched = 77.0F;
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kLeast = std::numeric_limits<float>::denorm_min();

struct Row {
  float outcome;
  std::vector<std::string> texts;
  float left_behind = kUntouched;  // in the result, by a failure
};

bool IsSame(float a, float b) {
  return a == b ? std::signbit(a) == std::signbit(b) : std::isnan(a) && std::isnan(b);
}

// Through the public door and through the solver behind it.
void Check(const std::vector<Row>& rows) {
  World world;
  using T = ZRTTokens;
  for (const T& token :
       {T::IntScalar("n", 3), T::IntScalar("odd", 16777217, 4), T::FloatScalar("f", 2.75F),
        T::FloatScalar("f3", -0.5F, 3), T::IntArray("arr", {10, 20, 30, 40}),
        T::IntArray("a8", {-2147483647}, 8), T::FloatArray("farr", {1.5F, -2.5F, 3.9F}),
        T::FloatArray("f7", {kInfinity}, 7), T::IntScalar("t9", 1, 9)}) {
    world.local_tokens.Add(token);
  }
  for (const Row& row : rows) {
    for (const std::string& text : row.texts) {
      float value = kUntouched, solved = kUntouched;
      const int status = world.expression.GetFloatOperand(text.c_str(), &value);
      const float outcome = status == 0 ? value : static_cast<float>(status);
      EXPECT_TRUE(IsSame(outcome, row.outcome)) << text << " gives " << outcome;
      EXPECT_TRUE(status == 0 || IsSame(value, row.left_behind)) << text << " leaves " << value;
      EXPECT_EQ(SolveFloatExpression(world.expression, text.c_str(), &solved), status) << text;
      EXPECT_TRUE(IsSame(solved, value)) << text;
    }
  }
}

TEST(Float, Operands) {
  const std::string zeros(400, '0');
  Check({
      {1.5F,                   {"1.5", "1.50", "farr[0]", "0" + zeros + "1.5"}                                   },
      {100.0F,                 {"1e2", "100", "1" + zeros + "e-398"}                                             },
      {0.01F,                  {"1e-2", "0.01"}                                                                  },
      {1.0F,                   {"1.", "1e", "1e-", "1[1]", "1.00000005960464477540"}                             }, // by way of a double
      {0.0F,                   {"0x10", "#101", "e5", ".0", "1e-400", "1e-46", "0." + zeros + "1", "0e999999999"}},
      {kLeast,                 {"1e-45"}                                                                         },
      {3.4e38F,                {"34e37"}                                                                         },
      {kInfinity,              {"1e39", "1e400", "1" + zeros, "1" + zeros + "e-9", "1e99999999999", "f7[0]"}     },
      {0.0F,                   {"1e-99999999999", "0." + zeros + zeros + "1", zeros + "e9"}                      },
      {16777216.0F,            {"16777217", "odd"}                                                               },
      {-2147483648.0F,         {"a8[0]"}                                                                         },
      {3.9F,                   {"farr[n-1]", "farr[ 2 ] x"}                                                      },
      {20.0F,                  {"arr[1]", "arr[f/2]"}                                                            },
      {ErrBadTokenType,        {"arr", "farr", "n[1]", "f[0]", "t9", "t9[0]"}                                    },
      {ErrMissingCloseBracket, {"arr["}                                                                          },
      {ErrEmptyIndex,          {"arr[]"}                                                                         },
      {ErrStrayCloseBracket,   {"n]"}                                                                            },
      {ErrMissingArrayName,    {"[1]"}                                                                           },
      {ErrNegativeIndex,       {"farr[0-1]", "farr[x]"}                                                          },
      {ErrUnknownOperand,      {"", "x", "1.5e3", " 1.5", "1.5 ", "1,5 ", "inf", "nan", "size-1"}                },
  });
}

TEST(Float, EachStepRounds) {
  Check({
      {3.5F,        {"1.5+2", "1.5 + 2", "(1.5)+2"}                                         },
      {10.5F,       {"1.5+2*3"}                                                             },
      {0.1F + 0.2F, {"0.1+0.2"}                                                             },
      {16777216.0F, {"16777216+1+1", "odd+0.9"}                                             },
      {0.0F,        {"1.0000001*1.0000001-1.0000002", "16777216+1-16777216"}                },
      {-0.0F,       {"0*f3", "0-1/f7[0]*0"}                                                 },
      {4.0F / 6.0F, {"(4)/2*3"}                                                             },
      {kInfinity,   {"1/0", "(1)/(0)", "34e37*2"}                                           },
      {-kInfinity,  {"0-1/0"}                                                               },
      {kNan,        {"0/0", "1/0-f7[0]", "1+(0/0)"}                                         },
      {1.0F,        {"1,2", "1<2", "1$2", "1+", "1,(2)", "(1),2", "1<(2)", "1$(2)", "(1)>n"}},
      {5.0F,        {"8-(2)-1", "2*(1+2)-1", "2 + 9 (3) * 1"}                               },
      {7.0F,        {"(8)-(2)-(1)", "(1+2)+(4)"}                                            },
  });
}

TEST(Float, RefusalsInTheirOrder) {
  constexpr float kRefused = ErrInvalidOperator;
  Check({
      {kRefused,
       {"~1", "!1", "x+~2", "farr[~0]", "]!", "1<<x", "1>>", "1+2<<", "1%2", "1&2", "1|2"}                                                                        },
      {kRefused,                                                                     {"1^2", "1@2+x", "!(1)", "x~(1)", "2(1)<<x", "(1)<<", "(1)+!x", "x+(1)+1<<2"}},
      {kRefused,                                                                     {"((1)%2)", "(1)<<2", "1<<2+(3)", "2!(1)"}                                   },
      {kRefused,                                                                     {"1<<(2)", "1%(2)", "(1)%(2)", "1<<2(3)", "(1)%2+n", "1,(2)&3"},               1.0F},
      {kRefused,                                                                            {"2*(3)%4", "6@(1)+2"},                                                                                                                                                  6.0F},
      {ErrUnknownOperand,
       {"x<<1", "<<1", "1%x", "+1", "-1.5", "(1)+", "()", "1)", "2(1)+x", "(x)<<1"}   },
      {ErrMissingOperand, {"1+<<2", "1.5++2", "1.5+*x"}                                                                          },
      {ErrMisplacedOperator,                                               {"2(3)", "(3)2", "+(3)", "(1)2<<3", "farr[(1)]"}                                                 },
      {ErrUnbalancedParenthesis,{"(", "(1", "x+~(1"}         },
  });
}

TEST(Float, OperandsAndOperatorsByThemselves) {
  World world;
  char operand[] = "1+2", literal[] = "2.5";
  float value = kUntouched;
  EXPECT_EQ(GetFloatValue(world.expression, operand, &value), ErrUnknownOperand);
  EXPECT_EQ(value, kUntouched);
  EXPECT_EQ(GetFloatValue(world.expression, literal, &value), 0);
  EXPECT_EQ(value, 2.5F);
  // By code; a refused operator leaves the value, as do those that mean nothing here.
  const float results[] = {3, 3, 3, 3, 3, 3, 3, 5, 1, 1.5, 6, 3, 3, 3, 3, 3};
  const std::string_view refuses = " xxxxxx    xxx  ";
  for (unsigned short code = 0; code < 16; ++code) {
    value = 3.0F;
    const int expected = refuses[code] == 'x' ? ErrInvalidOperator : kOk;
    EXPECT_EQ(ExecuteFloatOperator(world.expression, &value, code, 2.0F), expected) << code;
    EXPECT_EQ(value, results[code]) << code;
  }
}

}  // namespace
