// What the tests change in their own process, told at one place: memory that is counted and runs
// out on demand, and the locale that ZRT_TEST_LOCALE asks for. Linking the source is enough.
#pragma once

#include <limits>

/// The allocations of the calling thread.
struct Memory {
  static constexpr long kUnlimited = std::numeric_limits<long>::max();

  /// Calls `work` with that many allocations; the next one is refused, or all that follow.
  template <class Work>
  auto RunOut(long allocations, bool for_good, const Work& work) {
    refused_count = 0;
    left = allocations;
    ends_for_good = for_good;
    const auto result = work();
    left = kUnlimited;
    return result;
  }

  long allocation_count = 0, refused_count = 0;
  long allocated_bytes = 0;
  long live_bytes = 0;  // less what this thread frees for others
  long left = kUnlimited;
  bool ends_for_good = true;
};
// NOLINTNEXTLINE(*-avoid-non-const-global-variables)
extern constinit thread_local Memory memory;
