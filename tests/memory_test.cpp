// Memory that runs out in all that is no evaluation.
#include <filesystem>
#include <optional>

#include "DataExpression.h"
#include "shortage.h"
#include "zrtexpression/texts.h"

namespace {

using Seen = std::pair<int, std::string>;

auto FailsAs(const std::string& left, int status = ErrStreamWrite) {
  return [left, status](const Seen& seen, const Seen& /*usual*/, bool /*for_good*/) {
    return seen == Seen(status, left);
  };
}

std::string EntryOf(ZRTExpression& expression) {
  return expression.GetErrorHandler()->GetErrorElement(65025, 8)->GetErrorMessage();
}

// While the handler reads its list it reports exhausted memory in a word of its own.
TEST(Memory, RunsOutInSetUp) {
  Directory old("-511 8 2 Old.\n"), listed("-511 8 2 An entry of some length.\n"), without;
  const std::filesystem::path here = std::filesystem::current_path();
  for (std::string dir :
       {listed.name, without.name, std::string("no such directory"), std::string()}) {
    for (const bool is_first : {true, false}) {
      const auto initialize = [&](const Caller& run) {
        ZRTExpression expression;
        EXPECT_EQ(is_first ? 0 : expression.Initialize(old.path), 0);
        const int status = run([&] { return expression.Initialize(dir.data()); });
        const std::string left = is_first ? "Old." : EntryOf(expression);
        EXPECT_EQ(expression.Initialize(listed.path), 0);
        EXPECT_EQ(EntryOf(expression), "An entry of some length.");
        return Seen(status == ErrorHandler::kListUnreadable ? int{ErrStreamWrite} : status, left);
      };
      RunOut("Initialize " + dir, initialize, FailsAs("Old."));
    }
    const auto enter = [&](const Caller& run) {
      ZRTExpression expression;
      EXPECT_EQ(expression.SetDefaultDir(old.path), 0);
      const int status = run([&] { return expression.SetDefaultDir(dir.data()); });
      EXPECT_EQ(std::filesystem::current_path(), here);
      return Seen(status, expression.GetDefaultDir());
    };
    RunOut("SetDefaultDir " + dir, enter, FailsAs(old.name));
  }
}

// Of a copy nothing but the texts and the list may be missing; copied blocks are whole or empty,
// appended bytes are the first ones, a run-length text is whole or empty.
TEST(Memory, RunsOutInCopies) {
  const BlockSize setting(4);
  Directory old("-511 8 2 Old.\n"), listed("-511 8 2 An entry.\n");
  const Stream bytes{Bytes(40, 0x5A), 317};
  RichWorld world;
  EXPECT_EQ(world.expression.Initialize(listed.path), 0);
  const auto copy = [&](const Caller& run) {
    ZRTExpression target;
    std::optional<ZRTExpression> copied;
    RowDataStream stream, target_stream, shared;
    std::optional<RowDataStream> copied_stream;
    char text[83];
    EXPECT_EQ(target.Initialize(old.path), 0);
    Fill(stream, bytes);
    run([&] {
      copied.emplace(world.expression);
      target = world.expression;
      target_stream.CopyBlock(&stream);
      copied_stream.emplace(stream);
      shared = stream;
      fnGetDataExpression(&stream, text);
      return 0;
    });
    for (ZRTExpression* each : {&*copied, &target}) {
      EXPECT_EQ(each->GetDefaultDir() ? each->GetDefaultDir() : listed.name, listed.name);
      EXPECT_EQ(each->GetErrorHandler() ? EntryOf(*each) : "An entry.", "An entry.");
      EXPECT_EQ(Evaluate(*each, "t[1]"), "00000014/32");
    }
    EXPECT_TRUE(Show(*copied_stream) == Show(bytes) || Show(*copied_stream) == "/317");
    EXPECT_EQ(Show(target_stream).find_first_not_of("5A"), Show(target_stream).find("/317"));
    EXPECT_EQ(Show(shared), Show(bytes));
    EXPECT_TRUE(std::string(text) == "(0x5A^40)" || *text == 0);
    return Seen();
  };
  RunOut("copies", copy, FailsAs(""));
}

// A text that is not whole is empty, whatever it was before.
TEST(Memory, RunsOutInTexts) {
  const BlockSize setting(4);
  RowDataStream stream;
  Fill(stream, {Bytes(100, 0x5A), 800});
  for (const bool is_hex : {false, true}) {
    const auto write = [&](const Caller& run) {
      std::string text("older");
      const int is_written = run([&] {
        return is_hex ? zrt::GetHexText(stream, &text) : zrt::GetDataExpression(stream, &text);
      });
      return Seen(is_written, text);
    };
    EXPECT_EQ(write([](const auto& call) { return call(); }).first, 1);
    RunOut("texts", write, FailsAs("", 0));
  }
}

TEST(Memory, RunsOutInLookupsAndScans) {
  const std::string out = "FuseArray_TDO", mask = "FuseArray_MASK_TDO", name(300, 'n');
  RichWorld world;
  const auto run_out = [&](const std::string& text, const std::string& changed, const auto& call,
                           int failed = 0) {
    const auto attempt = [&](const Caller& run) {
      ZRTExpression expression(world.expression);
      std::string given = text;
      const int found = run([&] { return call(expression, given.data()); });
      return Seen(found, given);
    };
    RunOut(text, attempt, FailsAs(changed, failed));
  };
  for (const std::string& text : {mask, out, name}) {
    run_out(text, text == out ? "FuseArray_TDI" : text, [](auto& expression, char* given) {
      return expression.SearchDataField(given) != nullptr;
    });
    run_out(text, text, [](auto& expression, char* given) {
      return expression.SearchDataFieldSTAPLimpl(given) != nullptr;
    });
    run_out(text, text, std::mem_fn(&ZRTExpression::IsToken));
  }
  unsigned short code = 0;
  const std::string sum = Repeated("+1", 100);
  for (const auto scan :
       {&ZRTExpression::GetLeftMostOperator, &ZRTExpression::GetRightMostOperator}) {
    run_out(
        sum, sum, [&](auto& expression, char* given) { return (expression.*scan)(given, &code); },
        -1);
  }
}

TEST(Memory, StaysAsItIsOverMillionsOfEvaluations) {
  const long count = ZRT_IS_DEBUG ? 200000 : 10000000;
  const char* const texts[] = {"ID_MASK[1]@(n+1)", "~ID_MASK", "t[1]-n*3", "(B[1]@x)", "0x12@B[n]"};
  RichWorld world;
  long live_bytes = 0;
  for (long done = 0; done < count; done += 4) {
    if (done == 1000) live_bytes = memory.live_bytes;
    const char* const text = texts[done / 4 % 5];
    RowDataStream stream;
    char hex[128];
    int integer = 0;
    float number = 0;
    (void)world.expression.GetBitStream(text, &stream);
    (void)world.expression.WatchBits(text, hex, nullptr);
    (void)world.expression.GetIntegerOperand(text, &integer);
    (void)world.expression.GetFloatOperand(text, &number);
  }
  EXPECT_LT(memory.live_bytes - live_bytes, 1000000) << count;
}

}  // namespace
