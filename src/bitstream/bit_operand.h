// Reading one operand of a bit-vector expression: a row of a data field, a token or a literal.
#pragma once

#include <string_view>

#include "ErrorCodes.h"
#include "bits/bit_value.h"
#include "bitstream/stream_bytes.h"
#include "names/scopes.h"
#include "solve/watch.h"

namespace zrt {

/// What a name stands for: one of these, or nothing.
struct Meaning {
  QLMDataField* field = nullptr;
  bool is_mask = false;
  ZRTTokens* token = nullptr;

  [[nodiscard]] bool is_there() const { return field || is_mask || token; }
};

/// Looks for `name` as bit vectors do. `buffer` holds it as the lookups want it; the token search
/// sees it as the failed second search for a field left it.
Meaning MeaningOf(std::string_view name, char* buffer, const Scopes& scopes);

/// Tells a watcher of it. `buffer` as the search left it.
void NoteMeaning(const Meaning& meaning, char* buffer, const Scopes& scopes, Watcher* watch);

/// Reads `text` into an empty `value`, a long literal into `place`. A row read without an index, or
/// with index 0, moves its field's row pointer on, unless it is the field's only one.
/// @return kOk, ErrMissingArrayName, ErrMissingCloseBracket, ErrEmptyIndex, ErrStrayCloseBracket,
///         ErrNegativeIndex, ErrBadTokenType, ErrUnknownOperand: `value` as it was; ErrStreamWrite
///         if a field has no such row (the bit length is the one told for it), if a hexadecimal
///         literal has more bits than 2147483647, or if memory runs out.
template <class Watch = Unwatched>
ZRTStatus ReadBits(std::string_view text, const Scopes& scopes, OutcomePlace& place,
                   BitValue& value, Watch watch = {});

/// Reads a token or a short literal, whose values do not depend on when they are read. False, with
/// `value` as it was, if `text` is anything else.
bool ReadBitWord(std::string_view text, const Scopes& scopes, BitWord& value);

}  // namespace zrt
