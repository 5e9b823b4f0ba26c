// Runs tests/examples: texts and what becomes of them, one example a line. Knows of each kind only
// how an outcome is told there.
#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "scan/operators.h"
#include "support.h"

namespace {

constexpr int kKept = 77;  // what a number holds before

// The tokens of the examples for integers and floats.
struct ScalarWorld : World {
  ScalarWorld() {
    using T = ZRTTokens;
    for (const T& token :
         {T::IntScalar("a", 5), T::IntScalar("size", 8, 4), T::IntScalar("t0", 1, 0),
          T::IntScalar("my name", 5), T::IntScalar("12", 5), T::IntScalar("odd", 16777217, 4),
          T::IntArray("t9", {1}, 9), T::IntArray("arr", {10, 20, 30, 40}),
          T::IntArray("b8", {-1, 20}, 8), T::FloatScalar("f", 2.75F),
          T::FloatScalar("g", -2.75F, 3), T::FloatScalar("high", 3e9F),
          T::FloatScalar("low", -3e9F), T::FloatScalar("h", -0.5F, 3),
          T::FloatArray("fa", {1.5F, -2.5F}), T::FloatArray("f7", {-1.99F, INFINITY}, 7),
          T::FloatScalar("nan", NAN),
          T::FloatArray("edge", {2147483520.0F, 2147483648.0F, -2147483648.0F, -2147483904.0F,
                                 -INFINITY, -0.99999994F, 1e-45F})}) {
      local_tokens.Add(token);
    }
  }
};

std::string NameOf(int status) {
  constexpr const char* kNames[] = {
      "ErrMissingOperand",      "ErrBadTokenType",    "ErrUnbalancedParenthesis",
      "ErrMisplacedOperator",   "ErrInvalidOperator", "ErrUnknownOperand",
      "ErrMissingCloseBracket", "ErrEmptyIndex",      "ErrStrayCloseBracket",
      "ErrMissingArrayName",    "ErrNegativeIndex",   "ErrOperandTooWide",
      "ErrStreamWrite"};
  return kNames[ErrMissingOperand - status];
}

std::string Told(int status, const std::string& value, const std::string& before) {
  if (status == 0) return value;
  return NameOf(status) + (value == before ? "" : " leaves " + value);
}

template <class Number>
std::string Text(Number number) {
  char text[64];
  return {text, std::to_chars(std::begin(text), std::end(text), number).ptr};
}

template <class Number, class Operation>
std::string Scalar(Operation operation, std::string text) {
  ScalarWorld world;
  Number number = kKept;
  const int status = operation(world.expression, text.data(), &number);
  return Told(status, std::isnan(number) ? "nan" : Text(number), Text(Number{kKept}));
}

// Rows are borrowed if they are long enough.
struct BitsWorld : RichWorld {
  BitsWorld() { AddRows(local_data, "row", {"000102030405060708090A0B0C0D0E0F10111213/160"}); }
};

// The same whatever the blocks of the streams are.
template <class Operation>
std::string Stream(Operation operation, std::string text, const std::string& before) {
  std::string outcome;
  for (const int block_size : {0, 4, 7, 256}) {
    const BlockSize setting(block_size);
    BitsWorld world;
    RowDataStream stream;
    Fill(stream, before);
    const int status = operation(world.expression, text.data(), &stream);
    const std::string told = Told(status, Hex(stream), before);
    outcome += outcome.empty() ? told : told == outcome ? "" : " but " + told;
  }
  return outcome;
}

// "LEFT OPERATOR RIGHT", each a stream.
std::string Operation(const std::string& text) {
  std::istringstream words(text);
  std::string before, op, right, outcome;
  words >> before >> op >> right;
  const auto& rows = zrt::operator_table::kRows;
  const auto code = std::ranges::find(rows, op, &zrt::OperatorRow::text)->code;
  const std::string operand = right == "same" ? before : right == "none" ? "/0" : right;
  for (const int block_size : {0, 4, 7, 256}) {
    const BlockSize setting(block_size);
    ZRTExpression expression;
    RowDataStream left, other;
    Fill(left, before);
    Fill(other, operand);
    RowDataStream* const given = right == "same" ? &left : right == "none" ? nullptr : &other;
    const int status = ExecuteBitStreamOperator(expression, &left, code, given);
    std::string told = Told(status, Hex(left), before);
    if (Hex(other) != operand) told += ", the right side changed";
    outcome += outcome.empty() ? told : told == outcome ? "" : " but " + told;
  }
  return outcome;
}

template <class Scan>
std::string Operator(Scan scan, const std::string& text) {
  ZRTExpression expression;
  unsigned short code = 0;
  const int position = scan(expression, text.c_str(), &code);
  return position < 0 ? "none" : Text(position) + ",&|!~<>+-/*%@^$"[code];
}

std::string Kind(const std::string& text) {
  constexpr const char* kNames[] = {"NumberNone",   "NumberBinary",  "NumberBinaryLong",
                                    "NumberHex",    "NumberHexLong", "NumberFloat",
                                    "NumberDecimal"};
  return kNames[IsNumber(ZRTExpression(), text.c_str())];
}

using Outcome = std::function<std::string(const std::string& text, const std::string& before)>;

const std::map<std::string, Outcome> kOutcomes = {
    {"integer",
     [](auto& text,                   auto&) {
       return Scalar<int>(std::mem_fn(&ZRTExpression::GetIntegerOperand), text);
     }                                                                              },
    {"operand",
     [](auto& text,                   auto&) {
       return Scalar<int>(std::mem_fn(&ZRTExpression::GetIntegerValue), text);
     }                                                                              },
    {"float",
     [](auto& text,                   auto&) {
       return Scalar<float>(std::mem_fn(&ZRTExpression::GetFloatOperand), text);
     }                                                                              },
    {"stream operand",
     [](auto& text,                   auto& before) { return Stream(GetBitStreamValue, text, before); }},
    {"chain",
     [](auto& text,                   auto& before) {
       return Stream(std::mem_fn(&ZRTExpression::SolveBitStreamExpression), text, before);
     }                                                                              },
    {"bits",
     [](auto& text,                   auto& before) {
       return Stream([](ZRTExpression& expression, const char* t,
                        RowDataStream* stream) { return expression.GetBitStream(t, stream); },
                     text, before);
     }                                                                              },
    {"operators",
     [](auto& text,                   auto&) {
       return Operator(GetLeftMostOperator, text) + " " + Operator(GetRightMostOperator, text);
     }                                                                              },
    {"operator",       [](auto& text, auto&) { return Operation(text); }                               },
    {"number",         [](auto& text, auto&) { return Kind(text); }                                    },
};

std::string Unquoted(std::string text) {
  text.erase(text.find_last_not_of(' ') + 1);
  if (text.size() > 1 && text.front() == '"') text = text.substr(1, text.size() - 2);
  const std::size_t tab = text.find("\\t");
  return tab == std::string::npos ? text : text.replace(tab, 2, "\t");
}

class Examples : public testing::TestWithParam<const char*> {};

TEST_P(Examples, AreAsTold) {
  std::ifstream file(std::string(ZRT_EXAMPLES) + "/" + GetParam());
  Outcome outcome;
  std::string before;
  int examples = 0;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('[') && line.find("  ->  ") == std::string::npos) {
      const std::string section = line.substr(1, line.find(']') - 1);
      const std::size_t slash = section.find('/');
      const std::size_t name_end = slash == std::string::npos ? slash : section.rfind(' ', slash);
      outcome = kOutcomes.at(section.substr(0, name_end));
      before = name_end == std::string::npos ? "" : section.substr(name_end + 1);
    } else if (const std::size_t arrow = line.rfind("  ->  "); arrow != std::string::npos) {
      const std::string text = Unquoted(line.substr(0, arrow));
      EXPECT_EQ(outcome(text, before), line.substr(arrow + 6)) << line;
      ++examples;
    }
  }
  EXPECT_GT(examples, 30);
}
INSTANTIATE_TEST_SUITE_P(Files, Examples,
                         testing::Values("integers.txt", "floats.txt", "bits.txt", "operators.txt",
                                         "scans.txt"));

}  // namespace
