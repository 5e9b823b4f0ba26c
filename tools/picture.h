// How a text was cut, drawn with lines from each operand down to the value, and the same as an
// indented list for texts that are too long or too deep for that.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "reading_tree.h"

/// The picture, which shows what there was up to a failure. Empty if it does not fit into
/// `columns`, or if nothing has been computed.
std::string CutPicture(std::string_view text, const Reading& reading, std::size_t columns);

/// The list: each operator on a line with its side and its result, sides of several operands
/// indented below it.
std::string CutList(std::string_view text, const ReadingTree& tree);
