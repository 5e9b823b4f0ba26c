// Texts of the expression language, right ones and damaged ones, from any source of numbers. The
// same numbers give the same texts everywhere; numbers that run out into zeros end a text soon.
// Knows of no evaluator.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Names to put into texts, by what is known of them.
struct NameLists {
  std::vector<std::string> fields, scalars, arrays, others;
};

class TextGenerator {
 public:
  TextGenerator(std::function<std::uint64_t()> source, NameLists names)
      : source_(std::move(source)), names_(std::move(names)) {}

  /// A text that suits one of the three evaluators, most of the time; every third is damaged.
  std::string Text() {
    text_.clear();
    kind_ = AnyKind();
    if (Below(8) == 7) {
      Operand(kDepth);
    } else {
      Expression(kDepth);
    }
    for (std::size_t count = Below(3) == 2 ? 1 + Below(3) : 0; count > 0; --count) Damage();
    return text_;
  }

  /// A number below `limit`, which is above 0.
  std::size_t Below(std::size_t limit) { return static_cast<std::size_t>(source_() % limit); }

 private:
  enum class Kind { kBits, kInteger, kFloat };
  static constexpr int kDepth = 3;  // of groups and indexes

  // Calls follow one another in statements of their own, never in one expression, whose order
  // compilers choose.
  Kind AnyKind() { return static_cast<Kind>(Below(3)); }
  void Put(std::string_view text) { text_ += text; }
  std::string_view OneOf(const std::vector<std::string>& names) {
    return names[Below(names.size())];
  }
  std::string_view OneOf(std::initializer_list<std::string_view> choices) {
    return choices.begin()[Below(choices.size())];
  }
  void Blank() { Put(Below(6) == 5 ? OneOf({" ", " ", "  ", "\t"}) : ""); }

  void Digits(std::string_view set, std::size_t max) {
    for (std::size_t count = 1 + Below(1 + Below(max)); count > 0; --count) {
      text_ += set[Below(set.size())];
    }
  }

  // NOLINTBEGIN(misc-no-recursion): by depth
  void Expression(int depth) {
    Term(depth);
    const bool is_long = depth == kDepth && Below(32) == 31;
    for (std::size_t count = Below(is_long ? 40 : 4); count > 0; --count) {
      Blank();
      const std::string_view op = Operator();
      Put(op);
      Blank();
      const bool takes_count = op == "^" || op == "<<" || op == ">>";
      if (takes_count && Below(4) != 3) {
        Put(std::to_string(Below(20)));
      } else {
        Term(depth);
      }
    }
    if (Below(24) == 23) Put(Operator());
  }

  void Term(int depth) {
    if (Below(8) == 7) {
      Put(OneOf({"~", "!", "$"}));
      Blank();
    }
    if (depth == 0 || Below(4) != 3) return Operand(depth);
    Put("(");
    Expression(depth - 1);
    Put(")");
  }

  std::string_view Operator() {
    const Kind kind = Below(24) == 23 ? AnyKind() : kind_;
    if (Below(32) == 31) return OneOf({"~", "!", "$", "<", ">", "<<<", ">>>", "e-", "-", "^", "%"});
    if (kind == Kind::kFloat) return OneOf({"+", "-", "*", "/", ",", "$"});
    if (kind == Kind::kInteger) {
      return OneOf({"+", "-", "*", "/", "%", "&", "|", "<<", ">>", ",", "<", "$"});
    }
    return OneOf(
        {"@", "@", "@", "^", "^", "<<", ">>", "&", "|", "+", "-", "*", "/", "%", ",", ">"});
  }

  void Operand(int depth) {
    const Kind kind = Below(24) == 23 ? AnyKind() : kind_;
    const std::size_t choice = Below(16);
    if (choice < 8) return Literal(kind);
    const bool is_other = choice == 15, takes_index = choice > 11 && !is_other;
    const auto& names = takes_index ? names_.arrays : names_.scalars;
    const bool is_field = kind == Kind::kBits && Below(4) != 3;
    Put(OneOf(is_other ? names_.others : is_field ? names_.fields : names));
    if (takes_index != (Below(12) == 11)) Index(depth);
  }

  void Index(int depth) {
    Blank();
    Put("[");
    Blank();
    if (depth > 0 && Below(4) == 3) {
      const Kind before = std::exchange(kind_, Kind::kInteger);
      Expression(depth - 1);
      kind_ = before;
    } else {
      Put(std::to_string(Below(4)));
    }
    Blank();
    Put("]");
    if (Below(16) == 15) Put(OneOf({"x", " ", "]", "[1]", "1"}));
  }

  // NOLINTEND(misc-no-recursion)

  void Literal(Kind kind) {
    constexpr std::string_view kDigits = "0123456789", kHexDigits = "0123456789ABCDEFabcdef";
    const std::size_t choice = Below(8);
    if (kind == Kind::kInteger || choice == 0) return Digits(kDigits, choice == 7 ? 12 : 2);
    if (kind == Kind::kBits && choice < 4) {
      Put("#");
      return Digits("01", choice == 1 ? 70 : 9);
    }
    if (kind == Kind::kBits) {
      Put("0x");
      return Digits(kHexDigits, choice == 7 ? 40 : 8);
    }
    if (choice != 1) Digits(kDigits, choice == 7 ? 20 : 3);
    Put(choice < 4 ? "." : OneOf({"e", "E", "e-", "E-"}));
    if (choice != 2) Digits(kDigits, choice == 3 ? 12 : 2);
  }

  // A character goes, comes, is doubled or changes places with the next.
  void Damage() {
    constexpr std::string_view kCharacters = "()()[][]~!$<>,+-*/%&|@^eE.#0x1A  \t\x80";
    const std::size_t place = text_.empty() ? 0 : Below(text_.size());
    const std::size_t choice = text_.empty() ? 1 : Below(4);
    if (choice == 0) text_.erase(place, 1);
    if (choice == 1) text_.insert(place, 1, kCharacters[Below(kCharacters.size())]);
    if (choice == 2) text_.insert(place, 1, text_[place]);
    if (choice == 3 && place + 1 < text_.size()) std::swap(text_[place], text_[place + 1]);
  }

  std::function<std::uint64_t()> source_;
  NameLists names_;
  Kind kind_ = Kind::kBits;
  std::string text_;
};
