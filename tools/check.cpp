// What a text is read as otherwise than it looks, and the text that is read as it looks. Hints come
// from one evaluation; a text that is mended is looked at without any.
#include <algorithm>
#include <iostream>

#include "commands.h"
#include "hints.h"
#include "ordinary.h"
#include "reading_text.h"
#include "reading_tree.h"
#include "shown_text.h"
#include "terminal.h"
#include "texts.h"

namespace {

constexpr std::size_t kMost = 100;  // hints of a text, which may have thousands

void PrintHints(const std::vector<Hint>& hints, const Source& source) {
  const Style style = OutputStyle();
  for (std::size_t i = 0; i < std::min(hints.size(), kMost); ++i) {
    PrintPlace(std::cout, source, hints[i].place, HintMessage(hints[i]), style, Tone::kHint);
  }
  if (hints.size() <= kMost) return;
  PrintNote(std::cout, "hint: and " + std::to_string(hints.size() - kMost) + " more", style);
}

class Mender {
 public:
  Mender(ZRTExpression* expression, zrt::ValueKind kind) : expression_(expression), kind_(kind) {}

  // The text as it should be written; else the refusal is filled.
  std::string Mended(const std::string& text) {
    refusal_ = Hint();
    const OrdinaryText ordinary(text, kind_, is_operand_);
    if (!ordinary.refusal().empty()) {
      refusal_ = {ordinary.refused(), ordinary.refusal(), ""};
      return "";
    }
    if (IsReadSo(ordinary, text)) return text;
    std::string written = ordinary.Written();
    const OrdinaryText again(written, kind_, is_operand_);
    if (IsReadSo(again, written)) return written;
    refusal_ = {
        {0, text.size()},
        "this kind of value has no text that is read so", ""
    };
    return "";
  }

  [[nodiscard]] const Hint& refusal() const { return refusal_; }

 private:
  // Names tell how the text is cut without being read.
  bool IsReadSo(const OrdinaryText& ordinary, const std::string& text) {
    Reading names;
    expression_->GetNames(text.c_str(), kind_, &names);
    return ordinary.IsReadSo(ReadingTree(names));
  }

  bool IsOperand(std::string_view text) {
    Reading names;
    expression_->GetNames(std::string(text).c_str(), kind_, &names);
    if (names.operands().size() != 1 || !names.operations().empty()) return false;
    const Reading::Operand& operand = names.operands().front();
    return operand.meaning != zrt::OperandEvent::Meaning::kUnknown &&
           !IsExponentAlone(text, operand);
  }

  ZRTExpression* expression_;
  zrt::ValueKind kind_;
  OrdinaryText::IsOperand is_operand_ = [this](std::string_view text) { return IsOperand(text); };
  Hint refusal_;
};

}  // namespace

ExitCode Check(const ReadingRequest& request) {
  TextSession session(request);
  return session.ForEach([&](const std::string& text, const Source& source) {
    TextEvaluator& evaluator = session.evaluator();
    const bool has_value = evaluator.EvaluateWatched(text, request.kind);
    const std::vector<Hint> hints = SurpriseHints(text, request.kind, evaluator.reading());
    if (request.as_json) {
      JsonLine line = session.NewAnswer();
      evaluator.AddAnswer(&line, &session.explainer());
      std::cout << line.AddWritten("hints", HintArray(hints, kMost)).text() << '\n';
      return has_value && hints.empty();
    }
    if (!has_value) {
      evaluator.PrintFailure(std::cout, source, &session.explainer(), OutputStyle());
    }
    PrintHints(hints, source);
    return has_value && hints.empty();
  });
}

ExitCode Mend(const ReadingRequest& request) {
  TextSession session(request);
  Mender mender(session.evaluator().expression(), request.kind);
  return session.ForEach([&](const std::string& text, const Source& source) {
    const std::string mended = mender.Mended(text);
    const Hint& refusal = mender.refusal();
    if (refusal.says.empty()) {
      std::cout << (IsOutputTerminal() ? Shown(mended) : mended) << '\n';
      return true;
    }
    PrintPlace(ErrorStream(), source, refusal.place, "not mended: " + refusal.says, ErrorStyle());
    return false;
  });
}
