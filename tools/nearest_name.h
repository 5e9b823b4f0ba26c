// The known name that a misspelt word comes close to.
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// One of `names`, or empty if none is close to `word`.
std::string NearestName(std::string_view word, const std::vector<std::string>& names);
