// What the fuzz targets share: each is given bytes, tries what they stand for, and ends the program
// where something does not hold. Knows of no target.
#pragma once

#include <cstdlib>
#include <functional>
#include <iostream>
#include <string_view>

#include "properties.h"

/// A run is to be short: of what is dear, or alike, it tries one part in kTurns. Which, a hash of
/// the input says, so that each part meets texts of all kinds. A replay gives all of them a turn.
constexpr std::size_t kTurns = 16;
inline std::size_t turn = 0;    // NOLINT(*-avoid-non-const-global-variables): of the run
inline bool is_replay = false;  // NOLINT(*-avoid-non-const-global-variables): of the program

/// In its lifetime memory is as scarce as little_memory.cpp has it.
struct Run {
  Run();
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;
  ~Run();
};

inline void Require(bool holds, std::string_view what) {
  if (holds) return;
  std::cerr << "Does not hold: " << what << '\n';
  std::abort();
}

/// A target that tries this property.
#define ZRT_FUZZ(...)                                                                        \
  extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {        \
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);                 \
    const std::size_t chosen = std::hash<std::string_view>()(bytes) % kTurns;                \
    for (turn = is_replay ? 0 : chosen; turn <= (is_replay ? kTurns - 1 : chosen); ++turn) { \
      const Run run;                                                                         \
      reference::most_bits = turn == 0 ? 1 << 13 : 1 << 10;                                  \
      const std::string difference = __VA_ARGS__(Input(data, size));                         \
      Require(difference.empty(), difference);                                               \
    }                                                                                        \
    return 0;                                                                                \
  }
