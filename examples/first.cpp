// A first host: names, an integer, a bit vector and its bytes, with every status looked at.
#include <iomanip>
#include <iostream>

#include "ZRTExpression.h"
#include "zrtexpression/words.h"

// Whether all is well; else tells what is not.
static bool IsRight(const char* text, int status) {
  if (status == 0) return true;
  std::cout << text << ": " << zrt::StatusName(status) << ", " << zrt::StatusSentence(status)
            << "\n";
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
  std::cout << text << ": " << value << "\n";

  RowDataStream stream;
  text = "(0xFF^2)@0xA@#101";
  if (!IsRight(text, expression.GetBitStream(text, &stream))) return 1;
  std::cout << text << ": " << stream.BitLength << " bits," << std::hex << std::uppercase;
  const int byte_count = static_cast<int>(stream.GetTotalSize());
  for (int i = 0; i < byte_count; ++i) {
    std::cout << " " << std::setw(2) << std::setfill('0') << int{stream.ReadData(i)};
  }
  std::cout << "\n";

  text = "order[1]+sice";
  return IsRight(text, expression.GetIntegerOperand(text, &value)) ? 1 : 0;  // it must fail
}
