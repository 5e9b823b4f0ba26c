// The data library's contract: named fields with rows of bytes, in a set. This is a stand-in with a
// host side to build them; it knows nothing of expressions or of what a row means.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "hq4170.h"

/// Rows of bytes, each with a width in bits, under a name, with a row pointer that reading moves
/// on. Behind the last row the pointer stays where it is: there is no row there, and its width is
/// 0. A field owns its rows; it cannot be copied.
class ZRT_OUTSIDE_EXPORT QLMDataField : public LObject {
 public:
  /// A field with no name and no rows.
  QLMDataField();
  QLMDataField(const QLMDataField&) = delete;
  QLMDataField& operator=(const QLMDataField&) = delete;
  ~QLMDataField() override;

  /// Keeps a copy of `name`; null is the empty name. A set goes on finding the field by the name
  /// under which it was added. A name that finds no memory changes nothing.
  void SetFieldName(const char* name);

  /// Appends an empty row of `width` bits and returns it; null if memory runs out.
  LByteBuffer* AddRow(int width);

  int GetRowCount() { return static_cast<int>(rows_.size()); }

  /// The width in bits of the row at the row pointer; the row itself, or null, moving the pointer
  /// on to the next row.
  int GetCurrentRowWidth();
  LByteBuffer* GetCurrentRow();
  void ResetRowPointer() { current_ = 0; }

  /// The row at `index`, counted from 1, or null; its width in bits, or 0.
  LByteBuffer* GetRow(int index);
  int GetRowWidth(int index);

  // ---- Host side -----------------------------------------------------------------------------

  /// Appends a row of `width` bits that holds `bytes`. The two need not agree. Null, with nothing
  /// added, if memory runs out.
  LByteBuffer* AddRow(int width, const std::vector<unsigned char>& bytes);

  const char* GetFieldName() const { return name_.c_str(); }

 private:
  friend class QLMPlusData;

  struct Row {
    LByteBuffer bytes;
    int width = 0;  // bits
  };

  Row* RowAt(std::size_t place) { return place < rows_.size() ? rows_[place] : nullptr; }

  std::string name_;
  std::vector<Row*> rows_;  // owned: a row stays where it is when others are added
  std::size_t current_ = 0;
};

/// A scope of data fields. It owns them; it cannot be copied.
class ZRT_OUTSIDE_EXPORT QLMPlusData : private RBTree {
 public:
  /// The field of that name, or null.
  QLMDataField* GetDataField(char* name) const { return FieldOf(Find(name)); }

  // ---- Host side -----------------------------------------------------------------------------

  /// Adds a field with no rows, or gives the one that has the name already; null is the empty name.
  /// Throws std::bad_alloc.
  QLMDataField* AddField(const char* name);

 private:
  static QLMDataField* FieldOf(RBTreeNode* node) {
    // AddField() puts nothing else into the tree
    return node == nullptr ? nullptr : static_cast<QLMDataField*>(node->GetObject());
  }
};
