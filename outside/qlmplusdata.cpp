// Data fields and their set. A field keeps bytes and widths as they are given and does not know
// whether they agree.
#include "qlmplusdata.h"

#include <memory>
#include <new>
#include <utility>

QLMDataField::QLMDataField() = default;

QLMDataField::~QLMDataField() {
  for (const Row* row : rows_) delete row;
}

void QLMDataField::SetFieldName(const char* name) {
  try {
    name_ = name == nullptr ? "" : name;
  } catch (const std::bad_alloc&) {
    return;  // std::string keeps what it had
  }
}

LByteBuffer* QLMDataField::AddRow(int width) { return AddRow(width, {}); }

LByteBuffer* QLMDataField::AddRow(int width, const std::vector<unsigned char>& bytes) {
  try {
    auto row = std::make_unique<Row>();
    row->width = width;
    if (!row->bytes.Append(bytes)) return nullptr;
    rows_.push_back(row.get());
    return &row.release()->bytes;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

int QLMDataField::GetCurrentRowWidth() {
  const Row* row = RowAt(current_);
  return row == nullptr ? 0 : row->width;
}

LByteBuffer* QLMDataField::GetCurrentRow() {
  Row* row = RowAt(current_);
  if (row == nullptr) return nullptr;
  ++current_;
  return &row->bytes;
}

// Place 0 less one is behind every row, as is every place that a negative index makes.
LByteBuffer* QLMDataField::GetRow(int index) {
  Row* row = RowAt(static_cast<std::size_t>(index) - 1);
  return row == nullptr ? nullptr : &row->bytes;
}

int QLMDataField::GetRowWidth(int index) {
  const Row* row = RowAt(static_cast<std::size_t>(index) - 1);
  return row == nullptr ? 0 : row->width;
}

QLMDataField* QLMPlusData::AddField(const char* name) {
  if (name == nullptr) name = "";
  if (QLMDataField* known = FieldOf(Find(name))) return known;
  auto added = std::make_unique<QLMDataField>();
  added->name_ = name;
  Insert(name, added.get());
  return added.release();
}
