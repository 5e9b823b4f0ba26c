// Operators on values whose bytes, lengths and spare bits need not agree, against the reference's:
// chains of them on the working value, single ones on streams of any block size. The first byte
// says which.
#include "fuzz.h"
#include "operator_steps.h"
#include "support.h"

namespace {

using reference::Stream;

Stream TakeStream(Input& input) {
  const int choice = input.Byte(), more = input.Byte();
  if (choice == 0xFF) return reference::FromWord(more - 100);  // a count
  const int bit_length = choice < 0xC0 ? choice : (choice - 0xC0) * 16 + more % 16;
  const int odd_count = more < 160 ? 0 : more / 16 - 12;
  const int byte_count = std::max((bit_length + 7) / 8 + odd_count, 0);
  return {input.Bytes(static_cast<std::size_t>(byte_count)), bit_length};
}

void CompareChain(Input& input) {
  const Stream left = TakeStream(input);
  std::vector<zrt::Step> steps;
  while (input.has_more() && steps.size() < 20) {
    const int choice = input.Byte();
    const int code = choice % 32 > zrt::OpBitReverse + 1 ? +zrt::OpConcat : choice % 32;
    steps.push_back({static_cast<std::uint16_t>(code), TakeStream(input), (choice & 32) != 0,
                     (choice & 64) != 0});
  }
  const std::string difference = zrt::DifferenceAfter(left, steps);
  Require(difference.empty(), difference);
}

void CompareStreams(Input& input, int block_size) try {
  static ZRTExpression expression;
  const BlockSize setting(block_size);
  const std::uint16_t code = input.Byte() % (zrt::OpBitReverse + 2);
  const char op = code < reference::kOperators.size() ? reference::kOperators[code] : '?';
  const int relation = input.Byte() % 4;  // the same stream, none, or two
  Stream model = TakeStream(input);
  const Stream operand = relation == 0 ? model : relation == 1 ? Stream() : TakeStream(input);
  const std::string told = Show(model) + " " + op + " " + Show(operand);
  RowDataStream left, right;
  left.Append(model.bytes);
  left.BitLength = model.bit_length;
  right.Append(operand.bytes);
  right.BitLength = operand.bit_length;
  const int right_status = reference::StatusOf([&] { Apply(model, op, operand); });
  RowDataStream* const given = relation == 0 ? &left : relation == 1 ? nullptr : &right;
  const int status = ExecuteBitStreamOperator(expression, &left, code, given);
  Require(status == right_status && Hex(left) == Show(model) && Hex(right) == Show(operand), told);
} catch (const reference::TooLarge&) {
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  reference::most_bits = 1 << 13;
  Input input(data, size);
  const int choice = input.Byte() % 8;
  if (choice < 3) {
    CompareStreams(input, choice == 0 ? 0 : 1 + 3 * choice);
  } else {
    CompareChain(input);
  }
  return 0;
}
