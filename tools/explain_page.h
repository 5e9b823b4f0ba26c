// How a text is read, as the body of a page. Knows neither a terminal nor a file.
#pragma once

#include <string>
#include <string_view>

#include "reading_tree.h"

/// The text, its brackets, the picture of the cut, the steps to be opened one by one, and the
/// value; `failure` is the sentence on a text that failed, `id` unique in the page.
std::string ExplainBody(std::string_view text, const ReadingTree& tree, std::string_view failure,
                        const std::string& id);
