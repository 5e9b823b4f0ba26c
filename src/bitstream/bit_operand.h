// Reading one operand of a bit-vector expression: a row of a data field, a token or a literal.
#pragma once

#include <string_view>

#include "ErrorCodes.h"
#include "bits/bit_value.h"
#include "bitstream/stream_bytes.h"
#include "names/scopes.h"

namespace zrt {

/// Reads `text` into an empty `value`, a long literal into `place`. A row read without an index, or
/// with index 0, moves its field's row pointer on, unless it is the field's only one.
/// @return kOk, ErrMissingArrayName, ErrMissingCloseBracket, ErrEmptyIndex, ErrStrayCloseBracket,
///         ErrNegativeIndex, ErrBadTokenType, ErrUnknownOperand: `value` as it was; ErrStreamWrite
///         if a field has no such row (the bit length is the one told for it), if a hexadecimal
///         literal has more bits than 2147483647, or if memory runs out.
ZRTStatus ReadBits(std::string_view text, const Scopes& scopes, OutcomePlace& place,
                   BitValue& value);

}  // namespace zrt
