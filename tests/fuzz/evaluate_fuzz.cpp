// Any text to every evaluator and lookup over the rich scope, against the reference. The first byte
// says which evaluation, over which scope, and what else must tell the same; the text follows.
#include <algorithm>
#include <sstream>

#include "fuzz.h"
#include "twins.h"

namespace {

struct Evaluation {
  Twins& twins;
  Kind kind = kInteger;
  Stream before;

  Outcome ByLibrary(const std::string& text, std::size_t hex_length = 2) const {
    Outcome outcome = twins.ByLibrary(kind, text, before, hex_length);
    const int status = outcome.status;
    Require(status == 0 || (status >= ErrStreamWrite && status <= ErrMissingOperand), text);
    return outcome;
  }

  void Compare(const std::string& text, int block_size) const try {
    const BlockSize setting(block_size);
    const Outcome right = twins.ByReference(kind, text, before);
    const Outcome outcome = ByLibrary(text, right.hex_text.size());
    if (outcome == right) return;
    std::ostringstream told;
    told << kNames[kind] << " \"" << text << "\" gives\n  " << outcome << "\nand not\n  " << right;
    Require(false, told.str());
  } catch (const reference::TooLarge&) {
    if (kind != kHexText) ByLibrary(text);  // a text of any length
  }

  // In parentheses a text has the value that it has without them; joined with three bits it has
  // that value in other places. What a failure leaves may differ.
  void CompareGrouped(const std::string& text) const try {
    int depth = 0;
    const auto nests = [&depth](char c) { return (depth += (c == '(') - (c == ')')) >= 0; };
    if (kind > kBits || !std::ranges::all_of(text, nests) || depth != 0) return;
    twins.ByReference(kind, text, before);  // throws what is too large
    Outcome plain = ByLibrary(text), grouped = ByLibrary("(" + text + ")");
    grouped.text = text;
    Require(plain.status == grouped.status && (plain.status != 0 || plain == grouped), text);
    if (kind != kBits || plain.status != 0) return;
    const int status = StatusOf([&] { Apply(plain.stream, '@', {{5}, 3}); });
    const Outcome joined = ByLibrary("(" + text + ")@#101");
    Require(joined.status == status && Show(joined.stream) == Show(plain.stream), text);
  } catch (const reference::TooLarge&) {
  }
};

// The lookups against the closed libraries' own, in the order of the scopes.
void CompareLookups(RichWorld& world, const std::string& text) {
  static GuardedRoom room;
  ZRTExpression expression(world.expression);
  const auto field_of = [&](char* name) {
    QLMDataField* field = nullptr;
    for (auto* data : {&world.external_data, &world.local_data, &world.global_data}) {
      field = field == nullptr ? data->GetDataField(name) : field;
    }
    return field;
  };
  const auto token_of = [&world](char* name) {
    ZRTTokens* token = world.local_tokens.GetToken(name);
    return token == nullptr ? world.global_tokens.GetToken(name) : token;
  };
  char* const name = room.Put(text);
  QLMDataField* const field = field_of(name);
  const bool is_made = field == nullptr && IsIgnoreInst(expression, name);
  for (const bool falls_back : {false, field == nullptr && text == "FuseArray_TDO"}) {
    QLMDataField* const found =
        falls_back ? expression.SearchDataField(name) : expression.SearchDataFieldSTAPLimpl(name);
    Require((falls_back ? "FuseArray_TDI" : text) == name, text);
    Require(is_made ? found->GetRowCount() == 1 && found->GetRowWidth(1) == 0
                    : found == field_of(falls_back ? name : room.Put(text)),
            text);
  }
  Require(SearchToken(expression, room.Put(text)) == token_of(room.Put(text)), text);
  std::string start = text;  // up to a "." or "[" that is not the first character
  for (const char mark : {'.', '['}) start.resize(std::min(start.find(mark, 1), start.size()));
  const bool is_name = expression.SearchDataField(start.data()) || token_of(start.data());
  Require(IsToken(expression, room.Put(text)) == is_name, text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Twins scopes[] = {Twins(nullptr), Twins("FuseArray_TDI"), Twins("FuseArray_TDO")};
  reference::most_bits = 1 << 13;
  Input input(data, size);
  const int choice = input.Byte();
  Twins& twins = scopes[choice / 8 % 3];
  const Stream before = choice / 24 % 2 == 0 ? Stream()
                                             : Stream{
                                                   {0xFF, 0x5A, 1},
                                                   9
  };
  std::string text = input.Rest();
  text.resize(std::min(text.find('\0'), text.size()));
  Evaluation evaluation{twins, static_cast<Kind>(choice % 8), before};
  evaluation.Compare(text, 0);
  switch (choice / 48) {
    case 0: evaluation.Compare(text, 4); break;  // and over reset rows
    case 1:
      evaluation.before = {};
      evaluation.CompareGrouped(text);
      break;
    case 2: Require(ScansAgree(text), text); break;
    default: CompareLookups(twins.world(), text);
  }
  return 0;
}
