// The names of a session: those of its file, those that were given values by hand, the last value,
// and how far rows are used up. It is plain data, so that it can be kept and taken back; a scope is
// made of it for each evaluation.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "scope.h"
#include "scope_file.h"
#include "zrtexpression/trace.h"

/// A value that a name can be given.
struct NamedValue {
  zrt::ValueKind kind = zrt::ValueKind::kInteger;
  int integer = 0;
  float floating = 0;
  std::vector<unsigned char> bytes;  // of a bit vector
  int bit_length = 0;
};

class SessionScope {
 public:
  /// The name of the last value.
  static constexpr const char* kLast = "last";

  SessionScope();

  /// Takes the names of a file in the place of those of another one, all rows at their beginning.
  /// Throws Failure, with nothing changed.
  void Load(const std::string& path);

  /// Whether a value is written as for -t or -d; else it is a text to be evaluated.
  static bool IsWritten(const std::string& value);

  /// Gives a name a value, written so. Throws Failure if it is none after all.
  void Define(const std::string& name, const std::string& value);
  void Define(const std::string& name, NamedValue value);
  void SetLast(NamedValue value) { last_ = std::move(value); }

  [[nodiscard]] const std::optional<NamedValue>& last() const { return last_; }

  /// Puts each field back to its first row.
  void ResetRows() { positions_.clear(); }

  /// Adds all names to an empty scope, each field at the row where it stands.
  void Fill(Scope* scope) const;

  /// What an evaluation has changed, as bytes that another process can send back; `scope` is one
  /// that Fill() has filled.
  static std::string Written(const Scope& scope, const std::optional<NamedValue>& last);
  void Read(const std::string& written);

 private:
  struct Definition {
    std::string name;
    ScopeRequest request;             // what was written by hand
    std::optional<NamedValue> value;  // or what was computed
  };

  void Put(Definition definition);

  std::shared_ptr<const Scope> file_;  // shared by copies: nobody changes it
  std::vector<Definition> definitions_;
  std::optional<NamedValue> last_;
  std::vector<Scope::RowPosition> positions_;
};
