// The order of the scopes, and the static table of mask names.
#include "names/scopes.h"

#include <algorithm>
#include <iterator>

#include "bits/huge_pages.h"
#include "hq4170.h"

namespace zrt {
namespace {

constexpr std::string_view kMaskNames[] = {
    "Usercode_MASK",      "FuseArray_MASK",     "EFuseArray_MASK", "ID_MASK",
    "FuseArray_MASK_TDO", "FuseArray_MASK_TDI", "FuseArray_DMASK",
};

}  // namespace

void NameBuffer::UseHeap(std::size_t length) {
  heap_.reset(new char[length + 1]);
  PreferHugePages(heap_.get(), length + 1);
}

NameBuffer::NameBuffer(std::string_view name) : NameBuffer(name.size()) {
  text()[name.copy(text(), name.size())] = '\0';
}

OperandEvent::Scope Scopes::ScopeOf(const ZRTTokens& token, char* name) const {
  const bool is_local = local_tokens && local_tokens->GetToken(name) == &token;
  return is_local ? OperandEvent::Scope::kLocal : OperandEvent::Scope::kGlobal;
}

OperandEvent::Scope Scopes::ScopeOf(const QLMDataField& field, char* name) const {
  const auto holds = [&](const QLMPlusData* data) {
    return data && data->GetDataField(name) == &field;
  };
  if (holds(external_data)) return OperandEvent::Scope::kExternal;
  return holds(local_data) ? OperandEvent::Scope::kLocal : OperandEvent::Scope::kGlobal;
}

bool IsMaskName(std::string_view name) {
  return std::ranges::find(kMaskNames, name) != std::end(kMaskNames);
}

void OverwriteWithFuseArrayIn(char* name) {
  constexpr const char* kFuseArrayIn = "FuseArray_TDI";
  util_strncpy(name, kFuseArrayIn, static_cast<int>(kFuseArrayOut.size()), 0);
}

}  // namespace zrt
