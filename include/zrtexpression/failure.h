// Where an evaluation failed: plain data that an evaluator fills on request.
//
//   zrt::Failure failure;
//   if (expression.WatchInteger("1+rowz", &value, &failure) != 0) {
//     // failure.status is ErrUnknownOperand, failure.place is {2, 4}: "rowz"
//   }
#pragma once

#include <cstddef>

namespace zrt {

/// A part of the text that was handed in, in bytes. Length 0: something is missing at this point.
struct Place {
  std::size_t offset = 0;
  std::size_t length = 0;
};

/// What went wrong, and where. An evaluator writes all of it, also if all is well.
///
///   ErrMissingOperand          the operator that stands directly behind another
///   ErrUnknownOperand          the operand with the blanks that belong to it, of an indexed one
///                              the name alone; where an operand should stand, length 0
///   ErrBadTokenType            the operand, with its index if it has one
///   ErrUnbalancedParenthesis   the "("
///   ErrMisplacedOperator       an operator is missing behind a group or a unary operand: length 0
///                              where it should stand, behind blanks; in front of a group or a
///                              unary operator: length 0 at the "(" or the operator; an operator
///                              with nothing in front of it: that operator
///   ErrInvalidOperator, ErrOperandTooWide           the operator
///   ErrMissingCloseBracket, ErrMissingArrayName     the "["
///   ErrEmptyIndex              from "[" through "]"
///   ErrStrayCloseBracket       the "]"
///   ErrNegativeIndex           the index without the blanks at its ends; if it failed itself, its
///                              own status and place are the cause
///   ErrStreamWrite             the operand that has no row or is too long; the operator whose
///                              result is refused; else the whole text
struct Failure {
  int status = 0;  // as the evaluator returns it; 0 if all is well
  Place place;
  int cause_status = 0;  // of a failed index; else 0
  Place cause;
};

}  // namespace zrt
