// Large memory in large pages, where the platform has them. Knows nothing of what the memory holds.
#pragma once

#include <cstddef>

namespace zrt {

/// Asks for huge pages behind `size` bytes of memory that was just got, if that is a lot: the first
/// touch of each small page costs more than most work on the bytes in it.
void PreferHugePages(void* memory, std::size_t size);

}  // namespace zrt
