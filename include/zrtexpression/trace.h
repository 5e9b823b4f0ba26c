// Watching an evaluation: an observer is told what is cut, read and computed, in the order in which
// it happens. There is no second evaluation behind it: fields give the rows that they give anyway.
//
//   struct Printer : zrt::Observer {
//     void OnOperand(const zrt::OperandEvent& event) noexcept override {
//       std::cout << event.place.offset << ": " << event.value.integer << "\n";
//     }
//   };
//   Printer printer;
//   expression.WatchInteger("(size+1)*2", &value, nullptr, &printer);  // 1: 8, 6: 1, 9: 2
//
// Values are numbered from 0 as operands are read. What an operator computes keeps the number of
// its left side, that of a unary operator the number of its operand. So a table of values by
// number, with each OnOperand and OnResult written into it, is the evaluation replayed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "zrtexpression/export.h"
#include "zrtexpression/failure.h"

class LByteBuffer;
class QLMDataField;
class ZRTTokens;

namespace zrt {

enum class ValueKind : std::uint8_t { kInteger, kFloat, kBits };

/// A value as an event shows it. Good during the call.
struct ValueView {
  ValueKind kind = ValueKind::kInteger;
  int integer = 0;             // of an integer
  float floating = 0;          // of a float
  int bit_length = 0;          // of a bit vector
  std::size_t byte_count = 0;  // of a bit vector; may be more or less than its length needs

  /// Copies `count` bytes of a bit vector from `first` on, most significant first, to `to`. They
  /// must be there. Takes time in proportion to `count`.
  ZRT_EXPORT void CopyBytes(std::size_t first, std::size_t count, std::uint8_t* to) const;

  const void* bits = nullptr;  // the library's own
};

using ValueNumber = std::uint32_t;

/// A piece of the text is cut, or runs as a chain.
struct CutEvent {
  enum class By : std::uint8_t { kGroup, kUnary, kChain };

  By by = By::kChain;
  Place piece;
  Place middle;  // from "(" through ")"; the unary operator and its operand; of a chain all of it
};

/// An operand has been read, or is named (ZRTExpression::GetNames), and then has no value.
struct OperandEvent {
  enum class Meaning : std::uint8_t { kUnknown, kLiteral, kToken, kField, kMaskName };
  enum class Literal : std::uint8_t { kNone, kDecimal, kFraction, kHexadecimal, kBinary };
  enum class Scope : std::uint8_t { kNone, kLocal, kGlobal, kExternal };

  Place place;                          // all of it, as it was read
  Place name;                           // the name or literal alone
  Place index;                          // the text in brackets without blanks at its ends
  Place unread;                         // what stands behind "]" and is not looked at
  Meaning meaning = Meaning::kUnknown;  // unknown: GetNames alone
  Literal literal = Literal::kNone;     // of a literal; "1." and "1e" are decimal
  Scope scope = Scope::kNone;           // of a token or field
  bool has_index = false;
  int index_status = 0;  // bit vectors go on with the value of an index that failed
  int index_value = -1;
  ZRTTokens* token = nullptr;     // of a token
  QLMDataField* field = nullptr;  // of a data field
  LByteBuffer* row = nullptr;     // the row that the field gave
  ValueNumber number = 0;
  ValueView value;
};

/// An operator meets its sides. OnResult or OnFailure follows where it applies or is ignored.
struct OperatorEvent {
  enum class Effect : std::uint8_t {
    kApplies,   // computes; a refused one fails
    kIgnored,   // the right side is dropped
    kReplaces,  // the left side is dropped: 1,(2) in integers
    kTrailing,  // has nothing to act on: "1+"
  };

  Effect effect = Effect::kApplies;
  bool is_unary = false;  // then the operand is the left side, and there is no right one
  Place place;
  std::string_view text;  // the operator: "+", "<<"
  ValueNumber left = 0;
  ValueNumber right = 0;
  ValueView left_value;
  ValueView right_value;  // as it was before the operator, like the left one
};

/// What a host derives from to watch. Each function does nothing by default, and none may throw.
class Observer {
 public:
  Observer() = default;
  Observer(const Observer&) = default;
  Observer& operator=(const Observer&) = default;
  virtual ~Observer() = default;

  virtual void OnCut(const CutEvent& /*event*/) noexcept {}

  /// The index of an operand is about to be evaluated, as an integer expression. All events up to
  /// OnIndexEnd are of that.
  virtual void OnIndexBegin(Place /*name*/, Place /*index*/) noexcept {}
  virtual void OnIndexEnd(int /*status*/, int /*value*/) noexcept {}

  virtual void OnOperand(const OperandEvent& /*event*/) noexcept {}
  virtual void OnOperator(const OperatorEvent& /*event*/) noexcept {}
  virtual void OnResult(ValueNumber /*number*/, const ValueView& /*value*/) noexcept {}

  /// A part of the text that nothing reads: the "2" of 1+2(3).
  virtual void OnUnread(Place /*place*/) noexcept {}

  /// The last event: the outcome, or the failure.
  virtual void OnOutcome(ValueNumber /*number*/, const ValueView& /*value*/) noexcept {}
  virtual void OnFailure(const Failure& /*failure*/) noexcept {}
};

/// The number of the row that an operand has been given, counted as its field counts them from 1,
/// and 0 if it is none of the field's. Takes time in proportion to the field's rows.
ZRT_EXPORT int RowNumberOf(const OperandEvent& event) noexcept;

}  // namespace zrt
