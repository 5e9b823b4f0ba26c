// Packaged evaluators of expressions as contestants. Each is handed the text anew each time, as
// this library is, and keeps what it can keep between texts: its state, its names.
#pragma once

#include <string>

#include "measure.h"

namespace zrt_bench {

enum class Numbers { kInteger, kFloat };

/// "value 43" or "value 2.5", alike for all contestants.
std::string ValueText(double value);

Contestant Fparser(const std::string& text);
Contestant Lua(const std::string& text, Numbers numbers);
Contestant MuParserInt(const std::string& text);
Contestant MuParser(const std::string& text);

}  // namespace zrt_bench
