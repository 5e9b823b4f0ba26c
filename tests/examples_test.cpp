// Runs tests/examples: texts and what becomes of them, one example a line, over blocks of several
// sizes. Knows of each kind only how an outcome is told there.
#include <gtest/gtest.h>

#include <charconv>
#include <iterator>

#include "properties.h"
#include "scan/operators.h"
#include "twins.h"
#include "zrtexpression/words.h"

namespace {

std::string Told(int status, const std::string& value, const std::string& before) {
  if (status == 0) return value;
  return zrt::StatusName(status) + (value == before ? "" : " leaves " + value);
}

std::string Text(float number) {
  if (std::isnan(number)) return "nan";
  char text[64];
  return {text, std::to_chars(std::begin(text), std::end(text), number).ptr};
}

std::string Evaluation(Kind kind, const std::string& text, const std::string& before) {
  Evaluator evaluator;
  const bool is_number = before.empty();
  const Outcome outcome = evaluator.Evaluate(kind, text, is_number ? Stream() : FromText(before));
  if (!is_number) return Told(outcome.status, Show(outcome.stream), before);
  return Told(outcome.status, kind == kFloat ? Text(outcome.real) : std::to_string(outcome.integer),
              "77");
}

// "LEFT OPERATOR RIGHT", each a stream.
std::string Operation(const std::string& text) {
  std::istringstream words(text);
  std::string before, op, right;
  words >> before >> op >> right;
  const auto& rows = zrt::operator_table::kRows;
  const auto code = std::ranges::find(rows, op, &zrt::OperatorRow::text)->code;
  ZRTExpression expression;
  RowDataStream left, other;
  Fill(left, FromText(before));
  if (right != "same" && right != "none") Fill(other, FromText(right));
  RowDataStream* const given = right == "same" ? &left : right == "none" ? nullptr : &other;
  const int status = expression.ExecuteBitStreamOperator(&left, code, given);
  return Told(status, Show(left), before);
}

std::string Scans(const std::string& text) {
  ZRTExpression expression;
  unsigned short first = 0, last = 0;
  const int left = expression.GetLeftMostOperator(text.c_str(), &first);
  const int right = expression.GetRightMostOperator(text.c_str(), &last);
  const auto told = [](int position, unsigned short code) {
    return position < 0 ? "none" : std::to_string(position) + reference::kOperators[code];
  };
  return told(left, first) + " " + told(right, last);
}

std::string Number(const std::string& text) {
  constexpr const char* kKindsOfNumber[] = {"NumberNone",   "NumberBinary",  "NumberBinaryLong",
                                            "NumberHex",    "NumberHexLong", "NumberFloat",
                                            "NumberDecimal"};
  return kKindsOfNumber[ZRTExpression().IsNumber(text.c_str())];
}

// "55x7" is seven times the byte 55.
std::string RunLengths(const std::string& text) {
  std::istringstream words(text);
  Bytes bytes;
  for (std::string word; words >> word;) {
    const std::size_t count = word.size() == 2 ? 1 : std::stoul(word.substr(3));
    bytes.insert(bytes.end(), count, FromText(word.substr(0, 2) + "/8").bytes[0]);
  }
  LByteBuffer data;
  Fill(data, bytes);
  std::string told(2 * bytes.size() + 3, '|');
  fnGetDataExpression(&data, told.data());
  told.resize(told.find('\0'));
  return told;
}

// The text with «» around the place of its failure and ‹› around that of the cause, and their
// names, if the text was not marked like that.
std::string Places(const std::string& kind, const std::string& marked) {
  constexpr const char* kMarks[] = {"«", "»", "‹", "›"};
  std::string text = marked;
  for (const std::string mark : kMarks) {
    while (text.find(mark) != std::string::npos) text.erase(text.find(mark), mark.size());
  }
  RichWorld world;
  RowDataStream stream;
  zrt::Failure failure;
  int number = 0;
  float real = 0;
  (void)(kind == "integer" ? world.expression.WatchInteger(text.c_str(), &number, &failure)
         : kind == "float" ? world.expression.WatchFloat(text.c_str(), &real, &failure)
                           : world.expression.WatchBits(text.c_str(), &stream, &failure));
  std::string told = text;
  const auto mark = [&](std::size_t at, const char* sign) { told.insert(at, sign); };
  const auto [offset, length] = failure.place;
  const auto [cause, cause_length] = failure.cause;
  mark(offset + length, "»");
  if (failure.cause_status != 0) mark(cause + cause_length, "›");
  if (failure.cause_status != 0) mark(cause, "‹");
  mark(offset, "«");
  std::string names = zrt::StatusName(failure.status);
  if (failure.cause_status != 0) names += std::string(" ") + zrt::StatusName(failure.cause_status);
  return told == marked ? names : told + " " + names;
}

std::string OutcomeOf(const std::string& section, const std::string& text) {
  if (section == "scans") return Scans(text);
  if (section == "operator") return Operation(text);
  if (section == "number") return Number(text);
  if (section == "run lengths") return RunLengths(text);
  if (section.starts_with("place ")) return Places(section.substr(6), text);
  const std::size_t slash = section.find('/');
  const std::size_t end = slash == std::string::npos ? section.size() : section.rfind(' ', slash);
  const auto* const kind = std::ranges::find(kNames, section.substr(0, end));
  return Evaluation(static_cast<Kind>(kind - std::begin(kNames)), text,
                    end == section.size() ? "" : section.substr(end + 1));
}

std::string Unquoted(std::string text) {
  text.erase(text.find_last_not_of(' ') + 1);
  if (text.size() > 1 && text.front() == '"') text = text.substr(1, text.size() - 2);
  const std::size_t tab = text.find("\\t");
  return tab == std::string::npos ? text : text.replace(tab, 2, "\t");
}

class Examples : public testing::TestWithParam<const char*> {};

TEST_P(Examples, AreAsTold) {
  std::ifstream file(std::string(ZRT_TESTS "/examples/") + GetParam());
  std::string section;
  int examples = 0;
  for (std::string line; std::getline(file, line);) {
    if (const std::size_t arrow = line.rfind("  ->  "); arrow != std::string::npos) {
      for (const int block_size : {0, 4, 7, 256}) {
        const BlockSize setting(block_size);
        const std::string text = Unquoted(line.substr(0, arrow));
        EXPECT_EQ(OutcomeOf(section, text), line.substr(arrow + 6)) << line << block_size;
      }
      ++examples;
    } else if (line.starts_with('[')) {
      section = line.substr(1, line.find(']') - 1);
    }
  }
  EXPECT_GT(examples, 10);
}
INSTANTIATE_TEST_SUITE_P(Files, Examples,
                         testing::Values("integers.txt", "floats.txt", "bits.txt", "operators.txt",
                                         "scans.txt", "run_lengths.txt", "places.txt"));

}  // namespace
