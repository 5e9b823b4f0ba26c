// The library against the language written down a second time: any text, right or damaged, must
// give the same status and value, leave the same behind after a failure and take the same rows.
//
// A longer run, of other texts:
//
//   ZRT_REFERENCE_TEXTS=5000000 ZRT_REFERENCE_SEED=2 zrt_tests --gtest_filter='Reference.*'
#include "reference.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support.h"
#include "text_generator.h"

namespace {

using reference::StatusOf;
using reference::Stream;

enum Kind { kInteger, kFloat, kBits, kChain, kHexText, kOneInteger, kOneFloat, kOneBits, kKinds };
constexpr const char* kNames[kKinds] = {"integer", "float",       "bits",      "chain",
                                        "text",    "one integer", "one float", "one bits"};

// What an evaluation gives, what it leaves in a result of each kind, and the row that each field
// reads next.
struct Outcome {
  int status = 0;
  int integer = 77;
  float real = 77.0F;
  Stream stream;
  std::string hex_text = "untouched";
  std::vector<std::size_t> rows;

  bool operator==(const Outcome& other) const {
    const bool is_same_float = std::bit_cast<int>(real) == std::bit_cast<int>(other.real) ||
                               (std::isnan(real) && std::isnan(other.real));
    return status == other.status && integer == other.integer && is_same_float &&
           stream.bytes == other.stream.bytes && stream.bit_length == other.stream.bit_length &&
           hex_text == other.hex_text && rows == other.rows;
  }
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  out << outcome.status << ", " << outcome.integer << ", " << outcome.real << ", ";
  out << Show(outcome.stream) << ", " << outcome.hex_text;
  for (const std::size_t row : outcome.rows) out << ' ' << row;
  return out;
}

// The rich scope in the library's objects and in the reference's, and one field that one of several
// has.
class Twins {
 public:
  explicit Twins(const char* fuse_array) {
    for (const auto& [tree, name, type, ints, floats] : kRichTokens) {
      auto& tokens = tree == &World::local_tokens ? scope_.local_tokens : scope_.global_tokens;
      tokens[name] = {type, ints, floats};
    }
    for (const auto& [data, name, rows] : kRichFields) Add(data, name, rows);
    if (fuse_array != nullptr) {
      const std::vector<const char*> rows = {"C3/8", "0ABC/12"};
      AddRows(world_.local_data, fuse_array, rows);
      Add(&World::local_data, fuse_array, rows);
    }
  }

  Outcome ByLibrary(Kind kind, std::string text, const Stream& before) {
    Outcome outcome;
    RowDataStream stream;
    stream.Append(before.bytes);
    stream.BitLength = before.bit_length;
    outcome.status = Evaluate(kind, text.data(), outcome, stream);
    outcome.stream = {BytesOf(stream), stream.BitLength};
    for (auto& [field, model] : fields_) {
      outcome.rows.push_back(NextRow(*field));
      field->ResetRowPointer();
    }
    return outcome;
  }

  Outcome ByReference(Kind kind, const std::string& text, const Stream& before) {
    for (auto& [field, model] : fields_) model->current = 0;
    Outcome outcome;
    outcome.stream = before;
    outcome.status = StatusOf([&] { EvaluateReference(kind, text, outcome); });
    for (auto& [field, model] : fields_) outcome.rows.push_back(model->current);
    return outcome;
  }

 private:
  void Add(QLMPlusData World::*data, const char* name, const std::vector<const char*>& rows) {
    reference::Field& field = (data == &World::external_data ? scope_.external_data
                               : data == &World::local_data  ? scope_.local_data
                                                             : scope_.global_data)[name];
    for (const char* row : rows) field.rows.push_back({Bits(row).bytes, Bits(row).bit_length});
    std::string key = name;
    if (rows.size() > 1) fields_.emplace_back((world_.*data).GetDataField(key.data()), &field);
  }

  static std::size_t NextRow(QLMDataField& field) {
    const LByteBuffer* next = field.GetCurrentRow();
    int index = 1;
    while (index <= field.GetRowCount() && field.GetRow(index) != next) ++index;
    return static_cast<std::size_t>(index - 1);
  }

  int Evaluate(Kind kind, char* text, Outcome& outcome, RowDataStream& stream) {
    ZRTExpression& expression = world_.expression;
    switch (kind) {
      case kInteger: return expression.GetIntegerOperand(text, &outcome.integer);
      case kFloat: return expression.GetFloatOperand(text, &outcome.real);
      case kBits: return expression.GetBitStream(text, &stream);
      case kChain: return expression.SolveBitStreamExpression(text, &stream);
      case kOneInteger: return expression.GetIntegerValue(text, &outcome.integer);
      case kOneFloat: return GetFloatValue(expression, text, &outcome.real);
      case kOneBits: return GetBitStreamValue(expression, text, &stream);
      default: break;
    }
    hex_text_.replace(0, outcome.hex_text.size() + 1, outcome.hex_text + '\0');
    const int status = expression.GetBitStream(text, hex_text_.data());
    outcome.hex_text = hex_text_.substr(0, hex_text_.find('\0'));
    return status;
  }

