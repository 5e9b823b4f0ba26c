// Any text to every evaluator and lookup over the names of world.txt, against the reference. The
// first byte says which evaluation, over which scope, and what else must tell the same; the text
// follows, or the numbers that one is made by.
#include "fuzz.h"
#include "text_generator.h"
#include "twins.h"

namespace {

// In parentheses a text has the value that it has without them.
bool IsTheSameInAGroup(Twins& twins, Kind kind, const std::string& text) {
  int depth = 0;
  const auto nests = [&depth](char c) { return (depth += (c == '(') - (c == ')')) >= 0; };
  if (!std::ranges::all_of(text, nests) || depth != 0) return true;
  twins.ResetRows();
  if (turn % 2 == 0) return twins.Difference(kind, "(" + text + ")@#101").empty();
  const Outcome plain = twins.Evaluate(kind, text);
  twins.ResetRows();
  Outcome grouped = twins.Evaluate(kind, "(" + text + ")");
  grouped.text = plain.text;
  return plain == grouped;
}

// A text that asks for gigabits, which the reference does not try, fails as it should.
bool EndsWell(Twins& twins, Kind kind, const std::string& text, const Stream& before) {
  twins.ResetRows();
  const int status = twins.Evaluate(kind == kHexText ? kBits : kind, text, before).status;
  return status == 0 || (status >= ErrStreamWrite && status <= ErrMissingOperand);
}

// What else tells the same, one of four by `choice`.
bool HoldsBesides(Twins& twins, int choice, Kind kind, const std::string& text, bool has_value) {
  if (choice == 0) return turn % 4 != 0 || twins.Difference(kind, text).empty();  // moved rows
  if (choice == 1) return !has_value || kind > kBits || IsTheSameInAGroup(twins, kind, text);
  if (choice == 2) return ScansAgree(twins.expression, text);
  return LookupsAgree(twins, text);
}

Kind Watched(Kind kind) {
  constexpr Kind kWatched[] = {kWatchedInteger, kWatchedFloat, kWatchedBits, kChain,
                               kWatchedHexText};
  return kind < std::size(kWatched) ? kWatched[kind] : kind;
}

Twins WithRowsInBlocksOf(int byte_count, const char* fuse_array) {
  const BlockSize setting(byte_count);
  return Twins(fuse_array);
}

std::string EvaluationsDiffer(Input input) {
  static Twins scopes[] = {Twins(), WithRowsInBlocksOf(4, "FuseArray_TDI"), Twins("FuseArray_TDO")};
  static Input numbers = input;
  static TextGenerator short_texts([] { return numbers.Byte(); }, 40);
  static TextGenerator long_texts([] { return numbers.Byte(); });
  const int choice = input.Byte();
  numbers = input;
  Twins& twins = scopes[choice / 8 % 3];
  const auto kind = static_cast<Kind>(choice % 8);
  const Stream before = choice / 24 % 2 == 0 ? Stream() : FromText("FF5A01/9");
  std::string text = choice < 192 ? input.Rest() : (turn == 0 ? long_texts : short_texts).Text();
  text.resize(std::min(text.find('\0'), text.size()));

  const BlockSize setting(turn % 2 == 0 ? 4 : 0);
  twins.ResetRows();
  const std::size_t values = twins.value_count(), too_large = twins.too_large_count();
  std::string difference = twins.Difference(turn % 4 == 1 ? Watched(kind) : kind, text, before);
  const bool has_value = twins.value_count() > values;
  if (twins.too_large_count() > too_large) {
    return EndsWell(twins, kind, text, before) ? "" : "another status of " + text;
  }
  const bool holds = HoldsBesides(twins, choice / 48 % 4, kind, text, has_value);
  return holds ? difference : "another outcome of " + text;
}

}  // namespace

ZRT_FUZZ(EvaluationsDiffer)
