// The border of the library: each entry point that may run out of memory does its work in here.
#pragma once

#include "ErrorCodes.h"
#include "bits/exhausted_memory.h"

namespace zrt {

/// The status of `work`, or ErrStreamWrite if memory runs out in it.
template <class Work>
int StatusOf(const Work& work) noexcept {
  return OnExhaustedMemory(int{ErrStreamWrite}, [&]() -> int { return work(); });
}

}  // namespace zrt
