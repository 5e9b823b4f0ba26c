// Integer expressions: operands, chains, groups, unary operators, and what a result holds after a
// failure.
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "scalar_rows.h"

namespace {

constexpr int kMax = std::numeric_limits<int>::max(), kMin = std::numeric_limits<int>::min();

void Check(const std::vector<Row<int>>& rows) {
  CheckRows(std::mem_fn(&ZRTExpression::GetIntegerOperand), rows);
}

TEST(Integer, Operands) {
  const std::string n300(300, 'n'), zeros(300, '0'), nines(1000, '9');
  Check({
      {5,                      "a;5[1];5 [f];4294967301;12;my name;" + n300 + ";" + n300 + "+0"},
      {2,                      "f;2.5"                                                         },
      {-2,                     "g;fa[1];fa[ a-4 ]"                                             },
      {20,                     "arr[ 1 ];arr [1];arr[1]];arr[a-4];b8[1]x;arr[" + zeros + "1]"  },
      {0,                      "arr[4];0x10;#101;.5;e5;nan;4294967296"                         },
      {1,                      "1e5;1.;18446744073709551617"                                   },
      {-1,                     "f7[0];" + nines                                                },
      {kMin,                   "2147483648;low"                                                },
      {kMax,                   "6442450943;high"                                               },
      {ErrBadTokenType,        "arr;fa;a[0];f[0];t0;t0[0];t9;t9[0]"                            },
      {ErrEmptyIndex,          "arr[];arr[ ]"                                                  },
      {ErrMissingCloseBracket, "arr[;arr[1;x[ "                                                },
      {ErrStrayCloseBracket,   "arr];arr[~1];~A[~1];1+2];arr[1]+2];];~e-]+["                   },
      {ErrMissingArrayName,    "[1];[;[]"                                                      },
      {ErrNegativeIndex,       "arr[-1];arr[0-1];arr[x];x[x];arr[arr[0]]"                      },
      {ErrUnknownOperand,      "; ;x;x[1];1.5e3;size-1;A;5 ; 5;\t5;5\t"                        },
  });
}

// One operand is no expression, but its index is one, whatever the index holds.
TEST(Integer, ValueOfOneOperand) {
  const std::vector<Row<int>> rows = {
      {20,                   "arr[(1)];arr[!0];arr [ 1 ] junk;arr[~(0-2)];arr[0+1]+1"},
      {ErrNegativeIndex,     "arr[~1];arr[(1]"                                       },
      {ErrUnknownOperand,    ";1+2;(1);~1;1 "                                        },
      {ErrStrayCloseBracket, "1+2]"                                                  },
  };
  CheckRows(std::mem_fn(&ZRTExpression::GetIntegerValue), rows);
}

// From the left, whatever the operators; arithmetic wraps.
TEST(Integer, ChainsGroupsAndUnaryOperators) {
  Check({
      {0,    "65536*65536;2147483648%~0"                                      },
      {1,    "1<2;1>2;1,2;1$2;1+;1 + ;1<<;0x1+1;.5+1;1,2<3"                   },
      {1,    "(1),2;(1)$2;1$(2);!(0);!(!(5));!(1)+1;(0) + 1;!0;1 + !5;!arr[9]"},
      {2,    "100/7%3;1<<33;1.+1;1,(2);1<(2);1>(2);2+1,(2),9;(2)<9;((2))"     },
      {3,    "1|2&3;7/2;1+2+;1+2*;2.5+1;7%~3"                                 },
      {4,    "(1+2)-3-4;10-(1+2)-3;(1)<<2;1<<(2);8>>(1);1+2(3);1 + 2 (3)"     },
      {5,    "10-2-3;5&6|1;arr[0]-a;80>>4<<"                                  },
      {7,    "1+2<3+4;1+2,99+4;size - 1;1+2$9$9+4"                            },
      {9,    "(1+2)*3;2*(1+2)+3;( (1+2) ) * 3"                                },
      {20,   "2+3*4;2  +  3*  4;arr[0+1]+1+~0"                                },
      {21,   "(1+2)*3+4;1+(2)*3+(4);((1+2)*(3+4))"                            },
      {-1,   "~0>>63;2147483648>>31;~6%2"                                     },
      {-2,   "1+~5+3;!5 - ~0 - ~5/3 - 1"                                      },
      {-3,   "~5+3;~(1+1);~6/2"                                               },
      {-4,   "~7>>1;~3>>32;2*~1;~0<<2"                                        },
      {-5,   "(~5)+1;1+(~5);1+~5;~5-3-4;(5)+~2-(3)-4"                         },
      {-6,   "~(5); ~(5);~ (5);~5;~a;~ 5;1,~5;1<~5"                           },
      {kMin, "1<<~0;0-2147483648;2147483648*~0;2147483647+1"                  },
  });
}

// Where two pieces fail, the one that is looked at first wins. Only the last two operators of a
// text with a group or a unary operator leave something behind.
TEST(Integer, FailuresInTheirOrderAndWhatTheyLeave) {
  Check({
      {ErrUnknownOperand,        "+1;-5;1+x;x+1;1+2 ; 1+2;1@x;1,x;1+1 1;~5+;~5++3;~;!;~!5", kKept},
      {ErrUnknownOperand,        "(1)+;(););1);( 1 );( );(1)+2 ;~~(5);(1)+x;(x)+(;~5 ;~~5", kKept},
      {ErrUnknownOperand,        "7@~5+x+1@2;1+~2@3+x;[1]+~x+arr[];1(2)+x;(x)2;1@2+(x)",    kKept},
      {ErrMissingOperand,        "1+*2;1++2;1<<<2;1+ *x;1+2**3@4;~5*1++3",                  kKept},
      {ErrMisplacedOperator,     "1(2);+(1);(1)2;(1));(1)(2);arr[(1);(1)2+x;1(2)3@4",       kKept},
      {ErrMisplacedOperator,     "1~5;-~5;~arr[1]+2];1+a[1+2]~3;1~5+x;arr[(1)]",            kKept},
      {ErrUnbalancedParenthesis, "(;(1;((1);x+(1;x(();1)+(2;1(2)+x@(",                      kKept},
      {ErrEmptyIndex,            "[1]+(1)+arr[];(arr[])+[1];arr[]+x",                       kKept},
      {ErrMissingArrayName,      "[1]+~1+arr[];x+([1])+arr[]",                              kKept},
      {ErrInvalidOperator,       "1@2;1%0;1@2+x;1/0+x;1@2+~1+x;x+(1)+1@2;((1)@2);7-(1/0)",  kKept},
      {ErrInvalidOperator,       "((1))@2;(1)@2+3;(1)!2;1@(2);1+!(0);1@~5;1!(5)~2",         1    },
      {ErrInvalidOperator,       "~5@1;1,~5@1;~5!(0)",                                      -6   },
      {ErrInvalidOperator,       "7@~5@1;7/(0);2+5/(0)*9;1+(2*3)@4",                        7    },
      {ErrInvalidOperator,       "1,(2)@3;4/(2)/0",                                         2    },
      {ErrInvalidOperator,       "2147483648/~0",                                           kMin },
  });
}

TEST(Integer, DoorsToSolverAndOperators) {
  ZRTExpression expression;
  int value = kKept;
  EXPECT_EQ(SolveIntegerExpression(expression, "6@(1)+2", &value), ErrInvalidOperator);
  EXPECT_EQ(value, 6);
  const int no = ErrInvalidOperator;
  const int outcomes[] = {21, 1, 23, no, no, 168, 2, 24, 18, 7, 63, 0, no, no, 21, 21};
  for (unsigned short code = 0; code < 16; ++code) {
    value = 21;
    const int status = ExecuteIntegerOperator(expression, &value, code, 3);
    EXPECT_EQ(status == 0 ? value : status, outcomes[code]) << code;
    EXPECT_TRUE(status == 0 || value == 21) << code;
  }
}

}  // namespace
