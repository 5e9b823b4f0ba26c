// Counts what the program asks operator new for.
#pragma once

namespace zrt_bench {

long AllocationCount();

}  // namespace zrt_bench
