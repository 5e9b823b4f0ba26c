// The border for exceptions: inside the library they carry exhausted memory only, and none leaves
// it.
#pragma once

#include "ErrorCodes.h"

namespace zrt {

/// The status of `evaluation`, or ErrStreamWrite if memory ran out in it.
template <class Evaluation>
int Guarded(const Evaluation& evaluation) noexcept {
  try {
    return evaluation();
  } catch (...) {
    return ErrStreamWrite;
  }
}

}  // namespace zrt
