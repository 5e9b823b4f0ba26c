// What is read otherwise than it looks: tables of rules, each with its sentence, over the
// operators, the parts that nothing reads, and the whole. They look at what the evaluation has
// told.
#include <algorithm>
#include <utility>

#include "ordinary.h"
#include "shown_text.h"
#include "surprise_rules.h"

namespace {

using Said = std::optional<Hint>;
using Effect = zrt::OperatorEvent::Effect;
using Literal = zrt::OperandEvent::Literal;
using Meaning = zrt::OperandEvent::Meaning;
using Operand = Reading::Operand;
using Operation = Reading::Operation;

// ---- Operators ----------------------------------------------------------------------------------

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

Said Trailing(const Seen& seen, std::uint32_t /*at*/, const Operation& operation) {
  if (operation.effect != Effect::kTrailing || !seen.reading.has_outcome()) return std::nullopt;
  return Hint{operation.place, "nothing stands behind this operator: it is left out", ""};
}

Said Idle(const Seen& /*seen*/, std::uint32_t /*at*/, const Operation& operation) {
  const bool is_replaced = operation.effect == Effect::kReplaces;
  if (operation.effect != Effect::kIgnored && !is_replaced) return std::nullopt;
  const std::string dropped = std::string(is_replaced ? "left" : "right") + " side is dropped";
  if (operation.text == "<" || operation.text == ">") {
    const std::string shift = operation.text + operation.text;
    return Hint{operation.place,
                "nothing compares here: its " + dropped + "; a shift is \"" + shift + '"', ""};
  }
  return Hint{operation.place, "this computes nothing: its " + dropped, ""};
}

Said BehindGroup(const Seen& /*seen*/, std::uint32_t /*at*/, const Operation& operation) {
  if (!IsLeftOnly(operation) || !operation.has_result) return std::nullopt;
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
              "a count of " + Counted(count.byte_count, "byte") + " stands high: this is " +
                  std::to_string(WordOf(count)),
              is_literal ? DecimalOf(PartOf(seen.text, operand->name)) : ""};
}

// Among the bytes that were kept.
bool HasOnes(const ReadValue& value) {
  return std::any_of(value.bytes.begin(), value.bytes.end(),
                     [](std::uint8_t byte) { return byte != 0; });
}

// Counts that leave nothing, or leave all as it was.
Said IdleCount(const Seen& seen, std::uint32_t at, const Operation& operation) {
  const ReadValue& count = operation.right_value;
  const ReadValue& left = operation.left_value;
  if (count.kind != zrt::ValueKind::kBits || count.byte_count < 4 || operation.is_unary) {
    return std::nullopt;
  }
  const std::int64_t word = WordOf(count);
  const zrt::Place place = SpanAt(seen, seen.tree.RightOf(at));
  if (word < 0 && IsIn(operation.text, {"<<", ">>", "^"})) {
    return Hint{place,
                "a count of " + std::to_string(word) +
                    (operation.text == "^" ? " leaves no bits" : " changes nothing"),
                ""};
  }
  if (!IsIn(operation.text, {"<<", ">>"}) || left.bit_length <= 0 || word < left.bit_length ||
      HasOnes(operation.result) || !HasOnes(left)) {
    return std::nullopt;
  }
  return Hint{operation.place,
              "a shift keeps the length: " + std::to_string(word) +
                  (word == 1 ? " place leaves" : " places leave") + " nothing of " +
                  Counted(static_cast<std::size_t>(left.bit_length), "bit"),
              ""};
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
    if (side.byte_count == 0) return Hint{SpanAt(seen, node), "a side of no bits counts as 0", ""};
    return Hint{SpanAt(seen, node),
                "a side of " + Counted(side.byte_count, "byte") + " stands high: it counts as " +
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
    return Hint{SpanAt(seen, seen.tree.RightOf(at)),
                "\"&\" finds no partner for " + Counted(left - right, "byte") +
                    " of its left side, which it keeps",
                Padded(seen, seen.tree.RightOf(at), left)};
  }
  if (operation.text == "|" && right > left) {
    return Hint{SpanAt(seen, seen.tree.LeftOf(at)),
                "\"|\" does not make its left side longer: the right side loses " +
                    Counted(right - left, "byte"),
                Padded(seen, seen.tree.LeftOf(at), right)};
  }
  return std::nullopt;
}

bool IsReversal(const Seen& seen, ReadingTree::NodeNumber number) {
  const ReadingTree::Node* node = NodeAt(seen, number);
  return node != nullptr && node->kind == ReadingTree::Node::Kind::kUnary &&
         seen.reading.operations()[node->at].text == "$";
}

