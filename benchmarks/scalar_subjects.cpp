// Short texts of integers and floats, from text to value, and what they ask the heap for.
#include <memory>

#include "allocations.h"
#include "scalar_peers.h"
#include "subject.h"
#include "walk.h"
#include "world.h"

namespace zrt_bench {

namespace {

struct Text {
  const char* id;
  Numbers numbers;
  std::string text;
  double value;        // as the language has it, which knows no precedence of operators
  double usual_value;  // as the peers have it
  double walk_value;   // strictly from left to right
  std::string title = text;
};

// a+1-b+2-c+3-...: names and literals by turns.
std::string Chain(int operand_count) {
  std::string text = "a";
  for (int i = 1; i < operand_count; ++i) {
    text += i % 2 == 0 ? "-" + std::string(1, "abc"[i / 2 % 3]) : "+" + std::to_string(i / 2 + 1);
  }
  return text;
}

std::string Nested(int depth) {
  std::string text = std::string(static_cast<std::size_t>(depth), '(') + "a";
  for (int i = 0; i < depth; ++i) text += "+1)";
  return text;
}

std::string SumOfGroups(int count) {
  std::string text = "(a+1)";
  for (int i = 2; i <= count; ++i) text += "+(a+" + std::to_string(i) + ")";
  return text;
}

const std::vector<Text>& Texts() {
  constexpr Numbers kInt = Numbers::kInteger, kFloat = Numbers::kFloat;
  // clang-format off
  static const std::vector<Text> texts = {
      {"S1",           kInt,   "1+2",                  3,       3,    3},
      {"S2",           kInt,   "a+b*3-c",              33,      23,   33},
      {"S3",           kInt,   "(1+2)*3+4",            21,      13,   13},
      {"S4",           kInt,   "((a+1)*(b+2))-(c*4)",  42,      42,   42},
      {"S5",           kInt,   Chain(20),              15,      15,   15,   "chain of 20"},
      {"S6",           kInt,   Chain(200),             4560,    4560, 4560, "chain of 200"},
      {"S7",           kInt,   "((a&255)|(b<<4))>>1",  58,      58,   58},
      {"S8",           kInt,   "t[2]+t[i+1]",          19,      19,   19},
      {"S9",           kInt,   Nested(50),             55,      55,   55,   "50 nested groups"},
      {"S10",          kInt,   SumOfGroups(20),        310,     310,  310,  "sum of 20 groups"},
      {"S11/names",    kFloat, "x*1.5+y-0.25",         4.25,    4.25, 4.25},
      {"S11/literals", kFloat, "(1.5+2.25)*0.5-0.125", 1.40625, 1.75, 1.75},
  };
  // clang-format on
  return texts;
}

struct ScalarWork : World {
  explicit ScalarWork(std::string text_to_evaluate) : text(std::move(text_to_evaluate)) {}

  std::string text;
  int status = 0;
  int integer = 0;
  float number = 0;
};

Contestant Library(const std::string& text, Numbers numbers, const char* name = "this library",
                   Role role = Role::kLibrary) {
  auto work = std::make_shared<ScalarWork>(text);
  const auto value = [work, numbers] {
    if (work->status != 0) return StatusText(work->status);
    return numbers == Numbers::kInteger ? ValueText(work->integer) : ValueText(work->number);
  };
  if (numbers == Numbers::kInteger) {
    const auto evaluate = [work] {
      work->status = work->expression.GetIntegerOperand(work->text.c_str(), &work->integer);
    };
    return MakeContestant(name, role, evaluate, value);
  }
  const auto evaluate = [work] {
    work->status = work->expression.GetFloatOperand(work->text.c_str(), &work->number);
  };
  return MakeContestant(name, role, evaluate, value);
}

Contestant WalkContestant(const std::string& text, Numbers numbers) {
  if (numbers == Numbers::kInteger) {
    auto value = std::make_shared<int>();
    return MakeContestant(
        "strtol walk", Role::kLimit, [text, value] { *value = WalkIntegers(text.c_str()); },
        [value] { return ValueText(*value); });
  }
  auto value = std::make_shared<float>();
  return MakeContestant(
      "strtof walk", Role::kLimit, [text, value] { *value = WalkFloats(text.c_str()); },
      [value] { return ValueText(*value); });
}

// The same word from all that are right, each by its own rules.
void ExpectValues(const Text& text, std::vector<Contestant>* contestants) {
  for (Contestant& contestant : *contestants) {
    const double value = contestant.role == Role::kLibrary ? text.value
                         : contestant.role == Role::kPeer  ? text.usual_value
                                                           : text.walk_value;
    const std::string expected = ValueText(value);
    contestant.value = [value = contestant.value, expected] {
      std::string given = value();
      return given == expected ? "what it should" : given.append(" for ").append(expected);
    };
  }
}

// Each text goes to all peers that can do it.
std::vector<Contestant> Contestants(const Text& text) {
  const bool has_array = text.text.find('[') != std::string::npos;
  const bool has_bit_operator = text.text.find_first_of("&|<>") != std::string::npos;
  std::vector<Contestant> contestants{Library(text.text, text.numbers),
                                      Lua(text.text, text.numbers)};
  if (!has_array && !has_bit_operator) contestants.push_back(Fparser(text.text));
  if (text.numbers == Numbers::kFloat) contestants.push_back(MuParser(text.text));
  if (text.numbers == Numbers::kInteger && !has_array) {
    contestants.push_back(MuParserInt(text.text));
  }
  contestants.push_back(WalkContestant(text.text, text.numbers));
  ExpectValues(text, &contestants);
  if (std::string_view(text.id) == "S6") {  // against itself: what an operand more costs
    contestants.back() = Library(Chain(20), text.numbers, "chain of 20", Role::kLimit);
    contestants.back().value = nullptr;
  }
  return contestants;
}

// Of an object's first evaluation: there is nothing that it might have kept from another.
Row CountAllocations(const Subject& subject, const Effort& /*effort*/) {
  long count = 0;
  for (const Text& text : Texts()) {
    const Contestant library = Library(text.text, text.numbers);
    const long before = AllocationCount();
    library.repeat(1);
    count += AllocationCount() - before;
  }
  Row row{subject.id, subject.title, Unit::kCount, static_cast<double>(count), {}, {}, {}};
  row.AddRival("allocations", Role::kLimit, 0, static_cast<double>(count));
  return row;
}

}  // namespace

void AddScalars(Subjects* subjects) {
  for (const Text& text : Texts()) {
    subjects->push_back(Timed(text.id, text.title, [&text] { return Contestants(text); }));
  }
  subjects->push_back({"S12", "heap allocations in S1 to S11", CountAllocations});
}

}  // namespace zrt_bench
