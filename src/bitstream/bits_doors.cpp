// The object's doors to bit-vector evaluation: streams outside, working values inside.
#include "ZRTExpression.h"
#include "bitstream/bit_operand.h"
#include "bitstream/bit_operators.h"
#include "bitstream/bits.h"
#include "bitstream/hex_text.h"
#include "bitstream/stream_bytes.h"
#include "frame/guard.h"
#include "frame/scopes.h"

using zrt::BitsOutcome;
using zrt::BitValue;
using zrt::Guarded;

namespace {

int StatusAfterStoring(int status, BitsOutcome& outcome, RowDataStream& result) {
  if (!outcome.is_delivered || StoreValue(result, outcome.value)) return status;
  return status == kOk ? ErrStreamWrite : status;
}

void Load(RowDataStream& stream, BitValue& value) {
  LoadBytes(stream, value);
  value.set_bit_length(stream.BitLength);
}

}  // namespace

int ZRTExpression::GetBitStream(const char* text, RowDataStream* result) {
  return Guarded([&] {
    BitsOutcome outcome;
    const int status = SolveBits(text, CurrentScopes(), result, outcome);
    return StatusAfterStoring(status, outcome, *result);
  });
}

int ZRTExpression::GetBitStream(const char* text, char* hexText) {
  return Guarded([&] {
    BitsOutcome outcome;
    const int status = SolveBits(text, CurrentScopes(), nullptr, outcome);
    if (status == kOk) {
      zrt::WriteHexText(outcome.value.Bytes(), outcome.value.bit_length(), hexText);
    }
    return status;
  });
}

int ZRTExpression::SolveBitStreamExpression(char* text, RowDataStream* result) {
  return Guarded([&] {
    BitsOutcome outcome;
    const int status = SolveBitsChain(text, CurrentScopes(), outcome);
    return StatusAfterStoring(status, outcome, *result);
  });
}

int ZRTExpression::GetBitStreamValue(char* text, RowDataStream* stream) {
  return Guarded([&]() -> int {
    BitValue value;
    const int status = zrt::ReadBits(text, CurrentScopes(), value);
    if (status != kOk && status != ErrStreamWrite) return status;
    stream->BitLength = value.bit_length();
    return zrt::AppendBytes(*stream, value.Bytes()) ? status : ErrStreamWrite;
  });
}

int ZRTExpression::ExecuteBitStreamOperator(RowDataStream* left, unsigned short code,
                                            RowDataStream* right) {
  return Guarded([&]() -> int {
    BitValue value;
    BitValue operand;
    Load(*left, value);
    if (right) Load(*right, operand);
    const int status = zrt::ApplyToBits(value, code, operand);
    const bool is_unchanged = status != kOk && status != ErrStreamWrite;
    return is_unchanged || StoreValue(*left, value) ? status : ErrStreamWrite;
  });
}
