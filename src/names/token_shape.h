// The type codes of tokens. Each shape has two codes, which are read alike.
#pragma once

#include <cstdint>

namespace zrt {

enum class TokenShape : std::uint8_t { kUnknown, kFloat, kInteger, kFloatArray, kIntegerArray };

constexpr TokenShape ShapeOfToken(unsigned type_code) {
  switch (type_code) {
    case 1:
    case 3: return TokenShape::kFloat;
    case 2:
    case 4: return TokenShape::kInteger;
    case 5:
    case 7: return TokenShape::kFloatArray;
    case 6:
    case 8: return TokenShape::kIntegerArray;
    default: return TokenShape::kUnknown;
  }
}

}  // namespace zrt
