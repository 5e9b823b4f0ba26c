// Why texts fail: a table of rules by status, the first that knows something speaks. A rule looks
// at the text around the place of the failure, and at what the evaluation and the scopes have told.
#include <algorithm>
#include <climits>
#include <utility>

#include "ErrorCodes.h"
#include "hint_rules.h"
#include "reading_tree.h"
#include "shown_text.h"

namespace {

using Meaning = zrt::OperandEvent::Meaning;

// ---- Operators ----------------------------------------------------------------------------------

Said SplitShift(const Situation& at) {
  const char c = at.At();
  if ((c != '<' && c != '>') || at.Before() != c) return std::nullopt;
  if (at.text[at.place.offset - 1] == c) return std::nullopt;
  const std::size_t first = at.text.substr(0, at.place.offset).find_last_not_of(' ');
  return Hint{
      {first, at.place.offset + 1 - first},
      "a shift is one operator, with no blank inside",
      std::string(2, c)
  };
}

Said DoubledOperator(const Situation& at) {
  const char c = at.At();
  const std::size_t begin = at.text.substr(0, at.place.offset).find_last_not_of(c) + 1;
  const std::size_t end = std::min(at.text.find_first_not_of(c, begin), at.text.size());
  if (begin == at.place.offset) return std::nullopt;
  const std::string doubled(at.text.substr(begin, end - begin));
  const bool is_shift = c == '<' || c == '>';
  const std::string instead = is_shift               ? std::string(2, c)
                              : c == '&' || c == '|' ? std::string(1, c)
                                                     : "";
  return Hint{
      {begin, end - begin},
      "there is no operator " + InQuotes(doubled), instead
  };
}

Said HalfComparison(const Situation& at) {
  const auto compares = [](char c) { return c == '<' || c == '>'; };
  if (!compares(at.At()) && !compares(at.Before())) return std::nullopt;
  return Hint{at.place, "nothing compares here", ""};
}

Said InsideAnIndex(const Situation& at) {
  const std::size_t open = at.text.substr(0, at.place.offset).find_last_of("[]");
  if (open == std::string_view::npos || at.text[open] != '[') return std::nullopt;
  const std::size_t close = at.text.find(']', open);
  std::string chain;
  if (close != std::string_view::npos && !IsUnary(at.At())) {
    chain = at.text.substr(open + 1, close - open - 1);
    const bool is_wrapped = chain.starts_with('(') && chain.find('(', 1) == std::string::npos &&
                            chain.find(')') == chain.size() - 1;
    chain = is_wrapped ? chain.substr(1, chain.size() - 2) : "";
  }
  const std::size_t end = close == std::string_view::npos ? at.place.offset : close;
  return Hint{
      chain.empty() ? at.place : zrt::Place{open + 1, end - open - 1},
      "a \"(\" or unary operator in an index cuts the whole text", chain
  };
}

Said ExponentBeforeMiddle(const Situation& at) {
  if (!at.part.empty() || at.Before() != '-') return std::nullopt;
  const std::size_t minus = at.text.substr(0, at.place.offset).find_last_not_of(' ');
  if (minus == 0 || (at.text[minus - 1] != 'e' && at.text[minus - 1] != 'E')) return std::nullopt;
  return Hint{
      {minus, 1},
      R"(a "-" behind an "e" is an exponent's: put blanks around it)", " - "
  };
}

Said ReversalOfGroup(const Situation& at) {
  if (at.part != "$") return std::nullopt;
  return Hint{at.place, "\"$\" in front of a group stands between two sides: it takes an operand",
              ""};
}

// What looks like a function.
Said CalledName(const Situation& at) {
  if (at.At() != '(') return std::nullopt;
  const std::string_view front = at.text.substr(0, at.place.offset);
  const std::size_t begin = front.find_last_of("+-*/%&|@^~!$,<>()[] ") + 1;
  const std::string_view name = front.substr(begin);
  const Reading::Operand* operand = at.reading.LookedUp(begin);
  if (name.empty() || operand == nullptr || operand->name.length != name.size()) {
    return std::nullopt;
  }
  const zrt::Place whole = at.Through(begin, at.place.offset);
  if (IsArrayToken(*operand)) {
    const std::string_view group = PartOf(at.text, whole).substr(name.size());
    const std::string index(group.substr(1, std::max<std::size_t>(group.size(), 2) - 2));
    const bool is_chain = index.find_first_of("()[]~!$") == std::string::npos;
    return Hint{whole, "an index stands in brackets",
                is_chain ? std::string(name) + "[" + index + "]" : ""};
  }
  if (operand->meaning != Meaning::kUnknown || IsDigit(name[0])) return std::nullopt;
  return Hint{whole, "there are no functions", ""};
}

Said OperatorMissing(const Situation& at) {
  if (!at.part.empty()) {
    return Hint{at.place, "an operand is missing in front of the " + InQuotes(at.part), ""};
  }
  if (at.At() == ')') {
    return Hint{
        {at.place.offset, 1},
        "this \")\" has no \"(\"", ""
    };
  }
  if (at.Before() == ')' || at.At() == '(') {
    const bool is_bits = at.kind == zrt::ValueKind::kBits;
    return Hint{at.place,
                std::string("an operator is missing here: nothing ") +
                    (is_bits ? "joins" : "multiplies") + " by itself",
                is_bits ? "@" : "*"};
  }
  return Hint{at.place, "an operator is missing here", ""};
}

Said GroupInBrackets(const Situation& at) {
  if (at.place.offset != 0 && !IsOperator(at.Before()) && at.Before() != '(') return std::nullopt;
  return Hint{at.place, "groups stand in parentheses, brackets hold an index", ""};
}

Said DivisionByZero(const Situation& at) {
  if (at.part != "/" && at.part != "%") return std::nullopt;
  if (at.reading.operations().empty() || at.kind == zrt::ValueKind::kFloat) return std::nullopt;
  const Reading::Operation& operation = at.reading.operations().back();
  if (operation.place.offset != at.place.offset) return std::nullopt;
  const ReadValue& right = operation.right_value;
  const bool is_minus_one = at.kind == zrt::ValueKind::kInteger && right.integer == -1;
  if (is_minus_one) return Hint{at.place, "the quotient does not fit into 32 bits", ""};
  return Hint{at.place, "the right side is 0 here", ""};
}

Said NegationOfGroup(const Situation& at) {
  if (at.kind != zrt::ValueKind::kInteger || (at.part != "~" && at.part != "!")) {
    return std::nullopt;
  }
  return at.Wrapped(at.Through(at.place.offset, at.place.offset + 1),
                    "behind an operator, " + InQuotes(at.part) + " takes no group", "(");
}

Said OperatorOfOtherKind(const Situation& at) {
  if (at.kind == zrt::ValueKind::kFloat) {
    return Hint{at.place, "floats have + - * / alone", ""};
  }
  const char* and_there = at.part == "^" ? ", where it repeats" : "";
  return Hint{at.place, "only bit vectors have " + InQuotes(at.part) + and_there, ""};
}

// ---- Types, indexes and sizes -------------------------------------------------------------------

Said TokenOfOtherType(const Situation& at) {
  const Reading::Operand* operand = at.reading.LookedUp(at.place.offset);
  if (operand == nullptr) return std::nullopt;
  const std::string name(PartOf(at.text, operand->name));
  if (at.kind == zrt::ValueKind::kBits) {
    return Hint{at.place, "a float token, which bit vectors do not read", ""};
  }
  if (IsArrayToken(*operand)) {
    return Hint{at.place, "an array: name one of its elements", name + "[0]"};
  }
  return Hint{at.place, "a single value, which takes no index", name};
}

Said NestedIndex(const Situation& at) {
  if (at.part.find('[') == std::string_view::npos) return std::nullopt;
  return Hint{at.place, "an index ends at the first \"]\": it takes no index of its own", ""};
}

Said Range(const Situation& at) {
  if (at.part.find(':') == std::string_view::npos) return std::nullopt;
  return Hint{at.place, "an index names one row or element: there are no ranges", ""};
}

Said NegativeIndex(const Situation& at) {
  if (at.reading.indexes().empty() || at.reading.indexes().back().status != 0) return std::nullopt;
  return Hint{at.place,
              "the index is " + std::to_string(at.reading.indexes().back().value) +
                  ": elements count from 0, rows from 1",
              ""};
}

Said EmptyIndex(const Situation& at) { return Hint{at.place, "name an element or row", "[1]"}; }

Said TooWide(const Situation& at) {
  if (at.reading.operations().empty()) return std::nullopt;
  const auto last = static_cast<std::uint32_t>(at.reading.operations().size() - 1);
  const Reading::Operation& operation = at.reading.operations()[last];
  const bool is_right = operation.right_value.byte_count > 4;
  const ReadValue& side = is_right ? operation.right_value : operation.left_value;
  const std::string size = std::to_string(side.byte_count) + " bytes, four are the most";
  const ReadingTree tree(at.reading);
  const ReadingTree::NodeNumber node = is_right ? tree.RightOf(last) : tree.LeftOf(last);
  if (node == ReadingTree::kNone || tree.nodes()[node].kind == ReadingTree::Node::Kind::kOperand) {
    return Hint{at.place, std::string("its ") + (is_right ? "right" : "left") + " side has " + size,
                ""};
  }
  return Hint{tree.nodes()[node].span,
              "all this is the " + std::string(is_right ? "right" : "left") + " side of the " +
                  InQuotes(operation.text) + " and has " + size,
              ""};
}

// ---- ErrStreamWrite, of which there are several -------------------------------------------------

// Which columns of the text have taken rows of a field.
std::string Takers(const Situation& at, const Reading::Operand& field) {
  std::string columns;
  int count = 0;
  for (const Reading::Operand& operand : at.reading.operands()) {
    if (operand.field != field.field || (operand.has_index && operand.index_value > 0)) continue;
    columns += (count == 0 ? "" : ", ") + std::to_string(operand.place.offset + 1);
    ++count;
  }
  if (count == 0) return "earlier texts took them";
  const std::string here = (count == 1 ? "column " : "columns ") + columns + " took ";
  if (count >= field.row_count) return here + "them";
  return here + std::to_string(count) + ", earlier texts the others";
}

Said RowMissing(const Situation& at) {
  const Reading::Operand* operand = at.reading.LookedUp(at.place.offset);
  if (operand == nullptr || operand->meaning != Meaning::kField) return std::nullopt;
  const std::string rows = Counted(static_cast<std::size_t>(operand->row_count), "row");
  const int index =
      operand->has_index && !at.reading.indexes().empty() ? at.reading.indexes().back().value : 0;
  if (operand->row_count == 0) return Hint{at.place, "this field has no rows", ""};
  if (index > 0) {
    return Hint{at.place, "this field has " + rows + " and no row " + std::to_string(index), ""};
  }
  return Hint{at.place, "the " + rows + " are used up: " + Takers(at, *operand), ""};
}

Said LongLiteral(const Situation& at) {
  if (!at.part.starts_with("0x")) return std::nullopt;
  return Hint{at.place, "a literal has 2147483647 bits at the most", ""};
}

Said LargeResult(const Situation& at) {
  if (at.part != "@" && at.part != "^") return std::nullopt;
  if (at.reading.operations().empty()) return std::nullopt;
  const Reading::Operation& operation = at.reading.operations().back();
  const ReadValue& left = operation.left_value;
  const ReadValue& right = operation.right_value;
  std::int64_t bits = std::int64_t{left.bit_length} + right.bit_length;
  if (at.part == "^") bits = std::int64_t{left.bit_length} * WordOf(right);
  if (bits > INT_MAX) {
    return Hint{at.place,
                (at.part == "^" ? "\"^\" repeats its left side: the" : "the") +
                    (" result would have " + std::to_string(bits)) +
                    " bits, 2147483647 are the most",
                ""};
  }
  const auto fits = [](const ReadValue& value) {
    return value.byte_count == (static_cast<std::size_t>(std::max(value.bit_length, 0)) + 7) / 8;
  };
  if (fits(left) && fits(right)) return Hint{at.place, "memory has run out", ""};
  return Hint{at.place, "bytes and length of a row do not fit together", ""};
}

Said OutOfMemory(const Situation& at) {
  if (at.text.size() > INT_MAX) return Hint{at.place, "the text is too long", ""};
  return Hint{at.place, "memory has run out", ""};
}

struct FailureRule {
  int status;
  Said (*look)(const Situation&);
};

// For each status the surest reason comes first.
// clang-format off
constexpr FailureRule kRules[] = {
    {ErrUnknownOperand,      UnknownOperandHint},
    {ErrMissingOperand,      SignHint},
    {ErrMissingOperand,      SplitShift},
    {ErrMissingOperand,      DoubledOperator},
    {ErrMissingOperand,      HalfComparison},
    {ErrMisplacedOperator,   InsideAnIndex},
    {ErrMisplacedOperator,   ExponentBeforeMiddle},
    {ErrMisplacedOperator,   SignHint},
    {ErrMisplacedOperator,   ReversalOfGroup},
    {ErrMisplacedOperator,   CalledName},
    {ErrMisplacedOperator,   OperatorMissing},
    {ErrMissingArrayName,    GroupInBrackets},
    {ErrStrayCloseBracket,   InsideAnIndex},
    {ErrInvalidOperator,     DivisionByZero},
    {ErrInvalidOperator,     NegationOfGroup},
    {ErrInvalidOperator,     OperatorOfOtherKind},
    {ErrBadTokenType,        TokenOfOtherType},
    {ErrEmptyIndex,          EmptyIndex},
    {ErrNegativeIndex,       NestedIndex},
    {ErrNegativeIndex,       Range},
    {ErrNegativeIndex,       NegativeIndex},
    {ErrOperandTooWide,      TooWide},
    {ErrStreamWrite,         RowMissing},
    {ErrStreamWrite,         LongLiteral},
    {ErrStreamWrite,         LargeResult},
    {ErrStreamWrite,         OutOfMemory},
};
// clang-format on

void Look(int status, const Situation& at, std::vector<Hint>* hints) {
  for (const FailureRule& rule : kRules) {
    if (rule.status != status) continue;
    if (Said said = rule.look(at)) return hints->push_back(std::move(*said));
  }
}

}  // namespace

std::vector<Hint> FailureHints(std::string_view text, zrt::ValueKind kind,
                               const zrt::Failure& failure, const Reading& reading,
                               const std::vector<std::string>& known_names,
                               const char* names_from) {
  std::vector<Hint> hints;
  Look(failure.status,
       {text, kind, failure.place, reading, known_names, names_from, PartOf(text, failure.place)},
       &hints);
  if (failure.cause_status == 0 || !hints.empty()) return hints;
  Look(failure.cause_status,
       {text, zrt::ValueKind::kInteger, failure.cause, reading, known_names, names_from,
        PartOf(text, failure.cause)},
       &hints);
  return hints;
}
