// The steps of a reading, for a person and for a script.
#pragma once

#include <string>
#include <string_view>

#include "reading.h"

/// A line each: operands that are more than a plain number, and operators, with their values. Those
/// of an index are indented.
std::string StepLines(std::string_view text, const Reading& reading);

/// All of them as a JSON array of objects, each with "step".
std::string StepArray(std::string_view text, const Reading& reading);
