// A failed evaluation told to a person, with its cause and its hints, and to a script. Evaluates
// nothing.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "ZRTExpression.h"
#include "diagnostic.h"
#include "hints.h"
#include "json_line.h"

/// Tells what a status means.
class Explainer {
 public:
  /// The sentences are those of ErrorList.txt in `data_dir`, where it has one, else the library's;
  /// if `data_dir` is empty, always the library's. Complains of a list that is wrong or cannot be
  /// read.
  explicit Explainer(const std::string& data_dir);

  /// One sentence.
  std::string Sentence(int status);

  /// "ErrUnknownOperand (-511): " and the sentence.
  std::string Message(int status);

 private:
  ZRTExpression expression_;  // serves its error list alone
};

/// The names of the kinds, as commands and in JSON: int, float, bits.
const char* KindName(zrt::ValueKind kind);

/// "hint: ", what it says, and what to write instead.
std::string HintMessage(const Hint& hint);

/// Prints a failure as compilers do, the cause of a failed index behind it, and the hints.
void PrintFailure(std::ostream& out, const Source& source, const zrt::Failure& failure,
                  const std::vector<Hint>& hints, Explainer* explainer, const Style& style);

/// Adds "status", "name", "at", "length", "message"; of a failed index "cause"; of the first hint
/// "hint" and, if it tells one, "instead"; where that is about another place, "hint_place".
void AddFailure(JsonLine* line, const zrt::Failure& failure, const std::vector<Hint>& hints,
                Explainer* explainer);

/// The first hints, at most `most`: objects with "at", "length", "says" and maybe "instead".
std::string HintArray(const std::vector<Hint>& hints, std::size_t most);
