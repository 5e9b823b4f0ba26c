// The object's entry points to names: the searches through the scopes, and the fields made for mask
// names that no scope holds. A pointer or false is the whole answer; null also where memory runs
// out.
#include <memory>
#include <utility>

#include "ZRTExpression.h"
#include "bits/exhausted_memory.h"
#include "names/scopes.h"
#include "object/owned_state.h"

using zrt::OnExhaustedMemory;

QLMDataField* ZRTExpression::SearchDataFieldSTAPLimpl(char* name) {
  if (!name) return nullptr;
  if (QLMDataField* field = CurrentScopes().FindField(name)) return field;
  if (!IsIgnoreInst(name)) return nullptr;
  return OnExhaustedMemory(nullptr, [&]() -> QLMDataField* {
    if (!owned_) owned_ = new OwnedState;
    auto field = std::make_unique<QLMDataField>();
    field->SetFieldName(name);
    if (!field->AddRow(0)) return nullptr;
    return owned_->mask_fields.emplace_back(std::move(field)).get();
  });
}

QLMDataField* ZRTExpression::SearchDataField(char* name) {
  QLMDataField* field = SearchDataFieldSTAPLimpl(name);
  if (field || !name || name != zrt::kFuseArrayOut) return field;
  zrt::OverwriteWithFuseArrayIn(name);
  return CurrentScopes().FindField(name);
}

ZRTTokens* ZRTExpression::SearchToken(char* name) {
  return name ? CurrentScopes().FindToken(name) : nullptr;
}

ZRTTokens* ZRTExpression::GetTokenFromTree(ZRTTokenTree* tree, char* name) {
  RBTreeNode* node = name ? tree->Search(tree->GetRoot(), name) : nullptr;
  return node ? static_cast<ZRTTokens*>(node->GetObject()) : nullptr;
}

bool ZRTExpression::IsIgnoreInst(char* name) { return zrt::IsMaskName(name); }

bool ZRTExpression::IsToken(const char* text) {
  return OnExhaustedMemory(false, [&] {
    zrt::NameBuffer buffer(text);
    char* name = buffer.text();
    LString strings;
    for (const char delimiter : {'.', '['}) {
      const int position = strings.Find(name, delimiter);
      if (position > 0) strings.Left(name, name, position);
    }
    return SearchDataField(name) || SearchToken(name);
  });
}
