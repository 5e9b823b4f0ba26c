// The sets find by name and cannot be walked through, so what is in them is listed beside them.
#include "scope.h"

#include <algorithm>
#include <new>
#include <utility>

void Scope::Add(TokenSet set, ZRTTokens token) {
  std::string name = token.GetName();
  const bool is_new = token_sets_[set].GetToken(name.data()) == nullptr;
  ZRTTokens* added = token_sets_[set].Add(std::move(token));
  if (is_new) tokens_.push_back({set, added});
}

QLMDataField* Scope::AddField(DataSet set, const std::string& name) {
  std::string writable = name;
  QLMDataField* field = data_sets_[set].GetDataField(writable.data());
  if (field != nullptr) return field;
  fields_.push_back({set, data_sets_[set].AddField(name.c_str())});
  return fields_.back().field;
}

void Scope::AddMissing(const Scope& other) {
  for (const auto& [set, token] : other.tokens_) {
    std::string name = token->GetName();
    if (token_sets_[set].GetToken(name.data()) == nullptr) Add(set, *token);
  }
  for (const auto& [set, field] : other.fields_) {
    std::string name = field->GetFieldName();
    if (data_sets_[set].GetDataField(name.data()) != nullptr) continue;
    QLMDataField* copy = AddField(set, name);
    for (int row = 1; row <= field->GetRowCount(); ++row) {
      LByteBuffer* bytes = copy->AddRow(field->GetRowWidth(row));
      if (bytes == nullptr) throw std::bad_alloc();
      *bytes = *field->GetRow(row);
    }
  }
}

void Scope::Attach(ZRTExpression* expression) {
  expression->SetLocalTokenTree(&token_sets_[kLocalTokens]);
  expression->SetGlobalTokenTree(&token_sets_[kGlobalTokens]);
  expression->SetExternalZRTData(&data_sets_[kExternalData]);
  expression->SetLocalZRTData(&data_sets_[kLocalData]);
  expression->SetGlobalZRTData(&data_sets_[kGlobalData]);
}

void Scope::ResetRows() {
  for (const NamedField& entry : fields_) entry.field->ResetRowPointer();
}

bool Scope::has_several_rows() const {
  return std::any_of(fields_.begin(), fields_.end(),
                     [](const NamedField& entry) { return entry.field->GetRowCount() > 1; });
}

std::vector<Scope::RowPosition> Scope::RowPositions() const {
  std::vector<RowPosition> positions;
  for (const auto& [set, field] : fields_) {
    const int count = field->GetRowCount();
    int left = 0;
    while (field->GetCurrentRow() != nullptr) ++left;
    field->ResetRowPointer();
    for (int row = 0; row < count - left; ++row) field->GetCurrentRow();
    positions.push_back({set, field->GetFieldName(), count - left, count});
  }
  return positions;
}

void Scope::MoveTo(const RowPosition& position) {
  std::string name = position.name;
  QLMDataField* field = data_sets_[position.set].GetDataField(name.data());
  if (field == nullptr) return;
  field->ResetRowPointer();
  for (int row = 0; row < position.taken; ++row) field->GetCurrentRow();
}

std::vector<std::string> Scope::names() const {
  std::vector<std::string> names;
  names.reserve(tokens_.size() + fields_.size());
  for (const NamedToken& entry : tokens_) names.emplace_back(entry.token->GetName());
  for (const NamedField& entry : fields_) names.emplace_back(entry.field->GetFieldName());
  return names;
}
