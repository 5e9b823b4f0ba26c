// What a kind of value tells the walk about itself. Each constant and hook stands for one real
// difference between the kinds; a kind derives from the defaults and shows what differs.
#pragma once

#include <cstdint>

#include "scan/operators.h"
#include "solve/small_stack.h"
#include "solve/watch.h"

namespace zrt {

/// What a "!" or "~" in front of a group means.
enum class GroupNegation : std::uint8_t {
  kIfAlone,        // negates the group if only blanks stand before it: ~(5), but not 1+~(5)
  kRefused,        // ErrInvalidOperator wherever it stands
  kThenLookAgain,  // negates the group and is dropped; what is left is looked at again: 1@~(2)
};

/// The defaults. A kind adds two constants that have none:
///
///   kGroupNegation               see GroupNegation
///   kEffects                     its column of the operator table
///
/// and a policy, which derives from its kind, adds how values are kept, read and computed:
///
///   Value                        the type of a value: default-constructible and movable
///
///   Read(text, value)            reads one operand. On failure `value` is what it leaves in the
///                                result of a chain that begins with it: of a field without a row
///                                left no bytes, but the bit length told for the row
///   Apply(value, code, operand)  a binary operator, in place; the operand may be used up
///   ApplyUnary(value, code)      a unary operator, in place; not needed without a unary path
///   Deliver(value, is_added)     `value` is the outcome, of a failure too. `is_added` tells that
///                                no operator has met what the caller's result held before, so
///                                the value comes behind it: (2), but not 1+(2)
///   Show(value)                  how an observer sees it; not needed where nobody watches
struct WalkDefaults {
  /// 1<<x fails at the "<<", before x is read (floats).
  static constexpr bool kRefusesShifts = false;

  /// "$" is unary too (bit vectors).
  static constexpr bool kReversesBits = false;

  /// ~1 has a value; without it a unary operator is ErrInvalidOperator (floats).
  static constexpr bool kHasUnaryPath = true;

  /// In ~a[~1] the operand a[~1] is cut at its own "~" again (integers).
  static constexpr bool kUnaryOperandIsExpression = false;

  /// 1,(2) is 2, not 1 (integers).
  static constexpr bool kGroupReplacesLeftUnderNone = false;

  /// A chain that fails delivers its value so far (bit vectors).
  static constexpr bool kKeepsPartialChain = false;

  /// Scans end where Piece::no_operator_behind_brackets says so. The tests switch it off, to see
  /// that it spares work and changes nothing.
  static constexpr bool kTrustsBracketInvariant = true;

  /// Nobody watches. A policy that may be watched has a type of its own here and tells who does.
  using Watch = Unwatched;
  static Unwatched watch() { return {}; }

  /// Some pieces inside a text are read without being taken apart, since that gives the same (bit
  /// vectors). Such a policy tells by a quick look whether that may be, and leaves the value empty
  /// if it turns out that it is not:
  ///
  ///   MayReadAtOnce(text)
  ///   ReadAtOnce(text, value)
  static constexpr bool kReadsAtOnce = false;

  /// Where values wait that have been solved. A stack of its own need only reach the three on top,
  /// and may move them at each Push and Drop (bit vectors).
  template <class Solved>
  using Values = SmallStack<Solved, 64>;

  /// Operators are about to make `value` the outcome in place: 1+(2). Bit vectors let them work on
  /// what the caller's result holds, too. May throw std::bad_alloc.
  template <class Value>
  static void BeginResult(Value& /*value*/) {}
};

struct IntegerKind : WalkDefaults {
  static constexpr Effect OperatorRow::*kEffects = &OperatorRow::on_integers;
  static constexpr bool kUnaryOperandIsExpression = true;
  static constexpr bool kGroupReplacesLeftUnderNone = true;
  static constexpr GroupNegation kGroupNegation = GroupNegation::kIfAlone;
};

struct FloatKind : WalkDefaults {
  static constexpr Effect OperatorRow::*kEffects = &OperatorRow::on_floats;
  static constexpr bool kRefusesShifts = true;
  static constexpr bool kHasUnaryPath = false;
  static constexpr GroupNegation kGroupNegation = GroupNegation::kRefused;
};

struct BitsKind : WalkDefaults {
  static constexpr Effect OperatorRow::*kEffects = &OperatorRow::on_bits;
  static constexpr bool kReversesBits = true;
  static constexpr bool kKeepsPartialChain = true;
  static constexpr GroupNegation kGroupNegation = GroupNegation::kThenLookAgain;
};

}  // namespace zrt
