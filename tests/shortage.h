// Runs out of a supply: memory, or over the libraries that are their contracts, bytes and blocks of
// streams. Knows nothing of what is called.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "environment.h"
#include "support.h"

/// Makes the one call of the library that is to run out.
using Caller = std::function<int(const std::function<int()>&)>;

/// `attempt` makes its calls of the library by what it is handed and tells what a caller sees. It
/// is repeated with the first piece refused that it asks for, then the second, and so on until
/// there are enough; each is refused alone, and with all that follow. What is seen is as usual, or
/// `is_failure`, and nothing stays allocated.
template <class Attempt, class IsFailure>
void RunOut(const std::string& what, const Attempt& attempt, const IsFailure& is_failure) {
  const auto usual = attempt(Caller([](const std::function<int()>& call) { return call(); }));
  for (const bool for_good : {false, true}) {
    bool is_short = true;
    for (long pieces = 0; is_short && !testing::Test::HasFailure(); ++pieces) {
      is_short = false;
      const long live_bytes = memory.live_bytes;
      const auto is_right = [&] {
        const auto seen = attempt(Caller([&](const std::function<int()>& call) {
          const int result = Scarce().RunOut(pieces, for_good, call);
          is_short = is_short || Scarce().refused_count > 0;
          return result;
        }));
        return seen == usual || (is_short && is_failure(seen, usual, for_good));
      };
      EXPECT_TRUE(is_right()) << what << " with " << pieces << (for_good ? " and no more" : "");
      EXPECT_EQ(memory.live_bytes, live_bytes) << what << " with " << pieces;
    }
  }
}
