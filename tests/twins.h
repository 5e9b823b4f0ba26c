// The library, and beside it the reference, over the names of world.txt: what an evaluation gives
// and leaves, and whether it is the same. Knows of no text.
#pragma once

#include <algorithm>
#include <bit>
#include <cctype>
#include <cmath>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "guarded.h"
#include "replay.h"
#include "support.h"

enum Kind {
  kInteger,
  kFloat,
  kBits,
  kChain,
  kHexText,
  kOneInteger,
  kOneFloat,
  kOneBits,
  kSolvedInteger,
  kSolvedFloat,
  kWatchedInteger,
  kWatchedFloat,
  kWatchedBits,
  kWatchedHexText,
  kKinds
};
constexpr const char* kNames[kKinds] = {
    "integer",         "float",         "bits",         "chain",          "text",
    "one integer",     "one float",     "one bits",     "solved integer", "solved float",
    "watched integer", "watched float", "watched bits", "watched text"};

/// What an evaluation gives, what it leaves in a result of each kind, and the row that each field
/// reads next.
struct Outcome {
  int status = 0;
  int integer = 77;
  float real = 77.0F;
  Stream stream = {};
  std::string hex_text = "??";
  std::string text = {};  // the caller's
  std::vector<std::size_t> rows = {};
};

inline std::string Show(const Outcome& outcome) {
  std::ostringstream shown;
  shown << outcome.status << ", " << outcome.integer << ", " << std::hexfloat
        << (std::isnan(outcome.real) ? NAN : outcome.real) << ", " << Show(outcome.stream) << ", "
        << outcome.hex_text << ", \"" << outcome.text << '"';
  for (const std::size_t row : outcome.rows) shown << ' ' << row;
  return shown.str();
}
/// One NaN is as good as another; -0 is not 0.
inline bool operator==(const Outcome& one, const Outcome& other) {
  const auto members = [](const Outcome& outcome) {
    const float real = std::isnan(outcome.real) ? NAN : outcome.real;
    return std::tuple(std::bit_cast<std::uint32_t>(real),
                      std::tie(outcome.status, outcome.integer, outcome.stream, outcome.hex_text,
                               outcome.text, outcome.rows));
  };
  return members(one) == members(other);
}

/// The library. One more field of that name stands in the way of the fuse array's.
class Evaluator : public RichWorld {
 public:
  using Caller = std::function<int(const std::function<int()>&)>;

  explicit Evaluator(const std::string& fuse_array = "") {
    names_ = NamesOfWorld();
    if (!fuse_array.empty()) {
      names_.push_back({
          "local_data", fuse_array, {                   },
            { FromText("C3/8"), FromText("0ABC/12")},
            true
      });
      AddRows(local_data, fuse_array, names_.back().rows);
    }
    for (Named& named : names_) {
      if (named.rows.size() < 2) continue;
      fields_.push_back(DataOf(*this, named.scope).GetDataField(named.name.data()));
    }
  }

  /// The text, and the hexadecimal one of so many characters, have no more room than they need. The
  /// one call of the library is made by `run`.
  Outcome Evaluate(
      Kind kind, const std::string& text, const Stream& before = {}, std::size_t hex_length = 2,
      const Caller& run = [](const auto& call) { return call(); }) {
    Outcome outcome;
    RowDataStream stream;
    Fill(stream, before);
    char* const given = text_room_.Put(text);
    char* const hex_text = hex_room_.Last(hex_length + 1);
    std::ranges::copy("??", hex_text);
    outcome.status = run([&] { return Call(kind, given, outcome, stream, hex_text); });
    outcome.text = given;
    outcome.hex_text = hex_text;
    outcome.stream = StreamOf(stream);
    outcome.rows = NextRows();
    return outcome;
  }

  void ResetRows() {
    for (QLMDataField* field : fields_) field->ResetRowPointer();
  }

 protected:
  [[nodiscard]] const std::vector<Named>& names() const { return names_; }
  [[nodiscard]] const zrt::Failure& failure() const { return failure_; }
  std::vector<std::size_t> NextRows() {
    std::vector<std::size_t> rows;
    for (QLMDataField* field : fields_) rows.push_back(NextRow(*field));
    return rows;
  }
  void set_observer(zrt::Observer* observer) { observer_ = observer; }

 private:
  int Call(Kind kind, char* text, Outcome& outcome, RowDataStream& stream, char* hex_text) {
    switch (kind) {
      case kInteger: return expression.GetIntegerOperand(text, &outcome.integer);
      case kFloat: return expression.GetFloatOperand(text, &outcome.real);
      case kBits: return expression.GetBitStream(text, &stream);
      case kChain: return expression.SolveBitStreamExpression(text, &stream);
      case kHexText: return expression.GetBitStream(text, hex_text);
      case kOneInteger: return expression.GetIntegerValue(text, &outcome.integer);
      case kOneFloat: return expression.GetFloatValue(text, &outcome.real);
      case kOneBits: return expression.GetBitStreamValue(text, &stream);
      case kSolvedInteger: return expression.SolveIntegerExpression(text, &outcome.integer);
      case kSolvedFloat: return expression.SolveFloatExpression(text, &outcome.real);
      case kWatchedInteger:
        return expression.WatchInteger(text, &outcome.integer, &failure_, observer_);
      case kWatchedFloat: return expression.WatchFloat(text, &outcome.real, &failure_, observer_);
      case kWatchedBits: return expression.WatchBits(text, &stream, &failure_, observer_);
      default: return expression.WatchBits(text, hex_text, &failure_, observer_);
    }
  }

