// Names and the things they stand for: the five scopes of an evaluation and the searches through
// them. Knows the closed libraries' lookups; which status a missing name becomes is for others.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "qlmplusdata.h"
#include "zrtexpression/trace.h"
#include "zrttokentree.h"

namespace zrt {

/// A name as the lookups want it: NUL-terminated and writable. Short names cost no allocation.
class NameBuffer {
 public:
  /// Copies `name`. Throws std::bad_alloc.
  explicit NameBuffer(std::string_view name);

  /// Has room for a name of `length` characters and the terminator, to be filled.
  /// Throws std::bad_alloc.
  explicit NameBuffer(std::size_t length) {
    if (length >= kInlineSize) UseHeap(length);
  }

  [[nodiscard]] char* text() { return heap_ ? heap_.get() : inline_; }

 private:
  static constexpr std::size_t kInlineSize = 512;

  void UseHeap(std::size_t length);

  char inline_[kInlineSize];
  std::unique_ptr<char[]> heap_;
};

/// A name as the lookups want it, in its place, if it ends the caller's text: there its terminator
/// stands already. Else null. Lookups only read, so that the text need not be writable; it is the
/// library itself that rewrites a name, and that one is copied (OverwriteWithFuseArrayIn()).
inline char* NameInPlace(std::string_view name) {
  if (*(name.data() + name.size()) != '\0') return nullptr;
  return const_cast<char*>(name.data());  // NOLINT(cppcoreguidelines-pro-type-const-cast)
}

/// The host's scopes, borrowed. Null scopes are skipped.
struct Scopes {
  ZRTTokenTree* local_tokens = nullptr;
  ZRTTokenTree* global_tokens = nullptr;
  QLMPlusData* external_data = nullptr;
  QLMPlusData* local_data = nullptr;
  QLMPlusData* global_data = nullptr;

  [[nodiscard]] bool has_tokens() const { return local_tokens || global_tokens; }

  /// The token of that name, local before global; null if there is none.
  [[nodiscard]] ZRTTokens* FindToken(char* name) const {
    ZRTTokens* token = local_tokens ? local_tokens->GetToken(name) : nullptr;
    return token || !global_tokens ? token : global_tokens->GetToken(name);
  }

  /// The field of that name, external before local before global; null if there is none.
  [[nodiscard]] QLMDataField* FindField(char* name) const {
    QLMDataField* field = external_data ? external_data->GetDataField(name) : nullptr;
    if (!field && local_data) field = local_data->GetDataField(name);
    return field || !global_data ? field : global_data->GetDataField(name);
  }

  /// Whether any of them holds that name.
  [[nodiscard]] bool Know(char* name) const { return FindField(name) || FindToken(name); }

  /// The scope in which `name` has led to the token or the field.
  [[nodiscard]] OperandEvent::Scope ScopeOf(const ZRTTokens& token, char* name) const;
  [[nodiscard]] OperandEvent::Scope ScopeOf(const QLMDataField& field, char* name) const;
};

/// Whether `name` is one of the names that resolve to an empty row where no data set holds them.
bool IsMaskName(std::string_view name);

inline constexpr std::string_view kFuseArrayOut = "FuseArray_TDO";

/// Writes the name that stands in for the fuse array's output data over `name`, its equal in
/// length.
void OverwriteWithFuseArrayIn(char* name);

}  // namespace zrt
