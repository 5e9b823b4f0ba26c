// The operators on bit vectors of a megabit and of 64, into a stream that has its room.
#include <functional>

#include "bits_contestants.h"
#include "subject.h"

namespace zrt_bench {

void AddBits(Subjects* subjects) {
  struct Operator {
    const char* id;
    const char* title;
    std::vector<Contestant> (*make)(std::size_t byte_count);
  };
  static constexpr Operator kOperators[] = {
      {"B1", "row<<3",                     ShiftLeft                                       },
      {"B2", "row&other",                  And                                             },
      {"B3", "~row",                       Not                                             },
      {"B4", "$row",                       Reverse                                         },
      {"B5", "row@other on a byte border", [](std::size_t bytes) { return Join(bytes, 0); }},
      {"B6", "row@other off the border",   [](std::size_t bytes) { return Join(bytes, 5); }},
      {"B7", "13 bits replicated",         ReplicateBits                                   },
      {"B8", "one byte replicated",        ReplicateByte                                   },
  };
  struct Size {
    const char* name;
    std::size_t byte_count;
  };
  static constexpr Size kSizes[] = {
      {"1Mbit",  std::size_t{1} << 17U},
      {"64Mbit", std::size_t{1} << 23U}
  };
  for (const Operator& entry : kOperators) {
    for (const Size& size : kSizes) {
      subjects->push_back(Timed(std::string(entry.id) + "/" + size.name, entry.title,
                                std::bind_front(entry.make, size.byte_count)));
    }
  }
}

}  // namespace zrt_bench
