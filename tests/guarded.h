// Room for texts and results that ends at an unreadable page. Knows nothing of what is in it.
#pragma once

#include <sys/mman.h>

#include <cstddef>
#include <cstring>
#include <new>
#include <string>

/// What is read or written behind the room ends the program at once, by whatever code.
class GuardedRoom {
 public:
  GuardedRoom() {
    void* place = mmap(nullptr, kSize + kGuard, PROT_READ | PROT_WRITE,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (place == MAP_FAILED) throw std::bad_alloc();
    start_ = static_cast<char*>(place);
    if (mprotect(start_ + kSize, kGuard, PROT_NONE) != 0) throw std::bad_alloc();
  }
  GuardedRoom(const GuardedRoom&) = delete;
  GuardedRoom& operator=(const GuardedRoom&) = delete;
  ~GuardedRoom() { munmap(start_, kSize + kGuard); }

  /// The last so many bytes of the room. Throws std::bad_alloc if it has fewer.
  char* Last(std::size_t byte_count) {
    if (byte_count > kSize) throw std::bad_alloc();
    return start_ + kSize - byte_count;
  }

  /// A copy of `text` up to its first NUL, which ends at the room's end.
  char* Put(const std::string& text) {
    const std::size_t size = std::strlen(text.c_str()) + 1;
    return static_cast<char*>(std::memcpy(Last(size), text.c_str(), size));
  }

  /// What is written to the room from now on ends the program, too.
  void Seal() {
    if (mprotect(start_, kSize, PROT_READ) != 0) throw std::bad_alloc();
  }

 private:
  static constexpr std::size_t kSize = std::size_t{1} << 22, kGuard = std::size_t{1} << 16;

  char* start_ = nullptr;
};
