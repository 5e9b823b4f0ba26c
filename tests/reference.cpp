// The language's rules for texts: operands, expressions, scans. A failure is thrown as its status.
// Speed and depth do not matter here.
#include "reference.h"

#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <type_traits>

// NOLINTBEGIN(misc-no-recursion): the language is told in terms of itself
namespace reference {
namespace {

template <class Value>
constexpr bool kIsInteger = std::is_same_v<Value, int>;
template <class Value>
constexpr bool kIsFloat = std::is_same_v<Value, float>;
template <class Value>
constexpr bool kIsBits = std::is_same_v<Value, Stream>;

// ---- Texts. Positions are counts of characters, -1 is none, a blank is the space alone. ---------

int Int(std::size_t number) { return static_cast<int>(number); }
std::size_t Size(int number) { return static_cast<std::size_t>(number); }

int Find(const std::string& text, const char* what) { return Int(text.find(what)); }
std::string Left(const std::string& text, int count) { return text.substr(0, Size(count)); }
std::string From(const std::string& text, int start) { return text.substr(Size(start)); }
std::string TrimLeft(std::string text) { return text.erase(0, text.find_first_not_of(' ')); }
std::string TrimRight(std::string text) { return text.erase(text.find_last_not_of(' ') + 1); }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// An arrow is a shift if the same stands at `other` too, which is the place behind or before it.
char OperatorAt(const std::string& text, int k, int other) {
  const char c = text[Size(k)];
  const bool is_arrow = c == '<' || c == '>';
  return is_arrow && (other < 0 || other >= Int(text.size()) || text[Size(other)] != c) ? ',' : c;
}

int Width(char op) { return op == '<' || op == '>' ? 2 : 1; }

// ---- Operands -----------------------------------------------------------------------------------

void Append(Stream& stream, const Stream& source) {
  stream.bytes.insert(stream.bytes.end(), source.bytes.begin(), source.bytes.end());
  stream.bit_length = source.bit_length;
}

const Token* SearchToken(const Scope& scope, const std::string& name) {
  for (const auto* tree : {&scope.local_tokens, &scope.global_tokens}) {
    if (const auto found = tree->find(name); found != tree->end()) return &found->second;
  }
  return nullptr;
}

Field* SearchSets(Scope& scope, const std::string& name) {
  for (auto* data : {&scope.external_data, &scope.local_data, &scope.global_data}) {
    if (const auto found = data->find(name); found != data->end()) return &found->second;
  }
  return nullptr;
}

// A mask name that no set holds is a field of one empty row. The fuse array's name may be changed,
// which the search for a token behind this one sees.
Field* SearchDataField(Scope& scope, std::string& name, Field& made) {
  if (Field* field = SearchSets(scope, name)) return field;
  if (std::ranges::find(kMaskNames, name) != std::end(kMaskNames)) {
    made.rows = {Stream()};
    return &made;
  }
  if (name != "FuseArray_TDO") return nullptr;
  name = "FuseArray_TDI";
  return SearchSets(scope, name);
}

template <class Number>
Number Element(const std::vector<Number>& values, int index) {
  return index >= 0 && index < Int(values.size()) ? values[Size(index)]
                                                  : static_cast<Number>(closed.no_element);
}

// Takes the index off an operand and gives its value, -1 where there is none. What stands behind
// its
// "]" is dropped; without an index nothing is trimmed. Of a bit vector's index the value decides:
// one that fails after it has written a value is an index.
int TakeIndex(Scope& scope, std::string& operand, bool decides_by_value) {
  const int open = Find(operand, "[");
  if (open == 0) throw Failure{ErrMissingArrayName};
  if (open < 0 && Find(operand, "]") >= 0) throw Failure{ErrStrayCloseBracket};
  if (open < 0) return -1;
  std::string text = TrimLeft(From(operand, open + 1));
  operand = TrimRight(Left(operand, open));
  const int close = Find(text, "]");
  if (close < 0) throw Failure{ErrMissingCloseBracket};
  text = TrimRight(Left(text, close));
  if (text.empty()) throw Failure{ErrEmptyIndex};
  int index = -1;
  const int status = StatusOf([&] { Solve(scope, text, index); });
  if (index < 0 || (status != 0 && !decides_by_value)) throw Failure{ErrNegativeIndex};
  return index;
}

// Decimal literals: the digits in front, modulo 2 to the 32nd.
void ReadLiteral(const std::string& literal, int& result) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < literal.size() && IsDigit(literal[i]); ++i) {
    value = value * 10 + static_cast<std::uint32_t>(literal[i] - '0');
  }
  result = static_cast<int>(value);
}

