// The library and the reference over one scope: a text goes to both, and all that an evaluation
// gives and leaves can be compared. Knows of no text.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "guarded.h"
#include "reference.h"
#include "support.h"

namespace {  // NOLINT(google-build-namespaces): as in contract_support.h

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
  std::string hex_text = "??";
  std::string text;  // the caller's
  std::vector<std::size_t> rows;

  bool operator==(const Outcome& other) const {
    const bool is_same_float = std::bit_cast<int>(real) == std::bit_cast<int>(other.real) ||
                               (std::isnan(real) && std::isnan(other.real));
    return status == other.status && integer == other.integer && is_same_float &&
           stream.bytes == other.stream.bytes && stream.bit_length == other.stream.bit_length &&
           hex_text == other.hex_text && text == other.text && rows == other.rows;
  }
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  out << outcome.status << ", " << outcome.integer << ", " << outcome.real << ", ";
  out << Show(outcome.stream) << ", " << outcome.hex_text << ", \"" << outcome.text << "\"";
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

  /// The text, and the hexadecimal one of so many characters, have no more room than they need.
  Outcome ByLibrary(Kind kind, const std::string& text, const Stream& before,
                    std::size_t hex_length = 2) {
    Outcome outcome;
    RowDataStream stream;
    stream.Append(before.bytes);
    stream.BitLength = before.bit_length;
    char* const given = text_room_.Put(text);
    outcome.status = Evaluate(kind, given, outcome, stream, hex_room_.Last(hex_length + 1));
    outcome.text = given;
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
    outcome.text = text;
    outcome.status = StatusOf([&] { EvaluateReference(kind, text, outcome); });
    for (auto& [field, model] : fields_) outcome.rows.push_back(model->current);
    return outcome;
  }

  RichWorld& world() { return world_; }

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

  int Evaluate(Kind kind, char* text, Outcome& outcome, RowDataStream& stream, char* hex_text) {
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
    std::ranges::copy(outcome.hex_text + '\0', hex_text);
    const int status = expression.GetBitStream(text, hex_text);
    outcome.hex_text = hex_text;
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
  GuardedRoom text_room_, hex_room_;
};

/// Whether the library's scans find in `text` what the reference's find.
inline bool ScansAgree(const std::string& text) {
  static ZRTExpression expression;
  unsigned short first = 99, last = 99;
  const reference::Found left = reference::LeftMostOperator(text);
  const reference::Found right = reference::RightMostOperator(text);
  const auto code_of = [](const reference::Found& found) {
    return found.position < 0 ? 99 : reference::kOperators.find(found.op);
  };
  return GetLeftMostOperator(expression, text.c_str(), &first) == left.position &&
         GetRightMostOperator(expression, text.c_str(), &last) == right.position &&
         first == code_of(left) && last == code_of(right) &&
         IsNumber(expression, text.c_str()) == reference::KindOfNumber(text);
}

}  // namespace
