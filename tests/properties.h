// What must hold of operators and run-length texts for any bytes, against the reference: fuzz
// targets and tests try the same. Each property tells the difference that it finds, "" for none.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "DataExpression.h"
#include "bitstream/bit_operators.h"
#include "guarded.h"
#include "support.h"

/// Numbers from the bytes of an input, zeros behind its end.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

  bool has_more() const { return next_ < end_; }
  std::uint8_t Byte() { return has_more() ? *next_++ : std::uint8_t{0}; }
  std::string Rest() { return {next_, end_}; }

 private:
  const std::uint8_t *next_, *end_;
};

/// A count, or bytes and a bit length; every second one of these is tidy, with the bytes that its
/// length needs and no spare bits.
inline Stream TakeStream(Input& input) {
  const int choice = input.Byte(), more = input.Byte();
  if (choice >= 0xF0) return reference::FromWord(more - 2);
  const int bit_length = choice < 0xC0 ? choice : (choice - 0xC0) * 16 + more % 16;
  const int odd_count = more < 160 ? 0 : more / 16 - 12;
  Stream stream{Bytes(static_cast<std::size_t>(std::max((bit_length + 7) / 8 + odd_count, 0))),
                bit_length};
  for (std::uint8_t& byte : stream.bytes) byte = input.Byte();
  if (more < 128 && bit_length % 8 != 0)
    stream.bytes[0] &= static_cast<std::uint8_t>((1U << bit_length % 8) - 1);
  return stream;
}

struct Step {
  std::uint16_t code = zrt::OpNone;
  Stream right;
  bool is_swapped = false;   // the operand on the left
  bool is_borrowed = false;  // the operand's bytes
};

inline char ReferenceOperator(std::uint16_t code) {
  return code < reference::kOperators.size() ? reference::kOperators[code] : '?';
}

inline zrt::BitValue ToValue(const Stream& stream, bool is_borrowed = false) {
  zrt::BitValue value;
  value.set_bit_length(stream.bit_length);
  if (is_borrowed) {
    value.Borrow(stream.bytes);
  } else {
    std::ranges::copy(stream.bytes, value.Rebuild(stream.bytes.size()).begin());
  }
  return value;
}

/// A chain of operators on a working value. It is not looked at between them, so that it stands
/// shifted and with slack around. What comes out absurdly large is not compared.
inline std::string DifferenceAfter(Stream model, const std::vector<Step>& steps) try {
  const auto told = [&steps, given = model] {
    std::string text = Show(given);
    for (const auto& [code, operand, is_swapped, is_borrowed] : steps) {
      text += (is_swapped ? " after " : " ") + std::to_string(code) + " " + Show(operand);
    }
    return text + ": ";
  };
  zrt::BitValue value = ToValue(model);
  zrt::OutcomePlace place(nullptr);
  for (const auto& [code, operand, is_swapped, is_borrowed] : steps) {
    if (model.bytes.size() > 500) break;
    Stream right = operand;
    zrt::BitValue right_value = ToValue(operand, is_borrowed);
    if (is_swapped) std::swap(model, right);
    if (is_swapped) std::swap(value, right_value);
    const int right_status =
        reference::StatusOf([&, code = code] { Apply(model, ReferenceOperator(code), right); });
    const int status = ApplyToBits(value, code, right_value, place);
    if (status != right_status) return told() + "status " + std::to_string(status);
  }
  const auto bytes = value.Bytes();
  const Stream result{
      {bytes.begin(), bytes.end()},
      value.bit_length()
  };
  return result == model ? "" : told() + Show(result) + " and not " + Show(model);
} catch (const reference::TooLarge&) {
  return "";
}

/// One operator on streams, which may be the same one, or none on the right.
inline std::string DifferenceOnStreams(std::uint16_t code, Stream model, const Stream& operand,
                                       bool is_same, bool is_none) try {
  const Stream before = model;
  ZRTExpression expression;
  RowDataStream left, right;
  Fill(left, model);
  Fill(right, operand);
  const Stream given = is_same ? model : is_none ? Stream() : operand;
  const int right_status =
      reference::StatusOf([&] { Apply(model, ReferenceOperator(code), given); });
  RowDataStream* const other = is_same ? &left : is_none ? nullptr : &right;
  const int status = expression.ExecuteBitStreamOperator(&left, code, other);
  if (status == right_status && StreamOf(left) == model && StreamOf(right) == operand) return "";
  return Show(before) + " " + std::to_string(code) + " " + Show(operand) + ": " + Show(left);
} catch (const reference::TooLarge&) {
  return "";
}

/// Either of them; the first byte says which.
inline std::string OperatorsDiffer(Input input) {
  const int choice = input.Byte() % 8;
  const Stream left = TakeStream(input);
  std::vector<Step> steps;
  do {
    const int step = input.Byte();
    const int code = step % 32 > zrt::OpBitReverse + 1 ? +zrt::OpConcat : step % 32;
    steps.push_back(
        {static_cast<std::uint16_t>(code), TakeStream(input), (step & 32) != 0, (step & 64) != 0});
  } while (input.has_more() && steps.size() < 20);
  if (choice > 2) return DifferenceAfter(left, steps);
  const BlockSize setting(choice == 0 ? 0 : 1 + 3 * choice);
  return DifferenceOnStreams(steps[0].code, left, steps[0].right, steps[0].is_swapped,
                             steps[0].is_borrowed);
}

/// The run-length text of `bytes`, from blocks of that size: the reference's, in no more room than
/// is documented, which reads back.
inline std::string RunLengthsDiffer(const Bytes& bytes, int block_size) {
  reference::closed = kClosed;
  static GuardedRoom room;
  ZRTExpression expression;
  const BlockSize setting(block_size);
  LByteBuffer data;
  RowDataStream stream;
  Fill(data, bytes);
  char* const text = room.Last(2 * bytes.size() + 3);
  fnGetDataExpression(&data, text);
  const std::string right = reference::RunLengthText(bytes);
  if (text != right || BytesOf(data) != bytes) return text + (" and not " + right);
  if (right.empty()) return "";
  const int status = expression.GetBitStream(text, &stream);
  const Stream whole{bytes, static_cast<int>(8 * bytes.size())};
  return status == 0 && StreamOf(stream) == whole ? "" : text + (" reads as " + Show(stream));
}

/// Each two bytes are a byte and how many of it, so that runs are common; at most about so many.
inline std::string RunLengthsDiffer(Input input, std::size_t most_bytes = 300) {
  const int block_size = input.Byte() % 16;  // those below 4 are 4, and 0 grows
  Bytes bytes;
  while (input.has_more() && bytes.size() < most_bytes) {
    const std::uint8_t byte = input.Byte(), choice = input.Byte();
    const std::size_t count = choice % 8 == 7 ? choice : 1 + choice % 9;
    bytes.insert(bytes.end(), count, byte);
  }
  return RunLengthsDiffer(bytes, block_size);
}
