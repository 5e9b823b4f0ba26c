// The statuses of every evaluating operation: 0 on success, one of these on failure.
//
// A status leaves the library as a plain `int`, so a host compares it with the names below:
//
//   int value = 0;
//   bool is_unknown = expression.GetIntegerOperand("1+x", &value) == ErrUnknownOperand;
//
// The first failure ends an evaluation, and its status reaches the caller unchanged; that of an
// index becomes ErrNegativeIndex.
#pragma once

// The formatter takes the attribute for an initialiser.
// clang-format off
enum [[nodiscard]] ZRTStatus : int {
  /// The directory given cannot be entered, or the current one could not be entered again.
  ErrBadDirectory = -500,
  /// Two operators of a chain have nothing between them.
  ErrMissingOperand = -506,
  /// A token's type does not suit the use, with or without an index.
  ErrBadTokenType = -507,
  /// A "(" has no matching ")".
  ErrUnbalancedParenthesis = -508,
  /// The text behind a group or a unary operand does not begin with an operator, or the text before
  /// a group or a unary operator has no operator with something in front of it.
  ErrMisplacedOperator = -509,
  /// The operator does not exist for this kind of value, or an integer division by 0.
  ErrInvalidOperator = -510,
  /// An operand is neither a known name nor a number of a kind that serves here; also an empty
  /// text.
  ErrUnknownOperand = -511,
  /// "[" without "]".
  ErrMissingCloseBracket = -512,
  /// Nothing between "[" and "]".
  ErrEmptyIndex = -513,
  /// "]" in an operand with no "[".
  ErrStrayCloseBracket = -514,
  /// An operand begins with "[".
  ErrMissingArrayName = -515,
  /// An index expression fails or gives a negative value; in bit vectors a value that a failing one
  /// has given counts.
  ErrNegativeIndex = -516,
  /// A stream of more than 4 bytes where a 32-bit value is needed.
  ErrOperandTooWide = -517,
  /// A store into a stream is refused, a data field has no row to read, a text or a result is too
  /// long, or memory has run out.
  ErrStreamWrite = -518,
};
// clang-format on

namespace zrt {
inline constexpr ZRTStatus kOk{};
}
