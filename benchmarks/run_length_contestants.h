// Run-length text of any number of bytes, written and read back, beside the packaged codec, which
// knows no runs, on the same bytes.
#pragma once

#include <cstddef>
#include <vector>

#include "measure.h"

namespace zrt_bench {

/// How much of the bytes lies in runs.
enum class Runs { kOne, kTenth, kHalf, kAll };

std::vector<Contestant> WriteRunLength(std::size_t byte_count, Runs runs);
std::vector<Contestant> ReadRunLength(std::size_t byte_count, Runs runs);

}  // namespace zrt_bench
