// Values and operands of a reading in words. Long vectors are shortened in the middle.
#pragma once

#include <string>
#include <string_view>

#include "reading.h"

/// "28", "2.5" or "0x0ABC/12", the bytes and the length in bits.
std::string ValueText(const ReadValue& value);

/// "0x0ABC" alone.
std::string BytesText(const ReadValue& value);

/// "local", "global" or "external"; "" for none.
const char* ScopeName(zrt::OperandEvent::Scope scope);

/// "token", "field", "literal", "mask name" or "unknown".
const char* MeaningName(zrt::OperandEvent::Meaning meaning);

/// "integer", "float array" and so on, of the type that a token tells.
const char* TypeName(int token_type);

/// Where an operand comes from: "local token, integer", "local field, row 2 of 3"; "" for a
/// literal that reads as anywhere else.
std::string OriginOf(std::string_view text, const Reading::Operand& operand);

/// Whether any other calculator would read a literal to the same value.
bool ReadsAlikeElsewhere(std::string_view literal, const Reading::Operand& operand);

/// How an operand stands in the bracketed reading, without its index: a row by its number, a
/// literal that reads otherwise elsewhere as the value that it has.
std::string OperandInBrackets(std::string_view text, const Reading::Operand& operand);

/// The first four bytes of a bit vector as a number, as arithmetic and counts take them.
std::int64_t WordOf(const ReadValue& value);

/// The digits of a hexadecimal or binary literal of at most 32 bits as a decimal number; else "".
std::string DecimalOf(std::string_view literal);

/// Where the number ends that anybody would read at the front of `text`, as 1.5e+3; 0 for none.
std::size_t NumberEnd(std::string_view text);

/// "15e2" for "1.5e+3", since the language wants a plain exponent behind digits alone. Empty for
/// all that has such an exponent or none.
std::string WithPlainExponent(std::string_view number);

inline std::string_view PartOf(std::string_view text, zrt::Place place) {
  return place.offset < text.size() ? text.substr(place.offset, place.length) : std::string_view();
}

/// "e5" and "e-5" are numbers, though anybody else reads a name.
inline bool IsExponentAlone(std::string_view text, const Reading::Operand& operand) {
  return operand.literal == zrt::OperandEvent::Literal::kFraction &&
         (text.starts_with('e') || text.starts_with('E'));
}

inline bool IsArrayToken(const Reading::Operand& operand) { return operand.token_type >= 5; }

/// "~" or "!" behind a group works on its left side and drops the right one.
inline bool IsLeftOnly(const Reading::Operation& operation) {
  return !operation.is_unary && (operation.text == "~" || operation.text == "!");
}
