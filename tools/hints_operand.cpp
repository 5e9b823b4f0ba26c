// Why an operand is none: a table of rules, the first that knows something speaks. The order
// counts, the surest reason comes first.
#include <algorithm>

#include "hint_rules.h"
#include "nearest_name.h"

namespace {

using Meaning = zrt::OperandEvent::Meaning;

// Puts blanks around each "-" that stands behind an "e", but for those of exponents: 1e-5. Empty if
// there is none.
std::string WithBlanks(std::string_view operand) {
  std::string apart;
  std::size_t begin = 0;  // of what stands in front of the next "-"
  for (std::size_t i = 1; i < operand.size(); ++i) {
    if (operand[i] != '-' || (operand[i - 1] != 'e' && operand[i - 1] != 'E')) continue;
    const std::string_view before = operand.substr(begin, i - 1 - begin);
    const bool is_number = !before.empty() && std::all_of(before.begin(), before.end(), IsDigit);
    if (is_number && i + 1 < operand.size() && IsDigit(operand[i + 1])) continue;
    apart += std::string(operand.substr(begin, i - begin)) + " - ";
    begin = i + 1;
  }
  if (begin == 0) return "";
  return std::string(Trimmed(apart + std::string(operand.substr(begin))));
}

// ---- ErrUnknownOperand: nothing there -----------------------------------------------------------

Said NothingToEvaluate(const Situation& at) {
  if (!Trimmed(at.text).empty()) return std::nullopt;
  return Hint{at.place, "there is nothing to evaluate", ""};
}

Said UnaryBesideUnary(const Situation& at) {
  if (!at.part.empty() || !IsUnary(at.At()) || !IsUnary(at.Before())) return std::nullopt;
  if (at.Before() == '$') return Hint{at.place, "\"$\" takes one operand and no group", ""};
  return at.Wrapped(at.Through(at.place.offset, at.place.offset + 1),
                    "a unary operator takes one operand, not another operator", "(");
}

Said EmptyPiece(const Situation& at) {
  if (!Trimmed(at.part).empty()) return std::nullopt;
  if (at.At() == ')' || at.Before() == '(') {
    return Hint{at.place, "there is nothing between the parentheses", ""};
  }
  if (IsOperator(at.Before())) {
    return Hint{at.place, std::string("an operand is missing behind the \"") + at.Before() + '"',
                ""};
  }
  return Hint{at.place, std::string("an operand is missing in front of the \"") + at.At() + '"',
              ""};
}

// ---- ErrUnknownOperand: an operand that is none -------------------------------------------------

Said BlankAtAnEnd(const Situation& at) {
  const std::string_view trimmed = Trimmed(at.part);
  if (trimmed.empty() || trimmed.size() == at.part.size()) return std::nullopt;
  return Hint{at.place, "a blank at the end of a text or group belongs to the operand",
              std::string(trimmed)};
}

Said StrayParenthesis(const Situation& at) {
  const std::size_t found = at.part.find(')');
  if (found == std::string_view::npos) return std::nullopt;
  return Hint{
      {at.place.offset + found, 1},
      "this \")\" has no \"(\"", ""
  };
}

// A "+" ends the operand, in 1.5e+3 as anywhere.
Said FractionWithExponent(const Situation& at) {
  const std::string_view number = at.text.substr(at.place.offset);
  const zrt::Place place = {at.place.offset, NumberEnd(number)};
  const std::string plain = WithPlainExponent(number.substr(0, place.length));
  if (plain.empty() || place.length < at.part.size()) return std::nullopt;
  return Hint{place, "a fraction and an exponent do not go together", plain};
}

Said FractionInBits(const Situation& at) {
  const bool is_number = !at.part.empty() && (IsDigit(at.part[0]) || at.part[0] == '.') &&
                         at.part.find_first_not_of("0123456789.eE-") == std::string_view::npos;
  if (at.kind != zrt::ValueKind::kBits || !is_number) return std::nullopt;
  if (at.part.find_first_of(".eE") == std::string_view::npos) return std::nullopt;
  return Hint{at.place, "bit vectors take no fractions and no exponents", ""};
}

Said ExponentSign(const Situation& at) {
  const std::string apart = WithBlanks(at.part);
  if (apart.empty()) return std::nullopt;
  return Hint{at.place, R"(a "-" behind an "e" is an exponent's: put blanks around it)", apart};
}

Said LargeX(const Situation& at) {
  if (!at.part.starts_with("0X")) return std::nullopt;
  const bool is_bits = at.kind == zrt::ValueKind::kBits;
  return Hint{at.place, is_bits ? "the \"x\" of 0x is small" : "only bit vectors know hexadecimal",
              is_bits ? "0x" + std::string(at.part.substr(2)) : DecimalOf(at.part)};
}

Said WrongDigits(const Situation& at) {
  if (at.part.find(' ') != std::string_view::npos) return std::nullopt;  // 0x12 0x34
  if (at.part.starts_with("0x")) {
    return Hint{at.place, "behind 0x stand digits from 0 to 9 and A to F, one at least", ""};
  }
  if (at.part.starts_with("#")) {
    return Hint{at.place, "behind # stand the digits 0 and 1, one at least", ""};
  }
  if (!at.part.starts_with("0b") || at.part.size() < 3) return std::nullopt;
  const std::string literal = "#" + std::string(at.part.substr(2));
  return Hint{at.place, "there is no 0b",
              at.kind == zrt::ValueKind::kBits ? literal : DecimalOf(literal)};
}

Said FieldAmongNumbers(const Situation& at) {
  const Reading::Operand* operand = at.reading.LookedUp(at.place.offset);
  if (operand == nullptr || operand->meaning != Meaning::kField) return std::nullopt;
  return Hint{at.place, "this is a data field, which bit vectors alone read", ""};
}

Said Comparison(const Situation& at) {
  const std::size_t found = at.part.find('=');
  if (found == std::string_view::npos) return std::nullopt;
  return Hint{
      {at.place.offset + found, 1},
      "nothing compares or assigns here", ""
  };
}

// What word processors put in the place of what was typed.
Said OddCharacter(const Situation& at) {
  struct Character {
    std::string_view text;
    const char* says;
    const char* instead;
  };
  static constexpr const char* kBlank = "only the space is a blank";
  static constexpr const char* kMinus = "only the \"-\" of a keyboard is an operator";
  static constexpr const char* kTimes = "only \"*\" multiplies";
  static constexpr Character kCharacters[] = {
      {"\t",           kBlank,                        " "},
      {"\xC2\xA0",     kBlank,                        " "}, // no-break space
      {"\xE3\x80\x80", kBlank,                        " "}, // ideographic space
      {"\xE2\x80\x89", kBlank,                        " "}, // thin space
      {"\xE2\x88\x92", kMinus,                        "-"}, // minus sign
      {"\xE2\x80\x93", kMinus,                        "-"}, // en dash
      {"\xE2\x80\x94", kMinus,                        "-"}, // em dash
      {"\xC3\x97",     kTimes,                        "*"}, // multiplication sign
      {"\xC2\xB7",     kTimes,                        "*"}, // middle dot
      {"\xC3\xB7",     "only \"/\" divides",          "/"}, // division sign
      {"{",            "groups stand in parentheses", "("},
      {"}",            "groups stand in parentheses", ")"},
  };
  for (const Character& character : kCharacters) {
    const std::size_t found = at.part.find(character.text);
    if (found == std::string_view::npos) continue;
    return Hint{
        {at.place.offset + found, character.text.size()},
        character.says, character.instead
    };
  }
  return std::nullopt;
}

Said Quotes(const Situation& at) {
  if (at.part.empty() || (at.part[0] != '"' && at.part[0] != '\'')) return std::nullopt;
  const bool is_closed = at.part.size() > 2 && at.part.back() == at.part[0];
  return Hint{at.place, "quotes are part of the operand: leave them out",
              is_closed ? std::string(at.part.substr(1, at.part.size() - 2)) : ""};
}

// FF, 1F or FFh. Of a name in small letters nobody knows whether it is meant for a number.
Said HexadecimalDigits(const Situation& at) {
  std::string_view digits = at.part;
  if (digits.ends_with('h') || digits.ends_with('H')) digits.remove_suffix(1);
  const bool begins_so = !digits.empty() && IsDigit(digits[0]);
  const std::string_view all = begins_so ? "0123456789abcdefABCDEF" : "0123456789ABCDEF";
  const bool is_short = digits.size() < 2 && digits.size() == at.part.size();
  if (at.kind == zrt::ValueKind::kFloat || is_short || digits.empty()) return std::nullopt;
  if (digits.find_first_not_of(all) != std::string_view::npos) return std::nullopt;
  const std::string literal = (digits.size() % 2 == 0 ? "0x" : "0x0") + std::string(digits);
  if (at.kind == zrt::ValueKind::kBits)
    return Hint{at.place, "hexadecimal begins with 0x", literal};
  if (!begins_so) return std::nullopt;
  return Hint{at.place, "only bit vectors know hexadecimal", DecimalOf(literal)};
}

Said MisspeltName(const Situation& at) {
  const std::string nearest = NearestName(Trimmed(at.part), at.names);
  const auto has_blank = [](std::string_view name) {
    return name.find(' ') != std::string_view::npos;
  };
  if (nearest.empty() || has_blank(Trimmed(at.part)) != has_blank(nearest)) return std::nullopt;
  if (nearest.find_first_of("+*/%&|@^~!$,<>()[]") != std::string::npos) return std::nullopt;
  return Hint{at.place, "no such name is known, but a similar one", nearest};
}

Said BlankInside(const Situation& at) {
  const std::size_t found = at.part.find(' ');
  if (found == std::string_view::npos) return std::nullopt;
  return Hint{
      {at.place.offset + found, 1},
      "a blank inside belongs to the operand: is an operator missing here?",
      ""
  };
}

// 10ms, 2rows, 1_000, 1.5.2
Said NumberBesideText(const Situation& at) {
  if (at.part.empty() || !IsDigit(at.part[0]) || at.part.find(' ') != std::string_view::npos) {
    return std::nullopt;
  }
  const std::size_t end = at.part.find_first_not_of("0123456789.");
  if (end == std::string_view::npos) return Hint{at.place, "a number has one \".\" at most", ""};
  const std::string number(at.part.substr(0, end));
  const std::string_view rest = at.part.substr(end);
  if (std::find(at.names.begin(), at.names.end(), rest) != at.names.end()) {
    return Hint{at.place, "an operator is missing here: nothing multiplies by itself",
                number + "*" + std::string(rest)};
  }
  std::string digits(at.part);
  std::erase_if(digits, [](char c) { return c == '_' || c == '\''; });
  if (digits.find_first_not_of("0123456789.") == std::string::npos) {
    return Hint{at.place, "digits stand side by side", digits};
  }
  const bool is_unit = std::none_of(rest.begin(), rest.end(), IsDigit);
  return Hint{at.place, "a number has nothing behind its digits", is_unit ? number : ""};
}

Said NoNames(const Situation& at) {
  if (!at.names.empty()) return std::nullopt;
  return Hint{at.place, std::string("no names are given: ") + at.names_from + " does that", ""};
}

constexpr Said (*kRules[])(const Situation&) = {
    NothingToEvaluate, UnaryBesideUnary, SignHint,       EmptyPiece,
    BlankAtAnEnd,      StrayParenthesis, FractionInBits, FractionWithExponent,
    ExponentSign,      LargeX,           WrongDigits,    FieldAmongNumbers,
    Comparison,        OddCharacter,     Quotes,         HexadecimalDigits,
    NumberBesideText,  MisspeltName,     BlankInside,    NoNames,
};

}  // namespace

Said SignHint(const Situation& at) {
  const bool is_there = at.part.empty() || at.part == "+" || at.part == "-";
  if (!is_there || (at.At() != '-' && at.At() != '+')) return std::nullopt;
  if (at.At() == '+') {
    return Hint{
        {at.place.offset, 1},
        "numbers have no sign, leave it out", ""
    };
  }
  const char before = at.Before();
  if (before == '\0' || before == '(' || before == '[') {
    return Hint{
        {at.place.offset, 1},
        "numbers have no sign", "0-"
    };
  }
  if (at.IsInIndex()) return Hint{at.place, "numbers have no sign", ""};  // it takes no group
  return at.Wrapped(at.Through(at.place.offset, at.place.offset + 1), "numbers have no sign", "(0");
}

Said UnknownOperandHint(const Situation& at) {
  for (const auto& rule : kRules) {
    if (Said said = rule(at)) return said;
  }
  return std::nullopt;
}
