// A first host: names, an integer, a bit vector and its bytes, with every status looked at.
#include <cstdio>

#include "ZRTExpression.h"
#include "zrtexpression/words.h"

// Whether all is well; else tells what is not.
static bool IsRight(const char* text, int status) {
  if (status == 0) return true;
  std::printf("%s: %s, %s\n", text, zrt::StatusName(status), zrt::StatusSentence(status));
  return false;
}

int main() {
  ZRTTokenTree tokens;
  tokens.Add(ZRTTokens::IntScalar("size", 8));
  tokens.Add(ZRTTokens::IntArray("order", {10, 20, 30, 40}));

  ZRTExpression expression;
  expression.SetLocalTokenTree(&tokens);

  int value = 0;
  const char* text = "order[1]+size";
  if (!IsRight(text, expression.GetIntegerOperand(text, &value))) return 1;
  std::printf("%s: %d\n", text, value);

  RowDataStream stream;
  text = "(0xFF^2)@0xA@#101";
  if (!IsRight(text, expression.GetBitStream(text, &stream))) return 1;
  std::printf("%s: %d bits,", text, stream.BitLength);
  const int byte_count = static_cast<int>(stream.GetTotalSize());
  for (int i = 0; i < byte_count; ++i) std::printf(" %02X", stream.ReadData(i));
  std::printf("\n");

  text = "order[1]+sice";
  return IsRight(text, expression.GetIntegerOperand(text, &value)) ? 1 : 0;  // it must fail
}
