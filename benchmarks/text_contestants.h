// Bit vectors as hexadecimal text, written, read, and both around an operator, each with those who
// do the same, for any number of bytes.
#pragma once

#include <cstddef>
#include <vector>

#include "measure.h"
#include "world.h"

namespace zrt_bench {

/// A row to text, and a literal to a stream.
std::vector<Contestant> WriteHex(std::size_t byte_count);
std::vector<Contestant> ReadHex(std::size_t byte_count);

/// The packaged codec, from bytes to digits and back. What they tell as value is the text with "0x"
/// before it, and the bytes.
Contestant EncodeByModp(const Bytes& bytes);
Contestant DecodeByModp(const Bytes& bytes);

/// `0x...<<3`, and eight literals joined, from text to text.
std::vector<Contestant> ShiftText(std::size_t byte_count);
std::vector<Contestant> JoinText(std::size_t byte_count);

/// `(0x1F@0x2B)<<3`, and `~0x0123456789ABCDEF&0xF0F0F0F0F0F0F0F0`, from text to text.
std::vector<Contestant> ShortJoin();
std::vector<Contestant> ShortMask();

}  // namespace zrt_bench
