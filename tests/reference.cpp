// The language's rules, in the order in which they build on each other: texts, scans, bytes,
// operators, operands, expressions. A failure is thrown as its status. Speed and depth do not
// matter here.
#include "reference.h"

#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
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

// The ")" of the "(" at `open`, or -1. Nothing but parentheses counts.
int ClosingParenthesis(const std::string& text, int open) {
  int depth = 1;
  for (int i = open + 1; i < Int(text.size()); ++i) {
    if (text[Size(i)] == '(') ++depth;
    if (text[Size(i)] == ')' && --depth == 0) return i;
  }
  return -1;
}

// ---- Bytes. A read outside them is 0, a write outside them is refused. --------------------------

int Get(const Bytes& bytes, int index) {
  return index >= 0 && index < Int(bytes.size()) ? bytes[Size(index)] : 0;
}

bool Set(Bytes& bytes, int index, int byte) {
  if (index < 0 || index >= Int(bytes.size())) return false;
  bytes[Size(index)] = static_cast<std::uint8_t>(byte);
  return true;
}

// The first four bytes, whatever the size.
int LeadingWord(const Bytes& bytes) {
  std::uint32_t word = 0;
  for (int i = 0; i < 4; ++i) word = word << 8 | static_cast<std::uint32_t>(Get(bytes, i));
  return static_cast<int>(word);
}

// As many of the four bytes of a word as there is room for.
void SetWord(Bytes& bytes, int word) {
  for (int i = 0; i < 4; ++i) Set(bytes, i, word >> (24 - 8 * i) & 0xFF);
}

void Append(Stream& stream, const Stream& source) {
  stream.bytes.insert(stream.bytes.end(), source.bytes.begin(), source.bytes.end());
  stream.bit_length = source.bit_length;
}

void Clear(Stream& stream, std::int64_t bit_length) {
  if (bit_length > std::numeric_limits<int>::max()) throw ErrStreamWrite;
  if (bit_length > 1 << 20) throw TooLarge();
  stream.bytes.assign(static_cast<std::size_t>(bit_length + 7) / 8, 0);
}

// Lays bytes shifted left by `shift` bits into others, the last at `place`, the rest above it. The
// byte that stands at the place is kept as a whole, spare bits included, where there is a shift.
void Lay(Bytes& target, const Bytes& source, int place, int shift) {
  int carry = shift == 0 ? 0 : Get(target, place);
  for (int i = Int(source.size()) - 1; i >= 0; --i, --place) {
    const int byte = Get(source, i);
    if (!Set(target, place, (byte << shift & 0xFF) | carry)) throw ErrStreamWrite;
    carry = byte >> (8 - shift);
  }
  if (shift != 0) Set(target, place, carry);  // above the top byte it is dropped
}

void Concatenate(Stream& left, const Stream& right) {
  const Bytes copy = left.bytes;
  const std::int64_t total = std::int64_t{left.bit_length} + right.bit_length;
  Clear(left, total);
  const int size = Int(left.bytes.size()), shift = right.bit_length % 8;
  Lay(left.bytes, right.bytes, size - 1, 0);
  Lay(left.bytes, copy, size - Int(right.bytes.size()) - (shift == 0 ? 1 : 0), shift);
  left.bit_length = static_cast<int>(total);
}

void Replicate(Stream& left, int count) {
  const Bytes copy = left.bytes;
  const std::int64_t total = std::int64_t{std::max(count, 0)} * left.bit_length;
  Clear(left, total);
  for (int c = 0; c < count && !copy.empty(); ++c) {
    const int offset = c * left.bit_length;
    Lay(left.bytes, copy, Int(left.bytes.size()) - 1 - offset / 8, offset % 8);
  }
  left.bit_length = static_cast<int>(total);
}

// All bits of the bytes take part, whatever the bit length.
void Shift(Bytes& bytes, bool is_left, int count) {
  if (count <= 0) return;
  const Bytes copy = bytes;
  const int size = Int(copy.size()), whole = count / 8, bits = count % 8;
  for (int i = 0; i < size; ++i) {
    const int from = is_left ? i + whole : i - whole;
    const int pair = is_left ? Get(copy, from) << 8 | Get(copy, from + 1)
                             : Get(copy, from - 1) << 8 | Get(copy, from);
    Set(bytes, i, (is_left ? pair >> (8 - bits) : pair >> bits) & 0xFF);
  }
}