  void EvaluateReference(Kind kind, const std::string& text, Outcome& outcome) {
    Stream value;
    switch (kind) {
      case kInteger: return reference::Solve(scope_, text, outcome.integer);
      case kFloat: return reference::Solve(scope_, text, outcome.real);
      case kBits: return reference::Solve(scope_, text, outcome.stream);
      case kChain: outcome.stream = {}; return reference::SolveChain(scope_, text, outcome.stream);
      case kOneInteger: return reference::ReadOperand(scope_, text, outcome.integer);
      case kOneFloat: return reference::ReadOperand(scope_, text, outcome.real);
      case kOneBits: return reference::ReadOperand(scope_, text, outcome.stream);
      default: reference::Solve(scope_, text, value); outcome.hex_text = reference::HexText(value);
    }
  }

  RichWorld world_;
  reference::Scope scope_;
  std::vector<std::pair<QLMDataField*, reference::Field*>> fields_;
  std::string hex_text_ = std::string(1 << 19, '|');  // room for the largest value
};

class Reference : public testing::Test {
 protected:
  // Results hold older bytes in every second text, blocks are short in every seventh.
  void Compare(const std::string& text) {
    ++texts_;
    const BlockSize setting(texts_ % 7 == 0 ? 4 : 0);
    const Stream before = texts_ % 2 == 0 ? Stream()
                                          : Stream{
                                                reference::Bytes{0xFF, 0x5A, 0x01},
                                                9
    };
    Twins& twins = twins_[texts_ % std::size(twins_)];
    for (const Kind kind : {kInteger, kFloat, kBits, static_cast<Kind>(kChain + texts_ % 5)}) {
      try {
        const Outcome right = twins.ByReference(kind, text, before);
        const Outcome outcome = twins.ByLibrary(kind, text, before);
        values_ += outcome.status == 0 ? 1 : 0;
        if (outcome == right) continue;
        ADD_FAILURE() << kNames[kind] << " \"" << text << "\" in scope "
                      << texts_ % std::size(twins_) << " gives\n  " << outcome << "\nand not\n  "
                      << right;
      } catch (const reference::TooLarge&) {
      }
    }
    CompareScans(text);
  }

  static void CompareScans(const std::string& text) {
    static ZRTExpression expression;
    unsigned short first = 99, last = 99;
    const reference::Found left = reference::LeftMostOperator(text);
    const reference::Found right = reference::RightMostOperator(text);
    const bool is_same = GetLeftMostOperator(expression, text.c_str(), &first) == left.position &&
                         GetRightMostOperator(expression, text.c_str(), &last) == right.position;
    EXPECT_TRUE(is_same && first == CodeOf(left) && last == CodeOf(right)) << text;
    EXPECT_EQ(IsNumber(expression, text.c_str()), reference::KindOfNumber(text)) << text;
  }

  static std::size_t CodeOf(const reference::Found& found) {
    return found.position < 0 ? 99 : reference::kOperators.find(found.op);
  }

  std::size_t texts_ = 0, values_ = 0;

 private:
  Twins twins_[3] = {Twins(nullptr), Twins("FuseArray_TDI"), Twins("FuseArray_TDO")};
};

std::uint64_t Setting(const char* name, std::uint64_t otherwise) {
  const char* value = std::getenv(name);
  return value == nullptr ? otherwise : std::stoull(value);
}

TEST_F(Reference, GeneratedTexts) {
  std::mt19937_64 random(Setting("ZRT_REFERENCE_SEED", 1));
  TextGenerator generator([&random] { return random(); }, RichNames());
  const std::uint64_t count = Setting("ZRT_REFERENCE_TEXTS", 100000);
  for (std::uint64_t i = 0; i < count && !HasFailure(); ++i) Compare(generator.Text());
  EXPECT_GT(values_, texts_ / 2) << "too few of the texts have a value";
}

// Every text of up to four characters, of which each stands for one kind: a digit, a name, both
// brackets and parentheses, an operator that is unary and one that is not, half a shift, the blank,
// and what literals and exponents are made of.
TEST_F(Reference, ShortTexts) {
  constexpr std::string_view kCharacters = "1A#.e-~@<()[] ";
  constexpr std::size_t kKinds = kCharacters.size(), kSquare = kKinds * kKinds;
  constexpr std::size_t kTexts = 1 + kKinds + kSquare + kKinds * kSquare + kSquare * kSquare;
  for (std::size_t number = 0; number < kTexts && !HasFailure(); ++number) {
    std::string text;
    for (std::size_t n = number; n > 0; n = (n - 1) / kKinds) text += kCharacters[(n - 1) % kKinds];
    Compare(text);
  }
}

}  // namespace
