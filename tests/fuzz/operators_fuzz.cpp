// Operators on values whose bytes, lengths and spare bits need not agree, against the reference's:
// chains of them on the working value, single ones on streams of any block size, on integers and on
// floats. The first byte says which.
#include <bit>
#include <cmath>

#include "fuzz.h"
#include "operator_steps.h"
#include "support.h"

namespace {

using reference::Stream;
using zrt::OpBitReverse;
using zrt::OpConcat;

Stream TakeStream(Input& input) {
  const int choice = input.Byte(), more = input.Byte();
  if (choice == 0xFF) return reference::FromWord(static_cast<std::int8_t>(more));  // a count
  const int bit_length = choice < 0xC0 ? choice : (choice - 0xC0) * 16 + more % 16;
  const int odd_count = more >> 4 < 10 ? 0 : (more >> 4) - 12;
  return {input.Bytes(std::size_t(std::max((bit_length + 7) / 8 + odd_count, 0))), bit_length};
}

std::uint16_t TakeCode(Input& input) { return input.Byte() % (OpBitReverse + 2); }

char OperatorOf(std::uint16_t code) {
  return code < reference::kOperators.size() ? reference::kOperators[code] : '?';
}

void CheckChain(Input& input) {
  const Stream left = TakeStream(input);
  std::vector<zrt::Step> steps;
  while (input.has_more() && steps.size() < 20) {
    const std::uint8_t choice = input.Byte();
    const auto code = std::uint16_t(choice % 32 > OpBitReverse + 1 ? +OpConcat : choice % 32);
    steps.push_back({code, TakeStream(input), choice / 32 % 2 != 0, choice / 64 % 2 != 0});
  }
  const std::string difference = zrt::DifferenceAfter(left, steps);
  Require(difference.empty(), difference);
}

void CheckStreams(Input& input, int block_size) try {
  static ZRTExpression expression;
  const BlockSize setting(block_size);
  const std::uint16_t code = TakeCode(input);
  const int relation = input.Byte() % 4;  // same, none, or two
  Stream model = TakeStream(input);
  const Stream operand = relation == 0 ? model : relation == 1 ? Stream() : TakeStream(input);
  RowDataStream left, right;
  Append(left, model.bytes);
  left.BitLength = model.bit_length;
  Append(right, operand.bytes);
  right.BitLength = operand.bit_length;
  const std::string told = Show(model) + " " + std::to_string(code) + " " + Show(operand);
  const int right_status = reference::StatusOf([&] { Apply(model, OperatorOf(code), operand); });
  RowDataStream* const given = relation == 0 ? &left : relation == 1 ? nullptr : &right;
  const int status = ExecuteBitStreamOperator(expression, &left, code, given);
  Require(status == right_status && Hex(left) == Show(model) && Hex(right) == Show(operand), told);
} catch (const reference::TooLarge&) {
}

template <class Number, class Execute>
void CheckNumbers(Input& input, Execute execute) {
  static ZRTExpression expression;
  const std::uint16_t code = TakeCode(input);
  Number value = std::bit_cast<Number>(input.Word()), model = value;
  const auto operand = std::bit_cast<Number>(input.Word());
  const int right_status =
      reference::StatusOf([&] { reference::Apply(model, OperatorOf(code), operand); });
  const int status = execute(expression, &value, code, operand);
  const bool is_same = std::bit_cast<int>(value) == std::bit_cast<int>(model);
  Require(status == right_status && (is_same || (value != value && model != model)),
          std::to_string(code) + " " + std::to_string(operand));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  reference::most_bits = 1 << 13;
  Input input(data, size);
  switch (const int choice = input.Byte() % 8) {
    case 0: CheckNumbers<int>(input, ExecuteIntegerOperator); break;
    case 1: CheckNumbers<float>(input, ExecuteFloatOperator); break;
    case 2:
    case 3:
    case 4: CheckStreams(input, choice == 2 ? 0 : choice == 3 ? 4 : 7); break;
    default: CheckChain(input);
  }
  return 0;
}
