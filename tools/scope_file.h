// The names and values of an evaluation, read from a JSON file (docs/scope-file.md). Knows nothing
// of expressions.
#pragma once

#include <string>
#include <vector>

#include "ZRTExpression.h"

/// Owns the tokens and data fields that an evaluator refers to: it must outlive its use there.
class Scope {
 public:
  /// Adds what `path` holds. Throws Failure with kScopeFile.
  void Load(const std::string& path);

  /// Sets all five scopes of `expression`.
  void Attach(ZRTExpression* expression);

  /// Puts each field back to its first row.
  void ResetRows();

 private:
  ZRTTokenTree local_tokens_;
  ZRTTokenTree global_tokens_;
  QLMPlusData external_data_;
  QLMPlusData local_data_;
  QLMPlusData global_data_;
  std::vector<QLMDataField*> fields_;  // those of all three sets
};
