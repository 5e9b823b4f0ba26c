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

/// What an evaluator does with an operator between two values.
enum class Effect : std::uint8_t { kApplies, kIgnored, kRefused };

struct OperatorRow {
  OperatorCode code;
  std::string_view text;
  Effect on_integers;
  Effect on_floats;
  Effect on_bits;
};

namespace operator_table {
constexpr Effect kA = Effect::kApplies;
constexpr Effect kI = Effect::kIgnored;
constexpr Effect kR = Effect::kRefused;

// "<" and ">" alone are OpNone like ",": the text is cut there, but nothing is done.
// clang-format off
inline constexpr std::array<OperatorRow, 15> kRows = {{
    // code        text  int float bits
    {OpNone,       ",",  kI, kI,   kI},
    {OpAnd,        "&",  kA, kR,   kA},
    {OpOr,         "|",  kA, kR,   kA},
    {OpLogicalNot, "!",  kR, kR,   kA},
    {OpBitwiseNot, "~",  kR, kR,   kA},
    {OpShiftLeft,  "<<", kA, kR,   kA},
    {OpShiftRight, ">>", kA, kR,   kA},
    {OpAdd,        "+",  kA, kA,   kA},
    {OpSubtract,   "-",  kA, kA,   kA},
    {OpDivide,     "/",  kA, kA,   kA},
    {OpMultiply,   "*",  kA, kA,   kA},
    {OpModulo,     "%",  kA, kR,   kA},
    {OpConcat,     "@",  kR, kR,   kA},
    {OpReplicate,  "^",  kR, kR,   kA},
    {OpBitReverse, "$",  kI, kI,   kA},
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
constexpr bool IsNegation(OperatorCode code) {
  return code == OpLogicalNot || code == OpBitwiseNot;
}

/// What a character means to a scan.
enum class CharClass : std::uint8_t {
  kPlain,
  kOperator,
  kOpenParenthesis,
  kCloseParenthesis,
  kOpenBracket,  // the brackets stand last: links are told from brackets by that
  kCloseBracket,
};

struct CharEntry {
  CharClass char_class = CharClass::kPlain;
  OperatorCode code = OpNone;  // of a character that stands alone
};

namespace operator_table {
constexpr std::array<CharEntry, 256> MakeCharTable() {
  std::array<CharEntry, 256> table{};
  for (const OperatorRow& row : kRows) {
    const auto first = static_cast<unsigned char>(row.text.front());
    table[first] = {CharClass::kOperator, row.text.size() == 1 ? row.code : OpNone};
  }
  table['('].char_class = CharClass::kOpenParenthesis;
  table[')'].char_class = CharClass::kCloseParenthesis;
  table['['].char_class = CharClass::kOpenBracket;
  table[']'].char_class = CharClass::kCloseBracket;
  return table;
}
inline constexpr std::array<CharEntry, 256> kChars = MakeCharTable();
}  // namespace operator_table

constexpr const CharEntry& EntryOf(char c) {
  return operator_table::kChars[static_cast<unsigned char>(c)];
}
constexpr CharClass ClassOf(char c) { return EntryOf(c).char_class; }

}  // namespace zrt
