// The steps of a reading, for a person and for a script.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "reading.h"

/// A step as a person is told it: operands that are more than a plain number, and operators, with
/// their values.
struct StepWords {
  zrt::Place place;    // of the operand, the operator or what nothing reads
  std::size_t depth;   // 1 in an index
  std::string what;    // "2 + 3 = 5"
  std::string remark;  // where it comes from, what is dropped; or empty
};
std::vector<StepWords> StepsInWords(std::string_view text, const Reading& reading);

/// A line each, numbered from 1. Those of an index are indented.
std::string StepLines(std::string_view text, const Reading& reading);

/// All of them as a JSON array of objects, each with "step".
std::string StepArray(std::string_view text, const Reading& reading);

/// `count` of them from `first` on, as far as they are there, each also in words: what it "does",
/// and a "remark" or "".
std::string ToldStepArray(std::string_view text, const Reading& reading, std::size_t first,
                          std::size_t count);
