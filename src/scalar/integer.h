// Integer evaluation: 32-bit two's complement, wrapping.
#pragma once

#include <cstdint>
#include <string_view>

#include "ErrorCodes.h"
#include "names/scopes.h"
#include "solve/watch.h"

namespace zrt {

/// Evaluates `text` (at most kMaxTextLength characters, else ErrStreamWrite). `result` is written
/// on success, and by an operator beside a group or a unary operand that is refused. Throws
/// std::bad_alloc.
template <class Watch = Unwatched>
ZRTStatus SolveInteger(std::string_view text, const Scopes& scopes, int& result, Watch watch = {});

/// Applies a binary operator to `value` in place. @return kOk or ErrInvalidOperator, value
/// unchanged.
ZRTStatus ApplyToInteger(int& value, std::uint16_t code, int operand);

}  // namespace zrt