  // The row pointer stays where it is.
  static std::size_t NextRow(QLMDataField& field) {
    const LByteBuffer* next = field.GetCurrentRow();
    std::size_t place = 0;
    while (static_cast<int>(place) < field.GetRowCount() &&
           field.GetRow(static_cast<int>(place) + 1) != next) {
      ++place;
    }
    field.ResetRowPointer();
    for (std::size_t i = 0; i < place; ++i) field.GetCurrentRow();
    return place;
  }

  // Asks for no memory, so that it may run out; Twins has one that does.
  zrt::Observer nobody_;
  zrt::Observer* observer_ = &nobody_;
  zrt::Failure failure_;
  std::vector<Named> names_;
  std::vector<QLMDataField*> fields_;
  GuardedRoom text_room_, hex_room_;
};

class Twins : public Evaluator {
 public:
  explicit Twins(const std::string& fuse_array = "") : Evaluator(fuse_array) {
    set_observer(&replay_);
    reference::closed = kClosed;
    for (const auto& [scope, name, token, rows, is_data] : names()) {
      if (!is_data) TreeOf(scope_, scope)[name] = token;
      if (is_data) DataOf(scope_, scope)[name].rows = rows;
      if (rows.size() > 1) models_.push_back(&DataOf(scope_, scope)[name]);
    }
  }

  /// Tells both outcomes if they differ. A text whose value is too large is none to compare.
  std::string Difference(Kind kind, const std::string& text, const Stream& before = {}) try {
    const Outcome model = ByReference(kind, text, before);
    replay_.Begin(text, !before.bytes.empty(), *this);
    const Outcome outcome = Evaluate(kind, text, before, model.hex_text.size());
    if (kind >= kWatchedInteger) {
      const bool is_told = before.bytes.empty() && kind != kWatchedHexText;
      const std::string value = !is_told                  ? ""
                                : kind == kWatchedInteger ? std::to_string(outcome.integer)
                                : kind == kWatchedFloat   ? std::to_string(outcome.real)
                                                          : Show(outcome.stream);
      const std::string fault = replay_.Fault(outcome.status, failure(), value);
      if (!fault.empty()) return kNames[kind] + (" \"" + text + "\": wrong " + fault);
      if (!NamesAgree(kind, text, outcome)) return kNames[kind] + (" \"" + text + "\": names");
    }
    value_count_ += outcome.status == 0 ? 1 : 0;
    if (outcome == model) return "";
    return kNames[kind] + (" \"" + text + "\" gives\n  " + Show(outcome) + "\nand not\n  ") +
           Show(model);
  } catch (const reference::TooLarge&) {
    ++too_large_count_;
    ResetRows();
    return "";
  }

  void ResetRows() {
    Evaluator::ResetRows();
    for (reference::Field* model : models_) model->current = 0;
  }

  /// Takes scopes away: bit 0 the local tokens, then the global ones, then external, local and
  /// global data.
  void TakeAway(unsigned scopes) {
    const auto take = [&](unsigned bit, auto set, auto part) {
      if ((scopes & bit) == 0) return;
      (expression.*set)(nullptr);
      (scope_.*part).swap(taken_.*part);
    };
    take(1, &ZRTExpression::SetLocalTokenTree, &reference::Scope::local_tokens);
    take(2, &ZRTExpression::SetGlobalTokenTree, &reference::Scope::global_tokens);
    take(4, &ZRTExpression::SetExternalZRTData, &reference::Scope::external_data);
    take(8, &ZRTExpression::SetLocalZRTData, &reference::Scope::local_data);
    take(16, &ZRTExpression::SetGlobalZRTData, &reference::Scope::global_data);
  }

  /// Of the texts that were compared, and how many were not.
  [[nodiscard]] std::size_t value_count() const { return value_count_; }
  [[nodiscard]] std::size_t too_large_count() const { return too_large_count_; }

 private:
  // The names are told on the way that the evaluation took, which may end earlier: at a name that
  // stands for nothing, at an operator that is refused. No row moves.
  bool NamesAgree(Kind kind, const std::string& text, const Outcome& outcome) {
    const auto value_kind = kind == kWatchedInteger ? zrt::ValueKind::kInteger
                            : kind == kWatchedFloat ? zrt::ValueKind::kFloat
                                                    : zrt::ValueKind::kBits;
    Path names;
    zrt::Failure told;
    const int status = expression.GetNames(text.c_str(), value_kind, &names, &told);
    const bool is_same_end =
        outcome.status == status && told.place.offset == failure().place.offset;
    return (outcome.status != 0 || status == 0) && replay_.IsBeginningOf(names, is_same_end) &&
           NextRows() == outcome.rows;
  }

