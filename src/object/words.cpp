// Statuses in words, and the version of the library that is loaded.
#include "zrtexpression/words.h"

#include "ErrorCodes.h"
#include "zrtexpression/version.h"

namespace zrt {
namespace {

struct Words {
  int status;
  const char* name;
  const char* sentence;
};

// clang-format off
constexpr Words kWords[] = {
    {ErrBadDirectory,          "ErrBadDirectory",          "the directory cannot be entered"},
    {ErrMissingOperand,        "ErrMissingOperand",        "an operand is missing between two operators"},
    {ErrBadTokenType,          "ErrBadTokenType",          "the name does not suit this use: an array needs an index, a single value takes none, bit vectors know no float"},
    {ErrUnbalancedParenthesis, "ErrUnbalancedParenthesis", "the parenthesis has no match"},
    {ErrMisplacedOperator,     "ErrMisplacedOperator",     "a group or unary operator is not joined to its neighbour by an operator with an operand on either side"},
    {ErrInvalidOperator,       "ErrInvalidOperator",       "the operator does not exist for this kind of value, or divides by zero"},
    {ErrUnknownOperand,        "ErrUnknownOperand",        "neither a known name nor a number of a suitable kind"},
    {ErrMissingCloseBracket,   "ErrMissingCloseBracket",   "the bracket has no match"},
    {ErrEmptyIndex,            "ErrEmptyIndex",            "there is no index between the brackets"},
    {ErrStrayCloseBracket,     "ErrStrayCloseBracket",     "the bracket has no opening one"},
    {ErrMissingArrayName,      "ErrMissingArrayName",      "there is no name in front of the bracket"},
    {ErrNegativeIndex,         "ErrNegativeIndex",         "the index is negative or cannot be evaluated"},
    {ErrOperandTooWide,        "ErrOperandTooWide",        "a side of the operator has more than four bytes"},
    {ErrStreamWrite,           "ErrStreamWrite",           "there is no such row, the result is too large or refused, or memory has run out"},
};
// clang-format on

const Words* WordsFor(int status) {
  for (const Words& words : kWords) {
    if (words.status == status) return &words;
  }
  return nullptr;
}

}  // namespace

const char* StatusName(int status) noexcept {
  const Words* words = WordsFor(status);
  return words ? words->name : "";
}

const char* StatusSentence(int status) noexcept {
  const Words* words = WordsFor(status);
  return words ? words->sentence : "";
}

const char* Version() noexcept { return ZRT_VERSION; }

}  // namespace zrt
