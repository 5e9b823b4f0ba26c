// The object: its set-up, who releases what when it is copied, and error reports.
#include <gtest/gtest.h>
#include <unistd.h>

#include "support.h"
#include "zrtexpression/words.h"

namespace {

namespace fs = std::filesystem;

TEST(Expression, KeepsADirectoryThatCanBeEntered) {
  const fs::path before = fs::current_path();
  std::string bad = "no such directory", dots = "./.", root = "/", doubled = "/" + before.string();
  ZRTExpression expression;
  EXPECT_EQ(expression.SetDefaultDir(bad.data()), ErrBadDirectory);
  EXPECT_EQ(expression.GetDefaultDir(), nullptr);
  for (std::string dir : {std::string(), dots, doubled}) {
    EXPECT_EQ(expression.SetDefaultDir(dir.data()), 0);
    EXPECT_EQ(expression.SetDefaultDir(bad.data()), ErrBadDirectory);
    EXPECT_EQ(expression.GetDefaultDir(), dir);
  }
  EXPECT_EQ(expression.SetDefaultDir(expression.GetDefaultDir() + 1), 0);  // its own text
  EXPECT_EQ(expression.GetDefaultDir(), before);
  EXPECT_EQ(expression.SetDefaultDir(nullptr), 0);
  EXPECT_STREQ(expression.GetDefaultDir(), "");
  EXPECT_EQ(fs::current_path(), before);

  // However long the way back is; and nothing is entered if there is none.
  Directory directory;
  fs::path deep = directory.name;
  for (int level = 0; level < 3; ++level) deep /= std::string(250, 'd');
  fs::create_directories(deep);
  fs::current_path(deep);
  EXPECT_EQ(expression.SetDefaultDir(root.data()), 0);
  EXPECT_EQ(fs::current_path(), deep);
  fs::permissions(deep, fs::perms::none);
  const uid_t user = geteuid();
  ASSERT_EQ(seteuid(user == 0 ? 65534 : user), 0);  // root may enter everything
  EXPECT_EQ(expression.SetDefaultDir(dots.data()), ErrBadDirectory);
  EXPECT_EQ(expression.SetDefaultDir(root.data()), ErrBadDirectory);
  EXPECT_EQ(fs::current_path(), deep);
  ASSERT_EQ(seteuid(user), 0);
  fs::permissions(deep, fs::perms::owner_all);
  fs::remove(deep);
  EXPECT_EQ(expression.SetDefaultDir(root.data()), ErrBadDirectory)
      << "nobody can tell where this is";
  fs::current_path(before);
}

// What is released twice, too early or never, the sanitizers see.
TEST(Expression, CopiesShareTheHandlerUntilTheLastOneEnds) {
  Directory directory("65036 8 7 M\n");
  char text[] = "frame 1";
  RichWorld world;
  auto first = std::make_unique<ZRTExpression>(world.expression);
  ASSERT_EQ(first->Initialize(directory.path), 0);
  first->SetErrorInstruction(text);
  ErrorHandler* handler = first->GetErrorHandler();
  const char* own = first->GetDefaultDir();
  const ZRTExpression& same = *first;
  *first = same;
  first->SetErrorInstruction(first->ErrorInstruction);  // its own text

  ZRTExpression copy(*first), target;
  ASSERT_EQ(target.Initialize(directory.path), 0);
  target = copy;
  EXPECT_NE(target.GetDefaultDir(), own);
  first.reset();
  for (ZRTExpression* expression : {&copy, &target}) {
    EXPECT_EQ(expression->GetDefaultDir(), directory.name);
    EXPECT_STREQ(expression->ErrorInstruction, text);
    EXPECT_EQ(expression->GetErrorHandler(), handler);
    EXPECT_EQ(expression->ProcessException(ErrBadDirectory, 8, text), 7);
    EXPECT_EQ(Evaluate(*expression, "A[2]@n@hidden"), "02200000002ABC/52");
  }
  target.SetErrorInstruction(text + 7);
  EXPECT_EQ(target.ErrorInstruction, nullptr);
  target.SetErrorInstruction(text);
  target.SetErrorInstruction(nullptr);
  EXPECT_EQ(target.ErrorInstruction, nullptr);
  target = ZRTExpression();
  EXPECT_EQ(target.GetErrorHandler(), nullptr);
  EXPECT_EQ(copy.ProcessException(-1, 8, nullptr), -1);
}

TEST(Expression, LoadsTheErrorListAndRecordsItsOwnFailures) {
  Directory listed("65036 8 7 M\n"), without, wrong("no entry\n");
  char bad[] = "no such directory";
  const char* fallback = "\nZRT Template Process Error.\n";
  ZRTExpression expression;
  EXPECT_EQ(expression.ProcessException(ErrBadDirectory, 8, "T"), -1);
  EXPECT_EQ(expression.Initialize(bad), ErrBadDirectory);
  EXPECT_EQ(expression.GetErrorHandler(), nullptr);
  EXPECT_LT(expression.Initialize(without.path), 0);
  EXPECT_EQ(expression.GetDefaultDir(), without.name);
  ErrorHandler* handler = expression.GetErrorHandler();
  EXPECT_STREQ(handler->GetErrorText(), fallback);
  EXPECT_EQ(expression.Initialize(listed.path), 0);
  EXPECT_EQ(expression.Initialize(expression.GetDefaultDir()), 0);  // its own text
  EXPECT_EQ(expression.Initialize(bad), ErrBadDirectory);
  EXPECT_EQ(expression.Initialize(listed.path), 0);  // which is no failure to record
  EXPECT_STREQ(handler->GetErrorText(), "\nM\nno such directory\n");
  EXPECT_EQ(expression.GetDefaultDir(), listed.name);
  const fs::path before = fs::current_path();
  fs::current_path(listed.name);
  EXPECT_EQ(expression.Initialize(nullptr), 0);  // the list of the current directory
  fs::current_path(before);
  EXPECT_EQ(expression.Initialize(wrong.path), ErrorHandler::kListWrongLine);
  std::ofstream(listed.name + "/ErrorList.txt") << Repeated("\n", 16777217);
  EXPECT_EQ(expression.Initialize(listed.path), ErrorHandler::kListUnreadable);
  EXPECT_STREQ(handler->GetErrorText(), fallback);
}

TEST(Expression, ReportsWithAndWithoutAnEntry) {
  const std::string longest(65535, 'x'), too_long(65536, 'x');
  Directory directory("-500 8 7 M\n-511 8 65535 N\n");
  ZRTExpression expression;
  ASSERT_EQ(expression.Initialize(directory.path), 0);
  const auto report = [&](int code, unsigned long category, const char* text) {
    const int result = expression.ProcessException(code, category, text);
    return std::to_string(result) + expression.GetErrorHandler()->GetErrorText();
  };
  EXPECT_EQ(report(65036 - 131072, 8 + 65536, "T"), "7\nM\nT\n");
  EXPECT_EQ(report(-500, 8, nullptr), "7\nM\n\n");
  EXPECT_EQ(report(-500, 8, too_long.c_str()), "7\nM\n\n");
  EXPECT_EQ(report(-500, 8, longest.c_str()), "7\nM\n" + longest + "\n");
  EXPECT_EQ(report(-511, 8, "T"), "65535\nN\nT\n");
  EXPECT_EQ(report(-500, 9, "T"), "-1\nT");
  EXPECT_EQ(report(-501, 8, ""), "-1\nZRT Template Process Error.\n");
  EXPECT_EQ(report(-501, 8, too_long.c_str()), "-1\n");
}

TEST(Expression, HasNoWordsForNumbersThatAreNoStatus) {
  for (const int number : {0, 1, -1, -499, ErrStreamWrite - 1}) {
    EXPECT_EQ(zrt::StatusName(number) + std::string(zrt::StatusSentence(number)), "") << number;
  }
}

TEST(Expression, CountsARowAmongThoseOfItsField) {
  QLMPlusData data;
  QLMDataField *field = data.AddField("field"), *other = data.AddField("other");
  zrt::OperandEvent event;
  LByteBuffer* const rows[] = {other->AddRow(8), field->AddRow(8), field->AddRow(8)};
  event.field = field;
  for (int number = 0; number < 3; ++number) {
    event.row = rows[number];
    EXPECT_EQ(zrt::RowNumberOf(event), number);
  }
}

}  // namespace
