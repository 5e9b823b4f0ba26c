// The data library as its contract has it and nothing more. Behind its last row a field begins
// again.
#pragma once

#include <list>

#include "hq4170.h"

class QLMDataField : public LObject {
 public:
  QLMDataField() = default;
  ~QLMDataField() override = default;

  void SetFieldName(const char* name) { name_ = name; }
  LByteBuffer* AddRow(int width) {
    rows_.emplace_back().width = width;
    return &rows_.back().bytes;
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
    return index <= GetRowCount() ? &std::next(rows_.begin(), index - 1)->bytes : nullptr;
  }
  int GetRowWidth(int index) {
    if (index < 1) std::abort();
    return index <= GetRowCount() ? std::next(rows_.begin(), index - 1)->width : 5;
  }

 private:
  friend struct ContractHost;

  struct Row {
    LByteBuffer bytes;
    int width = 0;  // bits
  };

  std::string name_;
  std::list<Row> rows_;
  int current_ = 1;
};

class QLMPlusData {
 public:
  QLMDataField* GetDataField(char* name) const {
    const auto found = fields_.find(name);
    return found == fields_.end() ? nullptr : found->second.get();
  }

 private:
  friend struct ContractHost;
  std::map<std::string, std::unique_ptr<QLMDataField>> fields_;
};
