// The names and values of an evaluation. Knows neither where they come from nor expressions.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "ZRTExpression.h"

/// Owns the tokens and data fields that an evaluator refers to: it must outlive its use there.
class Scope {
 public:
  enum TokenSet : std::size_t { kLocalTokens, kGlobalTokens, kTokenSetCount };
  enum DataSet : std::size_t { kExternalData, kLocalData, kGlobalData, kDataSetCount };

  struct NamedField {
    DataSet set;
    QLMDataField* field;
  };

  /// Adds a token, or gives the one of that name another value.
  void Add(TokenSet set, ZRTTokens token);

  /// The field of that name, which is new and has no rows if there was none.
  QLMDataField* AddField(DataSet set, const std::string& name);

  /// Adds each name of `other` that the same set of this one does not hold. The bytes of rows are
  /// shared, not copied; each scope has row pointers of its own.
  void AddMissing(const Scope& other);

  /// Sets all five scopes of `expression`.
  void Attach(ZRTExpression* expression);

  /// Puts each field back to its first row.
  void ResetRows();

  /// Whether reading can move a row pointer on: a field of one row stays where it is.
  [[nodiscard]] bool has_several_rows() const;

  /// The fields of all sets, in the order in which they were added.
  [[nodiscard]] const std::vector<NamedField>& fields() const { return fields_; }

  /// How far the rows of a field are used up.
  struct RowPosition {
    DataSet set;
    std::string name;
    int taken;
    int count;
  };

  /// Of all fields, as they were added. Takes time in proportion to their rows.
  [[nodiscard]] std::vector<RowPosition> RowPositions() const;

  /// Moves a field, if there is one of that name, to where it was, or to its end if that is nearer.
  void MoveTo(const RowPosition& position);

  /// All names, those of tokens and of fields.
  [[nodiscard]] std::vector<std::string> names() const;

 private:
  struct NamedToken {
    TokenSet set;
    ZRTTokens* token;
  };

  std::array<ZRTTokenTree, kTokenSetCount> token_sets_;
  std::array<QLMPlusData, kDataSetCount> data_sets_;
  std::vector<NamedToken> tokens_;  // those of all sets
  std::vector<NamedField> fields_;
};
