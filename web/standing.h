// Where an evaluation stands with one of its steps, read off what was told of it: the part of the
// text that the step is about, the pieces that this lies in, and the rows that fields have given.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/json_line.h"
#include "tools/reading.h"
#include "tools/scope.h"

/// An object with "at" and "length" of the step, "pieces", the innermost last, each with its
/// "middle", and "rows": the number of the field in `fields`, the row, and the step that took it.
/// Behind the last step stands the failure. Without steps the object is empty.
std::string StandingAt(const Reading& reading, std::size_t step,
                       const std::vector<Scope::NamedField>& fields);
