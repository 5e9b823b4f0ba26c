// Pictures of bit vectors for terminals, in plain characters; colours say nothing that these do
// not.
#pragma once

#include <optional>
#include <string>

#include "diagnostic.h"
#include "vector_image.h"

/// Lines within `style.columns`: bits in short vectors, bytes in longer ones, else a map of how
/// many bits are 1, with the longest runs. What each share has given is marked by letters. With a
/// window the bytes of that alone, bit by bit or byte by byte; it must not go beyond the vector,
/// but may be empty.
std::string VectorText(const VectorImage& image, const std::optional<ByteRange>& window,
                       const Style& style);

/// The same of two, with what differs marked; a window counts pairs.
std::string ComparisonText(const VectorComparison& comparison,
                           const std::optional<ByteRange>& window, const Style& style);
