// What the tests change in their own process, told at one place: memory that is counted and runs
// out on demand, and the locale that ZRT_TEST_LOCALE asks for. Linking the source is enough.
#pragma once

#include <limits>

/// Something that is asked for piece by piece and may run out.
struct Supply {
  static constexpr long kUnlimited = std::numeric_limits<long>::max();

  /// Calls `work` with that many pieces; the next one is refused, or all that follow.
  template <class Work>
  auto RunOut(long pieces, bool for_good, const Work& work) {
    refused_count = 0;
    left = pieces;
    ends_for_good = for_good;
    const auto result = work();
    left = kUnlimited;
    return result;
  }

  bool IsRefused() {
    if (left == kUnlimited) return false;
    if (left > 0) return --left < 0;
    ++refused_count;
    if (!ends_for_good) left = kUnlimited;
    return true;
  }

  long refused_count = 0;
  long left = kUnlimited;
  bool ends_for_good = true;
};

/// The allocations of the calling thread.
struct Memory : Supply {
  long allocation_count = 0;
  long allocated_bytes = 0;
  long live_bytes = 0;  // less what this thread frees for others
};
// NOLINTNEXTLINE(*-avoid-non-const-global-variables)
extern constinit thread_local Memory memory;
