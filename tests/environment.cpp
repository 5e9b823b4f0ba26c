// The allocation functions of a test program, and its locale.
#include "environment.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <clocale>
#include <cstdlib>
#include <new>

// NOLINTNEXTLINE(*-avoid-non-const-global-variables)
constinit thread_local Memory memory;

namespace {

// NOLINTBEGIN(misc-new-delete-overloads,*-no-malloc)
long SizeOf(void* place) { return static_cast<long>(malloc_usable_size(place)); }

void* Allocate(std::size_t size) noexcept {
  ++memory.allocation_count;
  memory.allocated_bytes += static_cast<long>(size);
  void* place = memory.IsRefused() ? nullptr : std::malloc(size > 0 ? size : 1);
  memory.live_bytes += SizeOf(place);
  return place;
}

void Free(void* place) noexcept {
  memory.live_bytes -= SizeOf(place);
  std::free(place);
}

// One run of all tests asks for a locale that writes numbers with a comma.
class Locale : public testing::Environment {
  void SetUp() override {
    const char* name = std::getenv("ZRT_TEST_LOCALE");
    ASSERT_TRUE(!name || std::setlocale(LC_ALL, name)) << name;
  }
};
[[maybe_unused]] const auto* const kLocale = testing::AddGlobalTestEnvironment(new Locale);

}  // namespace

void* operator new(std::size_t size) {
  if (void* place = Allocate(size)) return place;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return Allocate(size);
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return Allocate(size);
}
void operator delete(void* place) noexcept { Free(place); }
void operator delete(void* place, std::size_t /*size*/) noexcept { Free(place); }
void operator delete[](void* place) noexcept { Free(place); }
void operator delete[](void* place, std::size_t /*size*/) noexcept { Free(place); }
// NOLINTEND(misc-new-delete-overloads,*-no-malloc)
