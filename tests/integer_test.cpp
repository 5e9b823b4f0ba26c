// Integer expressions: operands, chains, groups, unary operators, and what a result holds after a
// failure. A status stands where a value would: no value here lies between -518 and -500.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "scan/operators.h"
#include "support.h"

namespace {

constexpr int kUntouched = 77;
constexpr int kMax = std::numeric_limits<int>::max(), kMin = std::numeric_limits<int>::min();

struct Row {
  int outcome;
  std::vector<std::string> texts;
  int left_behind = kUntouched;  // in the result, by a failure
};

struct Integers : World {
  Integers() {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    using T = ZRTTokens;
    for (const T& token :
         {T::IntScalar("a", 5), T::IntScalar("size", 8, 4), T::IntScalar("t0", 1, 0),
          T::IntScalar("my name", 5), T::IntScalar("12", 5), T::IntArray("t9", {1}, 9),
          T::IntArray("arr", {10, 20, 30, 40}), T::IntArray("b8", {-1, 20}, 8),
          T::FloatScalar("f", 2.75F), T::FloatScalar("g", -2.75F, 3), T::FloatScalar("nan", nan),
          T::FloatScalar("high", 3e9F), T::FloatScalar("low", -3e9F),
          T::FloatArray("fa", {1.5F, -2.5F}), T::FloatArray("f7", {-1.99F}, 7),
          T::IntScalar(std::string(300, 'n').c_str(), 5)}) {
      local_tokens.Add(token);
    }
    global_tokens.Add(T::IntScalar("a", 1000));
    global_tokens.Add(T::IntScalar("outer", 5));
  }
};

template <class Evaluate>
void Check(const std::vector<Row>& rows, const Evaluate& evaluate) {
  Integers world;
  for (const Row& row : rows) {
    for (const std::string& text : row.texts) {
      int value = kUntouched;
      const int status = evaluate(world.expression, text, &value);
      EXPECT_EQ(status == 0 ? value : status, row.outcome) << text;
      EXPECT_EQ(value, status == 0 ? value : row.left_behind) << text;
    }
  }
}

void Check(const std::vector<Row>& rows) {
  Check(rows, [](ZRTExpression& expression, const std::string& text, int* value) {
    int solved = kUntouched;  // by the solver behind the public door
    const int status = expression.GetIntegerOperand(text.c_str(), value);
    EXPECT_EQ(SolveIntegerExpression(expression, text.c_str(), &solved), status) << text;
    EXPECT_EQ(solved, *value) << text;
    return status;
  });
}

TEST(Integer, Operands) {
  const std::string n300(300, 'n'), zeros(300, '0');
  Check({
      {5,                      {"a", "5[1]", "5 [f]", "4294967301", "12", "my name", "outer", n300, n300 + "+0"}},
      {2,                      {"f", "2.5"}                                                                     },
      {-2,                     {"g", "fa[1]", "fa[ a-4 ]"}                                                      },
      {20,                     {"arr[1]", "arr[ 1 ]", "arr [1]", "arr[1]x", "arr[1]]", "arr[a-4]", "b8[1][9]"}  },
      {30,                     {"arr[1+1]", "arr[" + zeros + "2]"}                                              },
      {0,                      {"arr[4]", "0x10", "#101", ".5", "e5", "nan", "4294967296"}                      },
      {1,                      {"1e5", "1.", "18446744073709551617"}                                            },
      {-1,                     {"f7[0]", std::string(1000, '9')}                                                },
      {kMin,                   {"2147483648", "low"}                                                            },
      {kMax,                   {"6442450943", "high"}                                                           },
      {ErrBadTokenType,        {"arr", "fa", "a[0]", "f[0]", "t0", "t0[0]", "t9", "t9[0]"}                      },
      {ErrEmptyIndex,          {"arr[]", "arr[ ]"}                                                              },
      {ErrMissingCloseBracket, {"arr[", "arr[1", "x[ "}                                                         },
      {ErrStrayCloseBracket,   {"arr]", "arr[~1]", "~A[~1]", "1+2]", "]"}                                       },
      {ErrMissingArrayName,    {"[1]", "[", "[]"}                                                               },
      {ErrNegativeIndex,       {"arr[-1]", "arr[0-1]", "arr[x]", "x[x]", "arr[arr[0]]"}                         },
      {ErrMisplacedOperator,   {"arr[(1)]"}                                                                     },
      {ErrUnknownOperand,      {"", " ", "x", "x[1]", "1.5e3", "size-1", "A", "5 ", " 5", "\t5", "5\t"}         },
  });
}

TEST(Integer, ChainsRunFromTheLeft) {
  Check({
      {20,                   {"2+3*4", "2  +  3*  4"}                                                             },
      {5,                    {"10-2-3", "5&6|1", "arr[0]-a"}                                                      },
      {3,                    {"1|2&3", "7/2", "1+2+", "1+2*", "2.5+1"}                                            },
      {2,                    {"100/7%3", "1<<33", "1.+1"}                                                         },
      {7,                    {"1+2<3+4", "1+2,99+4", "size - 1", "1+2$9$9+4"}                                     },
      {16,                   {"1<<4", "256>>4", "256>>4<<"}                                                       },
      {1,                    {"1<2", "1>2", "1,2", "1$2", "1+", "1 + ", "1<<", "0x1+1", "#101+1", ".5+1", "1,2<3"}},
      {ErrUnknownOperand,    {"+1", "-5", "1+x", "x+1", "1+2 ", " 1+2", "1@x", "1,x", "1+1 1"}                    },
      {ErrMissingOperand,    {"1+*2", "1++2", "1<<<2", "1+ *x", "1+2**3@4"}                                       },
      {ErrInvalidOperator,   {"1@2", "1^2", "1@2+x", "1/0", "1%0", "1/0+x"}                                       },
      {ErrStrayCloseBracket, {"arr[1]+2]"}                                                                        },
  });
}

TEST(Integer, GroupsSplitTheText) {
  Check({
      {9,                        {"(1+2)*3", "2*(1+2)+3", "( (1+2) ) * 3"}                                       },
      {21,                       {"(1+2)*3+4", "1+(2)*3+(4)", "((1+2)*(3+4))"}                                   },
      {4,                        {"(1+2)-3-4", "10-(1+2)-3", "(1)<<2", "1<<(2)", "8>>(1)", "1+2(3)", "1 + 2 (3)"}},
      {2,                        {"1,(2)", "1<(2)", "1>(2)", "2+1,(2),9", "(2)<9", "((2))"}                      },
      {1,                        {"(1),2", "(1)$2", "1$(2)", "!(0)", "!(!(5))", "!(1)+1", "(0) + 1"}             },
      {-6,                       {"~(5)", " ~(5)", "~ (5)"}                                                      },
      {ErrMisplacedOperator,     {"1(2)", "+(1)", "(1)2", "(1))", "(1)(2)", "1(2)3", "arr[(1)"}                  },
      {ErrUnbalancedParenthesis, {"(", "(1", "((1)", "x+(1", "x(()", "1)+(2"}                                    },
      {ErrUnknownOperand,        {"(1)+", "()", ")", "1)", "( 1 )", "(1)+ ", "( )", "(1)+2 ", "~~(5)"}           },
  });
}

TEST(Integer, UnaryOperatorsBindToOneOperand) {
  Check({
      {-6,                   {"~5", "~a", "~ 5", "1,~5", "1<~5"}                         },
      {1,                    {"!0", "1 + !5", "!arr[9]"}                                 },
      {-5,                   {"(~5)+1", "1+(~5)", "1+~5", "~5-3-4"}                      },
      {-3,                   {"~5+3", "~(1+1)"}                                          },
      {-2,                   {"1+~5+3", "!5 - ~0 - ~5/3 - 1"}                            },
      {-4,                   {"2*~1"}                                                    },
      {-8,                   {"~1<<2"}                                                   },
      {ErrMisplacedOperator, {"1~5", "-~5", "~arr[1]+2]", "a[1+2]~3", "1+a[1+2]~3"}      },
      {ErrUnknownOperand,    {"~5+", "~5++3", "~", "!", "~!5", "~x", "~5 ", "~~5", "~+1"}},
      {ErrMissingOperand,    {"~5*1++3"}                                                 },
  });
}

// Where two pieces fail, the one that is looked at first wins.
TEST(Integer, OrderOfEvaluation) {
  Check({
      {ErrMisplacedOperator,     {"1~5+x", "(1)2+x", "1(2)3@4"}                                         },
      {ErrUnknownOperand,        {"1(2)+x", "(x)2", "1(x)", "[1]+~x+arr[]", "1@2+(x)", "x,(1)", "(x)+("}},
      {ErrEmptyIndex,            {"[1]+(1)+arr[]", "(arr[])+[1]", "arr[]+x"}                            },
      {ErrMissingArrayName,      {"[1]+~1+arr[]", "x+([1])+arr[]"}                                      },
      {ErrUnbalancedParenthesis, {"1(2)+x@("}                                                           },
      {ErrInvalidOperator,       {"1@2+~1+x", "x+(1)+1@2"}                                              },
  });
}

// Only the last two operators of a text with a group or a unary operator leave something behind.
TEST(Integer, ResultAfterAFailure) {
  constexpr int kRefused = ErrInvalidOperator;
  Check({
      {ErrUnknownOperand, {"1+x", "(1)+x", "1+~2@3+x", "7@~5+x+1@2"},                            kUntouched},
      {kRefused,          {"1/0", "((1)@2)", "(1)@((2)@3)", "7-(1/0)"},                          kUntouched},
      {kRefused,          {"((1))@2", "(1)@2+3", "(1)!2", "1@(2)", "1+!(0)", "1@~5", "1!(5)~2"}, 1         },
      {kRefused,          {"~5@1", "1,~5@1", "~5!(0)"},                                          -6        },
      {kRefused,          {"7@~5@1", "7/(0)", "2+5/(0)*9", "1+(2*3)@4"},                         7         },
      {kRefused,          {"1,(2)@3", "4/(2)/0"},                                                2         },
  });
}

TEST(Integer, OperatorsWrapAndRefuse) {
  struct Operation {
    int value, operand, outcome;
  };
  struct Codes {
    std::vector<int> codes;
    std::vector<Operation> operations;
  };
  const Codes rows[] = {
      {{zrt::OpAnd},                                {{12, 10, 8}}                                                            },
      {{zrt::OpOr},                                 {{12, 10, 14}}                                                           },
      {{zrt::OpShiftLeft},                          {{1, 33, 2}, {1, -1, kMin}, {-3, 30, 1 << 30}}                           },
      {{zrt::OpShiftRight},                         {{-8, 1, -4}, {-1, 63, -1}, {kMin, 31, -1}}                              },
      {{zrt::OpAdd},                                {{kMax, kMax, -2}}                                                       },
      {{zrt::OpSubtract},                           {{kMin, 1, kMax}, {0, kMin, kMin}}                                       },
      {{zrt::OpMultiply},                           {{65536, 65536, 0}, {kMin, -1, kMin}}                                    },
      {{zrt::OpDivide},                             {{-7, 2, -3}, {5, 0, ErrInvalidOperator}, {kMin, -1, ErrInvalidOperator}}},
      {{zrt::OpModulo},                             {{-7, 2, -1}, {7, -4, 3}, {5, 0, ErrInvalidOperator}, {kMin, -1, 0}}     },
      {{zrt::OpLogicalNot, zrt::OpBitwiseNot},      {{5, 0, ErrInvalidOperator}}                                             },
      {{zrt::OpConcat, zrt::OpReplicate},           {{5, 1, ErrInvalidOperator}}                                             },
      {{zrt::OpNone, zrt::OpBitReverse, 15, 65535}, {{5, 1, 5}}                                                              },
  };
  ZRTExpression expression;
  for (const auto& [codes, operations] : rows) {
    for (const int code : codes) {
      for (const auto& [before, operand, outcome] : operations) {
        SCOPED_TRACE(std::to_string(before) + " code " + std::to_string(code));
        int value = before;
        const int status =
            ExecuteIntegerOperator(expression, &value, static_cast<unsigned short>(code), operand);
        EXPECT_EQ(status == 0 ? value : status, outcome);
        EXPECT_EQ(value, status == 0 ? outcome : before);
      }
    }
  }
}

// One operand is no expression, but its index is one, whatever the index holds.
TEST(Integer, ValueOfOneOperand) {
  const std::vector<Row> rows = {
      {20,                   {"arr[(1)]", "arr[!0]", "arr [ 1 ] junk", "arr[~(0-2)]"}},
      {30,                   {"arr[1+1]+1"}                                          },
      {ErrNegativeIndex,     {"arr[~1]", "arr[(1]"}                                  },
      {ErrUnknownOperand,    {"1+2", "(1)", "~1", "", "1 "}                          },
      {ErrStrayCloseBracket, {"1+2]"}                                                },
  };
  Check(rows, [](ZRTExpression& expression, std::string text, int* value) {
    return expression.GetIntegerValue(text.data(), value);
  });
}

}  // namespace
