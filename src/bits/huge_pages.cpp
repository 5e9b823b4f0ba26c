// The one place that asks the operating system for something. What it answers does not matter:
// without huge pages all goes on as it does with them, only slower.
#include "bits/huge_pages.h"

#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace zrt {

void PreferHugePages(void* memory, std::size_t size) {
#if defined(MADV_HUGEPAGE)
  constexpr std::size_t kALot = std::size_t{4} << 20U;  // bytes: a huge page fits in wherever it is
  constexpr std::uintptr_t kPageSize = 4096;            // bytes
  if (size < kALot) return;
  const std::size_t before = reinterpret_cast<std::uintptr_t>(memory) % kPageSize;
  (void)madvise(static_cast<char*>(memory) - before, size + before, MADV_HUGEPAGE);
#else
  (void)memory;
  (void)size;
#endif
}

}  // namespace zrt
