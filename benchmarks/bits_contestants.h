// The operators on long bit vectors, each with those who do the same, for vectors of any number of
// bytes (a multiple of 8). What is timed is the operator: all have their rows and the room for the
// result beforehand, but for those whose interface gives a new value each time.
#pragma once

#include <cstddef>
#include <vector>

#include "measure.h"

namespace zrt_bench {

std::vector<Contestant> ShiftLeft(std::size_t byte_count);
std::vector<Contestant> And(std::size_t byte_count);
std::vector<Contestant> Not(std::size_t byte_count);
std::vector<Contestant> Reverse(std::size_t byte_count);

/// Two rows of so many bytes; `spare_bits` of the right one's do not count, which moves the left
/// one off the border between bytes.
std::vector<Contestant> Join(std::size_t byte_count, int spare_bits);

/// Patterns repeated to so many bytes, or to the last whole pattern before.
std::vector<Contestant> ReplicateBits(std::size_t byte_count);
std::vector<Contestant> ReplicateByte(std::size_t byte_count);

}  // namespace zrt_bench