// The bytes that both have, paired from the low end.
void AndOr(Bytes& left, bool is_and, const Bytes& right) {
  for (int i = Int(left.size()) - 1, k = Int(right.size()) - 1; i >= 0 && k >= 0; --i, --k) {
    const int byte = Get(left, i), other = Get(right, k);
    Set(left, i, is_and ? byte & other : byte | other);
  }
}

// The bytes of `right` from its last one on, each mirrored, take the places of those of `left`.
void Reverse(Bytes& left, const Bytes& right) {
  for (int i = 0; i < Int(left.size()); ++i) {
    const int byte = Get(right, Int(right.size()) - 1 - i);
    int mirrored = 0;
    for (int bit = 0; bit < 8; ++bit) mirrored |= (byte >> bit & 1) << (7 - bit);
    Set(left, i, mirrored);
  }
}

// ---- Operators ----------------------------------------------------------------------------------

// Computed wide, kept modulo 2 to the 32nd.
int Calculate(std::int64_t left, char op, std::int64_t right) {
  const bool is_division = op == '/' || op == '%';
  if (is_division && right == 0) throw ErrInvalidOperator;
  if (op == '/' && left / right > std::numeric_limits<int>::max()) throw ErrInvalidOperator;
  switch (op) {
    case '&': return static_cast<int>(left & right);
    case '|': return static_cast<int>(left | right);
    case '<': return static_cast<int>(left << (right & 31));
    case '>': return static_cast<int>(left >> (right & 31));
    case '+': return static_cast<int>(left + right);
    case '-': return static_cast<int>(left - right);
    case '/': return static_cast<int>(left / right);
    case '*': return static_cast<int>(left * right);
    case '%': return static_cast<int>(left % right);
    case '!':
    case '~':
    case '@':
    case '^': throw ErrInvalidOperator;
    default: return static_cast<int>(left);
  }
}

}  // namespace

void Apply(int& value, char op, int operand) { value = Calculate(value, op, operand); }

void Apply(float& value, char op, float operand) {
  switch (op) {
    case '+': value += operand; return;
    case '-': value -= operand; return;
    case '/': value /= operand; return;
    case '*': value *= operand; return;
    default:
      if (std::string_view("&|!~<>%@^").find(op) != std::string_view::npos)
        throw ErrInvalidOperator;
  }
}

void Apply(Stream& left, char op, const Stream& given) {
  const Stream right = given;
  if (kOperators.find(op) == std::string_view::npos) throw ErrInvalidOperator;
  const bool calculates = std::string_view("+-*/%").find(op) != std::string_view::npos;
  const bool takes_word = calculates || op == '<' || op == '>' || op == '^';
  const int word = LeadingWord(right.bytes);
  if (takes_word && right.bytes.size() > 4) throw ErrOperandTooWide;
  if (calculates && left.bytes.size() > 4) throw ErrOperandTooWide;
  if (calculates) SetWord(left.bytes, Calculate(LeadingWord(left.bytes), op, word));
  if (op == '&' || op == '|') AndOr(left.bytes, op == '&', right.bytes);
  if (op == '<' || op == '>') Shift(left.bytes, op == '<', word);
  if (op == '@') Concatenate(left, right);
  if (op == '^') Replicate(left, word);
  if (op == '$') Reverse(left.bytes, right.bytes);
  for (std::uint8_t& byte : left.bytes) {
    if (op == '~') byte = static_cast<std::uint8_t>(~byte);
    if (op == '!') byte = byte == 0 ? 1 : 0;
  }
}

namespace {

void ApplyUnary(int& value, char op) { value = op == '~' ? ~value : value == 0 ? 1 : 0; }
void ApplyUnary(float&, char) { throw ErrInvalidOperator; }
void ApplyUnary(Stream& value, char op) { Apply(value, op, value); }

// ---- Operands -----------------------------------------------------------------------------------

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
  for (const char* mask : {"Usercode_MASK", "FuseArray_MASK", "EFuseArray_MASK", "ID_MASK",
                           "FuseArray_MASK_TDO", "FuseArray_MASK_TDI", "FuseArray_DMASK"}) {
    if (name != mask) continue;
    made.rows = {Stream()};
    return &made;
  }
  if (name != "FuseArray_TDO") return nullptr;
  name = "FuseArray_TDI";
  return SearchSets(scope, name);
}

