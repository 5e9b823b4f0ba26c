// The operators on bit vectors.
#pragma once

#include <cstdint>
#include <optional>

#include "ErrorCodes.h"
#include "bits/bit_value.h"
#include "bitstream/stream_bytes.h"
#include "scan/operators.h"

namespace zrt {

/// The status of an operator that looks at no value, since it does nothing or is none.
std::optional<ZRTStatus> StatusWithoutValues(std::uint16_t code);

/// Whether a concatenation or replication is refused since its result would have more than
/// 2147483647 bits. Known without the left side's bytes, so that none need be loaded for that.
bool IsTooLong(int left_bit_length, std::uint16_t code, BitValue& right);

/// Applies the operator `code` to `left` in place. A right side that is missing is an empty value.
/// `right` may be used up. A long result may get its bytes in `place`.
/// @return kOk; ErrInvalidOperator for a code that is none, or a division by 0 (left unchanged);
///         ErrOperandTooWide where a 32-bit value is needed (left unchanged); ErrStreamWrite for a
///         result beyond 2147483647 bits or without memory (left unchanged), or a store outside the
///         result's bytes (left has its new bytes and its old bit length).
ZRTStatus ApplyToBits(BitValue& left, std::uint16_t code, BitValue& right, OutcomePlace& place);

/// Applies "~", "!" or "$" to `value` in place. Throws std::bad_alloc, leaving it as it was.
void ApplyUnaryToBits(BitValue& value, OperatorCode code, OutcomePlace& place);

}  // namespace zrt
