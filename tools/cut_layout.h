// Where each part of the picture of a cut stands, on a grid of characters: lines from each operand
// down to the value. The same for a terminal and for a page, which draw it each in their way.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reading.h"

struct CutLayout {
  enum class Kind : std::uint8_t {
    kOperandText,   // parts of the text
    kOperatorText,  // and its parentheses
    kUnreadText,
    kPiece,      // "-----" below a piece of the outermost cut
    kPieceName,  // "left", "group", "operand", "right"
    kValue,
    kFailure,   // in the place of a value
    kLine,      // a value goes on
    kOperator,  // "(~)"
    kJoin,      // "+-(*)--+"; an "x" at an end: this side is dropped
  };

  struct Item {
    Kind kind;
    std::size_t row;
    std::size_t column;
    std::string text;  // plain ASCII
  };

  std::vector<std::string> rows;  // all of it as characters
  std::vector<Item> items;
};

/// What there was up to a failure, if the text failed. Nothing if it does not fit into `columns`,
/// has more operations than `most_operations`, or if nothing has been computed.
std::optional<CutLayout> LayOutCut(std::string_view text, const Reading& reading,
                                   std::size_t columns, std::size_t most_operations);
