// Peak memory is measured in a process of its own, which does nothing else: this program called
// again, with the shape and the length of one text.
#pragma once

#include <cstddef>
#include <string>

namespace zrt_bench {

/// Evaluates a text of that shape and prints by how many bytes the process grew at most, the result
/// among them. Returns the exit status of the process.
int PrintPeakMemory(std::size_t shape_index, std::size_t text_bytes);

}  // namespace zrt_bench
