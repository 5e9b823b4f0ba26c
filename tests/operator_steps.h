// Chains of operators on a working value and on the reference's streams, compared at the end. Knows
// nothing of where the operands come from.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "bitstream/bit_operators.h"
#include "reference.h"

namespace zrt {

inline BitValue ToValue(const reference::Stream& stream, bool is_borrowed = false) {
  BitValue value;
  value.set_bit_length(stream.bit_length);
  if (is_borrowed) {
    value.Borrow(stream.bytes);
  } else {
    std::ranges::copy(stream.bytes, value.Rebuild(stream.bytes.size()).begin());
  }
  return value;
}

struct Step {
  std::uint16_t code = OpNone;
  reference::Stream right;
  bool is_swapped = false;   // the operand on the left
  bool is_borrowed = false;  // the operand's bytes
};

/// Tells the steps and the difference that they made, "" if there is none. Values are not looked at
/// between the operators, so that they stand shifted and with slack around. What comes out absurdly
/// large is not compared.
inline std::string DifferenceAfter(reference::Stream model, const std::vector<Step>& steps) try {
  std::string told = Show(model);
  BitValue value = ToValue(model);
  OutcomePlace place(nullptr);
  for (const Step& step : steps) {
    if (model.bytes.size() > 500) break;
    reference::Stream right = step.right;
    told += (step.is_swapped ? " after " : " ") + std::to_string(step.code) + " " + Show(right);
    BitValue operand = ToValue(step.right, step.is_borrowed);
    if (step.is_swapped) std::swap(model, right);
    if (step.is_swapped) std::swap(value, operand);
    const char op =
        step.code < reference::kOperators.size() ? reference::kOperators[step.code] : '?';
    const int right_status = reference::StatusOf([&] { reference::Apply(model, op, right); });
    const int status = ApplyToBits(value, step.code, operand, place);
    if (status != right_status) return told + ": status " + std::to_string(status);
  }
  const auto bytes = value.Bytes();
  const std::string shown = reference::Show({
      {bytes.begin(), bytes.end()},
      value.bit_length()
  });
  return shown == Show(model) ? "" : told + ": " + shown + " and not " + Show(model);
} catch (const reference::TooLarge&) {
  return "";
}

}  // namespace zrt
