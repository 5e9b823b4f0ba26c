// Loops over bytes, 32 at a time where the bytes allow it. They know no class: a span is a number,
// most significant byte first. A target may be its own source, byte for byte, but not overlap it
// otherwise.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace zrt::kernels {

using Bytes = std::span<std::uint8_t>;
using ConstBytes = std::span<const std::uint8_t>;

/// target = source << low_bit, from the low end on, over source.size() bytes and, if `low_bit` is
/// not 0, one more, as far as the target has them. `low_bit` is 0 to 7. The kernel that lays
/// pieces.
void Lay(Bytes target, unsigned low_bit, ConstBytes source);

/// target |= source << low_bit, in the same way.
void OrShifted(Bytes target, unsigned low_bit, ConstBytes source);

/// target &= source << low_bit, in the same way; bits that `source` does not cover stay. `low_bit`
/// is 1 to 7: a number that stands unshifted takes And().
void AndShifted(Bytes target, unsigned low_bit, ConstBytes source);

/// target = left & right, target = left | right, in the low bytes that `right` has; above them the
/// bytes of `left`. Target and left are of equal size, right of no larger one.
void And(Bytes target, ConstBytes left, ConstBytes right);
void Or(Bytes target, ConstBytes left, ConstBytes right);

/// target = source << bit_count. Zeros come in at the low end. Equal sizes.
void ShiftLeft(Bytes target, ConstBytes source, std::size_t bit_count);

/// target = source >> bit_count. Zeros come in at the high end. Equal sizes.
void ShiftRight(Bytes target, ConstBytes source, std::size_t bit_count);

/// Each byte becomes its complement. Equal sizes.
void Complement(Bytes target, ConstBytes source);

/// Each byte becomes 1 if it is 0, and else 0. Equal sizes.
void NegateEach(Bytes target, ConstBytes source);

/// All bits end for end. Equal sizes.
void Mirror(Bytes target, ConstBytes source);

/// Repeats the first `period` bytes through `bytes`, which have one period at least.
void Repeat(Bytes bytes, std::size_t period);

}  // namespace zrt::kernels
