// Writing bytes as run-length text.
#pragma once

#include <cstdint>
#include <span>

namespace zrt {

/// Writes `bytes` as fnGetDataExpression() tells it, NUL-terminated, into a buffer of at least
/// 2 * bytes.size() + 3 characters. `digit_ten` is the hexadecimal digit for ten, "A" or "a".
void WriteRunLengthText(std::span<const std::uint8_t> bytes, char digit_ten, char* text);

}  // namespace zrt
