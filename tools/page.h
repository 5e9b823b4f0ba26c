// Pages without anything from outside: the frame around a page's body, and what bodies are made of.
// Knows nothing of what they show.
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// A whole document. `title` is any text, `body` markup.
std::string HtmlPage(std::string_view title, std::string_view body);

/// A text as code.
std::string HtmlCode(std::string_view text);

/// A picture that can be scrolled where it is wider than the screen.
std::string HtmlFigure(std::string_view svg);

/// A table of texts, those of the first column being what a row is about.
std::string HtmlTable(std::string_view caption, const std::vector<std::string>& headings,
                      const std::vector<std::vector<std::string>>& rows);
