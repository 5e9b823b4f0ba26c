// What the page calls: a scope in, then one text after the other, each with all that is to be shown
// of it as one JSON object. The same functions serve the commands of zrteval, so a text gets the
// same words here as there. Knows nothing of the page.
#include <emscripten/emscripten.h>

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "standing.h"
#include "tools/cut_svg.h"
#include "tools/evaluator.h"
#include "tools/json_text.h"
#include "tools/reading_text.h"
#include "tools/reading_tree.h"
#include "tools/scope_file.h"
#include "tools/shown_text.h"
#include "tools/steps.h"
#include "tools/vector_svg.h"

namespace {

// Of values with more bits the page shows the ends alone.
constexpr int kMostBits = 8 << 20;
constexpr std::size_t kMostHints = 100;
constexpr char kNamesFrom[] = "the scope";

// A row as the steps show values: of a long one the ends.
std::string RowText(LByteBuffer* row) {
  ReadValue value;
  value.kind = zrt::ValueKind::kBits;
  value.byte_count = row->GetTotalSize();
  const std::size_t left_out = value.byte_count - std::min(value.byte_count, value.bytes.size());
  for (std::size_t i = 0; i < std::min(value.byte_count, value.bytes.size()); ++i) {
    const std::size_t place = i < ReadValue::kEnd ? i : i + left_out;
    value.bytes[i] = row->ReadData(static_cast<int>(place));
  }
  return BytesText(value);
}

std::string FieldObject(const Scope::NamedField& entry) {
  static constexpr std::array<const char*, Scope::kDataSetCount> kSetNames = {"external", "local",
                                                                              "global"};
  constexpr int kMostRows = 1000;
  JsonArray rows;
  const int row_count = entry.field->GetRowCount();
  for (int row = 1; row <= std::min(row_count, kMostRows); ++row) {
    rows.Add(JsonLine()
                 .AddText("hex", RowText(entry.field->GetRow(row)))
                 .AddNumber("bits", entry.field->GetRowWidth(row))
                 .text());
  }
  return JsonLine()
      .AddText("name", entry.field->GetFieldName())
      .AddText("scope", kSetNames[entry.set])
      .AddNumber("count", row_count)
      .AddWritten("rows", rows.text())
      .text();
}

// What stays from call to call.
class Engine {
 public:
  std::string TakeScope(std::string_view written) {
    auto scope = std::make_unique<Scope>();
    JsonText text{std::string(written)};
    try {
      if (const auto control = FirstControl(written)) {
        throw JsonError(control->offset, "", control->complaint);
      }
      if (!written.empty()) ReadInto(&text, scope.get());
    } catch (const JsonError& error) {
      const TextPosition position = PositionOf(text.text(), error.offset);
      return JsonLine()
          .AddText("error", error.what())
          .AddNumber("at", static_cast<long long>(error.offset))
          .AddNumber("line", static_cast<long long>(position.line))
          .AddNumber("column", static_cast<long long>(position.column))
          .text();
    }
    evaluator_.Use(scope.get());
    scope_ = std::move(scope);
    JsonArray fields;
    for (const Scope::NamedField& entry : scope_->fields()) fields.Add(FieldObject(entry));
    return JsonLine().AddWritten("fields", fields.text()).text();
  }

  std::string Evaluate(std::string_view text, zrt::ValueKind kind) {
    text_ = text;
    kind_ = kind;
    scope_->ResetRows();
    const bool has_value = evaluator_.EvaluateWatched(text_, kind);
    const Reading& reading = evaluator_.reading();
    JsonLine answer;
    evaluator_.AddAnswer(&answer, &explainer_);
    JsonLine all;
    all.AddWritten("answer", answer.text());
    if (!has_value && !reading.has_outcome()) AddReasons(&all);
    if (reading.has_outcome()) all.AddText("value", ValueText(reading.outcome_value()));
    return all.AddNumber("step_count", static_cast<long long>(reading.steps().size())).text();
  }

