// Memory: every operation with each of its allocations refused, and evaluating for very long.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "DataExpression.h"
#include "environment.h"
#include "random_text.h"
#include "support.h"

namespace {

const std::string kLongName(200, 'n');

struct Scene : RichWorld {
  Scene() { global_tokens.Add(ZRTTokens::IntScalar(kLongName.c_str(), 3)); }
};

// What a caller sees after a call.
struct Outcome {
  bool operator==(const Outcome&) const = default;

  int status = 0;
  std::string left;
};

// `attempt` makes its one call of the library through its last argument. It is repeated with the
// first allocation of that call refused, then the second, and so on until there are enough; each is
// refused alone, and with all that follow. The outcome is the usual one or `failed`, the text is as
// it was, the next evaluation is right, and nothing stays allocated.
template <class Attempt>
void RunOutOfMemory(const std::string& text, const Outcome& failed, const Attempt& attempt) {
  bool is_short = false;
  const auto try_with = [&](long allocations, bool for_good) {
    Scene scene;
    std::string given = text;
    is_short = false;
    Outcome outcome = attempt(scene.expression, given.data(), [&](const auto& call) {
      const auto result = memory.RunOut(allocations, for_good, call);
      is_short = is_short || memory.refused_count > 0;
      return result;
    });
    EXPECT_EQ(given, text);
    EXPECT_EQ(Evaluate(scene.expression, "(B[2]@t[1])^2"), "22000000142200000014/80") << text;
    return outcome;
  };
  const Outcome plain = try_with(Memory::kUnlimited, true);
  for (const bool for_good : {false, true}) {
    long allocations = -1;
    do {
      ++allocations;
      const long live_bytes = memory.live_bytes;
      if (const Outcome outcome = try_with(allocations, for_good); outcome != plain) {
        EXPECT_TRUE(is_short && outcome == failed)
            << text << " with " << allocations << " allocations: " << outcome.status << ", "
            << outcome.left << "; usually " << plain.status << ", " << plain.left;
      }
      ASSERT_EQ(memory.live_bytes, live_bytes) << text << " with " << allocations;
    } while (is_short);
  }
}

template <class Number, class Evaluator>
void RunOutInNumbers(const std::string& text, const Evaluator& evaluate,
                     int failed_status = ErrStreamWrite) {
  RunOutOfMemory(text, {failed_status, "77"}, [&](auto& expression, char* given, auto run) {
    Number value = 77;
    const int status = run([&] { return evaluate(expression, given, &value); });
    return Outcome{status, value == Number{77} ? "77" : std::to_string(value)};
  });
}

template <class Evaluator>
void RunOutInBits(const std::string& text, const Evaluator& evaluate) {
  RunOutOfMemory(text, {ErrStreamWrite, ""}, [&](auto& expression, char* given, auto run) {
    RowDataStream stream;
    const int status = run([&] { return evaluate(expression, given, &stream); });
    return Outcome{status, status == ErrStreamWrite ? "" : Hex(stream)};
  });
}

void RunOutInEvaluations(const std::string& text) {
  RunOutInNumbers<int>(text, std::mem_fn(&ZRTExpression::GetIntegerOperand));
  RunOutInNumbers<int>(text, std::mem_fn(&ZRTExpression::GetIntegerValue));
  RunOutInNumbers<float>(text, std::mem_fn(&ZRTExpression::GetFloatOperand));
  RunOutInNumbers<float>(text, GetFloatValue);
  RunOutInBits(text, std::mem_fn(&ZRTExpression::SolveBitStreamExpression));
  RunOutInBits(text, GetBitStreamValue);
  RunOutInBits(text, [](ZRTExpression& expression, const char* given, RowDataStream* stream) {
    return expression.GetBitStream(given, stream);
  });
  RunOutOfMemory(text, {ErrStreamWrite, "as it was"}, [](auto& expression, char* given, auto run) {
    char hex[4096] = "as it was";
    const int status = run([&] { return expression.GetBitStream(given, hex); });
    return Outcome{status, hex};
  });
}

TEST(Memory, RunsOutInEvaluations) {
  for (const std::string& text : {
           kLongName + Repeated("+1", 200),
           Repeated("(1+", 100) + kLongName + Repeated(")", 100),
           Repeated("~1+", 100) + kLongName + "[",
           "((Long^3)<<5)@(~Long|(Long^2))$Long@Long" + Repeated("@#1", 60),
           Repeated("(Long)@", 60) + "#1" + Repeated("@Long", 30),
           "0x" + Repeated("12", 300) + "&(ID_MASK[1]@Long)",
           "t[" + Repeated("(1+", 100) + kLongName + Repeated(")", 100) + "-101]",
           kLongName + "x",
       }) {
    RunOutInEvaluations(text);
  }
  RandomText random_text(1);
  for (int i = 0; i < 300; ++i) RunOutInEvaluations(random_text());
}

TEST(Memory, RunsOutInOperators) {
  const std::string wide = Repeated("5A", 40);
  const std::string values[] = {"/0",          "85/3",        "FF03/12",
                                "00000003/32", wide + "/320", wide + "/317"};
  for (unsigned row = 0; row < 16 * 36; ++row) {
    const auto code = static_cast<unsigned short>(row / 36);
    const std::string& right = values[row / 6 % 6];
    const std::string& left = values[row % 6];
    RunOutOfMemory(left, {ErrStreamWrite, left}, [&](auto& expression, char* given, auto run) {
      RowDataStream stream, operand;
      Fill(stream, given);
      Fill(operand, right);
      const int status =
          run([&] { return ExecuteBitStreamOperator(expression, &stream, code, &operand); });
      EXPECT_EQ(Hex(operand), right);
      return Outcome{status, Hex(stream)};
    });
  }
}

std::string EntryOf(ZRTExpression& expression) {
  return expression.GetErrorHandler()->GetErrorElement(65025, 8)->GetErrorMessage();
}

// While the handler reads its list it reports exhausted memory in a word of its own.
TEST(Memory, RunsOutInSetUp) {
  Directory old("-511 8 2 Old.\n"), listed("-511 8 2 An entry of some length.\n"), without;
  const std::filesystem::path here = std::filesystem::current_path();
  const auto initialize = [&](bool is_first, auto& expression, char* dir, auto run) {
    EXPECT_EQ(is_first ? 0 : expression.Initialize(old.path()), 0);
    const int status = run([&] { return expression.Initialize(dir); });
    const std::string left = is_first ? "Old." : EntryOf(expression);
    EXPECT_EQ(expression.Initialize(listed.path()), 0);
    EXPECT_EQ(EntryOf(expression), "An entry of some length.");
    return Outcome{status == ErrorHandler::kListUnreadable ? int{ErrStreamWrite} : status, left};
  };
  for (const char* const dir : {"listed", "without", "no such directory", ""}) {
    const std::string path = *dir == 'l' ? listed.path() : *dir == 'w' ? without.path() : dir;
    const Outcome failed{ErrStreamWrite, "Old."};
    RunOutOfMemory(path, failed, std::bind_front(initialize, true));
    RunOutOfMemory(path, failed, std::bind_front(initialize, false));
    RunOutOfMemory(path, {ErrStreamWrite, old.path()}, [&](auto& expression, auto given, auto run) {
      EXPECT_EQ(expression.SetDefaultDir(old.path()), 0);
      const int status = run([&] { return expression.SetDefaultDir(given); });
      EXPECT_EQ(std::filesystem::current_path(), here);
      return Outcome{status, expression.GetDefaultDir()};
    });
  }
}

// Nothing but the texts and the list of a copy may be missing.
TEST(Memory, RunsOutInCopies) {
  Directory old("-511 8 2 Old.\n"), listed("-511 8 2 An entry.\n");
  RunOutOfMemory("copies", {}, [&](auto& expression, char*, auto run) {
    ZRTExpression target;
    std::optional<ZRTExpression> copy;
    EXPECT_EQ(expression.Initialize(listed.path()) + target.Initialize(old.path()), 0);
    run([&] { return copy.emplace(expression), target = expression, 0; });
    for (ZRTExpression* each : {&*copy, &target}) {
      EXPECT_EQ(each->GetDefaultDir() ? each->GetDefaultDir() : std::string(listed.path()),
                listed.path());
      EXPECT_EQ(each->GetErrorHandler() ? EntryOf(*each) : "An entry.", "An entry.");
      EXPECT_EQ(Evaluate(*each, "t[1]"), "00000014/32");
    }
    return Outcome{};
  });
}

template <class Operation>
void RunOutInLookup(const std::string& text, const std::string& unfound, const Operation& look) {
  RunOutOfMemory(text, {0, unfound}, [&](auto& expression, const char* given, auto run) {
    std::string name = given;
    const bool is_found = run([&] { return look(expression, name.data()); });
    return Outcome{is_found ? 1 : 0, name};
  });
}

TEST(Memory, RunsOutInLookupsAndScans) {
  const std::string out = "FuseArray_TDO", sum = Repeated("+1", 100);
  for (const std::string& name : {std::string("FuseArray_MASK_TDO"), out, kLongName}) {
    const std::string unfound = name == out ? "FuseArray_TDI" : name;
    RunOutInLookup(name, unfound, std::mem_fn(&ZRTExpression::SearchDataField));
    RunOutInLookup(name, name, std::mem_fn(&ZRTExpression::SearchDataFieldSTAPLimpl));
    RunOutInLookup(name, name, IsToken);
  }
  RunOutInNumbers<unsigned short>(sum, GetLeftMostOperator, -1);
  RunOutInNumbers<unsigned short>(sum, GetRightMostOperator, -1);
}

// Copies are whole or empty, appended bytes are the first ones, a text is whole or empty.
TEST(Memory, RunsOutInStreams) {
  const BlockSize setting(4);
  RunOutOfMemory(Repeated("5A", 40) + "/317", {}, [](auto& /*expression*/, char* given, auto run) {
    RowDataStream stream, target, shared;
    std::optional<RowDataStream> copy;
    char run_text[83];
    Fill(stream, given);
    run([&] {
      target.CopyBlock(&stream);
      shared = stream;
      copy.emplace(stream);
      return 0;
    });
    run([&] {
      fnGetDataExpression(&stream, run_text);
      return 0;
    });
    EXPECT_TRUE(Hex(*copy) == given || Hex(*copy) == "/317");
    EXPECT_EQ(Hex(target).find_first_not_of("5A"), Hex(target).find("/317"));
    EXPECT_EQ(Hex(shared), given);
    EXPECT_TRUE(std::string(run_text) == "(0x5A^40)" || *run_text == 0);
    return Outcome{};
  });
}

// Mask names included, evaluating keeps nothing. ZRT_LONG_RUN asks for another count.
TEST(Memory, StaysAsItIsOverMillionsOfEvaluations) {
  const char* const asked = std::getenv("ZRT_LONG_RUN");
  const long count = asked ? std::atol(asked) : ZRT_IS_DEBUG ? 200000 : 10000000;
  const char* const texts[] = {"ID_MASK[1]@(n+1)", "~ID_MASK", "t[1]-n*3", "(B[1]@x)", "0x12@B[n]"};
  Scene scene;
  long live_bytes = 0;
  for (long done = 0; done < count; done += 4) {
    if (done == 1000) live_bytes = memory.live_bytes;
    const char* const text = texts[done / 4 % 5];
    RowDataStream stream;
    char hex[128];
    int integer = 0;
    float number = 0;
    (void)scene.expression.GetBitStream(text, &stream);
    (void)scene.expression.GetBitStream(text, hex);
    (void)scene.expression.GetIntegerOperand(text, &integer);
    (void)scene.expression.GetFloatOperand(text, &number);
  }
  EXPECT_LT(memory.live_bytes - live_bytes, 1000000) << count;
}

}  // namespace
