// Words for values and operands. Which token types exist is the token library's contract.
#include "reading_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

#include "output.h"
#include "shown_text.h"

namespace {

using Literal = zrt::OperandEvent::Literal;
using Meaning = zrt::OperandEvent::Meaning;
using Scope = zrt::OperandEvent::Scope;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

std::string LiteralValue(std::string_view literal, const Reading::Operand& operand) {
  const ReadValue& value = operand.value;
  if (value.kind == zrt::ValueKind::kFloat) return FloatText(value.floating);
  if (value.kind == zrt::ValueKind::kInteger) {
    const std::string number = std::to_string(value.integer);
    return value.integer < 0 ? "(" + number + ")" : number;
  }
  if (operand.literal == Literal::kDecimal)
    return std::to_string(static_cast<std::uint32_t>(WordOf(value)));
  return std::string(literal) + (literal.size() % 2 == 1 ? "0" : "");
}

// Digits with a "." or an exponent, and on both sides of it what others want there.
bool IsPlainFraction(std::string_view literal) {
  const std::size_t mark = literal.find_first_of(".eE");
  if (mark == std::string_view::npos) return IsDigits(literal);
  const std::string_view whole = literal.substr(0, mark);
  std::string_view rest = literal.substr(mark + 1);
  if (literal[mark] == '.') return IsDigits(rest) || (rest.empty() && IsDigits(whole));
  if (rest.starts_with('-')) rest.remove_prefix(1);
  return IsDigits(whole) && IsDigits(rest);
}

}  // namespace

std::string BytesText(const ReadValue& value) {
  const auto* bytes = reinterpret_cast<const char*>(value.bytes.data());
  if (value.is_whole()) return HexText(std::string(bytes, value.byte_count));
  constexpr std::size_t kEnd = ReadValue::kEnd;
  return HexText(std::string(bytes, kEnd)) + "..." +
         HexText(std::string(bytes + kEnd, kEnd)).substr(2);
}

std::string ValueText(const ReadValue& value) {
  if (value.kind == zrt::ValueKind::kInteger) return std::to_string(value.integer);
  if (value.kind == zrt::ValueKind::kFloat) return FloatText(value.floating);
  return BytesText(value) + "/" + std::to_string(value.bit_length);
}

const char* ScopeName(Scope scope) {
  switch (scope) {
    case Scope::kLocal: return "local";
    case Scope::kGlobal: return "global";
    case Scope::kExternal: return "external";
    case Scope::kNone: break;
  }
  return "";
}

const char* MeaningName(Meaning meaning) {
  switch (meaning) {
    case Meaning::kLiteral: return "literal";
    case Meaning::kToken: return "token";
    case Meaning::kField: return "field";
    case Meaning::kMaskName: return "mask name";
    case Meaning::kUnknown: break;
  }
  return "unknown";
}

const char* TypeName(int token_type) {
  switch (token_type) {
    case 1:
    case 3: return "float";
    case 2:
    case 4: return "integer";
    case 5:
    case 7: return "float array";
    case 6:
    case 8: return "integer array";
    default: return "of no known type";
  }
}

std::string RowOf(const Reading::Operand& operand) {
  if (operand.row == 0) return Counted(static_cast<std::size_t>(operand.row_count), "row");
  return "row " + std::to_string(operand.row) + " of " + std::to_string(operand.row_count);
}

std::string OriginOf(std::string_view text, const Reading::Operand& operand) {
  const std::string scope = ScopeName(operand.scope);
  switch (operand.meaning) {
    case Meaning::kToken: return scope + " token, " + TypeName(operand.token_type);
    case Meaning::kMaskName: return "mask name, no bits";
    case Meaning::kField: return scope + " field, " + RowOf(operand);
    case Meaning::kLiteral:
      return ReadsAlikeElsewhere(PartOf(text, operand.name), operand) ? "" : "literal";
    case Meaning::kUnknown: break;
  }
  return "unknown";
}

bool ReadsAlikeElsewhere(std::string_view literal, const Reading::Operand& operand) {
  switch (operand.value.kind) {
    case zrt::ValueKind::kInteger: return literal == std::to_string(operand.value.integer);
    case zrt::ValueKind::kFloat:
      return IsPlainFraction(literal) && std::isfinite(operand.value.floating);
    case zrt::ValueKind::kBits: break;
  }
  if (operand.literal == Literal::kDecimal) {
    return literal == std::to_string(static_cast<std::uint32_t>(WordOf(operand.value)));
  }
  return operand.literal == Literal::kBinary || literal.size() % 2 == 0;
}

std::string OperandInBrackets(std::string_view text, const Reading::Operand& operand) {
  const std::string_view name = PartOf(text, operand.name);
  if (operand.meaning == Meaning::kField && operand.row > 0 && operand.row_count > 1) {
    return std::string(name) + "[" + std::to_string(operand.row) + "]";
  }
  const bool is_plain = operand.meaning != Meaning::kLiteral || ReadsAlikeElsewhere(name, operand);
  return is_plain ? std::string(name) : LiteralValue(name, operand);
}

std::string DecimalOf(std::string_view literal) {
  const bool is_hexadecimal = literal.starts_with("0x") || literal.starts_with("0X");
  if (!is_hexadecimal && !literal.starts_with('#')) return "";
  const std::string_view digits = literal.substr(is_hexadecimal ? 2 : 1);
  std::uint32_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto [read, error] = std::from_chars(digits.data(), end, number, is_hexadecimal ? 16 : 2);
  return error == std::errc() && read == end ? std::to_string(number) : "";
}

std::size_t NumberEnd(std::string_view text) {
  const auto behind_digits = [text](std::size_t at) {
    while (at < text.size() && IsDigit(text[at])) ++at;
    return at;
  };
  const std::size_t whole = behind_digits(0);
  const bool has_point = whole < text.size() && text[whole] == '.';
  const std::size_t end = has_point ? behind_digits(whole + 1) : whole;
  if (end == (has_point ? 1U : 0U)) return 0;
  if (end == text.size() || (text[end] != 'e' && text[end] != 'E')) return end;
  const bool has_sign = end + 1 < text.size() && (text[end + 1] == '-' || text[end + 1] == '+');
  const std::size_t power = end + (has_sign ? 2 : 1);
  return behind_digits(power) == power ? end : behind_digits(power);
}

std::string WithPlainExponent(std::string_view number) {
  const std::size_t mark = number.find_first_of("eE");
  if (mark == std::string_view::npos || NumberEnd(number) != number.size()) return "";
  std::string digits(number.substr(0, mark));
  std::string_view power = number.substr(mark + 1);
  const std::size_t point = digits.find('.');
  if (point == std::string::npos && !power.starts_with('+')) return "";
  if (power.starts_with('+')) power.remove_prefix(1);
  if (power.size() > 4) return "";
  const std::size_t fraction = point == std::string::npos ? 0 : digits.size() - point - 1;
  std::erase(digits, '.');
  const int exponent = std::stoi(std::string(power)) - static_cast<int>(fraction);
  return digits + "e" + std::to_string(exponent);
}

std::int64_t WordOf(const ReadValue& value) {
  std::uint32_t word = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    word = word << 8U | (i < value.byte_count ? value.bytes[i] : std::uint32_t{0});
  }
  return static_cast<std::int32_t>(word);
}
