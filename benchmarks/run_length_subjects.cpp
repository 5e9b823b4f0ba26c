// Run-length text of 64 MiB, from random bytes to a single run.
#include "run_length_contestants.h"
#include "subject.h"

namespace zrt_bench {

void AddRunLength(Subjects* subjects) {
  constexpr std::size_t kByteCount = std::size_t{64} << 20U;
  struct Entry {
    const char* id;
    const char* title;
    std::vector<Contestant> (*make)(std::size_t byte_count, Runs runs);
    Runs runs;
  };
  static constexpr Entry kEntries[] = {
      {"H4/random", "written: 64 MiB, random, one run", WriteRunLength, Runs::kOne  },
      {"H4/10%",    "written: 10 % in runs of 7 to 40", WriteRunLength, Runs::kTenth},
      {"H4/50%",    "written: 50 % in runs of 7 to 40", WriteRunLength, Runs::kHalf },
      {"H4/equal",  "written: all bytes equal",         WriteRunLength, Runs::kAll  },
      {"H5/random", "read: 64 MiB, random, one run",    ReadRunLength,  Runs::kOne  },
      {"H5/10%",    "read: 10 % in runs of 7 to 40",    ReadRunLength,  Runs::kTenth},
      {"H5/50%",    "read: 50 % in runs of 7 to 40",    ReadRunLength,  Runs::kHalf },
      {"H5/equal",  "read: all bytes equal",            ReadRunLength,  Runs::kAll  },
  };
  for (const Entry& entry : kEntries) {
    subjects->push_back(
        Timed(entry.id, entry.title, [&entry] { return entry.make(kByteCount, entry.runs); }));
  }
}

}  // namespace zrt_bench
