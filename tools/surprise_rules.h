// What the rules of surprises look at. Shared by the files of surprises, and by nothing else.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hints.h"
#include "reading_text.h"
#include "reading_tree.h"

struct Seen {
  std::string_view text;
  zrt::ValueKind kind;
  const Reading& reading;
  const ReadingTree& tree;
  std::map<const QLMDataField*, int> times_read;  // without an index, so far

  [[nodiscard]] std::string Part(zrt::Place place) const {
    return std::string(PartOf(text, place));
  }
};

/// Adds what is surprising in an operand (surprise_operand.cpp).
void AddOperandSurprises(const Seen& seen, const Reading::Operand& operand,
                         std::vector<Hint>* hints);
