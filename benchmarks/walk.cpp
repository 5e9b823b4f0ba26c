// One recursive walk from left to right, for both kinds of numbers. It stands in a file of its own
// so that no compiler sees the text that is walked.
#include "walk.h"

#include <cstdlib>
#include <type_traits>

#include "world.h"

namespace zrt_bench {

namespace {

struct NameTable {
  constexpr NameTable() {
    integers['a'] = Names::kA;
    integers['b'] = Names::kB;
    integers['c'] = Names::kC;
    integers['i'] = Names::kI;
    floats['x'] = Names::kX;
    floats['y'] = Names::kY;
  }

  int integers[128] = {};
  float floats[128] = {};
};

constexpr NameTable kNames;

template <typename Number>
Number Apply(Number left, char op, Number right) {
  switch (op) {
    case '+': return left + right;
    case '-': return left - right;
    case '*': return left * right;
    default: break;
  }
  if constexpr (std::is_integral_v<Number>) {
    switch (op) {
      case '&': return left & right;
      case '|': return left | right;
      case '<': return left << right;
      default: return left >> right;
    }
  }
  return left / right;
}

// NOLINTBEGIN(misc-no-recursion): the texts are the benchmarks' own and not deep
template <typename Number>
Number Walk(char** text);

// A group or an index: from behind what opens it to behind what closes it.
template <typename Number>
Number Inside(char** text) {
  const auto value = Walk<Number>(text);
  ++*text;
  return value;
}

template <typename Number>
Number Operand(char** text) {
  constexpr bool kIsInteger = std::is_integral_v<Number>;
  const char first = **text;
  if (first >= '0' && first <= '9') {
    if constexpr (kIsInteger) return static_cast<Number>(std::strtol(*text, text, 10));
    if constexpr (!kIsInteger) return std::strtof(*text, text);
  }
  ++*text;
  if (first == '(') return Inside<Number>(text);
  if constexpr (!kIsInteger) return kNames.floats[static_cast<unsigned char>(first)];
  if (first != 't') return static_cast<Number>(kNames.integers[static_cast<unsigned char>(first)]);
  ++*text;
  return static_cast<Number>(Names::kT[static_cast<std::size_t>(Inside<Number>(text))]);
}

template <typename Number>
Number Walk(char** text) {
  auto value = Operand<Number>(text);
  while (true) {
    const char op = **text;
    if (op == '\0' || op == ')' || op == ']') return value;
    *text += op == '<' || op == '>' ? 2 : 1;
    value = Apply(value, op, Operand<Number>(text));
  }
}

// NOLINTEND(misc-no-recursion)

}  // namespace

// strtol() and strtof() move a char* and write to none of its characters. To keep a const char*
// beside it costs a short walk up to a tenth of its time, which would make the limit an easier one.
// NOLINTBEGIN(*-pro-type-const-cast)
int WalkIntegers(const char* text) {
  auto* at = const_cast<char*>(text);
  return Walk<int>(&at);
}

float WalkFloats(const char* text) {
  auto* at = const_cast<char*>(text);
  return Walk<float>(&at);
}
// NOLINTEND(*-pro-type-const-cast)

}  // namespace zrt_bench
