// Operands that are read otherwise than they look: literals of another notation, indexes, rows.
#include <algorithm>
#include <climits>
#include <utility>

#include "surprise_rules.h"

namespace {

using Said = std::optional<Hint>;
using Literal = zrt::OperandEvent::Literal;
using Meaning = zrt::OperandEvent::Meaning;
using Operand = Reading::Operand;

Said PrefixedLiteral(const Seen& seen, const Operand& operand) {
  const bool is_binary = operand.literal == Literal::kBinary;
  if (operand.value.kind == zrt::ValueKind::kBits) return std::nullopt;
  if (!is_binary && operand.literal != Literal::kHexadecimal) return std::nullopt;
  return Hint{operand.name,
              std::string(is_binary ? "binary" : "hexadecimal") + " literals are 0 in " +
                  (seen.kind == zrt::ValueKind::kBits      ? "an index"
                   : seen.kind == zrt::ValueKind::kInteger ? "integers"
                                                           : "floats and indexes"),
              DecimalOf(PartOf(seen.text, operand.name))};
}

// 2e3 is 2000. Empty if the number is no integer of 32 bits.
std::string WithoutExponent(std::string_view literal) {
  const std::size_t mark = literal.find_first_of("eE");
  if (mark == 0 || mark == std::string_view::npos || mark + 2 != literal.size()) return "";
  std::string digits(literal.substr(0, mark));
  digits.append(static_cast<std::size_t>(literal.back() - '0'), '0');
  const bool is_whole = digits.find_first_not_of("0123456789") == std::string::npos;
  return is_whole && digits.size() <= 10 && std::stoll(digits) <= INT_MAX ? digits : "";
}

Said FractionOfLiteral(const Seen& seen, const Operand& operand) {
  if (operand.value.kind != zrt::ValueKind::kInteger || operand.literal != Literal::kFraction) {
    return std::nullopt;
  }
  const std::string value = std::to_string(operand.value.integer);
  const std::string_view literal = PartOf(seen.text, operand.name);
  if (IsExponentAlone(literal, operand)) return std::nullopt;  // has its own rule
  const bool has_exponent = literal.find_first_of("eE") != std::string_view::npos;
  return Hint{operand.name, R"(integers stop at the "." or "e": this is )" + value,
              has_exponent ? WithoutExponent(literal) : value};
}

// e-5 is a number, also where there is a name e.
Said ExponentAlone(const Seen& seen, const Operand& operand) {
  if (!IsExponentAlone(PartOf(seen.text, operand.name), operand)) return std::nullopt;
  const std::string literal = seen.Part(operand.name);
  return Hint{operand.name, "no digits stand in front of the \"e\": this is 0",
              literal[1] == '-' ? literal.substr(0, 1) + " - " + literal.substr(2) : ""};
}

// 1e and 1e+5, which is 1e and then 5.
Said ExponentWithoutDigits(const Seen& seen, const Operand& operand) {
  const std::string literal = seen.Part(operand.name);
  if (operand.literal != Literal::kDecimal || literal.find_first_of("eE") == std::string::npos) {
    return std::nullopt;
  }
  const std::size_t plus = operand.name.offset + operand.name.length;
  const std::string_view behind = seen.text.substr(plus);
  const std::size_t digits = std::min(behind.find_first_not_of("0123456789", 1), behind.size());
  if (!behind.starts_with('+') || digits < 2) {
    return Hint{operand.name, "no digits stand behind the \"e\"", ValueText(operand.value)};
  }
  return Hint{
      {operand.name.offset, literal.size() + digits},
      "an exponent has no \"+\": these are two operands",
      literal + std::string(behind.substr(1, digits - 1))
  };
}

Said LargeLiteral(const Seen& seen, const Operand& operand) {
  if (operand.literal != Literal::kDecimal || operand.value.kind == zrt::ValueKind::kFloat) {
    return std::nullopt;
  }
  const bool is_bits = operand.value.kind == zrt::ValueKind::kBits;
  std::string_view digits = PartOf(seen.text, operand.name);
  digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size() - 1));
  const std::int64_t value = is_bits ? WordOf(operand.value) : operand.value.integer;
  if (digits.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  if (digits == std::to_string(is_bits ? value & 0xFFFFFFFF : value)) return std::nullopt;
  return Hint{operand.name, "numbers have 32 bits: this is " + std::to_string(value), ""};
}

