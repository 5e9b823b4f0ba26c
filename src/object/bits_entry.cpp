// The object's entry points to bit-vector evaluation: streams outside, working values inside.
#include "ZRTExpression.h"
#include "bits/digits.h"
#include "bitstream/bit_expression.h"
#include "bitstream/bit_operand.h"
#include "bitstream/bit_operators.h"
#include "bitstream/stream_bytes.h"
#include "names/scopes.h"
#include "object/status_of.h"
#include "object/watched.h"

using zrt::BitsOutcome;
using zrt::BitValue;
using zrt::OutcomePlace;
using zrt::StatusOf;
using zrt::Unwatched;
using zrt::WatchedStatusOf;
using zrt::Watcher;

namespace {

int StatusAfterStoring(int status, BitsOutcome& outcome, RowDataStream& result) {
  if (outcome.place == BitsOutcome::Place::kNone) return status;
  const bool is_stored = outcome.place == BitsOutcome::Place::kInsteadOfOlder
                             ? ReplaceValue(result, outcome.value)
                             : AddValue(result, outcome.value);
  return is_stored ? status : ErrStreamWrite;
}

template <class Watch>
int EvaluateInto(const char* text, const zrt::Scopes& scopes, RowDataStream& result, Watch watch) {
  BitsOutcome outcome;
  const int status = SolveBits(text, scopes, &result, outcome, watch);
  return StatusAfterStoring(status, outcome, result);
}

template <class Watch>
int EvaluateInto(const char* text, const zrt::Scopes& scopes, char* hex_text, Watch watch) {
  BitsOutcome outcome;
  const int status = SolveBits(text, scopes, nullptr, outcome, watch);
  if (status == zrt::kOk) {
    const char digit_ten = util_Hex2HexAnsi(10);  // its case is the closed library's
    zrt::WriteHexText(outcome.value.Bytes(), outcome.value.bit_length(), digit_ten, hex_text);
  }
  return status;
}

// A failure with any other status leaves the value, and so the stream, as it was.
bool MayHaveChangedValue(int status) { return status == zrt::kOk || status == ErrStreamWrite; }

}  // namespace

int ZRTExpression::GetBitStream(const char* text, RowDataStream* result) {
  return StatusOf([&] { return EvaluateInto(text, CurrentScopes(), *result, Unwatched{}); });
}

int ZRTExpression::GetBitStream(const char* text, char* hexText) {
  return StatusOf([&] { return EvaluateInto(text, CurrentScopes(), hexText, Unwatched{}); });
}

int ZRTExpression::WatchBits(const char* text, RowDataStream* result, zrt::Failure* failure,
                             zrt::Observer* observer) {
  return WatchedStatusOf(text, failure, observer, [&](Watcher* watch) {
    return EvaluateInto(text, CurrentScopes(), *result, watch);
  });
}

int ZRTExpression::WatchBits(const char* text, char* hexText, zrt::Failure* failure,
                             zrt::Observer* observer) {
  return WatchedStatusOf(text, failure, observer, [&](Watcher* watch) {
    return EvaluateInto(text, CurrentScopes(), hexText, watch);
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
    // Bit lengths and a count tell whether the result is too long: then nothing else is loaded.
    value.set_bit_length(left->BitLength);
    operand.set_bit_length(right ? right->BitLength : 0);
    if (right && code == zrt::OpReplicate) BorrowBytes(*right, operand);
    if (zrt::IsTooLong(value.bit_length(), code, operand)) return ErrStreamWrite;
    if (right) BorrowBytes(*right, operand);
    LoadBytes(*left, value);
    OutcomePlace place(nullptr);  // the stream's bytes are an operand
    const int status = zrt::ApplyToBits(value, code, operand, place);
    if (!MayHaveChangedValue(status)) return status;
    return OverwriteByValue(*left, value) ? status : ErrStreamWrite;
  });
}
