// The operators, as the reference of the tests has them: every byte by itself. Below them the texts
// of bytes. Knows nothing of names and expressions.
#include <algorithm>
#include <limits>

#include "reference.h"

namespace reference {
namespace {

int Int(std::size_t number) { return static_cast<int>(number); }
std::size_t Size(int number) { return static_cast<std::size_t>(number); }

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

void Clear(Stream& stream, std::int64_t bit_length) {
  if (bit_length > std::numeric_limits<int>::max()) throw Failure{ErrStreamWrite};
  if (bit_length > most_bits) throw TooLarge();
  stream.bytes.assign(static_cast<std::size_t>(std::max(bit_length + 7, std::int64_t{0})) / 8, 0);
}

// Lays bytes shifted left by `shift` bits into others, the last at `place`, the rest above it. The
// byte that stands at the place is kept as a whole, spare bits included, where there is a shift.
void Lay(Bytes& target, const Bytes& source, int place, int shift) {
  int carry = shift == 0 ? 0 : Get(target, place);
  for (int i = Int(source.size()) - 1; i >= 0; --i, --place) {
    const int byte = Get(source, i);
    if (!Set(target, place, (byte << shift & 0xFF) | carry)) throw Failure{ErrStreamWrite};
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

// Computed wide, kept modulo 2 to the 32nd.
int Calculate(std::int64_t left, char op, std::int64_t right) {
  const bool is_division = op == '/' || op == '%';
  if (is_division && right == 0) throw Failure{ErrInvalidOperator};
  if (op == '/' && left / right > std::numeric_limits<int>::max())
    throw Failure{ErrInvalidOperator};
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
    case '^': throw Failure{ErrInvalidOperator};
    default: return static_cast<int>(left);
  }
}

std::string Digits(int byte) { return {closed.digits[byte / 16], closed.digits[byte % 16]}; }

}  // namespace

// ---- Operators ----------------------------------------------------------------------------------

void Apply(int& value, char op, int operand) { value = Calculate(value, op, operand); }

void Apply(float& value, char op, float operand) {
  switch (op) {
    case '+': value += operand; return;
    case '-': value -= operand; return;
    case '/': value /= operand; return;
    case '*': value *= operand; return;
    default:
      if (std::string_view("&|!~<>%@^").find(op) != std::string_view::npos)
        throw Failure{ErrInvalidOperator};
  }
}

void Apply(Stream& left, char op, const Stream& given) {
  const Stream right = given;
  if (kOperators.find(op) == std::string_view::npos) throw Failure{ErrInvalidOperator};
  const bool calculates = std::string_view("+-*/%").find(op) != std::string_view::npos;
  const bool takes_word = calculates || op == '<' || op == '>' || op == '^';
  const int word = LeadingWord(right.bytes);
  if (takes_word && right.bytes.size() > 4) throw Failure{ErrOperandTooWide};
  if (calculates && left.bytes.size() > 4) throw Failure{ErrOperandTooWide};
  if (calculates) {
    const Stream result = FromWord(Calculate(LeadingWord(left.bytes), op, word));
    std::copy_n(result.bytes.begin(), left.bytes.size(), left.bytes.begin());
  }
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

// ---- Texts of bytes -----------------------------------------------------------------------------

Stream FromWord(int word) {
  Stream stream{{}, 32};
  for (int low = 24; low >= 0; low -= 8) {
    stream.bytes.push_back(static_cast<std::uint8_t>(word >> low));
  }
  return stream;
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
