// The language written down a second time, as literally as it can be: every piece of a text is
// copied, every level of it calls itself, every byte is moved alone. What the library makes of a
// text is held against what this makes of it. It uses nothing of the library but the names of the
// statuses.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ErrorCodes.h"

// NOLINTBEGIN(misc-no-recursion): the language is told in terms of itself
namespace reference {

/// Thrown by what fails.
struct Failure {
  ZRTStatus status;
};

/// Thrown where a result would have more bits: the text is none to compare.
struct TooLarge {};
inline int most_bits = 1 << 20;  // NOLINT(*-avoid-non-const-global-variables): fuzzing wants less

using Bytes = std::vector<std::uint8_t>;

/// Bytes, most significant first, and how many bits of them count, 0 or more. The two need not
/// agree.
struct Stream {
  bool operator==(const Stream&) const = default;

  Bytes bytes;
  int bit_length = 0;
};

/// One named value. A scalar is an array of one; a token without values of a kind reads 0.
struct Token {
  int type = 0;
  std::vector<int> ints;
  std::vector<float> floats;
};

/// Rows, and the place of the one that is read next.
struct Field {
  std::vector<Stream> rows;
  std::size_t current = 0;
};

/// What the contracts of the closed libraries leave to them.
struct Closed {
  int no_element = 0;  // an array outside its bounds
  int no_width = 0;    // of a row that is not there
  bool rows_begin_again = false;
  const char* digits = "0123456789ABCDEF";
};
inline Closed closed;  // NOLINT(*-avoid-non-const-global-variables): one a program

/// Fields of one empty row, if no set holds them.
constexpr std::string_view kMaskNames[] = {
    "Usercode_MASK",      "FuseArray_MASK",     "EFuseArray_MASK", "ID_MASK",
    "FuseArray_MASK_TDO", "FuseArray_MASK_TDI", "FuseArray_DMASK"};

struct Scope {
  std::map<std::string, Token> local_tokens, global_tokens;
  std::map<std::string, Field> external_data, local_data, global_data;
};

/// Each of these throws its status, a ZRTStatus, if it fails, and leaves in the caller's result
/// what the language leaves in it. A value is an int, a float or a Stream. Row pointers move. No
/// text holds a NUL.
///
/// Solve evaluates a whole text; SolveChain one without groups and unary operators, into a value
/// that is empty or 0; ReadOperand reads a single operand.
template <class Value>
void Solve(Scope& scope, const std::string& text, Value& result);
template <class Value>
void SolveChain(Scope& scope, std::string rest, Value& value);
template <class Number>
void ReadOperand(Scope& scope, std::string name, Number& result);
void ReadOperand(Scope& scope, std::string name, Stream& stream);

/// Operators stand at the places of their codes under their first characters. ',' is every operator
/// without a meaning, '<' and '>' are the shifts; any other character is a code behind the last.
constexpr std::string_view kOperators = ",&|!~<>+-/*%@^$";

/// Applies an operator in place. `right` may be `left` itself; no stream is an empty one.
void Apply(int& value, char op, int operand);
void Apply(float& value, char op, float operand);
void Apply(Stream& left, char op, const Stream& given);

/// Whether the reference is at work: fuzzing gives it memory that is not watched.
inline bool is_at_work = false;  // NOLINT(*-avoid-non-const-global-variables)

template <class Action>
int StatusOf(Action action) {
  struct AtWork {
    bool was_before = std::exchange(is_at_work, true);
    ~AtWork() { is_at_work = was_before; }
  } const at_work;
  try {
    action();
    return 0;
  } catch (const Failure& failure) {
    return failure.status;
  }
}

/// The ")" of the "(" at `open`, or -1. Nothing but parentheses counts.
int ClosingParenthesis(const std::string& text, int open);

/// Where the first and the last operator of an expression stand; -1 if there is none.
struct Found {
  int position = -1;
  char op = ',';
};
Found LeftMostOperator(const std::string& text);
Found RightMostOperator(const std::string& text);

/// Which kind of literal a text is; 0 is none.
int KindOfNumber(const std::string& text);

/// The four bytes of a word, as a stream of 32 bits.
Stream FromWord(int word);

/// A stream as "0x" and digits; bytes as run-length text.
std::string HexText(const Stream& stream);
std::string RunLengthText(const Bytes& data);

}  // namespace reference
// NOLINTEND(misc-no-recursion)
