// Bit vectors as pictures, on a terminal or in a file.
#include <algorithm>
#include <iostream>
#include <optional>
#include <sstream>

#include "commands.h"
#include "page.h"
#include "show_page.h"
#include "terminal.h"
#include "texts.h"
#include "vector_svg.h"
#include "vector_text.h"

namespace {

// Shows one text after the other, alone or beside the one that they are held against.
class Shower {
 public:
  Shower(const ShowRequest& request, TextSession* session)
      : request_(request), session_(*session) {}

  // False if the text that the others are held against has no value.
  bool ReadAgainst() {
    if (!request_.against) return true;
    against_ = *request_.against;
    return Read(against_, ArgumentSource(against_), &before_);
  }

  bool Show(const std::string& text, const Source& source) {
    VectorImage image;
    if (!Read(text, source, &image)) return false;
    const std::string id = "picture" + std::to_string(++count_);
    if (!request_.against) {
      Tell(text, image, id);
    } else {
      Tell(text, VectorComparison(before_, image), id);
    }
    return true;
  }

  void WriteFiles() {
    if (!svg_.empty()) WriteFile(request_.reading.pages.svg_path, svg_);
    if (bodies_.empty()) return;
    WriteFile(request_.reading.pages.html_path, HtmlPage("zrteval show", bodies_));
  }

 private:
  // Each text begins with the first row of each field where two are compared.
  bool Read(const std::string& text, const Source& source, VectorImage* image) {
    TextEvaluator& evaluator = session_.evaluator();
    if (request_.against) session_.scope().ResetRows();
    if (evaluator.EvaluateWatched(text, zrt::ValueKind::kBits)) {
      *image = ImageOf(text, evaluator.reading(), &evaluator.bits());
      return true;
    }
    std::ostringstream message;
    evaluator.PrintFailure(message, source, &session_.explainer(), ErrorStyle());
    ErrorStream() << message.str();
    return false;
  }

  void Tell(const std::string& text, const VectorImage& image, const std::string& id) {
    if (!request_.reading.pages.svg_path.empty()) svg_ = VectorSvg(text, image, id);
    if (!request_.reading.pages.html_path.empty()) bodies_ += ShowBody(text, image, id);
    if (request_.reading.pages.is_asked_for()) return;
    const auto window = WindowIn(image.bytes.size());
    Print(VectorText(image, window, OutputStyle()));
  }

  void Tell(const std::string& text, const VectorComparison& comparison, const std::string& id) {
    if (!request_.reading.pages.svg_path.empty()) svg_ = ComparisonSvg(text, comparison, id);
    if (!request_.reading.pages.html_path.empty()) {
      bodies_ += ComparisonBody(text, against_, comparison, id);
    }
    if (request_.reading.pages.is_asked_for()) return;
    const auto window = WindowIn(comparison.pair_count());
    Print(ComparisonText(comparison, window, OutputStyle()));
  }

  [[nodiscard]] std::optional<ByteRange> WindowIn(std::size_t byte_count) const {
    if (!request_.window) return std::nullopt;
    const std::size_t first = request_.window->first;
    const std::size_t behind = byte_count - std::min(first, byte_count);
    return ByteRange{first, std::min(request_.window->count, behind)};
  }

  void Print(const std::string& picture) const { std::cout << (count_ > 1 ? "\n" : "") << picture; }

  const ShowRequest& request_;
  TextSession& session_;
  std::string against_;
  VectorImage before_;
  std::size_t count_ = 0;
  std::string svg_;
  std::string bodies_;
};

}  // namespace

ExitCode Show(const ShowRequest& request) {
  TextSession session(request.reading);
  Shower shower(request, &session);
  if (!shower.ReadAgainst()) return kExpressionFailed;
  const ExitCode exit_code = session.ForEach(
      [&](const std::string& text, const Source& source) { return shower.Show(text, source); });
  shower.WriteFiles();
  return exit_code;
}
