// Any text to every evaluator and lookup over the rich scope. The first byte says which evaluation,
// over which scope, and what else must tell the same; the text is what follows. Whatever is told of
// a value is held against the reference.
#include <algorithm>
#include <cstring>
#include <sstream>

#include "fuzz.h"
#include "names/scopes.h"
#include "twins.h"

namespace {

constexpr int kScopes = 3;

Twins& Scope(int number) {
  static Twins twins[kScopes] = {Twins(nullptr), Twins("FuseArray_TDI"), Twins("FuseArray_TDO")};
  return twins[number];
}

struct Evaluation {
  Twins& twins;
  Kind kind = kInteger;
  Stream before;

  void Check(const std::string& text, int block_size = 0) const {
    const BlockSize setting(block_size);
    try {
      const Outcome right = twins.ByReference(kind, text, before);
      const Outcome outcome = twins.ByLibrary(kind, text, before, right.hex_text.size());
      CheckStatus(outcome.status);
      if (outcome == right) return;
      std::ostringstream told;
      told << kNames[kind] << " \"" << text << "\" gives\n  " << outcome << "\nand not\n  "
           << right;
      Require(false, told.str());
    } catch (const reference::TooLarge&) {
      if (kind != kHexText) CheckStatus(twins.ByLibrary(kind, text, before).status);
    }
  }

  static void CheckStatus(int status) {
    const bool is_known = status == 0 || (status >= ErrStreamWrite && status <= ErrMissingOperand);
    Require(is_known, "the status is one of the table");
  }

  // In parentheses a text has the value that it has without them; joined with three bits it has
  // that value in other places. What a failure leaves may differ.
  void CheckGrouped(const std::string& text) const try {
    int depth = 0;
    const auto nests = [&depth](char c) { return (depth += (c == '(') - (c == ')')) >= 0; };
    if (!std::ranges::all_of(text, nests) || depth != 0) return;
    Outcome plain = twins.ByReference(kind, text, {});  // throws what is too large
    plain = twins.ByLibrary(kind, text, {}, plain.hex_text.size());
    if (kind > kBits) return;
    Outcome grouped = twins.ByLibrary(kind, "(" + text + ")", {});
    grouped.text = text;
    Require(plain.status == grouped.status && (plain.status != 0 || plain == grouped), text);
    if (kind != kBits || plain.status != 0) return;
    const int status = StatusOf([&] { Apply(plain.stream, '@', {{5}, 3}); });
    const Outcome joined = twins.ByLibrary(kind, "(" + text + ")@#101", {});
    Require(joined.status == status && Show(joined.stream) == Show(plain.stream), text);
  } catch (const reference::TooLarge&) {
  }
};

// The lookups against the contract's own, in the order of the scopes.
void CheckLookups(RichWorld& world, const std::string& text) {
  ZRTExpression expression(world.expression);
  const auto field_of = [&world](char* name) {
    QLMDataField* field = world.external_data.GetDataField(name);
    if (field == nullptr) field = world.local_data.GetDataField(name);
    return field == nullptr ? world.global_data.GetDataField(name) : field;
  };
  const auto token_of = [&world](char* name) {
    ZRTTokens* token = world.local_tokens.GetToken(name);
    return token == nullptr ? world.global_tokens.GetToken(name) : token;
  };
  const auto check = [&](char* name, QLMDataField* found, const char* sought) {
    QLMDataField* field = field_of(name);
    const bool is_made = field == nullptr && IsIgnoreInst(expression, name);
    Require(is_made ? found->GetRowCount() == 1 && found->GetRowWidth(1) == 0 : found == field,
            text);
    Require(std::strcmp(name, sought) == 0, "the name looked up stays");
  };
  static GuardedRoom room;
  char* name = room.Put(text);
  check(name, expression.SearchDataFieldSTAPLimpl(name), text.c_str());
  Require(SearchToken(expression, name) == token_of(name), text);
  const bool falls_back = text == "FuseArray_TDO" && field_of(name) == nullptr;
  QLMDataField* field = expression.SearchDataField(name);
  check(name, field, falls_back ? "FuseArray_TDI" : text.c_str());

  std::string start = text;  // up to a "." or "[" that is not the first character
  for (const char delimiter : {'.', '['}) {
    if (const std::size_t place = start.find(delimiter); place > 0) start = start.substr(0, place);
  }
  const bool is_name =
      expression.SearchDataField(start.data()) != nullptr || token_of(start.data());
  Require(IsToken(expression, room.Put(text)) == is_name, text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  reference::most_bits = 1 << 13;
  Input input(data, size);
  int choice = input.Byte();
  const auto choose = [&choice](int count) {
    return std::exchange(choice, choice / count) % count;
  };
  const auto kind = static_cast<Kind>(choose(kKinds));
  Twins& twins = Scope(choose(kScopes));
  const Stream before = choose(2) == 0 ? Stream()
                                       : Stream{
                                             reference::Bytes{0xFF, 0x5A, 1},
                                             9
  };
  const Evaluation evaluation{twins, kind, before};
  const std::string text = input.Rest().c_str();
  evaluation.Check(text);
  switch (choice) {
    case 0: evaluation.Check(text, 4); break;  // and over reset rows
    case 1: evaluation.CheckGrouped(text); break;
    case 2: Require(ScansAgree(text), text); break;
    default: CheckLookups(twins.world(), text);
  }
  return 0;
}