Said FractionOfToken(const Seen& /*seen*/, const Operand& operand) {
  if (!operand.loses_fraction) return std::nullopt;
  return Hint{operand.place,
              "the fraction of this token is cut off: " + std::to_string(operand.value.integer),
              ""};
}

Said OddDigits(const Seen& seen, const Operand& operand) {
  const std::string literal = seen.Part(operand.name);
  if (operand.value.kind != zrt::ValueKind::kBits || operand.literal != Literal::kHexadecimal ||
      literal.size() % 2 == 0) {
    return std::nullopt;
  }
  return Hint{operand.name, "an odd count of digits: a 0 is put behind the last one",
              "0x0" + literal.substr(2)};
}

Said UnusedIndex(const Seen& seen, const Operand& operand) {
  const bool takes_index = IsArrayToken(operand) || operand.meaning == Meaning::kField;
  if (!operand.has_index || takes_index) return std::nullopt;
  return Hint{operand.place, "this takes no index: it is not used", seen.Part(operand.name)};
}

Said ArrayWithoutIndex(const Seen& seen, const Operand& operand) {
  if (operand.has_index || !IsArrayToken(operand)) return std::nullopt;
  return Hint{operand.place, "an array without an index is read outside its bounds",
              seen.Part(operand.name) + "[0]"};
}

Said MaskName(const Seen& /*seen*/, const Operand& operand) {
  if (operand.meaning != Meaning::kMaskName) return std::nullopt;
  return Hint{operand.place, "no scope holds this mask: it has no bits", ""};
}

Said OtherName(const Seen& seen, const Operand& operand) {
  if (operand.field == nullptr || operand.field->GetFieldName() == seen.Part(operand.name)) {
    return std::nullopt;
  }
  const std::string name = operand.field->GetFieldName();
  return Hint{operand.name, "no scope holds this name: " + name + " is read", name};
}

Said FailedIndex(const Seen& /*seen*/, const Operand& operand) {
  if (operand.index_status == 0) return std::nullopt;
  return Hint{
      operand.index,
      "the index fails and counts with its value so far, " + std::to_string(operand.index_value),
      ""};
}

Said RowZero(const Seen& seen, const Operand& operand) {
  if (operand.field == nullptr || !operand.has_index || operand.index_value > 0) {
    return std::nullopt;
  }
  if (!DecimalOf(PartOf(seen.text, operand.index)).empty()) return std::nullopt;  // is told already
  return Hint{operand.index, "rows count from 1: 0 is the next row", ""};
}

Said FieldReadAgain(const Seen& seen, const Operand& operand) {
  const bool takes_next = !operand.has_index || operand.index_value <= 0;
  if (operand.row == 0 || operand.row_count < 2 || !takes_next) return std::nullopt;
  if (seen.times_read.at(operand.field) < 2) return std::nullopt;
  const std::string row = std::to_string(operand.row);
  return Hint{operand.place, "each reading takes the next row: this is row " + row,
              seen.Part(operand.name) + "[" + row + "]"};
}

constexpr Said (*kOperandRules[])(const Seen&, const Operand&) = {
    PrefixedLiteral, FractionOfLiteral, ExponentAlone, ExponentWithoutDigits, LargeLiteral,
    FractionOfToken, OddDigits,         UnusedIndex,   ArrayWithoutIndex,     MaskName,
    OtherName,       FailedIndex,       RowZero,       FieldReadAgain,
};

}  // namespace

void AddOperandSurprises(const Seen& seen, const Reading::Operand& operand,
                         std::vector<Hint>* hints) {
  for (const auto& rule : kOperandRules) {
    if (Said said = rule(seen, operand)) hints->push_back(std::move(*said));
  }
}
