// The sentences come from the library, or from an error list as they would for any host.
#include "failures.h"

#include <algorithm>
#include <filesystem>
#include <ostream>

#include "output.h"
#include "shown_text.h"
#include "zrtexpression/words.h"

namespace {

// Whether the carets are the same: a place without length is shown as one character.
bool IsSame(zrt::Place a, zrt::Place b) {
  return a.offset == b.offset &&
         std::max<std::size_t>(a.length, 1) == std::max<std::size_t>(b.length, 1);
}

}  // namespace

Explainer::Explainer(const std::string& data_dir) {
  if (data_dir.empty()) return;
  std::string writable = data_dir;
  const int status = expression_.Initialize(writable.data());
  if (status >= 0) return;
  const ErrorHandler* handler = expression_.GetErrorHandler();
  std::string reason = handler == nullptr ? "memory has run out" : handler->GetListError();
  if (status == ErrBadDirectory) reason = "the directory cannot be entered";
  Complain((std::filesystem::path(data_dir) / "ErrorList.txt").string() + ": " + reason +
           " (its sentences are not used)");
}

std::string Explainer::Sentence(int status) {
  constexpr unsigned short kCategory = 8;
  ErrorHandler* handler = expression_.GetErrorHandler();
  ErrorElement* entry =
      handler == nullptr ? nullptr
                         : handler->GetErrorElement(static_cast<unsigned short>(status), kCategory);
  return entry == nullptr ? zrt::StatusSentence(status) : entry->GetErrorMessage();
}

std::string Explainer::Message(int status) {
  return std::string(zrt::StatusName(status)) + " (" + std::to_string(status) +
         "): " + Sentence(status);
}

const char* KindName(zrt::ValueKind kind) {
  switch (kind) {
    case zrt::ValueKind::kInteger: return "int";
    case zrt::ValueKind::kFloat: return "float";
    case zrt::ValueKind::kBits: return "bits";
  }
  return "";
}

std::string HintMessage(const Hint& hint) {
  return "hint: " + hint.says + (hint.instead.empty() ? "" : "; write " + Quoted(hint.instead));
}

void PrintFailure(std::ostream& out, const Source& source, const zrt::Failure& failure,
                  const std::vector<Hint>& hints, Explainer* explainer, const Style& style) {
  PrintPlace(out, source, failure.place, explainer->Message(failure.status), style);
  zrt::Place last = failure.place;
  if (failure.cause_status != 0) {
    PrintPlace(out, source, failure.cause, "the cause: " + explainer->Message(failure.cause_status),
               style);
    last = failure.cause;
  }
  for (const Hint& hint : hints) {
    if (IsSame(hint.place, last)) {
      PrintNote(out, HintMessage(hint), style);
    } else {
      PrintPlace(out, source, hint.place, HintMessage(hint), style, Tone::kHint);
      last = hint.place;
    }
  }
}

void AddFailure(JsonLine* line, const zrt::Failure& failure, const std::vector<Hint>& hints,
                Explainer* explainer) {
  line->AddNumber("status", failure.status).AddText("name", zrt::StatusName(failure.status));
  line->AddPlace(failure.place).AddText("message", explainer->Sentence(failure.status));
  if (failure.cause_status != 0) {
    JsonLine cause;
    cause.AddNumber("status", failure.cause_status)
        .AddText("name", zrt::StatusName(failure.cause_status));
    line->AddWritten("cause", cause.AddPlace(failure.cause).text());
  }
  if (hints.empty()) return;
  const Hint& hint = hints.front();
  line->AddText("hint", hint.says);
  if (!hint.instead.empty()) line->AddText("instead", hint.instead);
  const bool is_there =
      hint.place.offset == failure.place.offset && hint.place.length == failure.place.length;
  if (!is_there) line->AddWritten("hint_place", JsonLine().AddPlace(hint.place).text());
}

std::string HintArray(const std::vector<Hint>& hints, std::size_t most) {
  JsonArray array;
  for (std::size_t i = 0; i < std::min(hints.size(), most); ++i) {
    JsonLine object;
    object.AddPlace(hints[i].place).AddText("says", hints[i].says);
    if (!hints[i].instead.empty()) object.AddText("instead", hints[i].instead);
    array.Add(object.text());
  }
  return array.text();
}
