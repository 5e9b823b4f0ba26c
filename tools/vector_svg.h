// Pictures of bit vectors for pages. Knows neither a terminal nor a file.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "vector_image.h"

/// An SVG element: bits as cells in short vectors, bytes as cells in longer ones, else a map of how
/// many bits are 1. What each share has given is marked by colours and letters. `text` is what the
/// vector is the value of, `id` unique in its page.
std::string VectorSvg(std::string_view text, const VectorImage& image, const std::string& id);

/// The same of two, with what differs marked.
std::string ComparisonSvg(std::string_view text, const VectorComparison& comparison,
                          const std::string& id);
