// One loop for each of the two: a step's words, and its keys.
#include "steps.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "json_line.h"
#include "output.h"
#include "reading_text.h"
#include "shown_text.h"

namespace {

using Effect = zrt::OperatorEvent::Effect;
using StepKind = Reading::Step::Kind;

constexpr std::size_t kMostCharacters = 40;  // of an operand
constexpr std::size_t kRemarkColumn = 34;

struct Words {
  std::string what;
  std::string remark;
};

std::string ShownPart(std::string_view text, zrt::Place place) {
  return Shown(PartOf(text, place), kMostCharacters);
}

const char* NameOf(zrt::CutEvent::By by) {
  switch (by) {
    case zrt::CutEvent::By::kGroup: return "group";
    case zrt::CutEvent::By::kUnary: return "unary";
    case zrt::CutEvent::By::kChain: return "chain";
  }
  return "";
}

Words CutWords(std::string_view text, const Reading::Cut& cut) {
  const std::string middle = ShownPart(text, cut.middle);
  switch (cut.by) {
    case zrt::CutEvent::By::kGroup: return {middle, "cut at this group"};
    case zrt::CutEvent::By::kUnary: return {middle, "cut at this operator"};
    case zrt::CutEvent::By::kChain: break;
  }
  return {middle.empty() ? "nothing" : middle, "runs from left to right"};
}

// A number that is what it looks like.
bool IsPlain(std::string_view text, const Reading::Operand& operand) {
  const std::string_view name = PartOf(text, operand.place);
  return OriginOf(text, operand).empty() &&
         (ValueText(operand.value) == name || BytesText(operand.value) == name);
}

Words OperandWords(std::string_view text, const Reading::Operand& operand) {
  const std::string name = ShownPart(text, operand.place);
  if (IsPlain(text, operand)) return {name, "literal"};
  return {name + " = " + ValueText(operand.value), OriginOf(text, operand)};
}

Words OperationWords(const Reading::Operation& operation) {
  const std::string left = ValueText(operation.left_value);
  const std::string result = operation.has_result ? ValueText(operation.result) : "fails";
  if (operation.effect == Effect::kTrailing) {
    return {left + ' ' + operation.text, "nothing behind it"};
  }
  if (operation.is_unary) return {operation.text + left + " = " + result, ""};
  const std::string both = left + ' ' + operation.text + ' ' + ValueText(operation.right_value);
  switch (operation.effect) {
    case Effect::kReplaces: return {both, "the left side is dropped"};
    case Effect::kIgnored: return {both, "the right side is dropped"};
    case Effect::kApplies:
    case Effect::kTrailing: break;
  }
  return {both + " = " + result, ""};
}

Words IndexWords(const Reading::Index& index) {
  return {index.status == 0 ? "the index is " + std::to_string(index.value) : "the index fails",
          ""};
}

Words WordsOf(std::string_view text, const Reading& reading, const Reading::Step& step) {
  switch (step.kind) {
    case StepKind::kCut: return CutWords(text, reading.cuts()[step.at]);
    case StepKind::kOperand: return OperandWords(text, reading.operands()[step.at]);
    case StepKind::kOperation: return OperationWords(reading.operations()[step.at]);
    case StepKind::kUnread:
      return {ShownPart(text, reading.unread()[step.at]), "nothing reads this"};
    case StepKind::kIndexBegin:
      return {'[' + ShownPart(text, reading.indexes()[step.at].place) + ']',
              "the index is evaluated"};
    case StepKind::kIndexEnd: break;
  }
  return IndexWords(reading.indexes()[step.at]);
}

void AddPart(JsonLine* object, std::string_view text, zrt::Place place) {
  object->AddText("text", PartOf(text, place)).AddPlace(place);
}

// JSON has no infinity and no NaN.
void AddFloat(JsonLine* object, const std::string& key, float value) {
  if (std::isfinite(value)) {
    object->AddWritten(key, FloatText(value));
  } else {
    object->AddText(key, FloatText(value));
  }
}

void AddValue(JsonLine* object, const std::string& key, const ReadValue& value) {
  switch (value.kind) {
    case zrt::ValueKind::kInteger: object->AddNumber(key, value.integer); return;
    case zrt::ValueKind::kFloat: AddFloat(object, key, value.floating); return;
    case zrt::ValueKind::kBits: break;
  }
  const JsonLine bits =
      JsonLine().AddText("hex", BytesText(value)).AddNumber("bits", value.bit_length);
  object->AddWritten(key, bits.text());
}

void AddOperand(JsonLine* object, std::string_view text, const Reading::Operand& operand) {
  AddPart(object, text, operand.place);
  object->AddText("is", MeaningName(operand.meaning));
  if (*ScopeName(operand.scope) != '\0') object->AddText("scope", ScopeName(operand.scope));
  if (operand.row > 0) object->AddNumber("row", operand.row).AddNumber("rows", operand.row_count);
  AddValue(object, "value", operand.value);
}

void AddOperation(JsonLine* object, std::string_view text, const Reading::Operation& operation) {
  AddPart(object, text, operation.place);
  AddValue(object, "left", operation.left_value);
  const bool has_right = !operation.is_unary && operation.effect != Effect::kTrailing;
  if (has_right) AddValue(object, "right", operation.right_value);
  if (operation.effect == Effect::kApplies && operation.has_result) {
    AddValue(object, "value", operation.result);
  }
}

const char* NameOf(const Reading::Operation& operation) {
  switch (operation.effect) {
    case Effect::kApplies: break;
    case Effect::kIgnored: return "drop right";
    case Effect::kReplaces: return "drop left";
    case Effect::kTrailing: return "drop operator";
  }
  return operation.has_result ? "apply" : "fail";
}

JsonLine StepObject(std::string_view text, const Reading& reading, const Reading::Step& step) {
  JsonLine object;
  switch (step.kind) {
    case StepKind::kCut: {
      const Reading::Cut& cut = reading.cuts()[step.at];
      // Without their texts: those of all pieces are the square of a deep text.
      object.AddText("step", "cut").AddText("by", NameOf(cut.by)).AddPlace(cut.piece);
      object.AddWritten("middle", JsonLine().AddPlace(cut.middle).text());
      break;
    }
    case StepKind::kOperand:
      AddOperand(&object.AddText("step", "read"), text, reading.operands()[step.at]);
      break;
    case StepKind::kOperation: {
      const Reading::Operation& operation = reading.operations()[step.at];
      AddOperation(&object.AddText("step", NameOf(operation)), text, operation);
      break;
    }
    case StepKind::kUnread:
      AddPart(&object.AddText("step", "skip"), text, reading.unread()[step.at]);
      break;
    case StepKind::kIndexBegin:
      AddPart(&object.AddText("step", "index"), text, reading.indexes()[step.at].place);
      break;
    case StepKind::kIndexEnd: {
      const Reading::Index& index = reading.indexes()[step.at];
      object.AddText("step", "index end").AddNumber("status", index.status);
      object.AddNumber("value", index.value);
      break;
    }
  }
  return object;
}

// Calls `tell` with the steps from `first` on, at most `count`.
template <class Tell>
std::string ArrayOf(const Reading& reading, std::size_t first, std::size_t count, Tell tell) {
  const std::vector<Reading::Step>& steps = reading.steps();
  first = std::min(first, steps.size());
  const std::size_t end = first + std::min(count, steps.size() - first);
  JsonArray array;
  for (std::size_t i = first; i < end; ++i) array.Add(tell(steps[i]).text());
  return array.text();
}

}  // namespace

