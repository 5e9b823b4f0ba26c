// Bit vectors from text to text, to text, and from text.
#include "subject.h"
#include "text_contestants.h"

namespace zrt_bench {

void AddBitTexts(Subjects* subjects) {
  constexpr std::size_t kKiB = 1024, kMiB = 1024 * kKiB;
  subjects->push_back(Timed("B9/join", "(0x1F@0x2B)<<3, text to text", ShortJoin));
  subjects->push_back(Timed("B9/mask", "~0x0123456789ABCDEF&0xF0F0F0F0F0F0F0F0", ShortMask));
  struct Entry {
    const char* id;
    const char* title;
    std::vector<Contestant> (*make)(std::size_t byte_count);
    std::size_t byte_count;
  };
  static constexpr Entry kEntries[] = {
      {"B10/1Mbit",  "literal<<3, text to text",   ShiftText, kMiB / 8 },
      {"B10/64Mbit", "literal<<3, text to text",   ShiftText, 8 * kMiB },
      {"B11/1Mbit",  "8 literals joined, to text", JoinText,  kMiB / 8 },
      {"B11/64Mbit", "8 literals joined, to text", JoinText,  8 * kMiB },
      {"H1/1KiB",    "row to hexadecimal text",    WriteHex,  kKiB     },
      {"H1/1MiB",    "row to hexadecimal text",    WriteHex,  kMiB     },
      {"H1/64MiB",   "row to hexadecimal text",    WriteHex,  64 * kMiB},
      {"H2/1KiB",    "literal to stream",          ReadHex,   kKiB     },
      {"H2/1MiB",    "literal to stream",          ReadHex,   kMiB     },
      {"H2/64MiB",   "literal to stream",          ReadHex,   64 * kMiB},
  };
  for (const Entry& entry : kEntries) {
    subjects->push_back(
        Timed(entry.id, entry.title, [&entry] { return entry.make(entry.byte_count); }));
  }
}

}  // namespace zrt_bench
