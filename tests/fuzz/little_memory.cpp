// Where the memory of a run comes from. A few characters ask for gigabits: an array beyond some
// kilobytes finds no memory, and what a target has to say of the inputs that want no more is told
// long before. The reference asks for so many small blocks that having the sanitizer watch them
// would cost more than all else: it gets them from a pool, which each run begins anew.
#include <array>
#include <cstddef>
#include <cstdlib>
#include <new>

#include "fuzz.h"

// NOLINTBEGIN(cppcoreguidelines-no-malloc,cppcoreguidelines-avoid-non-const-global-variables)
namespace {

constexpr std::size_t kMostBytes = std::size_t{1} << 14;

alignas(std::max_align_t) std::array<std::byte, std::size_t{1} << 22> pool;
std::size_t taken = 0;  // bytes of the pool
bool is_run = false;

}  // namespace

Run::Run() {
  taken = 0;
  is_run = true;
}
Run::~Run() { is_run = false; }

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  const std::size_t rounded = (size + alignof(std::max_align_t)) & ~(alignof(std::max_align_t) - 1);
  if (!reference::is_at_work || rounded > pool.size() - taken) return std::malloc(size);
  return &pool[(taken += rounded) - rounded];
}
void* operator new(std::size_t size) {
  void* const place = operator new(size, std::nothrow);
  return place == nullptr ? throw std::bad_alloc() : place;
}
void operator delete(void* place) noexcept {
  const auto* const byte = static_cast<std::byte*>(place);
  const bool is_of_pool =
      std::less_equal<>()(pool.data(), byte) && std::less<>()(byte, pool.data() + pool.size());
  if (!is_of_pool) std::free(place);
}
void operator delete(void* place, std::size_t /*size*/) noexcept { operator delete(place); }

void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return is_run && size > kMostBytes ? nullptr : operator new(size, tag);
}
void* operator new[](std::size_t size) {
  return is_run && size > kMostBytes ? throw std::bad_alloc() : operator new(size);
}
void operator delete[](void* place) noexcept { operator delete(place); }
void operator delete[](void* place, std::size_t /*size*/) noexcept { operator delete(place); }
// NOLINTEND(cppcoreguidelines-no-malloc,cppcoreguidelines-avoid-non-const-global-variables)
