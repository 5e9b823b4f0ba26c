// The evaluator object itself: its fields, who owns what in them, set-up and end. Knows nothing of
// evaluation.
#include "ZRTExpression.h"

#include <array>
#include <cstring>
#include <new>

#include "frame/current_directory.h"
#include "frame/holdings.h"
#include "frame/scopes.h"

namespace {

constexpr int kDirectorySize = 255;  // of the buffer for the current directory, terminator included

// A copy that delete[] releases; null for null, and if memory runs out.
char* CopyText(const char* text) {
  if (!text) return nullptr;
  const std::size_t size = std::strlen(text) + 1;
  char* copy = new (std::nothrow) char[size];
  return copy ? static_cast<char*>(std::memcpy(copy, text, size)) : nullptr;
}

// The new text is made before the old one goes: a host may hand in the object's own.
void Replace(char*& text, char* replacement) {
  delete[] text;
  text = replacement;
}

bool CanEnter(const char* dir) {
  std::array<char, kDirectorySize> saved{};
  if (!_getcwd(saved.data(), kDirectorySize)) return false;
  const bool entered = _chdir(dir) == 0;
  return _chdir(saved.data()) == 0 && entered;
}

}  // namespace

ZRTExpression::ZRTExpression() noexcept = default;

ZRTExpression::ZRTExpression(const ZRTExpression& source) noexcept { *this = source; }

ZRTExpression::~ZRTExpression() {
  delete[] DefaultDir;
  delete[] ErrorInstruction;
}

ZRTExpression& ZRTExpression::operator=(const ZRTExpression& source) noexcept {
  if (this == &source) return *this;
  Replace(DefaultDir, CopyText(source.DefaultDir));
  Replace(ErrorInstruction, CopyText(source.ErrorInstruction));
  GlobalTokenTree = source.GlobalTokenTree;
  LocalTokenTree = source.LocalTokenTree;
  GlobalZRTData = source.GlobalZRTData;
  LocalZRTData = source.LocalZRTData;
  ExternalZRTData = source.ExternalZRTData;

  // The fields made for mask names stay with the object that handed them out.
  if (!holdings_ && source.Handler) holdings_.reset(new (std::nothrow) Holdings);
  if (holdings_) {
    holdings_->handler = source.holdings_ ? source.holdings_->handler : nullptr;
    Handler = holdings_->handler.get();
  }
  return *this;
}

int ZRTExpression::SetDefaultDir(char* dir) {
  const bool is_empty = !dir || *dir == '\0';
  if (!is_empty && !CanEnter(dir)) return ErrBadDirectory;
  char* copy = CopyText(is_empty ? "" : dir);
  if (!copy) return ErrStreamWrite;
  Replace(DefaultDir, copy);
  return zrt::kOk;
}

char* ZRTExpression::GetDefaultDir() { return DefaultDir; }

ErrorHandler* ZRTExpression::GetErrorHandler() { return Handler; }

void ZRTExpression::SetGlobalTokenTree(ZRTTokenTree* tree) { GlobalTokenTree = tree; }

void ZRTExpression::SetLocalTokenTree(ZRTTokenTree* tree) { LocalTokenTree = tree; }

void ZRTExpression::SetGlobalZRTData(QLMPlusData* data) { GlobalZRTData = data; }

void ZRTExpression::SetLocalZRTData(QLMPlusData* data) { LocalZRTData = data; }

void ZRTExpression::SetExternalZRTData(QLMPlusData* data) { ExternalZRTData = data; }

void ZRTExpression::SetErrorInstruction(char* text) {
  Replace(ErrorInstruction, text && *text != '\0' ? CopyText(text) : nullptr);
}

zrt::Scopes ZRTExpression::CurrentScopes() const {
  return {.local_tokens = LocalTokenTree,
          .global_tokens = GlobalTokenTree,
          .external_data = ExternalZRTData,
          .local_data = LocalZRTData,
          .global_data = GlobalZRTData};
}