  Outcome ByReference(Kind kind, const std::string& text, const Stream& before) {
    Outcome outcome;
    outcome.stream = before;
    outcome.text = text;
    outcome.status = reference::StatusOf([&] { Call(kind, text, outcome); });
    for (const reference::Field* model : models_) outcome.rows.push_back(model->current);
    return outcome;
  }

  void Call(Kind kind, const std::string& text, Outcome& outcome) {
    Stream value;
    switch (kind) {
      case kInteger:
      case kWatchedInteger:
      case kSolvedInteger: return reference::Solve(scope_, text, outcome.integer);
      case kFloat:
      case kWatchedFloat:
      case kSolvedFloat: return reference::Solve(scope_, text, outcome.real);
      case kBits:
      case kWatchedBits: return reference::Solve(scope_, text, outcome.stream);
      case kChain: outcome.stream = {}; return reference::SolveChain(scope_, text, outcome.stream);
      case kOneInteger: return reference::ReadOperand(scope_, text, outcome.integer);
      case kOneFloat: return reference::ReadOperand(scope_, text, outcome.real);
      case kOneBits: return reference::ReadOperand(scope_, text, outcome.stream);
      default: reference::Solve(scope_, text, value); outcome.hex_text = reference::HexText(value);
    }
  }

  reference::Scope scope_, taken_;
  std::vector<reference::Field*> models_;
  Replay replay_;
  std::size_t value_count_ = 0, too_large_count_ = 0;
};

/// Whether the library's scans find in `text` what the reference's find.
inline bool ScansAgree(ZRTExpression& expression, const std::string& text) {
  unsigned short first = 99, last = 99;
  const reference::Found left = reference::LeftMostOperator(text);
  const reference::Found right = reference::RightMostOperator(text);
  const auto code_of = [](const reference::Found& found) {
    return found.position < 0 ? 99 : reference::kOperators.find(found.op);
  };
  std::string own = text;
  for (int i = 0; i < static_cast<int>(text.size()); ++i) {
    const char c = own[static_cast<std::size_t>(i)];
    if (expression.IsHexDigit(c) != (std::isxdigit(static_cast<unsigned char>(c)) != 0))
      return false;
    if (c != '(') continue;
    int close = 99;
    const int status = expression.GetSubExpression(own.data(), i, &close);
    const int end = reference::ClosingParenthesis(text, i);
    if (status != (end < 0 ? ErrUnbalancedParenthesis : 0)) return false;
    if (close != (end < 0 ? static_cast<int>(text.size()) - 1 : end)) return false;  // all is read
  }
  return expression.GetLeftMostOperator(text.c_str(), &first) == left.position &&
         expression.GetRightMostOperator(text.c_str(), &last) == right.position &&
         first == code_of(left) && last == code_of(right) &&
         expression.IsNumber(text.c_str()) == reference::KindOfNumber(text);
}

/// Whether the lookups find under `text` what the closed libraries' own do, in the order of the
/// scopes.
inline bool LookupsAgree(World& world, const std::string& text) {
  ZRTExpression expression(world.expression);  // owns the fields that are made for masks
  const auto field_of = [&](std::string name) {
    QLMDataField* field = nullptr;
    for (auto* data : {&world.external_data, &world.local_data, &world.global_data}) {
      if (field == nullptr) field = data->GetDataField(name.data());
    }
    return field;
  };
  const auto token_of = [&](std::string name) {
    ZRTTokens* token = world.local_tokens.GetToken(name.data());
    return token == nullptr ? world.global_tokens.GetToken(name.data()) : token;
  };
  bool agrees = true;
  for (const bool falls_back : {false, true}) {
    std::string name = text;
    const bool is_mask =
        std::ranges::find(reference::kMaskNames, name) != std::end(reference::kMaskNames);
    agrees = agrees && expression.IsIgnoreInst(name.data()) == is_mask;
    QLMDataField* field = falls_back ? expression.SearchDataField(name.data())
                                     : expression.SearchDataFieldSTAPLimpl(name.data());
    const bool is_changed = falls_back && text == "FuseArray_TDO" && field_of(text) == nullptr;
    const std::string sought = is_changed ? "FuseArray_TDI" : text;
    if (is_mask && field_of(text) == nullptr) {
      agrees = agrees && NameOf(*field) == text && field->GetRowCount() == 1 &&
               field->GetRowWidth(1) == 0;
    } else {
      agrees = agrees && field == field_of(sought);
    }
    agrees = agrees && name == sought && expression.SearchToken(name.data()) == token_of(name) &&
             expression.GetTokenFromTree(&world.global_tokens, name.data()) ==
                 world.global_tokens.GetToken(name.data());
  }
  std::string start = text;  // up to a "." and a "[", of which the first is not in front
  for (const char mark : {'.', '['}) {
    if (const std::size_t place = start.find(mark); place != 0) start = start.substr(0, place);
  }
  const bool is_name = expression.SearchDataField(start.data()) || token_of(start);
  return agrees && expression.IsToken(text.c_str()) == is_name;
}
