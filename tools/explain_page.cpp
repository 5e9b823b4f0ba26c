// One element after the other. A step shows where it stands in the text when it is opened.
#include "explain_page.h"

#include <algorithm>

#include "cut_svg.h"
#include "page.h"
#include "reading_text.h"
#include "shown_text.h"
#include "steps.h"
#include "svg.h"

namespace {

constexpr std::size_t kMostSteps = 2000;

// The text around a place, which is marked; bytes of cut characters are shown as such.
std::string Marked(std::string_view text, zrt::Place place) {
  constexpr std::size_t kAround = 60, kMostMarked = 120;
  const std::size_t begin = place.offset > kAround ? place.offset - kAround : 0;
  const std::size_t length = std::min(place.length, kMostMarked);
  const std::size_t end = std::min(place.offset + length, text.size());
  const std::string_view behind = text.substr(end);
  return std::string("<code>") + (begin > 0 ? "..." : "") +
         Markup(text.substr(begin, place.offset - begin)) + "<mark>" +
         Markup(text.substr(place.offset, end - place.offset)) + "</mark>" +
         Markup(behind.substr(0, kAround)) + (behind.size() > kAround ? "..." : "") + "</code>";
}

std::string Steps(std::string_view text, const Reading& reading) {
  const std::vector<StepWords> steps = StepsInWords(text, reading);
  if (steps.empty()) return "";
  std::string list = "<section class=\"steps\" aria-label=\"steps\">\n<ol>\n";
  for (std::size_t i = 0; i < std::min(steps.size(), kMostSteps); ++i) {
    const StepWords& step = steps[i];
    list += std::string("<li") + (step.depth > 0 ? " class=\"in\"" : "") + "><details><summary>" +
            HtmlCode(step.what);
    if (!step.remark.empty()) {
      list += " <span class=\"remark\">" + Markup(step.remark) + "</span>";
    }
    list += "</summary><p>" + Marked(text, step.place) + "</p></details></li>\n";
  }
  list += "</ol>\n";
  if (steps.size() > kMostSteps) {
    list += "<p>and " + Counted(steps.size() - kMostSteps, "step") + " more</p>\n";
  }
  return list + "</section>\n";
}

}  // namespace

std::string ExplainBody(std::string_view text, const ReadingTree& tree, std::string_view failure,
                        const std::string& id) {
  constexpr std::size_t kMostHeading = 200, kMostBrackets = 20000;
  const Reading& reading = tree.reading();
  std::string body = "<h1>" + HtmlCode(Shown(text, kMostHeading)) + "</h1>\n";
  if (tree.root() != ReadingTree::kNone) {
    body += "<p>reads as " + HtmlCode(Shown(tree.Brackets(text, tree.root()), kMostBrackets)) +
            "</p>\n";
  }
  if (!tree.nodes().empty()) body += HtmlFigure(CutSvg(text, tree, "", id));
  body += Steps(text, reading);
  if (reading.has_outcome()) {
    body += "<p>gives " + HtmlCode(ValueText(reading.outcome_value())) + "</p>\n";
  }
  if (failure.empty()) return body;
  body += "<p class=\"bad\">" + Markup(failure) + "</p>\n";
  const zrt::Place place = reading.failure().place;
  return body + "<p>" + Marked(text, {std::min(place.offset, text.size()), place.length}) +
         "</p>\n";
}
