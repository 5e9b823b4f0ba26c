// The picture of a cut for pages: how a text is read, from its operands down to its value. Knows
// neither a terminal nor a file.
#pragma once

#include <string>
#include <string_view>

#include "reading_tree.h"

/// An SVG element, whatever the text: long and deep ones are an indented list. What there was up to
/// a failure is shown, and `failure`, a sentence on it, below. `id` is unique in its page.
std::string CutSvg(std::string_view text, const ReadingTree& tree, std::string_view failure,
                   const std::string& id);
