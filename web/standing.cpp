// All of it is found by one way through the steps so far.
#include "standing.h"

#include <algorithm>

namespace {

using StepKind = Reading::Step::Kind;

constexpr std::size_t kMostPieces = 8;  // the innermost ones
constexpr std::size_t kMostRows = 1000;

zrt::Place PlaceOf(const Reading& reading, const Reading::Step& step) {
  switch (step.kind) {
    case StepKind::kCut: return reading.cuts()[step.at].piece;
    case StepKind::kOperand: return reading.operands()[step.at].place;
    case StepKind::kOperation: return reading.operations()[step.at].place;
    case StepKind::kUnread: return reading.unread()[step.at];
    case StepKind::kIndexBegin:
    case StepKind::kIndexEnd: break;
  }
  return reading.indexes()[step.at].place;
}

bool Holds(zrt::Place outer, zrt::Place inner) {
  return outer.offset <= inner.offset && inner.offset + inner.length <= outer.offset + outer.length;
}

const char* NameOf(zrt::CutEvent::By by) {
  switch (by) {
    case zrt::CutEvent::By::kGroup: return "group";
    case zrt::CutEvent::By::kUnary: return "unary";
    case zrt::CutEvent::By::kChain: break;
  }
  return "chain";
}

// A piece may be looked at more than once: what has become of it last counts.
std::vector<Reading::Cut> PiecesAround(const Reading& reading, std::size_t step, zrt::Place place) {
  std::vector<Reading::Cut> pieces;
  for (std::size_t i = 0; i <= step; ++i) {
    if (reading.steps()[i].kind != StepKind::kCut) continue;
    const Reading::Cut& cut = reading.cuts()[reading.steps()[i].at];
    if (!Holds(cut.piece, place)) continue;
    while (!pieces.empty() && Holds(cut.piece, pieces.back().piece)) pieces.pop_back();
    pieces.push_back(cut);
  }
  return pieces;
}

std::string PieceArray(const std::vector<Reading::Cut>& pieces) {
  JsonArray array;
  for (std::size_t i = pieces.size() - std::min(pieces.size(), kMostPieces); i < pieces.size();
       ++i) {
    array.Add(JsonLine()
                  .AddText("by", NameOf(pieces[i].by))
                  .AddPlace(pieces[i].piece)
                  .AddWritten("middle", JsonLine().AddPlace(pieces[i].middle).text())
                  .text());
  }
  return array.text();
}

std::string RowArray(const Reading& reading, std::size_t step,
                     const std::vector<Scope::NamedField>& fields) {
  JsonArray array;
  std::size_t count = 0;
  for (std::size_t i = 0; i <= step && count < kMostRows; ++i) {
    if (reading.steps()[i].kind != StepKind::kOperand) continue;
    const Reading::Operand& operand = reading.operands()[reading.steps()[i].at];
    if (operand.row == 0) continue;
    const auto field = std::find_if(fields.begin(), fields.end(), [&](const auto& entry) {
      return entry.field == operand.field;
    });
    if (field == fields.end()) continue;
    ++count;
    array.Add(JsonLine()
                  .AddNumber("field", field - fields.begin())
                  .AddNumber("row", operand.row)
                  .AddNumber("step", static_cast<long long>(i))
                  .text());
  }
  return array.text();
}

}  // namespace

std::string StandingAt(const Reading& reading, std::size_t step,
                       const std::vector<Scope::NamedField>& fields) {
  const std::size_t count = reading.steps().size();
  if (count == 0) return "{}";
  const zrt::Place place =
      step < count ? PlaceOf(reading, reading.steps()[step]) : reading.failure().place;
  step = std::min(step, count - 1);
  return JsonLine()
      .AddPlace(place)
      .AddWritten("pieces", PieceArray(PiecesAround(reading, step, place)))
      .AddWritten("rows", RowArray(reading, step, fields))
      .text();
}
