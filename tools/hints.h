// What a person would want to be told: why a text failed and what to write instead, and what is
// read otherwise than it looks. One table of rules, each with its sentence beside it. Knows the
// language's surprises, and no output.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "reading.h"
#include "zrtexpression/failure.h"

/// What gives names at a command line.
inline constexpr char kOptionNames[] = "a scope file or -t name=value";

struct Hint {
  zrt::Place place;
  std::string says;     // one short sentence without a full stop
  std::string instead;  // what to write in the place of `place`, or empty
};

/// Why `text` failed with `failure`, the likeliest reason first; none if there is nothing to add.
/// `reading` is what the evaluation told, and Reading::LookUp() of the same text lets the hints
/// tell rows and types. `known_names` are those of all scopes, for a name that is misspelt;
/// `names_from` is what gives names where the text is written.
std::vector<Hint> FailureHints(std::string_view text, zrt::ValueKind kind,
                               const zrt::Failure& failure, const Reading& reading,
                               const std::vector<std::string>& known_names, const char* names_from);

/// What is read otherwise than a person would expect, in the order of the text.
std::vector<Hint> SurpriseHints(std::string_view text, zrt::ValueKind kind, const Reading& reading);
