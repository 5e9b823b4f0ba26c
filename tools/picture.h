// How a text was cut, drawn with lines from each operand down to the value, and the same as an
// indented list for texts that are too long or too deep for that.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "reading_tree.h"

/// The picture, which shows what there was up to a failure. Empty if it does not fit into
/// `columns`, or if nothing has been computed.
std::string CutPicture(std::string_view text, const Reading& reading, std::size_t columns);

/// The list: each operator on a line with its side and its result, sides of several operands
/// indented below it.
std::string CutList(std::string_view text, const ReadingTree& tree);

/// A line of that list, for whoever lays it out otherwise.
struct CutLine {
  std::size_t depth;   // of sides in sides
  std::string symbol;  // the operator; empty in front of a first operand and of ")"
  std::string side;    // the operand, "(" or ")"; long ones are shortened
  std::string value;   // what there is behind it; empty if that needs no telling
};
std::vector<CutLine> CutLines(std::string_view text, const ReadingTree& tree);
