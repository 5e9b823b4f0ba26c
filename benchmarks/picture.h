// A picture of time against size, as SVG, without any library.
#pragma once

#include <string>
#include <vector>

#include "report.h"

namespace zrt_bench {

/// Draws the lines of the rows that have some, a panel for each name of a panel. Throws
/// std::runtime_error if the file cannot be written.
void WritePicture(const std::vector<Row>& rows, const std::string& path);

}  // namespace zrt_bench
