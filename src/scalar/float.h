// Float evaluation: IEEE 754 single precision, rounded at each step.
#pragma once

#include <cstdint>
#include <string_view>

#include "ErrorCodes.h"
#include "names/scopes.h"
#include "solve/watch.h"

namespace zrt {

/// Evaluates `text` (at most kMaxTextLength characters, else ErrStreamWrite). `result` is written
/// on success, and by an operator beside a group that is refused. Throws std::bad_alloc.
template <class Watch = Unwatched>
ZRTStatus SolveFloat(std::string_view text, const Scopes& scopes, float& result, Watch watch = {});

/// Applies a binary operator to `value` in place. @return kOk or ErrInvalidOperator, value
/// unchanged.
ZRTStatus ApplyToFloat(float& value, std::uint16_t code, float operand);

}  // namespace zrt
