// Runs the documents. Each example of language.md is evaluated over the names that the document
// declares; each C++ block of embedding.md is code of this file, fenced by comments, and the two
// must be equal to the letter. Knows of the evaluator what a host knows.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "DataExpression.h"
#include "support.h"

namespace {

using Lines = std::vector<std::string>;

// What is fenced in a document, or by comments in a source, by the word behind the opening fence.
// An empty line stands behind the lines of each block.
std::map<std::string, Lines> BlocksOf(const char* path) {
  static const std::regex kFence("( *)(?:// )?```(.*)");
  std::ifstream file(path);
  std::map<std::string, Lines> blocks;
  Lines* block = nullptr;
  std::size_t indent = 0;
  for (std::string line; std::getline(file, line);) {
    if (std::smatch fence; std::regex_match(line, fence, kFence)) {
      if (block) block->emplace_back();
      block = block ? nullptr : &blocks[fence[2]];
      indent = static_cast<std::size_t>(fence.length(1));
    } else if (block) {
      block->push_back(line.substr(std::min(indent, line.size())));
    }
  }
  EXPECT_FALSE(block || blocks.empty()) << path;
  return blocks;
}

template <typename T>
std::vector<T> Rest(std::istream& words) {
  return {std::istream_iterator<T>(words), {}};
}

std::unique_ptr<World> Declare(const Lines& lines) {
  auto world = std::make_unique<World>();
  ZRTTokenTree& tokens = world->local_tokens;
  for (const std::string& line : lines) {
    std::istringstream words(line);
    std::string kind, name, equals, row;
    words >> kind >> name >> equals;
    const char* key = name.c_str();
    if (kind == "int") tokens.Add(ZRTTokens::IntScalar(key, Rest<int>(words).at(0)));
    if (kind == "ints") tokens.Add(ZRTTokens::IntArray(key, Rest<int>(words)));
    if (kind == "float") tokens.Add(ZRTTokens::FloatScalar(key, Rest<float>(words).at(0)));
    if (kind == "floats") tokens.Add(ZRTTokens::FloatArray(key, Rest<float>(words)));
    while (kind == "field" && words >> row) AddRows(world->external_data, key, {row.c_str()});
    EXPECT_TRUE(words.eof()) << line;
  }
  return world;
}

TEST(Docs, EachBlockOfEmbeddingIsCodeOfThisFile) {
  EXPECT_EQ(BlocksOf(ZRT_DOCS_DIR "/embedding.md").at("cpp"), BlocksOf(__FILE__).at("cpp"));
}

TEST(Docs, Tokens) {
  // ```cpp
  ZRTTokenTree tokens;
  tokens.Add(ZRTTokens::IntScalar("size", 8));
  tokens.Add(ZRTTokens::IntArray("order", {10, 20, 30, 40}));

  ZRTExpression expression;
  expression.SetLocalTokenTree(&tokens);

  int value = 0;
  const int status = expression.GetIntegerOperand("order[1]+size", &value);  // 0, value is 28
  // ```
  EXPECT_EQ(std::pair(status, value), std::pair(0, 28));
}

TEST(Docs, StreamsAndRows) {
  // ```cpp
  QLMPlusData data;
  QLMDataField* fuses = data.AddField("fuses");
  fuses->AddRow(8, {0x11});
  fuses->AddRow(8, {0x22});

  ZRTExpression expression;
  expression.SetExternalZRTData(&data);

  RowDataStream stream;
  int status = expression.GetBitStream("(0xFF^2)@fuses@fuses", &stream);  // FF FF 11 22, 32 bits
  // ```
  EXPECT_EQ(std::to_string(status) + " " + Hex(stream), "0 FFFF1122/32");
  // ```cpp
  fuses->ResetRowPointer();  // without it the third reading of "fuses" is ErrStreamWrite
  stream.ClearBuffer();      // empties the bytes alone
  stream.BitLength = 0;
  status = expression.GetBitStream("fuses@(#101)", &stream);  // 00 8D, 11 bits
  // ```
  EXPECT_EQ(std::to_string(status) + " " + Hex(stream), "0 008D/11");
  // ```cpp
  char text[2 * 4 + 3];  // room for a value of up to 32 bits
  status = expression.GetBitStream("0xABC@#1", text);
  // ```
  EXPECT_EQ(std::to_string(status) + " " + text, "0 0x015781");
}

// ```cpp
std::string RunLengthText(LByteBuffer& data) {
  std::string text(2 * std::size_t{data.GetTotalSize()} + 3, '\0');
  fnGetDataExpression(&data, text.data());
  text.resize(std::strlen(text.data()));
  return text;
}
// ```

// ```cpp
std::string MessageFor(ZRTExpression& expression, int status) {
  ErrorHandler* handler = expression.GetErrorHandler();  // null before Initialize
  const auto code = static_cast<unsigned short>(status);
  ErrorElement* entry = handler ? handler->GetErrorElement(code, 8) : nullptr;
  return entry ? entry->GetErrorMessage() : "status " + std::to_string(status);
}
// ```

TEST(Docs, Messages) {
  ZRTExpression expression;
  std::string dir = testing::TempDir() + "/zrt_docs_" + std::to_string(getpid());
  std::filesystem::create_directory(dir);
  const Lines list = BlocksOf(ZRT_DOCS_DIR "/embedding.md").at("zrt-list");
  std::ofstream file(dir + "/ErrorList.txt");
  for (const std::string& line : list) file << line << '\n';
  file.close();
  EXPECT_EQ(expression.Initialize(dir.data()), 0);
  EXPECT_EQ(MessageFor(expression, ErrUnknownOperand), "Neither a known name nor a number.");
  EXPECT_EQ(MessageFor(expression, -1), "status -1");
  std::filesystem::remove_all(dir);
}

// The value of a text, or its status as a number.
std::string Outcome(ZRTExpression& expression, const std::string& kind, const char* text) {
  if (kind == "zrt-bits") return Evaluate(expression, text);
  if (kind == "zrt-write") {
    RowDataStream stream;
    EXPECT_EQ(expression.GetBitStream(text, &stream), 0);
    std::string written = RunLengthText(stream);
    if (written.empty()) return "nothing";
    EXPECT_EQ(Evaluate(expression, written.c_str()), Hex(stream));
    return written;
  }
  int integer = 0;
  float real = 0;
  const bool is_float = kind == "zrt-float";
  EXPECT_TRUE(is_float || kind == "zrt-int") << "an unknown kind of block: " << kind;
  const int status = is_float ? expression.GetFloatOperand(text, &real)
                              : expression.GetIntegerOperand(text, &integer);
  if (status != 0 || !is_float) return std::to_string(status != 0 ? status : integer);
  char digits[32];
  return {digits, std::to_chars(digits, std::end(digits), real).ptr};
}

TEST(Docs, EachExampleOfTheLanguageGivesWhatItSays) {
  const std::regex kExample(R"((".*"|\S.*?) +-> +(\S+)(?: +;.*)?)");
  const auto blocks = BlocksOf(ZRT_DOCS_DIR "/language.md");
  std::map<std::string, std::string> names;  // of the statuses: "-511  ErrUnknownOperand ..."
  for (const std::string& line : blocks.at("zrt-status")) {
    if (!line.empty()) names[line.substr(0, 4)] = line.substr(6, line.find(' ', 6) - 6);
  }
  for (const auto& [kind, lines] : blocks) {
    if (kind == "text" || kind == "zrt-scope" || kind == "zrt-status") continue;
    auto world = Declare(blocks.at("zrt-scope"));
    for (const std::string& line : lines) {
      std::smatch match;
      if (line.empty()) {
        world = Declare(blocks.at("zrt-scope"));  // the rows of fields begin anew in each block
      } else if (std::regex_match(line, match, kExample)) {
        std::string text = match[1];
        if (text.front() == '"') text = text.substr(1, text.size() - 2);
        std::string outcome = Outcome(world->expression, kind, text.c_str());
        if (names.contains(outcome)) outcome = names[outcome];
        EXPECT_EQ(outcome, match[2]) << line;
      } else {
        ADD_FAILURE() << "no example: " << line;
      }
    }
  }
}

}  // namespace
