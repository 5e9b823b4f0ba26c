// The frame and its style sheet. Light and dark follow the reader's system, paper is always light.
#include "page.h"

#include "svg.h"

namespace {

constexpr std::string_view kStyle = R"(
:root{color-scheme:light dark;--ink:#1b1f24;--paper:#fff;--faint:#59636e;--edge:#d0d7de;--mark:#ffe58a;--bad:#b3261e}
@media screen and (prefers-color-scheme:dark){
:root{--ink:#e6edf3;--paper:#14181d;--faint:#9aa5b1;--edge:#3a424b;--mark:#665200;--bad:#ff8a80}}
@media print{:root{color-scheme:light}.wide svg{max-width:100%;height:auto}h1{break-after:avoid}}
body{margin:0 auto;max-width:72rem;padding:1rem;font:16px/1.5 sans-serif;color:var(--ink);background:var(--paper)}
h1,h2{font-size:1.25rem;overflow-wrap:anywhere}
code{font:1em monospace;white-space:pre-wrap;overflow-wrap:anywhere}
.wide{overflow-x:auto;margin:1rem 0;border:1px solid var(--edge)}
.wide svg{display:block}
table{border-collapse:collapse;margin:1rem 0}
caption{text-align:left;font-weight:bold}
th,td{border:1px solid var(--edge);padding:.2rem .6rem;text-align:left;vertical-align:top}
td{font-family:monospace;overflow-wrap:anywhere}
summary{cursor:pointer}
.steps details{margin:.15rem 0}
.steps p{margin:.2rem 0 .6rem 1.4rem}
.in{margin-left:2rem}
.remark{color:var(--faint)}
.bad{color:var(--bad)}
mark{background:var(--mark);color:inherit;outline:1px solid currentColor}
)";

}  // namespace

std::string HtmlPage(std::string_view title, std::string_view body) {
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
         Markup(title) + "</title>\n<style>" + std::string(kStyle) +
         "</style>\n</head>\n<body>\n<main>\n" + std::string(body) + "</main>\n</body>\n</html>\n";
}

std::string HtmlCode(std::string_view text) { return "<code>" + Markup(text) + "</code>"; }

std::string HtmlFigure(std::string_view svg) {
  return "<div class=\"wide\" role=\"region\" aria-label=\"picture\" tabindex=\"0\">\n" +
         std::string(svg) + "</div>\n";
}

std::string HtmlTable(std::string_view caption, const std::vector<std::string>& headings,
                      const std::vector<std::vector<std::string>>& rows) {
  std::string table = "<table>\n<caption>" + Markup(caption) + "</caption>\n<tr>";
  for (const std::string& heading : headings) {
    table += "<th scope=\"col\">" + Markup(heading) + "</th>";
  }
  table += "</tr>\n";
  for (const std::vector<std::string>& row : rows) {
    table += "<tr>";
    for (std::size_t i = 0; i < row.size(); ++i) {
      table += i == 0 ? "<th scope=\"row\">" + Markup(row[i]) + "</th>"
                      : "<td>" + Markup(row[i]) + "</td>";
    }
    table += "</tr>\n";
  }
  return table + "</table>\n";
}
