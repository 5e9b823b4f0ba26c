// Bit-vector evaluation.
#pragma once

#include <cstdint>
#include <string_view>

#include "ErrorCodes.h"
#include "RowDataStream.h"
#include "bits/bit_value.h"
#include "names/scopes.h"
#include "solve/watch.h"

namespace zrt {

/// What an evaluation leaves of its result.
struct BitsOutcome {
  enum class Place : std::uint8_t { kNone, kBehindOlder, kInsteadOfOlder };

  static constexpr Place PlaceOf(bool is_added) {
    return is_added ? Place::kBehindOlder : Place::kInsteadOfOlder;
  }

  BitValue value;
  Place place = Place::kNone;  // none: the result is not touched
};

/// Evaluates `text` (at most kMaxTextLength characters, else ErrStreamWrite). Where the text has a
/// group or a unary operator, the value comes behind the bytes of `older`, which may be null. The
/// operators beside that group work on those bytes too, and the outcome then holds them.
/// Throws std::bad_alloc before anything is delivered.
template <class Watch = Unwatched>
ZRTStatus SolveBits(std::string_view text, const Scopes& scopes, LByteBuffer* older,
                    BitsOutcome& outcome, Watch watch = {});

/// Evaluates `text` as one chain of operands, whatever it holds.
ZRTStatus SolveBitsChain(std::string_view text, const Scopes& scopes, BitsOutcome& outcome);

}  // namespace zrt