// Decimal notation only, by way of a double, with "." whatever the locale has.
void ReadLiteral(std::string literal, float& result) {
  if (literal.starts_with("0x")) literal = "0";
  const std::size_t point = literal.find('.');
  if (point != std::string::npos) literal.replace(point, 1, std::localeconv()->decimal_point);
  result = static_cast<float>(std::strtod(literal.c_str(), nullptr));
}

Bytes FromDigits(const std::string& digits, std::size_t digits_per_byte, int base) {
  Bytes bytes;
  for (std::size_t i = 0; i < digits.size(); i += digits_per_byte) {
    const int byte = std::stoi(digits.substr(i, digits_per_byte), nullptr, base);
    bytes.push_back(static_cast<std::uint8_t>(byte));
  }
  return bytes;
}

// Binary digits stand right-aligned, hexadecimal ones in whole bytes, filled up at their end.
void ReadLiteral(std::string literal, Stream& stream) {
  const int kind = KindOfNumber(literal);
  if (kind == 1 || kind == 2) {
    const int bit_length = Int(literal.size()) - 1;
    literal.replace(0, 1, Size((8 - bit_length % 8) % 8), '0');
    Append(stream, {FromDigits(literal, 8, 2), bit_length});
  } else if (kind == 3 || kind == 4) {
    literal += literal.size() % 2 == 1 ? "0" : "";
    Append(stream, {FromDigits(From(literal, 2), 2, 16), Int(literal.size() - 2) * 4});
  } else if (kind == 6) {
    int word = 0;
    ReadLiteral(literal, word);
    Append(stream, FromWord(word));
  } else {
    throw Failure{ErrUnknownOperand};
  }
}

int Truncate(double value) {
  return std::isnan(value) ? 0 : static_cast<int>(std::clamp(value, -2147483648.0, 2147483647.0));
}

// Index 0 is none: it means the row at the row pointer, which moves on if there are several rows.
void ReadRow(Field& field, int index, Stream& stream) {
  const std::size_t place = index > 0 ? Size(index - 1) : field.current;
  stream.bit_length = closed.no_width;
  if (place >= field.rows.size()) throw Failure{ErrStreamWrite};
  if (index <= 0 && field.rows.size() > 1) ++field.current;
  if (closed.rows_begin_again) field.current %= field.rows.size();
  Append(stream, field.rows[place]);
}

// ---- Expressions --------------------------------------------------------------------------------

// Floats refuse a shift where they meet it.
template <class Value>
void RefuseShift(char op) {
  if (kIsFloat<Value> && (op == '<' || op == '>')) throw Failure{ErrInvalidOperator};
}

// Takes the first operand off `rest` and the operator behind it, if there is one.
Found TakeOperand(std::string& rest, std::string& operand) {
  const Found found = LeftMostOperator(rest);
  operand = found.position < 0 ? rest : TrimRight(Left(rest, found.position));
  rest = found.position < 0 ? "" : TrimLeft(From(rest, found.position + Width(found.op)));
  return found;
}

void ApplyUnary(int& value, char op) { value = op == '~' ? ~value : value == 0 ? 1 : 0; }
void ApplyUnary(float& /*value*/, char /*op*/) { throw Failure{ErrInvalidOperator}; }
void ApplyUnary(Stream& value, char op) { Apply(value, op, value); }

// What stands around the middle, a group or a unary operator with its operand:
// (left op1 middle) op2 right.
template <class Value>
struct Around {
  Value left{}, middle{}, right{};
  char left_op = ',', right_op = ',';
  bool has_left = false;
};

template <class Value>
void SolveRight(Scope& scope, const std::string& text, Around<Value>& around) {
  if (text.empty()) return;
  const auto [position, op] = LeftMostOperator(text);
  if (position != 0) throw Failure{ErrMisplacedOperator};
  RefuseShift<Value>(op);
  Solve(scope, TrimLeft(From(text, Width(op))), around.right);
  around.right_op = op;
}

