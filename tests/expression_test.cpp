// The object: its set-up, who releases what when it is copied, and error reports.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "support.h"

namespace {

namespace fs = std::filesystem;

TEST(Expression, KeepsADirectoryThatCanBeEntered) {
  const fs::path before = fs::current_path();
  char empty[] = "", bad[] = "no such directory", dots[] = "./.", root[] = "/";
  std::string doubled = "/" + before.string();
  ZRTExpression expression;
  EXPECT_EQ(expression.SetDefaultDir(bad), ErrBadDirectory);
  EXPECT_EQ(expression.GetDefaultDir(), nullptr);
  for (char* dir : {empty, dots, doubled.data()}) {
    EXPECT_EQ(expression.SetDefaultDir(dir), 0);
    EXPECT_EQ(expression.SetDefaultDir(bad), ErrBadDirectory);
    EXPECT_STREQ(expression.GetDefaultDir(), dir);
  }
  EXPECT_EQ(expression.SetDefaultDir(expression.GetDefaultDir() + 1), 0);  // its own text
  EXPECT_EQ(expression.GetDefaultDir(), before);
  EXPECT_EQ(expression.SetDefaultDir(nullptr), 0);
  EXPECT_STREQ(expression.GetDefaultDir(), "");
  EXPECT_EQ(fs::current_path(), before);

  // However long the way back is; and nothing is entered if there is none.
  Directory directory;
  fs::path deep = directory.path();
  for (int level = 0; level < 3; ++level) deep /= std::string(250, 'd');
  fs::create_directories(deep);
  fs::current_path(deep);
  EXPECT_EQ(expression.SetDefaultDir(root), 0);
  EXPECT_EQ(fs::current_path(), deep);
  fs::permissions(deep, fs::perms::none);
  const uid_t user = geteuid();
  ASSERT_EQ(seteuid(user == 0 ? 65534 : user), 0);  // root may enter everything
  EXPECT_EQ(expression.SetDefaultDir(dots), ErrBadDirectory);
  EXPECT_EQ(expression.SetDefaultDir(root), ErrBadDirectory);
  EXPECT_EQ(fs::current_path(), deep);
  ASSERT_EQ(seteuid(user), 0);
  fs::permissions(deep, fs::perms::owner_all);
  fs::remove(deep);
  EXPECT_EQ(expression.SetDefaultDir(root), ErrBadDirectory) << "nobody can tell where this is";
  fs::current_path(before);
}

// What is released twice, too early or never, the sanitizers see.
TEST(Expression, CopiesShareTheHandlerUntilTheLastOneEnds) {
  Directory directory("65036 8 7 M\n");
  char text[] = "frame 1";
  ZRTTokenTree tokens;
  tokens.Add(ZRTTokens::IntScalar("a", 5));
  auto first = std::make_unique<ZRTExpression>();
  ASSERT_EQ(first->Initialize(directory.path()), 0);
  SetErrorInstruction(*first, text);
  first->SetGlobalTokenTree(&tokens);
  ErrorHandler* handler = first->GetErrorHandler();
  const char* own = first->GetDefaultDir();
  const ZRTExpression& same = *first;
  *first = same;
  SetErrorInstruction(*first, ErrorInstruction(*first));  // its own text

  ZRTExpression copy(*first), target;
  ASSERT_EQ(target.Initialize(directory.path()), 0);
  target = copy;
  EXPECT_NE(target.GetDefaultDir(), own);
  first.reset();
  for (ZRTExpression* expression : {&copy, &target}) {
    int value = 0;
    EXPECT_STREQ(expression->GetDefaultDir(), directory.path());
    EXPECT_STREQ(ErrorInstruction(*expression), text);
    EXPECT_EQ(expression->GetErrorHandler(), handler);
    EXPECT_EQ(ProcessException(*expression, ErrBadDirectory, 8, text), 7);
    EXPECT_EQ(expression->GetIntegerOperand("a", &value), 0);
  }
  SetErrorInstruction(target, text + 7);
  EXPECT_EQ(ErrorInstruction(target), nullptr);
  target = ZRTExpression();
  EXPECT_EQ(target.GetErrorHandler(), nullptr);
  EXPECT_EQ(ProcessException(copy, -1, 8, nullptr), -1);
}

TEST(Expression, LoadsTheErrorListAndRecordsItsOwnFailures) {
  Directory listed("65036 8 7 M\n"), without, wrong("no entry\n");
  char bad[] = "no such directory";
  const char* fallback = "\nZRT Template Process Error.\n";
  ZRTExpression expression;
  EXPECT_EQ(ProcessException(expression, ErrBadDirectory, 8, "T"), -1);
  EXPECT_EQ(expression.Initialize(bad), ErrBadDirectory);
  EXPECT_EQ(expression.GetErrorHandler(), nullptr);
  EXPECT_LT(expression.Initialize(without.path()), 0);
  EXPECT_STREQ(expression.GetDefaultDir(), without.path());
  ErrorHandler* handler = expression.GetErrorHandler();
  EXPECT_STREQ(handler->GetErrorText(), fallback);
  EXPECT_EQ(expression.Initialize(listed.path()), 0);
  EXPECT_EQ(expression.Initialize(expression.GetDefaultDir()), 0);  // its own text
  EXPECT_EQ(expression.Initialize(bad), ErrBadDirectory);
  EXPECT_STREQ(handler->GetErrorText(), "\nM\nno such directory\n");
  EXPECT_STREQ(expression.GetDefaultDir(), listed.path());
  EXPECT_LT(expression.Initialize(wrong.path()), 0);
  EXPECT_STREQ(handler->GetErrorText(), fallback);
}

TEST(Expression, ReportsWithAndWithoutAnEntry) {
  const std::string longest(65535, 'x'), too_long(65536, 'x'),
      fallback = "ZRT Template Process Error.\n";
  Directory directory("-500 8 7 M\n-511 8 65535 N\n");
  ZRTExpression expression;
  ASSERT_EQ(expression.Initialize(directory.path()), 0);
  const auto report = [&](int code, unsigned long category, const char* text) {
    const int result = ProcessException(expression, code, category, text);
    return std::to_string(result) + expression.GetErrorHandler()->GetErrorText();
  };
  EXPECT_EQ(report(-500, 8, "T"), "7\nM\nT\n");
  EXPECT_EQ(report(65036 - 131072, 8 + 65536, "T"), "7\nM\nT\n");
  EXPECT_EQ(report(-500, 8, nullptr), "7\nM\n\n");
  EXPECT_EQ(report(-500, 8, too_long.c_str()), "7\nM\n\n");
  EXPECT_EQ(report(-500, 8, longest.c_str()), "7\nM\n" + longest + "\n");
  EXPECT_EQ(report(-511, 8, "T"), "65535\nN\nT\n");
  EXPECT_EQ(report(-500, 9, "T"), "-1\nT");
  EXPECT_EQ(report(-501, 8, ""), "-1\n" + fallback);
  EXPECT_EQ(report(-501, 8, too_long.c_str()), "-1\n");
}

}  // namespace
