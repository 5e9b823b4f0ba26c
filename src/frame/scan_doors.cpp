// The object's doors to the scans of text. They do not touch the object.
#include <cstring>
#include <optional>

#include "ZRTExpression.h"
#include "frame/guard.h"
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
  try {
    const std::size_t length = std::strlen(text);
    if (length > zrt::kMaxTextLength) return kNotFound;
    const MarkedText marked({text, length}, MarkedText::Parentheses::kPlain);
    const std::optional<FoundOperator> found = scan(marked, WholePiece(marked));
    if (!found) return kNotFound;
    *code = found->code;
    return static_cast<int>(found->position);
  } catch (...) {
    return kNotFound;
  }
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
  return zrt::Guarded([&] {
    const std::string_view behind(text + open + 1);
    if (behind.size() > zrt::kMaxTextLength) return ErrStreamWrite;
    const MarkedText marked(behind, MarkedText::Parentheses::kMarked);
    const std::int64_t match = marked.first_stray_close();
    const std::int64_t last_read = match < 0 ? std::int64_t{marked.length()} - 1 : match;
    *close = static_cast<int>(open + 1 + last_read);
    return match < 0 ? ErrUnbalancedParenthesis : zrt::kOk;
  });
}

int ZRTExpression::IsNumber(const char* text) {
  return text ? zrt::KindOfNumber(text) : zrt::NumberNone;
}

bool ZRTExpression::IsHexDigit(char c) { return zrt::IsHexadecimalDigit(c); }
