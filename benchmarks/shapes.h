// Shapes of texts of any length: some piece before, one in the middle, some piece behind, as many
// of the one as of the other. What they cost in time and in memory is to grow with their length.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "measure.h"

namespace zrt_bench {

enum class Kind { kInteger, kFloat, kBits };

struct Shape {
  const char* panel = "";  // of the picture
  const char* name = "";
  Kind kind = Kind::kInteger;
  const char* before = "";
  const char* middle = "";
  const char* behind = "";
  int value_of_piece = 0;   // a number, or bits: what each piece adds ...
  int value_of_middle = 0;  // ... to what the middle gives
  int status = 0;           // or the failure that is right
};

const std::vector<Shape>& Shapes();

/// A text of that shape of about so many bytes.
std::string TextOf(const Shape& shape, std::size_t text_bytes);

/// The bytes that the result of such a text takes.
std::size_t ResultBytes(const Shape& shape, std::size_t text_bytes);

/// The library at such a text. It tells no value, but throws std::runtime_error at a wrong one.
Contestant ShapeContestant(const Shape& shape, std::size_t text_bytes);

/// The library, and a copy of the text.
std::vector<Contestant> ShapeContestants(const Shape& shape, std::size_t text_bytes);

}  // namespace zrt_bench
