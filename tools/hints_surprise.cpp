// What is read otherwise than it looks: tables of rules, each with its sentence, over the operands,
// the operators and the parts that nothing reads. They look at what the evaluation has told.
#include <algorithm>
#include <map>
#include <optional>

#include "hints.h"
#include "ordinary.h"
#include "reading_text.h"
#include "reading_tree.h"
#include "shown_text.h"

namespace {

using Said = std::optional<Hint>;
using Effect = zrt::OperatorEvent::Effect;
using Literal = zrt::OperandEvent::Literal;
using Meaning = zrt::OperandEvent::Meaning;
using Operand = Reading::Operand;
using Operation = Reading::Operation;

struct Seen {
  std::string_view text;
  zrt::ValueKind kind;
  const Reading& reading;
  const ReadingTree& tree;
  std::map<const QLMDataField*, int> times_read;  // without an index, so far

  [[nodiscard]] std::string Part(zrt::Place place) const {
    return std::string(PartOf(text, place));
  }
};

std::string Count(std::size_t count, const std::string& what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

// ---- Operands
// ------------------------------------------------------------------------------------

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

Said FractionOfLiteral(const Seen& /*seen*/, const Operand& operand) {
  if (operand.value.kind != zrt::ValueKind::kInteger || operand.literal != Literal::kFraction) {
    return std::nullopt;
  }
  const std::string value = std::to_string(operand.value.integer);
  return Hint{operand.name, "integers stop at the \".\" or \"e\": this is " + value, value};
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

Said RowZero(const Seen& /*seen*/, const Operand& operand) {
  if (operand.field == nullptr || !operand.has_index || operand.index_value > 0) {
    return std::nullopt;
  }
  return Hint{operand.index, "rows count from 1: 0 is the next row", ""};
}

Said FieldReadAgain(const Seen& seen, const Operand& operand) {
  if (operand.row == 0 || operand.row_count < 2 || seen.times_read.at(operand.field) < 2) {
    return std::nullopt;
  }
  if (operand.has_index && operand.index_value > 0) return std::nullopt;
  const std::string row = std::to_string(operand.row);
  return Hint{operand.place, "each reading takes the next row: this is row " + row,
              seen.Part(operand.name) + "[" + row + "]"};
}

// ---- Operators
// -----------------------------------------------------------------------------------

const ReadingTree::Node* NodeAt(const Seen& seen, ReadingTree::NodeNumber node) {
  return node == ReadingTree::kNone ? nullptr : &seen.tree.nodes()[node];
}

// The operand that is the whole side, null if it is more than one.
const Operand* OperandAt(const Seen& seen, ReadingTree::NodeNumber node) {
  const ReadingTree::Node* side = NodeAt(seen, node);
  const bool is_one = side != nullptr && side->kind == ReadingTree::Node::Kind::kOperand;
  return is_one ? &seen.reading.operands()[side->at] : nullptr;
}

zrt::Place SpanAt(const Seen& seen, ReadingTree::NodeNumber node) {
  const ReadingTree::Node* side = NodeAt(seen, node);
  return side == nullptr ? zrt::Place() : side->span;
}

// A hexadecimal literal with zeros in front up to that many bytes; empty if the side is none.
std::string Padded(const Seen& seen, ReadingTree::NodeNumber node, std::size_t byte_count) {
  const Operand* operand = OperandAt(seen, node);
  if (operand == nullptr || operand->literal != Literal::kHexadecimal) return "";
  const std::string digits = seen.Part(operand->name).substr(2);
  const std::size_t wanted = 2 * byte_count;
  if (digits.size() >= wanted || wanted > 64) return "";
  return "0x" + std::string(wanted - digits.size(), '0') + digits;
}

bool IsIn(std::string_view text, std::initializer_list<std::string_view> operators) {
  return std::find(operators.begin(), operators.end(), text) != operators.end();
}

// Whether bits above the length are set.
bool HasSpareBits(const ReadValue& value) {
  const auto used = static_cast<unsigned>(value.bit_length) % 8;
  const auto size = (static_cast<std::size_t>(std::max(value.bit_length, 0)) + 7) / 8;
  return used != 0 && value.byte_count == size && (value.bytes[0] >> used) != 0;
}

// Ones for each bit of the length: 0x0FFF for 12.
std::string Mask(const ReadValue& value) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  const auto used = static_cast<unsigned>(value.bit_length) % 8;
  const unsigned top = (1U << used) - 1;
  return std::string("0x") + kDigits[top >> 4U] + kDigits[top & 0xFU] +
         std::string(2 * (value.byte_count - 1), 'F');
}

Said Trailing(const Seen& /*seen*/, std::uint32_t /*at*/, const Operation& operation) {
  if (operation.effect != Effect::kTrailing) return std::nullopt;
  return Hint{operation.place, "nothing stands behind this operator: it is left out", ""};
}

Said Idle(const Seen& /*seen*/, std::uint32_t /*at*/, const Operation& operation) {
  const bool is_replaced = operation.effect == Effect::kReplaces;
  if (operation.effect != Effect::kIgnored && !is_replaced) return std::nullopt;
  const bool is_half_shift = operation.text == "<" || operation.text == ">";
  return Hint{operation.place,
              std::string("this computes nothing: its ") + (is_replaced ? "left" : "right") +
                  " side is dropped",
              is_half_shift ? operation.text + operation.text : ""};
}

Said BehindGroup(const Seen& /*seen*/, std::uint32_t /*at*/, const Operation& operation) {
  if (!IsLeftOnly(operation)) return std::nullopt;
  return Hint{operation.place,
              "this works on what stands in front of it, and drops what stands behind it",
              "@" + operation.text};
}

Said ShiftCount(const Seen& seen, std::uint32_t at, const Operation& operation) {
  if (operation.right_value.kind != zrt::ValueKind::kInteger || operation.is_unary ||
      !IsIn(operation.text, {"<<", ">>"})) {
    return std::nullopt;
  }
  const int count = operation.right_value.integer;
  if (count >= 0 && count < 32) return std::nullopt;
  const std::string used = std::to_string(static_cast<unsigned>(count) % 32);
  return Hint{SpanAt(seen, seen.tree.RightOf(at)),
              "a shift looks at the low 5 bits of its count: this is " + used, ""};
}

Said ShortCount(const Seen& seen, std::uint32_t at, const Operation& operation) {
  const ReadValue& count = operation.right_value;
  if (count.kind != zrt::ValueKind::kBits || !IsIn(operation.text, {"<<", ">>", "^"}) ||
      count.byte_count >= 4) {
    return std::nullopt;
  }
  const Operand* operand = OperandAt(seen, seen.tree.RightOf(at));
  const bool is_literal = operand != nullptr && operand->meaning == Meaning::kLiteral;
  return Hint{SpanAt(seen, seen.tree.RightOf(at)),
              "a count of " + Count(count.byte_count, "byte") + " stands high: this is " +
                  std::to_string(WordOf(count)),
              is_literal ? DecimalOf(PartOf(seen.text, operand->name)) : ""};
}

Said ShortSide(const Seen& seen, std::uint32_t at, const Operation& operation) {
  if (operation.left_value.kind != zrt::ValueKind::kBits || operation.is_unary ||
      !IsIn(operation.text, {"+", "-", "*", "/", "%"})) {
    return std::nullopt;
  }
  for (const bool is_left : {true, false}) {
    const ReadValue& side = is_left ? operation.left_value : operation.right_value;
    if (side.byte_count >= 4) continue;
    const ReadingTree::NodeNumber node = is_left ? seen.tree.LeftOf(at) : seen.tree.RightOf(at);
    return Hint{SpanAt(seen, node),
                "a side of " + Count(side.byte_count, "byte") + " stands high: it counts as " +
                    std::to_string(WordOf(side)),
                Padded(seen, node, 4)};
  }
  return std::nullopt;
}

Said UnevenSides(const Seen& seen, std::uint32_t at, const Operation& operation) {
  const std::size_t left = operation.left_value.byte_count;
  const std::size_t right = operation.right_value.byte_count;
  if (operation.left_value.kind != zrt::ValueKind::kBits) return std::nullopt;
  if (operation.text == "&" && left > right) {
    return Hint{
        SpanAt(seen, seen.tree.RightOf(at)),
        "\"&\" keeps the " + Count(left - right, "byte") + " of its left side that have no partner",
        Padded(seen, seen.tree.RightOf(at), left)};
  }
  if (operation.text == "|" && right > left) {
    return Hint{SpanAt(seen, seen.tree.LeftOf(at)),
                "\"|\" does not make its left side longer: " + Count(right - left, "byte") +
                    " of the right one are dropped",
                Padded(seen, seen.tree.LeftOf(at), right)};
  }
  return std::nullopt;
}

Said SpareBits(const Seen& seen, std::uint32_t at, const Operation& operation) {
  if (operation.left_value.kind != zrt::ValueKind::kBits || operation.is_unary) return std::nullopt;
  const bool is_right = operation.text == "@";
  if (!is_right && operation.text != "^" && operation.text != ">>") return std::nullopt;
  const ReadValue& side = is_right ? operation.right_value : operation.left_value;
  if (!HasSpareBits(side)) return std::nullopt;
  const ReadingTree::NodeNumber number = is_right ? seen.tree.RightOf(at) : seen.tree.LeftOf(at);
  const ReadingTree::Node* node = NodeAt(seen, number);
  std::string instead;
  if (node != nullptr && node->kind != ReadingTree::Node::Kind::kBinary && side.is_whole()) {
    instead = "(" + seen.Part(node->span) + "&" + Mask(side) + ")";
  }
  return Hint{SpanAt(seen, number),
              std::string("set bits above the length ") +
                  (is_right ? "are laid over the left side" : "are moved too"),
              instead};
}

Said WholeBytes(const Seen& seen, std::uint32_t at, const Operation& operation) {
  const ReadValue& value = operation.left_value;
  if (!operation.is_unary || value.kind != zrt::ValueKind::kBits) return std::nullopt;
  if (operation.text == "!" && value.byte_count > 1) {
    return Hint{operation.place, "\"!\" works on each byte, not on the whole", ""};
  }
  if (operation.text != "$" || value.bit_length % 8 == 0) return std::nullopt;
  const zrt::Place operand = SpanAt(seen, seen.tree.LeftOf(at));
  const zrt::Place whole = {operation.place.offset,
                            operand.offset + operand.length - operation.place.offset};
  const std::string spare = std::to_string(8 - value.bit_length % 8);
  const std::string instead = "(" + seen.Part(whole) + ")>>" + spare;
  return Hint{whole, "\"$\" turns whole bytes: its bits stand at the top now",
              whole.length == seen.text.size() ? instead : "(" + instead + ")"};
}

// ---- What is not read, how it is grouped, and the value
// ------------------------------------------

Hint Unread(const Seen& seen, zrt::Place place) {
  const std::size_t before = seen.text.substr(0, place.offset).find_last_not_of(' ');
  if (before != std::string_view::npos && seen.text[before] == ']') {
    return {place, "nothing reads what stands behind the \"]\"", ""};
  }
  const std::string joined = seen.kind == zrt::ValueKind::kBits ? "" : seen.Part(place) + "*";
  return {place, "nothing reads this: an operator is missing behind it", joined};
}

Said Grouping(const Seen& seen) {
  const auto is_operand = [&seen](std::string_view name) {
    const auto offset = static_cast<std::size_t>(name.data() - seen.text.data());
    const auto& operands = seen.reading.operands();
    return std::any_of(operands.begin(), operands.end(), [&](const Operand& operand) {
      return operand.name.offset == offset && operand.name.length == name.size();
    });
  };
  const OrdinaryText ordinary(seen.text, seen.kind, is_operand);
  if (!ordinary.refusal().empty() || ordinary.IsGroupedSo(seen.tree)) return std::nullopt;
  const std::string read = Shown(seen.tree.Brackets(seen.text, seen.tree.root()), 60);
  const auto& cuts = seen.reading.cuts();
  const auto is_by = [&cuts](zrt::CutEvent::By by) {
    return std::any_of(cuts.begin(), cuts.end(), [by](const Reading::Cut& cut) {
      return cut.by == by && cut.middle.length < cut.piece.length;
    });
  };
  const char* why = is_by(zrt::CutEvent::By::kGroup)   ? "a group splits the chain"
                    : is_by(zrt::CutEvent::By::kUnary) ? "a unary operator splits the chain"
                                                       : "there is no precedence";
  return Hint{
      {0, seen.text.size()},
      std::string(why) + ": this is " + read, ordinary.Written()
  };
}

Said SpareBitsOfValue(const Seen& seen) {
  const ReadValue& value = seen.reading.outcome_value();
  if (value.kind != zrt::ValueKind::kBits || !HasSpareBits(value) || !value.is_whole()) {
    return std::nullopt;
  }
  return Hint{
      {0, seen.text.size()},
      "bits above the length of the value are set",
      "(" + std::string(seen.text) + ")&" + Mask(value)
  };
}

constexpr Said (*kOperandRules[])(const Seen&, const Operand&) = {
    PrefixedLiteral, FractionOfLiteral, ExponentWithoutDigits, LargeLiteral, FractionOfToken,
    OddDigits,       UnusedIndex,       ArrayWithoutIndex,     MaskName,     OtherName,
    FailedIndex,     RowZero,           FieldReadAgain,
};

constexpr Said (*kOperationRules[])(const Seen&, std::uint32_t, const Operation&) = {
    Trailing,  Idle,        BehindGroup, ShiftCount, ShortCount,
    ShortSide, UnevenSides, SpareBits,   WholeBytes,
};

constexpr Said (*kTextRules[])(const Seen&) = {Grouping, SpareBitsOfValue};

}  // namespace

std::vector<Hint> SurpriseHints(std::string_view text, zrt::ValueKind kind,
                                const Reading& reading) {
  const ReadingTree tree(reading);
  Seen seen{text, kind, reading, tree, {}};
  std::vector<Hint> hints;
  const auto keep = [&hints](Said said) {
    if (said) hints.push_back(std::move(*said));
  };
  for (const Operand& operand : reading.operands()) {
    if (!operand.has_index || operand.index_value <= 0) ++seen.times_read[operand.field];
    for (const auto& rule : kOperandRules) keep(rule(seen, operand));
  }
  for (std::uint32_t at = 0; at < reading.operations().size(); ++at) {
    for (const auto& rule : kOperationRules) keep(rule(seen, at, reading.operations()[at]));
  }
  for (const zrt::Place place : reading.unread()) hints.push_back(Unread(seen, place));
  if (reading.has_outcome()) {
    for (const auto& rule : kTextRules) keep(rule(seen));
  }
  std::stable_sort(hints.begin(), hints.end(),
                   [](const Hint& a, const Hint& b) { return a.place.offset < b.place.offset; });
  return hints;
}
