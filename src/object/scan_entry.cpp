// The object's entry points to the scans of text. They do not touch the object.
#include <cstring>
#include <limits>

#include "ZRTExpression.h"
#include "bits/exhausted_memory.h"
#include "scan/marks.h"
#include "scan/number.h"
#include "scan/operator_scan.h"

using zrt::FoundOperator;
using zrt::MarkedText;

namespace {

constexpr int kNotFound = -1;

// Hands a scan's answer out; `code` is written only if there is one. Without memory nothing is
// found.
template <class Scan>
int AnswerOf(const char* text, unsigned short* code, const Scan& scan) {
  return zrt::OnExhaustedMemory(kNotFound, [&]() -> int {
    const std::size_t length = std::strlen(text);
    if (length > zrt::kMaxTextLength) return kNotFound;
    const MarkedText marked({text, length}, MarkedText::Parentheses::kPlain);
    const FoundOperator found = scan(marked, WholePiece(marked));
    if (!found.is_there()) return kNotFound;
    *code = found.code();
    return static_cast<int>(found.position);
  });
}

}  // namespace

int ZRTExpression::GetLeftMostOperator(const char* text, unsigned short* code) {
  return AnswerOf(text, code, zrt::LeftMostOperator);
}

int ZRTExpression::GetRightMostOperator(const char* text, unsigned short* code) {
  return AnswerOf(text, code, [](const MarkedText& marked, const zrt::Piece& piece) {
    return zrt::RightScan(marked, piece).Last();
  });
}

int ZRTExpression::GetSubExpression(char* text, int open, int* close) {
  *close = open;
  int depth = 1;
  while (depth > 0 && *close < std::numeric_limits<int>::max() && text[*close + 1] != '\0') {
    const char c = text[++*close];
    depth += c == '(' ? 1 : c == ')' ? -1 : 0;
  }
  return depth > 0 ? ErrUnbalancedParenthesis : zrt::kOk;
}

int ZRTExpression::IsNumber(const char* text) {
  return text ? zrt::KindOfNumber(text) : zrt::NumberNone;
}

bool ZRTExpression::IsHexDigit(char c) { return zrt::IsHexadecimalDigit(c); }