// A "!" or "~" in front means the middle: to a bit vector each of them, to an integer the one that
// stands alone. What stands between the operator and the middle is not looked at.
template <class Value>
void SolveLeft(Scope& scope, std::string text, Around<Value>& around) {
  while (!text.empty()) {
    const auto [position, op] = RightMostOperator(text);
    const bool is_unary = op == '!' || op == '~';
    text = TrimRight(Left(text, std::max(position, 0)));
    if (is_unary && (!kIsInteger<Value> || text.empty())) {
      ApplyUnary(around.middle, op);
      continue;
    }
    if (position < 1) throw Failure{ErrMisplacedOperator};
    Solve(scope, text, around.left);
    around.left_op = op;
    around.has_left = true;
    return;
  }
}

// The last two operators work in the caller's result. An integer's left value goes where no
// operator stands behind it, the others' stays.
template <class Value>
void Combine(const Around<Value>& around, Value& result) {
  const bool has_left = kIsInteger<Value> ? around.left_op != ',' : around.has_left;
  const Value& first = has_left ? around.left : around.middle;
  if constexpr (kIsBits<Value>) Append(result, first);
  if constexpr (!kIsBits<Value>) result = first;
  if (has_left) Apply(result, around.left_op, around.middle);
  Apply(result, around.right_op, around.right);
}

// The group first, then what is right of it, then what is left of it.
template <class Value>
void SolveGroup(Scope& scope, const std::string& text, Value& result) {
  const int open = Find(text, "("), close = ClosingParenthesis(text, open);
  if (close < 0) throw Failure{ErrUnbalancedParenthesis};
  Around<Value> around;
  Solve(scope, From(Left(text, close), open + 1), around.middle);
  SolveRight(scope, TrimLeft(From(text, close + 1)), around);
  SolveLeft(scope, TrimRight(Left(text, open)), around);
  Combine(around, result);
}

// The one operand behind the operator first, then what is left of them, then what is right. To a
// bit vector the operand is a chain.
template <class Value>
void SolveUnary(Scope& scope, const std::string& text, int unary, Value& result) {
  std::string operand = TrimLeft(From(text, unary + 1)), right;
  if (const int position = LeftMostOperator(operand).position; position >= 0) {
    right = From(operand, position);
    operand = TrimRight(Left(operand, position));
  }
  Around<Value> around;
  if constexpr (kIsBits<Value>) SolveChain(scope, operand, around.middle);
  if constexpr (!kIsBits<Value>) Solve(scope, operand, around.middle);
  ApplyUnary(around.middle, text[Size(unary)]);
  SolveLeft(scope, TrimRight(Left(text, unary)), around);
  SolveRight(scope, right, around);
  Combine(around, result);
}

}  // namespace

// Types 1 to 4 are scalars and 5 to 8 arrays; the odd ones are floats.
template <class Number>
void ReadOperand(Scope& scope, std::string name, Number& result) {
  const int index = TakeIndex(scope, name, false);
  const Token* token = SearchToken(scope, name);
  if (token == nullptr) {
    if (KindOfNumber(name) == 0) throw Failure{ErrUnknownOperand};
    return ReadLiteral(name, result);
  }
  const int type = token->type, place = std::max(index, 0);
  if (type < 1 || type > 8 || (type > 4) != (index >= 0)) throw Failure{ErrBadTokenType};
  const float of_floats = Element(token->floats, place);
  const int of_ints = Element(token->ints, place);
  if constexpr (kIsInteger<Number>) result = type % 2 == 1 ? Truncate(of_floats) : of_ints;
  if constexpr (kIsFloat<Number>) result = type % 2 == 1 ? of_floats : static_cast<float>(of_ints);
}

// A field before a token, a token before a literal.
void ReadOperand(Scope& scope, std::string name, Stream& stream) {
  const int index = TakeIndex(scope, name, true);
  Field made;
  if (Field* field = SearchDataField(scope, name, made)) return ReadRow(*field, index, stream);
  const Token* token = SearchToken(scope, name);
  if (token == nullptr) return ReadLiteral(name, stream);
  const bool is_array = token->type == 6 || token->type == 8;
  if (!is_array && token->type != 2 && token->type != 4) throw Failure{ErrBadTokenType};
  Append(stream, FromWord(Element(token->ints, is_array ? index : 0)));
}

// From the left, operand by operand. The last operator may have nothing behind it.
template <class Value>
void SolveChain(Scope& scope, std::string rest, Value& value) {
  std::string operand;
  char pending = TakeOperand(rest, operand).op;
  ReadOperand(scope, operand, value);
  RefuseShift<Value>(pending);
  while (!rest.empty()) {
    const auto [position, op] = TakeOperand(rest, operand);
    if (position >= 0 && operand.empty()) throw Failure{ErrMissingOperand};
    Value right{};
    ReadOperand(scope, operand, right);
    RefuseShift<Value>(op);
    Apply(value, pending, right);
    pending = op;
  }
}

