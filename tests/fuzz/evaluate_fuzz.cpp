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
  const Outcome plain = twins.Evaluate(kind, text);
  twins.ResetRows();
  Outcome grouped = twins.Evaluate(kind, "(" + text + ")");
  grouped.text = plain.text;
  twins.ResetRows();
  return plain == grouped && twins.Difference(kind, "(" + text + ")@#101").empty();
}

std::string EvaluationsDiffer(Input input) {
  static Twins scopes[] = {Twins(), Twins("FuseArray_TDI"), Twins("FuseArray_TDO")};
  static Input numbers = input;
  static TextGenerator generator([] { return numbers.Byte(); });
  const int choice = input.Byte();
  numbers = input;
  Twins& twins = scopes[choice / 8 % 3];
  const auto kind = static_cast<Kind>(choice % 8);
  const Stream before = choice / 24 % 2 == 0 ? Stream() : FromText("FF5A01/9");
  std::string text = choice < 192 ? input.Rest() : generator.Text();
  text.resize(std::min(text.find('\0'), text.size()));

  // A text that asks for gigabits, which the reference does not try, fails as it should.
  twins.ResetRows();
  const int status = twins.Evaluate(kind == kHexText ? kBits : kind, text, before).status;
  if (status > 0 || (status < 0 && (status < ErrStreamWrite || status > ErrMissingOperand))) {
    return text + ": status " + std::to_string(status);
  }
  twins.ResetRows();
  const std::size_t values = twins.value_count();
  std::string difference = twins.Difference(kind, text, before);
  const bool has_value = twins.value_count() > values;
  if (choice / 48 % 4 == 0) {  // rows that have moved, blocks of 4 bytes
    const BlockSize setting(4);
    return difference + twins.Difference(kind, text, before);
  }
  const bool holds = choice / 48 % 4 == 1
                         ? !has_value || kind > kBits || IsTheSameInAGroup(twins, kind, text)
                     : choice / 48 % 4 == 2 ? ScansAgree(twins.expression, text)
                                            : LookupsAgree(twins, text);
  return holds ? difference : "another outcome of " + text;
}

}  // namespace

ZRT_FUZZ(EvaluationsDiffer)
