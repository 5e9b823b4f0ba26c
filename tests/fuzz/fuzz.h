// What the fuzz targets share: each is given bytes, tries what they stand for, and ends the program
// where something does not hold. Knows of no target.
#pragma once

#include <cstdlib>
#include <iostream>

#include "properties.h"

inline void Require(bool holds, std::string_view what) {
  if (holds) return;
  std::cerr << "Does not hold: " << what << '\n';
  std::abort();
}

/// A target of its own that nothing but this property makes.
#define ZRT_FUZZ(...)                                                                 \
  extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) { \
    reference::most_bits = 1 << 13;                                                   \
    const std::string difference = __VA_ARGS__(Input(data, size));                    \
    Require(difference.empty(), difference);                                          \
    return 0;                                                                         \
  }