  // How the last text is read, and what of it otherwise than it looks. Takes longer than the value.
  std::string Remarks() {
    const Reading& reading = evaluator_.reading();
    const ReadingTree tree(reading);
    JsonLine remarks;
    if (tree.root() != ReadingTree::kNone) {
      remarks.AddText("brackets", tree.Brackets(text_, tree.root()));
    }
    const std::vector<Hint> hints = SurpriseHints(text_, kind_, reading);
    return remarks.AddWritten("hints", HintArray(hints, kMostHints))
        .AddNumber("hint_count", static_cast<long long>(hints.size()))
        .text();
  }

  // Drawings of the cut and of the bits of the last text, as far as it has them.
  std::string Pictures() {
    const Reading& reading = evaluator_.reading();
    const ReadingTree tree(reading);
    JsonLine pictures;
    if (!reading.operations().empty()) pictures.AddText("cut", CutSvg(text_, tree, "", "cut"));
    const bool has_bits = reading.has_outcome() &&
                          reading.outcome_value().kind == zrt::ValueKind::kBits &&
                          evaluator_.bit_length() <= kMostBits;
    if (has_bits) {
      const VectorImage image = ImageOf(text_, reading, &evaluator_.bits());
      pictures.AddText("bits", VectorSvg(text_, image, "bits"));
    }
    return pictures.text();
  }

  [[nodiscard]] std::string Steps(std::size_t first, std::size_t count) const {
    return ToldStepArray(text_, evaluator_.reading(), first, count);
  }

  [[nodiscard]] std::string Standing(std::size_t step) const {
    return StandingAt(evaluator_.reading(), step, scope_->fields());
  }

 private:
  static void ReadInto(JsonText* text, Scope* scope) {
    try {
      ReadScope(text->Parse(), scope);
    } catch (const JsonRefusal& refusal) {
      throw text->Complaint(refusal.path, refusal.reason);
    }
  }

  // Of a failure the answer has the first hint alone.
  void AddReasons(JsonLine* all) {
    const zrt::Failure& failure = evaluator_.reading().failure();
    const std::vector<Hint> reasons =
        FailureHints(text_, kind_, failure, evaluator_.reading(), scope_->names(), kNamesFrom);
    all->AddWritten("reasons", HintArray(reasons, kMostHints));
    if (failure.cause_status != 0) {
      all->AddText("cause", explainer_.Sentence(failure.cause_status));
    }
  }

  std::unique_ptr<Scope> scope_ = std::make_unique<Scope>();
  TextEvaluator evaluator_{
      scope_.get(), {kMostBits, true, false, kNamesFrom}
  };
  Explainer explainer_{""};
  std::string text_;
  zrt::ValueKind kind_ = zrt::ValueKind::kInteger;
};

Engine& TheEngine() {
  static Engine engine;
  return engine;
}

// The page reads the text before it calls again.
template <class Work>
const char* Told(const Work& work) {
  static std::string told;
  try {
    told = work();
  } catch (const std::bad_alloc&) {
    return R"({"error":"memory has run out"})";
  }
  return told.c_str();
}

}  // namespace

extern "C" {

/// Takes the scope of the texts to come: the fields as an object, or what is wrong and where, and
/// then the scope before stays.
EMSCRIPTEN_KEEPALIVE const char* zrt_take_scope(const char* written, std::size_t size) {
  return Told([=] { return TheEngine().TakeScope({written, size}); });
}

/// The value of a text, or its failure.
EMSCRIPTEN_KEEPALIVE const char* zrt_evaluate(const char* text, std::size_t size, int kind) {
  return Told([=] {
    return TheEngine().Evaluate({text, size}, static_cast<zrt::ValueKind>(kind));
  });
}

/// How the last text is read, and the hints.
EMSCRIPTEN_KEEPALIVE const char* zrt_remarks() {
  return Told([] { return TheEngine().Remarks(); });
}

/// The drawings of the last text, as SVG.
EMSCRIPTEN_KEEPALIVE const char* zrt_pictures() {
  return Told([] { return TheEngine().Pictures(); });
}

/// `count` steps of the last text, from `first` on.
EMSCRIPTEN_KEEPALIVE const char* zrt_steps(std::size_t first, std::size_t count) {
  return Told([=] { return TheEngine().Steps(first, count); });
}

/// Where the evaluation of the last text stands with a step.
EMSCRIPTEN_KEEPALIVE const char* zrt_standing(std::size_t step) {
  return Told([=] { return TheEngine().Standing(step); });
}
}
