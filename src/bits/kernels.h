// Loops over bytes, eight at a time where the bytes allow it. They know no class: a span is a
// number, most significant byte first, and two spans are aligned at their last bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace zrt::kernels {

using Bytes = std::span<std::uint8_t>;
using ConstBytes = std::span<const std::uint8_t>;

/// target |= source << low_bit. `low_bit` is 0 to 7; what does not fit above is dropped. The one
/// kernel that lays bits: concatenation and replication place their pieces with it.
void OrShifted(Bytes target, unsigned low_bit, ConstBytes source);

/// The same with AND; bits of `target` that `source` does not cover keep their values.
void AndShifted(Bytes target, unsigned low_bit, ConstBytes source);

/// bytes <<= bit_count. Zeros come in at the low end.
void ShiftLeft(Bytes bytes, std::size_t bit_count);

/// bytes >>= bit_count. Zeros come in at the high end.
void ShiftRight(Bytes bytes, std::size_t bit_count);

/// Each byte becomes its complement.
void Complement(Bytes bytes);

/// Each byte becomes 1 if it is 0, and else 0.
void NegateEach(Bytes bytes);

/// Mirrors all bits end for end.
void Mirror(Bytes bytes);

/// Repeats the last `period` bytes upward through `bytes`, a multiple of `period` bytes.
void Repeat(Bytes bytes, std::size_t period);

}  // namespace zrt::kernels
