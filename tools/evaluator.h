// One text after the other evaluated over a scope, with all that is to be told of it: to a
// person or to a script.
#pragma once

#include <climits>
#include <iosfwd>
#include <string>
#include <vector>

#include "failures.h"
#include "json_line.h"
#include "output.h"
#include "scope.h"

class TextEvaluator {
 public:
  struct Options {
    int max_bits = INT_MAX;   // values of more bits are refused
    bool fresh_rows = false;  // each text begins with the first row of each field
    bool is_quick = false;    // hints may know less, where more would slow down all texts
    const char* names_from = kOptionNames;  // told where there are none
  };

  /// `scope` must outlive its use here.
  TextEvaluator(Scope* scope, const Options& options) : options_(options) { Use(scope); }
  void Use(Scope* scope);

  /// Evaluates `text`, which must outlive its telling. A field gives its rows once. True if there
  /// is a value and it is not refused.
  bool Evaluate(const std::string& text, zrt::ValueKind kind);

  /// The same, and keeps how the text was read.
  bool EvaluateWatched(const std::string& text, zrt::ValueKind kind);

  /// How the last text was read if that was kept, or if it failed.
  [[nodiscard]] const Reading& reading() const { return reading_; }

  [[nodiscard]] ZRTExpression* expression() { return &expression_; }

  // ---- Of the last text, if it has a value ----------------------------------------------------

  [[nodiscard]] int bit_length() const { return stream_.BitLength; }
  std::string ValueText(BitFormat format);
  RowDataStream& bits() { return stream_; }  // empty if the value is no bit vector

  // ---- Else, as it is told --------------------------------------------------------------------

  void PrintFailure(std::ostream& out, const Source& source, Explainer* explainer,
                    const Style& style);

  /// The failure or refusal with its hints as one sentence; empty if there is a value.
  std::string FailureWords(Explainer* explainer);

  /// Adds text and kind, and what became of it: a value, a failure, or an "error". In any case.
  void AddAnswer(JsonLine* line, Explainer* explainer);

 private:
  void Begin(const std::string& text, zrt::ValueKind kind);
  void EmptyStream();
  int EvaluateUnwatched();
  bool IsSmall();
  int Watch(zrt::Observer* observer);
  std::vector<Hint> Hints();
  void AddValue(JsonLine* line);

  Scope* scope_ = nullptr;
  ZRTExpression expression_;
  Options options_;
  const std::string* text_ = nullptr;
  zrt::ValueKind kind_ = zrt::ValueKind::kInteger;
  int integer_ = 0;
  float floating_ = 0;
  RowDataStream stream_;
  std::string refusal_;
  zrt::Failure failure_;
  Reading reading_;
};