template <class Number>
Number Element(const std::vector<Number>& values, int index) {
  return index >= 0 && index < Int(values.size()) ? values[Size(index)] : Number();
}

// Takes the index off an operand and gives its value, -1 where there is none. What stands behind
// the
// "]" is dropped; without an index nothing is trimmed. Of a bit vector's index the value decides:
// one that fails after it has written a value is an index.
int TakeIndex(Scope& scope, std::string& operand, bool decides_by_value) {
  const int open = Find(operand, "[");
  if (open == 0) throw ErrMissingArrayName;
  if (open < 0 && Find(operand, "]") >= 0) throw ErrStrayCloseBracket;
  if (open < 0) return -1;
  std::string text = TrimLeft(From(operand, open + 1));
  operand = TrimRight(Left(operand, open));
  const int close = Find(text, "]");
  if (close < 0) throw ErrMissingCloseBracket;
  text = TrimRight(Left(text, close));
  if (text.empty()) throw ErrEmptyIndex;
  int index = -1;
  const int status = StatusOf([&] { Solve(scope, text, index); });
  if (index < 0 || (status != 0 && !decides_by_value)) throw ErrNegativeIndex;
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

Stream FromWord(int word) {
  Stream stream{Bytes(4), 32};
  SetWord(stream.bytes, word);
  return stream;
}

// Binary digits stand right-aligned, hexadecimal ones in whole bytes, with a zero behind an odd
// last one.
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
    throw ErrUnknownOperand;
  }
}

int Truncate(float value) {
  constexpr float kLimit = 2147483648.0F;
  if (std::isnan(value)) return 0;
  if (value >= kLimit) return std::numeric_limits<int>::max();
  return value <= -kLimit ? std::numeric_limits<int>::min() : static_cast<int>(value);
}

}  // namespace

// Types 1 to 4 are scalars and 5 to 8 arrays; the odd ones are floats.
template <class Number>
void ReadOperand(Scope& scope, std::string name, Number& result) {
  const int index = TakeIndex(scope, name, false);
  const Token* token = SearchToken(scope, name);
  if (token == nullptr) {
    if (KindOfNumber(name) == 0) throw ErrUnknownOperand;
    return ReadLiteral(name, result);
  }
  const int type = token->type, place = std::max(index, 0);
  if (type < 1 || type > 8 || (type > 4) != (index >= 0)) throw ErrBadTokenType;
  const float of_floats = Element(token->floats, place);
  const int of_ints = Element(token->ints, place);
  if constexpr (kIsInteger<Number>) result = type % 2 == 1 ? Truncate(of_floats) : of_ints;
  if constexpr (kIsFloat<Number>) result = type % 2 == 1 ? of_floats : static_cast<float>(of_ints);
}

namespace {

// Index 0 is none: it means the row at the row pointer, which moves on if there are several rows.
void ReadRow(Field& field, int index, Stream& stream) {
  const std::size_t place = index > 0 ? Size(index - 1) : field.current;
  stream.bit_length = 0;
  if (place >= field.rows.size()) throw ErrStreamWrite;
  if (index <= 0 && field.rows.size() > 1) ++field.current;
  Append(stream, field.rows[place]);
}

}  // namespace

// A field before a token, a token before a literal.
void ReadOperand(Scope& scope, std::string name, Stream& stream) {
  const int index = TakeIndex(scope, name, true);
  Field made;
  if (Field* field = SearchDataField(scope, name, made)) return ReadRow(*field, index, stream);
  const Token* token = SearchToken(scope, name);
  if (token == nullptr) return ReadLiteral(name, stream);
  const bool is_array = token->type == 6 || token->type == 8;
  if (!is_array && token->type != 2 && token->type != 4) throw ErrBadTokenType;
  Append(stream, FromWord(Element(token->ints, is_array ? index : 0)));
}

// ---- Expressions --------------------------------------------------------------------------------

namespace {

// Floats refuse a shift where they meet it.
template <class Value>
void RefuseShift(char op) {
  if (kIsFloat<Value> && (op == '<' || op == '>')) throw ErrInvalidOperator;
}

// Takes the first operand off `rest` and the operator behind it, if there is one.
Found TakeOperand(std::string& rest, std::string& operand) {
  const Found found = LeftMostOperator(rest);
  operand = found.position < 0 ? rest : TrimRight(Left(rest, found.position));
  rest = found.position < 0 ? "" : TrimLeft(From(rest, found.position + Width(found.op)));
  return found;
}

}  // namespace

