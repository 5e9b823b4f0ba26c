// The object's entry points to bit-vector evaluation: streams outside, working values inside.
#include "ZRTExpression.h"
#include "bits/digits.h"
#include "bitstream/bit_expression.h"
#include "bitstream/bit_operand.h"
#include "bitstream/bit_operators.h"
#include "bitstream/stream_bytes.h"
#include "names/scopes.h"
#include "object/status_of.h"

using zrt::BitsOutcome;
using zrt::BitValue;
using zrt::OutcomePlace;
using zrt::StatusOf;

namespace {

int StatusAfterStoring(int status, BitsOutcome& outcome, RowDataStream& result) {
  if (outcome.place == BitsOutcome::Place::kNone) return status;
  const bool is_stored = outcome.place == BitsOutcome::Place::kInsteadOfOlder
                             ? ReplaceValue(result, outcome.value)
                             : AddValue(result, outcome.value);
  return is_stored ? status : ErrStreamWrite;
}

// A failure with any other status leaves the value, and so the stream, as it was.
bool MayHaveChangedValue(int status) { return status == zrt::kOk || status == ErrStreamWrite; }

void Load(RowDataStream& stream, BitValue& value) {
  LoadBytes(stream, value);
  value.set_bit_length(stream.BitLength);
}

}  // namespace

int ZRTExpression::GetBitStream(const char* text, RowDataStream* result) {
  return StatusOf([&] {
    BitsOutcome outcome;
    const int status = SolveBits(text, CurrentScopes(), result, outcome);
    return StatusAfterStoring(status, outcome, *result);
  });
}

int ZRTExpression::GetBitStream(const char* text, char* hexText) {
  return StatusOf([&] {
    BitsOutcome outcome;
    const int status = SolveBits(text, CurrentScopes(), nullptr, outcome);
    if (status == zrt::kOk) {
      const char digit_ten = util_Hex2HexAnsi(10);  // its case is the closed library's
      zrt::WriteHexText(outcome.value.Bytes(), outcome.value.bit_length(), digit_ten, hexText);
    }
    return status;
  });
}

int ZRTExpression::SolveBitStreamExpression(char* text, RowDataStream* result) {
  return StatusOf([&] {
    BitsOutcome outcome;
    const int status = SolveBitsChain(text, CurrentScopes(), outcome);
    return StatusAfterStoring(status, outcome, *result);
  });
}

int ZRTExpression::GetBitStreamValue(char* text, RowDataStream* stream) {
  return StatusOf([&]() -> int {
    BitValue value;
    value.set_bit_length(stream->BitLength);  // kept where memory runs out before a field is found
    OutcomePlace place(nullptr);              // the stream keeps what it holds
    const int status = zrt::ReadBits(text, CurrentScopes(), place, value);
    if (!MayHaveChangedValue(status)) return status;
    return AddValue(*stream, value) ? status : ErrStreamWrite;
  });
}

int ZRTExpression::ExecuteBitStreamOperator(RowDataStream* left, unsigned short code,
                                            RowDataStream* right) {
  return StatusOf([&]() -> int {
    BitValue value;
    BitValue operand;
    if (const auto status = zrt::StatusWithoutValues(code)) return *status;
    Load(*left, value);
    if (right) Load(*right, operand);
    OutcomePlace place(nullptr);  // the stream's bytes are an operand
    const int status = zrt::ApplyToBits(value, code, operand, place);
    if (!MayHaveChangedValue(status)) return status;
    return OverwriteByValue(*left, value) ? status : ErrStreamWrite;
  });
}
