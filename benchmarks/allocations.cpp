// The replaced operators cost library and peers one increment each.
#include "allocations.h"

#include <cstdlib>
#include <new>

// NOLINTBEGIN(misc-new-delete-overloads,*-no-malloc,*-avoid-non-const-global-variables)
namespace {
long allocation_count = 0;
}  // namespace

void* operator new(std::size_t size) {
  ++allocation_count;
  if (void* memory = std::malloc(size > 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  ++allocation_count;
  return std::malloc(size > 0 ? size : 1);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return operator new(size, tag);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
// NOLINTEND(misc-new-delete-overloads,*-no-malloc,*-avoid-non-const-global-variables)

namespace zrt_bench {

long AllocationCount() { return allocation_count; }

}  // namespace zrt_bench
