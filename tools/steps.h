// The steps of a reading, for a person and for a script.
#pragma once

#include <string>
#include <string_view>

#include "reading.h"

/// A line each: operands that are more than a plain number, and operators, with their values. Those
/// of an index are indented.
std::string StepLines(std::string_view text, const Reading& reading);

/// All of them as a JSON array of objects, each with "step"; or `count` of them from `first` on, as
/// far as they are there.
std::string StepArray(std::string_view text, const Reading& reading, std::size_t first = 0,
                      std::size_t count = std::string_view::npos);
