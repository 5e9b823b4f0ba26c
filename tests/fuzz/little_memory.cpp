// A few characters ask for gigabits: in the fuzz targets an array beyond some kilobytes finds no
// memory. What a target has to say of the inputs that want no more is told long before.
#include <new>

namespace {

constexpr std::size_t kMostBytes = std::size_t{1} << 17;

}  // namespace

void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return size > kMostBytes ? nullptr : operator new(size, tag);
}
void* operator new[](std::size_t size) {
  return size > kMostBytes ? throw std::bad_alloc() : operator new(size);
}
void operator delete[](void* place) noexcept { operator delete(place); }
void operator delete[](void* place, std::size_t /*size*/) noexcept { operator delete(place); }