std::vector<StepWords> StepsInWords(std::string_view text, const Reading& reading) {
  std::vector<StepWords> steps;
  std::size_t depth = 0;
  for (const Reading::Step& step : reading.steps()) {
    zrt::Place place;
    switch (step.kind) {
      case StepKind::kCut: continue;
      case StepKind::kIndexBegin: ++depth; continue;
      case StepKind::kIndexEnd: --depth; continue;
      case StepKind::kOperand:
        place = reading.operands()[step.at].place;
        if (IsPlain(text, reading.operands()[step.at])) continue;
        break;
      case StepKind::kOperation: place = reading.operations()[step.at].place; break;
      case StepKind::kUnread: place = reading.unread()[step.at]; break;
    }
    Words words = WordsOf(text, reading, step);
    steps.push_back({place, depth, std::move(words.what), std::move(words.remark)});
  }
  return steps;
}

std::string StepLines(std::string_view text, const Reading& reading) {
  std::string lines;
  std::size_t count = 0;
  for (const StepWords& step : StepsInWords(text, reading)) {
    const std::string number = std::to_string(++count);
    std::string line(number.size() < 3 ? 3 - number.size() : 0, ' ');
    line.append(number).append("  ").append(2 * step.depth, ' ').append(step.what);
    if (!step.remark.empty()) {
      line = Padded(line.append("  "), kRemarkColumn).append(step.remark);
    }
    lines.append(line).append("\n");
  }
  return lines;
}

std::string StepArray(std::string_view text, const Reading& reading) {
  return ArrayOf(reading, 0, reading.steps().size(),
                 [&](const Reading::Step& step) { return StepObject(text, reading, step); });
}

std::string ToldStepArray(std::string_view text, const Reading& reading, std::size_t first,
                          std::size_t count) {
  return ArrayOf(reading, first, count, [&](const Reading::Step& step) {
    const Words words = WordsOf(text, reading, step);
    JsonLine object = StepObject(text, reading, step);
    object.AddText("does", words.what).AddText("remark", words.remark);
    return object;
  });
}
