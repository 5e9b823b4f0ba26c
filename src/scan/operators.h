// The operators of the language: their codes, texts and widths, and what each evaluator does with
// them. The one table that scans and evaluators share; it knows of no value.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zrt {

enum OperatorCode : std::uint8_t {
  OpNone,
  OpAnd,
  OpOr,
  OpLogicalNot,
  OpBitwiseNot,
  OpShiftLeft,
  OpShiftRight,
  OpAdd,
  OpSubtract,
  OpDivide,
  OpMultiply,
  OpModulo,
  OpConcat,
  OpReplicate,
  OpBitReverse,
};

/// Stands for an operator that is not there.
inline constexpr auto kNoOperator = static_cast<OperatorCode>(0xFF);

/// What an evaluator does with an operator between two values.
enum class Effect : std::uint8_t { kApplies, kIgnored, kRefused };

/// For which kinds of values an operator is unary: a text is cut where it stands.
enum class Unary : std::uint8_t { kNever, kForBits, kForAll };

struct OperatorRow {
  OperatorCode code;
  std::string_view text;
  Unary unary;
  Effect on_integers;
  Effect on_floats;
  Effect on_bits;
};

namespace operator_table {
constexpr Unary kNo = Unary::kNever;
constexpr Unary kBits = Unary::kForBits;
constexpr Unary kAll = Unary::kForAll;
constexpr Effect kA = Effect::kApplies;
constexpr Effect kI = Effect::kIgnored;
constexpr Effect kR = Effect::kRefused;

// "<" and ">" alone are OpNone like ",": the text is cut there, but nothing is done.
// clang-format off
inline constexpr std::array<OperatorRow, 15> kRows = {{
    // code        text  unary  int float bits
    {OpNone,       ",",  kNo,   kI, kI,   kI},
    {OpAnd,        "&",  kNo,   kA, kR,   kA},
    {OpOr,         "|",  kNo,   kA, kR,   kA},
    {OpLogicalNot, "!",  kAll,  kR, kR,   kA},
    {OpBitwiseNot, "~",  kAll,  kR, kR,   kA},
    {OpShiftLeft,  "<<", kNo,   kA, kR,   kA},
    {OpShiftRight, ">>", kNo,   kA, kR,   kA},
    {OpAdd,        "+",  kNo,   kA, kA,   kA},
    {OpSubtract,   "-",  kNo,   kA, kA,   kA},
    {OpDivide,     "/",  kNo,   kA, kA,   kA},
    {OpMultiply,   "*",  kNo,   kA, kA,   kA},
    {OpModulo,     "%",  kNo,   kA, kR,   kA},
    {OpConcat,     "@",  kNo,   kR, kR,   kA},
    {OpReplicate,  "^",  kNo,   kR, kR,   kA},
    {OpBitReverse, "$",  kBits, kI, kI,   kA},
}};
// clang-format on

constexpr bool RowsStandAtTheirCodes() {
  for (std::size_t code = 0; code < kRows.size(); ++code) {
    if (kRows[code].code != code) return false;
  }
  return true;
}
static_assert(RowsStandAtTheirCodes());
static_assert(OpBitReverse == kRows.size() - 1);
}  // namespace operator_table

constexpr std::uint32_t OperatorWidth(OperatorCode code) {
  return static_cast<std::uint32_t>(operator_table::kRows[code].text.size());
}

/// The effect of `code` in the column `column`, or `beyond` for a code that is none.
constexpr Effect EffectOf(std::uint16_t code, Effect OperatorRow::*column, Effect beyond) {
  return code < operator_table::kRows.size() ? operator_table::kRows[code].*column : beyond;
}

constexpr bool IsShift(OperatorCode code) { return code == OpShiftLeft || code == OpShiftRight; }

/// Whether `code` is unary for every kind of value: "!" and "~", the ones that a group takes.
constexpr bool IsNegation(OperatorCode code) {
  return operator_table::kRows[code].unary == Unary::kForAll;
}

/// What a character means to a scan.
enum class CharClass : std::uint8_t {
  kPlain,
  kOperator,
  kOpenParenthesis,
  kCloseParenthesis,
  kOpenBracket,
  kCloseBracket,
};

struct CharEntry {
  CharClass char_class = CharClass::kPlain;
  OperatorCode code = OpNone;  // of a character that stands alone
  Unary unary = Unary::kNever;
};

namespace operator_table {
constexpr std::array<CharEntry, 256> MakeCharTable() {
  std::array<CharEntry, 256> table{};
  for (const OperatorRow& row : kRows) {
    CharEntry& entry = table[static_cast<unsigned char>(row.text.front())];
    entry.char_class = CharClass::kOperator;
    if (row.text.size() == 1) entry.code = row.code;
    entry.unary = row.unary;
  }
  table['('].char_class = CharClass::kOpenParenthesis;
  table[')'].char_class = CharClass::kCloseParenthesis;
  table['['].char_class = CharClass::kOpenBracket;
  table[']'].char_class = CharClass::kCloseBracket;
  return table;
}
inline constexpr std::array<CharEntry, 256> kChars = MakeCharTable();

constexpr std::array<bool, 256> MakeOperandTable() {
  std::array<bool, 256> table{};
  for (std::size_t c = 0; c < table.size(); ++c) {
    table[c] = kChars[c].char_class == CharClass::kPlain && c != ' ' && c != '\0';
  }
  return table;
}
inline constexpr std::array<bool, 256> kOfOperands = MakeOperandTable();
}  // namespace operator_table

constexpr const CharEntry& EntryOf(char c) {
  return operator_table::kChars[static_cast<unsigned char>(c)];
}
constexpr CharClass ClassOf(char c) { return EntryOf(c).char_class; }

/// Whether `c` ends no name or literal: no blank, not the end, and nothing to a scan.
constexpr bool IsOfOperands(char c) {
  return operator_table::kOfOperands[static_cast<unsigned char>(c)];
}
constexpr bool IsBracket(char c) { return c == '[' || c == ']'; }

/// Whether `c` is a unary operator for a kind of values: the bit vectors know one more.
constexpr bool IsUnary(char c, bool for_bits) {
  const Unary unary = EntryOf(c).unary;
  return unary == Unary::kForAll || (for_bits && unary == Unary::kForBits);
}

}  // namespace zrt