// A group comes before a unary operator, that before a chain, in brackets or not. A chain writes a
// number only when it is done, and empties a stream first.
template <class Value>
void Solve(Scope& scope, const std::string& text, Value& result) {
  if (text.find('(') != std::string::npos) return SolveGroup(scope, text, result);
  const int unary = Int(text.find_first_of(kIsBits<Value> ? "~!$" : "~!"));
  if (kIsFloat<Value> && unary >= 0) throw Failure{ErrInvalidOperator};
  if (unary >= 0) return SolveUnary(scope, text, unary, result);
  if (kIsBits<Value>) result = {};
  Value value{};
  SolveChain(scope, text, kIsBits<Value> ? result : value);
  if (!kIsBits<Value>) result = value;
}

template void Solve(Scope&, const std::string&, int&);
template void Solve(Scope&, const std::string&, float&);
template void Solve(Scope&, const std::string&, Stream&);
template void SolveChain(Scope&, std::string, Stream&);
template void ReadOperand(Scope&, std::string, int&);
template void ReadOperand(Scope&, std::string, float&);

// ---- Scans --------------------------------------------------------------------------------------

int ClosingParenthesis(const std::string& text, int open) {
  int depth = 1;
  for (int i = open + 1; i < Int(text.size()); ++i) {
    if (text[Size(i)] == '(') ++depth;
    if (text[Size(i)] == ')' && --depth == 0) return i;
  }
  return -1;
}

// The first "[" and the first "]" hide what is between them; the "-" of an exponent is no operator,
// whatever stands before the "e".
Found LeftMostOperator(const std::string& text) {
  std::string work = text;
  while (true) {
    const int lower = Find(work, "e-"), upper = Find(work, "E-"), close = Find(work, "]");
    const int mark = lower < 0 || upper < 0 ? std::max(lower, upper) : std::min(lower, upper);
    const int k = Int(work.find_first_of(kOperators));
    if (k < 0) return {};
    const bool is_in_brackets = Find(work, "[") < k && close > k;
    if (!is_in_brackets && (mark < 0 || mark + 1 != k)) {
      return {Int(text.size() - work.size()) + k, OperatorAt(work, k, k + 1)};
    }
    work = TrimLeft(From(work, (is_in_brackets ? close : k) + 1));
  }
}

// From the right, where only the first pair of brackets hides, and ends the search.
Found RightMostOperator(const std::string& text) {
  std::string work = text;
  while (true) {
    const int mark = std::max(Find(work, "e-"), Find(work, "E-"));
    const int k = Int(work.find_last_of(kOperators));
    if (k < 0 || (Find(work, "[") < k && Find(work, "]") > k)) return {};
    const char op = OperatorAt(work, k, k - 1);
    if (mark < 0 || mark + 1 != k) return {k + 1 - Width(op), op};
    work = TrimRight(Left(work, k));
  }
}

// Neither a sign in front nor a blank is part of a number. Digits before a point or an exponent are
// a decimal number until a digit stands behind it.
int KindOfNumber(const std::string& text) {
  constexpr const char* kDigits = "0123456789";
  const auto has_only = [&text](const char* set, std::size_t start) {
    return text.size() > start && text.find_first_not_of(set, start) == std::string::npos;
  };
  if (text.starts_with('#')) return !has_only("01", 1) ? 0 : text.size() <= 33 ? 1 : 2;
  if (text.starts_with("0x")) {
    return !has_only("0123456789ABCDEFabcdef", 2) ? 0 : text.size() <= 10 ? 3 : 4;
  }
  const std::size_t mark = text.find_first_not_of(kDigits);
  if (mark == std::string::npos) return text.empty() ? 0 : 6;
  const bool is_point = text[mark] == '.', is_exponent = text[mark] == 'e' || text[mark] == 'E';
  const bool has_more = mark + 1 < text.size();
  if (!is_point && !is_exponent) return 0;
  if (has_more && !has_only(is_point ? kDigits : "-0123456789", mark + 1)) return 0;
  if (std::ranges::count(text, '-') > 1) return 0;
  return text.find_first_of(kDigits, mark + 1) != std::string::npos ? 5 : mark > 0 ? 6 : 0;
}

}  // namespace reference
// NOLINTEND(misc-no-recursion)
