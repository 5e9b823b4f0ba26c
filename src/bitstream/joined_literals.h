// Hexadecimal literals joined by "@", as run-length texts are: read in one go, without marks, and
// without a value and an operator a literal.
#pragma once

#include <cstddef>
#include <string_view>

#include "bits/bit_value.h"
#include "bitstream/stream_bytes.h"
#include "names/scopes.h"

namespace zrt {

/// Whether `text`, which is not short, begins and ends as ReadJoinedLiterals() wants it: a quick
/// look that finds out most others.
bool MayBeJoinedLiterals(std::string_view text);

struct JoinedLiterals {
  bool are_read = false;       // all of the text
  bool are_a_group = false;    // the first "(" is matched by the text's last character
  std::size_t read_count = 0;  // characters up to where the text turns out to be anything else
};

/// Reads `text` if it is nothing but hexadecimal literals, some of them replicated where a chain
/// begins, joined by "@" and in groups in any way: 0x12@((0x34^40)@0x56). All have as many bits
/// as their bytes, so how they are grouped makes no difference. Each is looked for as a name first,
/// from left to right; one that is there ends the reading, and nothing has happened.
/// @param value empty; stays so unless all of the text is read. A long one is laid into `place`.
/// Throws std::bad_alloc.
JoinedLiterals ReadJoinedLiterals(std::string_view text, const Scopes& scopes, OutcomePlace& place,
                                  BitValue& value);

}  // namespace zrt
