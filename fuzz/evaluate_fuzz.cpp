// Any text to every evaluator over a rich scope. What must hold: no crash and no status beyond the
// table; the same value from blocks of any size, from the chain's own evaluator and from the text
// in parentheses. Knows no right value.
#include <algorithm>
#include <cstdlib>
#include <new>
#include <string>
#include <utility>

#include "support.h"

// A few characters ask for gigabits: arrays of more than a megabyte find no memory.
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return size > (1 << 20) ? nullptr : operator new(size, tag);
}
void* operator new[](std::size_t size) {
  return size > (1 << 20) ? throw std::bad_alloc() : operator new(size);
}
void operator delete[](void* place) noexcept { operator delete(place); }
void operator delete[](void* place, std::size_t /*size*/) noexcept { operator delete(place); }

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

using Outcome = std::pair<int, std::string>;  // the status, and what the evaluation left

template <class Number>
Outcome Scalar(int (ZRTExpression::*evaluate)(const char*, Number*), const std::string& text) {
  RichWorld scope;
  Number number = 77;
  const int status = (scope.expression.*evaluate)(text.c_str(), &number);
  return {status, std::to_string(number)};
}

Outcome Stream(std::string text, bool is_chain = false, int block_size = 0) {
  const BlockSize setting(block_size);
  RichWorld scope;
  RowDataStream stream;
  const int status = is_chain ? scope.expression.SolveBitStreamExpression(text.data(), &stream)
                              : scope.expression.GetBitStream(text.c_str(), &stream);
  return {status, Hex(stream)};
}

// What a failure leaves may differ. Memory may run out for one and not for the other.
void RequireSame(const Outcome& one, const Outcome& other, bool is_exact) {
  if (one.first == ErrStreamWrite || other.first == ErrStreamWrite) return;
  if (std::max(one.second.size(), other.second.size()) > (1 << 18)) return;
  Require(one.first == other.first && (one == other || (!is_exact && one.first != 0)));
}

void CheckText(const std::string& text) {
  const Outcome stream = Stream(text);
  const Outcome integer = Scalar(&ZRTExpression::GetIntegerOperand, text);
  const Outcome real = Scalar(&ZRTExpression::GetFloatOperand, text);
  for (const int status : {stream.first, integer.first, real.first}) {
    Require(status == 0 || (status >= ErrStreamWrite && status <= ErrMissingOperand));
  }
  RequireSame(stream, Stream(text, false, 5), true);
  if (text.find_first_of("(~!$") == std::string::npos)
    RequireSame(stream, Stream(text, true), true);
  int depth = 0;
  const auto nests = [&depth](char c) { return (depth += (c == '(') - (c == ')')) >= 0; };
  if (!std::ranges::all_of(text, nests) || depth != 0) return;
  const std::string grouped = "(" + text + ")";
  RequireSame(stream, Stream(grouped), false);
  RequireSame(integer, Scalar(&ZRTExpression::GetIntegerOperand, grouped), false);
  RequireSame(real, Scalar(&ZRTExpression::GetFloatOperand, grouped), false);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  CheckText(std::string(data, std::find(data, data + size, '\0')));
  return 0;
}
