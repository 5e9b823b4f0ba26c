// The data library as its contract has it and nothing more. Behind its last row a field begins
// again.
#pragma once

#include <list>

#include "hq4170.h"

// NOLINTBEGIN(readability-make-member-function-const,readability-identifier-naming)

class QLMDataField : public LObject {
 public:
  void SetFieldName(const char* name) { name_ = name; }
  LByteBuffer* AddRow(int width) {
    rows_.emplace_back().second = width;
    return &rows_.back().first;
  }
  int GetRowCount() { return static_cast<int>(rows_.size()); }
  int GetCurrentRowWidth() { return GetRowWidth(current_); }
  LByteBuffer* GetCurrentRow() {
    LByteBuffer* row = GetRow(current_);
    current_ = current_ < GetRowCount() ? current_ + 1 : 1;
    return row;
  }
  void ResetRowPointer() { current_ = 1; }
  LByteBuffer* GetRow(int index) {
    if (index < 1) std::abort();
    return index <= GetRowCount() ? &std::next(rows_.begin(), index - 1)->first : nullptr;
  }
  int GetRowWidth(int index) {
    if (index < 1) std::abort();
    return index <= GetRowCount() ? std::next(rows_.begin(), index - 1)->second : 5;
  }

  std::string name_;
  std::list<std::pair<LByteBuffer, int>> rows_;  // and their widths in bits
  int current_ = 1;
};

struct QLMPlusData {
  QLMDataField* GetDataField(char* name) const {
    const auto found = fields_.find(name);
    return found == fields_.end() ? nullptr : found->second.get();
  }
  std::map<std::string, std::unique_ptr<QLMDataField>> fields_;
};

// NOLINTEND(readability-make-member-function-const,readability-identifier-naming)