Said SpareBits(const Seen& seen, std::uint32_t at, const Operation& operation) {
  if (operation.left_value.kind != zrt::ValueKind::kBits || operation.is_unary) return std::nullopt;
  const bool is_right = operation.text == "@";
  if (!is_right && operation.text != "^" && operation.text != ">>") return std::nullopt;
  const ReadValue& side = is_right ? operation.right_value : operation.left_value;
  if (!HasSpareBits(side)) return std::nullopt;
  const ReadingTree::NodeNumber number = is_right ? seen.tree.RightOf(at) : seen.tree.LeftOf(at);
  const ReadingTree::Node* node = NodeAt(seen, number);
  if (operation.text == ">>" && IsReversal(seen, number)) return std::nullopt;
  std::string instead;
  if (node != nullptr && node->kind != ReadingTree::Node::Kind::kBinary && side.is_whole()) {
    instead = "(" + seen.Part(node->span) + "&" + Mask(side) + ")";
  }
  return Hint{SpanAt(seen, number),
              std::string("set bits above the length ") +
                  (is_right ? "are laid over the left side" : "are moved too"),
              instead};
}

// $x>>5 is what a reversal wants.
bool IsShiftedDown(const Seen& seen, std::uint32_t at) {
  const std::uint32_t taker = seen.tree.TakerOf(at);
  return taker != ReadingTree::kNone && seen.reading.operations()[taker].text == ">>";
}

Said WholeBytes(const Seen& seen, std::uint32_t at, const Operation& operation) {
  const ReadValue& value = operation.left_value;
  if (!operation.is_unary || value.kind != zrt::ValueKind::kBits) return std::nullopt;
  if (operation.text == "!" && value.byte_count > 1) {
    return Hint{operation.place, "\"!\" works on each byte, not on the whole", ""};
  }
  if (operation.text != "$" || value.bit_length % 8 == 0) return std::nullopt;
  if (IsShiftedDown(seen, at)) return std::nullopt;
  const zrt::Place operand = SpanAt(seen, seen.tree.LeftOf(at));
  const zrt::Place whole = {operation.place.offset,
                            operand.offset + operand.length - operation.place.offset};
  const std::string spare = std::to_string(8 - value.bit_length % 8);
  const std::string instead = "(" + seen.Part(whole) + ")>>" + spare;
  return Hint{whole, "\"$\" turns whole bytes: its bits stand at the top now",
              whole.length == seen.text.size() ? instead : "(" + instead + ")"};
}

// ---- What is not read, how it is grouped, and the value -----------------------------------------

Hint Unread(const Seen& seen, zrt::Place place) {
  const std::size_t before = seen.text.substr(0, place.offset).find_last_not_of(' ');
  if (before != std::string_view::npos && seen.text[before] == ']') {
    return {place, "nothing reads what stands behind the \"]\"", ""};
  }
  const char* joining = seen.kind == zrt::ValueKind::kBits ? "@" : "*";
  return {place, "nothing reads this: an operator is missing behind it",
          seen.Part(place) + joining};
}

Said Grouping(const Seen& seen) {
  std::map<std::size_t, std::size_t> ends;  // of names and literals, by their beginning
  for (const Operand& operand : seen.reading.operands()) {
    ends[operand.name.offset] = operand.name.offset + operand.name.length;
  }
  const auto is_operand = [&](std::string_view name) {
    const auto begin = static_cast<std::size_t>(name.data() - seen.text.data());
    const auto found = ends.find(begin);
    return found != ends.end() && found->second == begin + name.size();
  };
  const OrdinaryText ordinary(seen.text, seen.kind, is_operand);
  if (ordinary.refuses_index()) {
    return Hint{ordinary.refused(), ordinary.refusal() + ": it is read from the left", ""};
  }
  if (!ordinary.refusal().empty() || ordinary.IsGroupedSo(seen.tree)) return std::nullopt;
  for (const Operand& operand : seen.reading.operands()) {
    const std::string_view name = PartOf(seen.text, operand.name);
    const bool is_cut = operand.literal == Literal::kDecimal && !name.empty() &&
                        (name.back() == 'e' || name.back() == 'E');
    if (is_cut) return std::nullopt;  // 1e+5, which has its own rule
  }
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
  if (IsReversal(seen, seen.tree.root())) return std::nullopt;  // has its own rule
  return Hint{
      {0, seen.text.size()},
      "bits above the length of the value are set",
      "(" + std::string(seen.text) + ")&" + Mask(value)
  };
}

constexpr Said (*kOperationRules[])(const Seen&, std::uint32_t, const Operation&) = {
    Trailing,  Idle,      BehindGroup, ShiftCount, ShortCount,
    IdleCount, ShortSide, UnevenSides, SpareBits,  WholeBytes,
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
    AddOperandSurprises(seen, operand, &hints);
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
