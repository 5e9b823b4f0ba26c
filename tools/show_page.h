// A bit vector, or two and what differs, as the body of a page. Knows neither a terminal nor a
// file.
#pragma once

#include <string>
#include <string_view>

#include "vector_image.h"

/// The text, the picture, and tables of shares and runs; `id` is unique in the page.
std::string ShowBody(std::string_view text, const VectorImage& image, const std::string& id);

/// The texts, the picture, and a table of what differs.
std::string ComparisonBody(std::string_view text, std::string_view against,
                           const VectorComparison& comparison, const std::string& id);
