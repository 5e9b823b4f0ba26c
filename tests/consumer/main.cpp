// A host: includes what the library offers, evaluates, and says on success with which version, by
// name, by number and of the library that is loaded.
#include <iostream>

#include "DataExpression.h"
#include "ErrorCodes.h"
#include "RowDataStream.h"
#include "ZRTExpression.h"
#include "zrtexpression/version.h"
#include "zrtexpression/words.h"

int main() {
  ZRTTokenTree tokens;
  tokens.Add(ZRTTokens::IntScalar("rows", 6));
  ZRTExpression expression;
  expression.SetLocalTokenTree(&tokens);

  int value = 0;
  RowDataStream stream;
  char text[32] = {};
  const bool is_right = expression.GetIntegerOperand("(rows+1)*2", &value) == 0 && value == 14 &&
                        expression.GetIntegerOperand("columns", &value) == ErrUnknownOperand &&
                        expression.GetBitStream("(0x55^rows)@0x5501", &stream) == 0 &&
                        stream.BitLength == 64;
  fnGetDataExpression(&stream, text);
  std::cout << (is_right ? "right " : "wrong ") << text << " " << ZRT_VERSION << " "
            << ZRT_VERSION_MAJOR << "." << ZRT_VERSION_MINOR << "." << ZRT_VERSION_PATCH << " "
            << zrt::Version() << "\n";
}
