// The one place where an exception ends. Inside the library exceptions carry exhausted memory and
// nothing else; whatever must not let them pass asks here. Knows nothing of statuses.
#pragma once

#include <new>

namespace zrt {

/// The answer of `work`, or `otherwise` if memory runs out in it. Any other exception is a fault of
/// the program, and ends it.
template <class Work, class Answer>
auto OnExhaustedMemory(Answer otherwise, const Work& work) noexcept -> decltype(work()) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return otherwise;
  }
}

}  // namespace zrt