// From the left, operand by operand. The last operator may have nothing behind it.
template <class Value>
void SolveChain(Scope& scope, std::string rest, Value& value) {
  std::string operand;
  char pending = TakeOperand(rest, operand).op;
  ReadOperand(scope, operand, value);
  RefuseShift<Value>(pending);
  while (!rest.empty()) {
    const auto [position, op] = TakeOperand(rest, operand);
    if (position >= 0 && operand.empty()) throw ErrMissingOperand;
    Value right{};
    ReadOperand(scope, operand, right);
    RefuseShift<Value>(op);
    Apply(value, pending, right);
    pending = op;
  }
}

namespace {

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
  if (position != 0) throw ErrMisplacedOperator;
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
    if (position < 1) throw ErrMisplacedOperator;
    Solve(scope, text, around.left);
    around.left_op = op;
    around.has_left = true;
    return;
  }
}

void Put(Stream& result, const Stream& value) { Append(result, value); }
template <class Number>
void Put(Number& result, Number value) {
  result = value;
}

// The last two operators work in the caller's result. An integer's left value goes where no
// operator stands behind it, the others' stays.
template <class Value>
void Combine(const Around<Value>& around, Value& result) {
  const bool has_left = kIsInteger<Value> ? around.left_op != ',' : around.has_left;
  Put(result, has_left ? around.left : around.middle);
  if (has_left) Apply(result, around.left_op, around.middle);
  Apply(result, around.right_op, around.right);
}

// The group first, then what is right of it, then what is left of it.
template <class Value>
void SolveGroup(Scope& scope, const std::string& text, Value& result) {
  const int open = Find(text, "("), close = ClosingParenthesis(text, open);
  if (close < 0) throw ErrUnbalancedParenthesis;
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

// A group comes before a unary operator, that before a chain, in brackets or not. A chain writes a
// number only when it is done, and empties a stream first.
template <class Value>
void Solve(Scope& scope, const std::string& text, Value& result) {
  if (text.find('(') != std::string::npos) return SolveGroup(scope, text, result);
  const int unary = Int(text.find_first_of(kIsBits<Value> ? "~!$" : "~!"));
  if (kIsFloat<Value> && unary >= 0) throw ErrInvalidOperator;
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

// ---- Texts of bytes -----------------------------------------------------------------------------

namespace {

std::string Digits(int byte) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  return {kDigits[byte / 16], kDigits[byte % 16]};
}

}  // namespace

std::string Show(const Stream& stream) {
  std::string text;
  for (const std::uint8_t byte : stream.bytes) text += Digits(byte);
  return text + "/" + std::to_string(stream.bit_length);
}

// As many bytes as the length needs, the lowest ones; missing ones are 0.
std::string HexText(const Stream& stream) {
  std::string text = "0x";
  for (int i = (stream.bit_length + 7) / 8; i > 0; --i) {
    text += Digits(Get(stream.bytes, Int(stream.bytes.size()) - i));
  }
  return text;
}

// The byte that ends a run is written at once and opens no run.
std::string RunLengthText(const Bytes& data) {
  std::string text;
  int run_length = 0;
  std::uint8_t run_byte = 0;
  bool is_worth_it = false;
  for (std::size_t i = 0; i < data.size(); ++i) {
    if (run_length == 0) run_byte = data[i];
    const std::string ending = data[i] == run_byte ? "" : Digits(data[i]);
    if (ending.empty()) ++run_length;
    if (ending.empty() && i + 1 < data.size()) continue;
    if (run_length >= 7) {
      text += (text.empty() ? "(0x" : "@(0x") + Digits(run_byte) + "^";
      text += std::to_string(run_length) + ")" + (ending.empty() ? "" : "@0x") + ending;
      is_worth_it = true;
    } else {
      if (text.empty()) text = "0x";
      while (run_length-- > 0) text += Digits(run_byte);
      text += ending;
    }
    run_length = 0;
  }
  if (!is_worth_it) return "";
  return text[0] == '(' ? text : "(" + text + ")";
}

}  // namespace reference
// NOLINTEND(misc-no-recursion)
