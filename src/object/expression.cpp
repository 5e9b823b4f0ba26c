// The evaluator object itself: its fields, who owns what in them, set-up and end. Knows nothing of
// evaluation.
#include "ZRTExpression.h"

#include <cerrno>
#include <cstring>
#include <new>
#include <optional>
#include <string>

#include "names/scopes.h"
#include "object/current_directory.h"
#include "object/owned_state.h"
#include "object/status_of.h"

namespace {

constexpr std::size_t kLongestDirectory = 1 << 24;  // characters; far beyond any platform's

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

// The process's current directory, however long its name is; nothing if the platform cannot tell
// it.
std::optional<std::string> CurrentDirectory() {
  for (std::string buffer(256, '\0');; buffer.resize(2 * buffer.size())) {
    if (_getcwd(buffer.data(), static_cast<int>(buffer.size()))) return buffer.c_str();
    if (errno != ERANGE || buffer.size() > kLongestDirectory) return std::nullopt;
  }
}

// The way back is tried before anything is entered: a process that dropped its rights may stand in
// a directory that it could not enter again.
bool CanEnter(const char* dir) {
  const std::optional<std::string> here = CurrentDirectory();
  if (!here || _chdir(here->c_str()) != 0) return false;
  const bool entered = _chdir(dir) == 0;
  return _chdir(here->c_str()) == 0 && entered;
}

}  // namespace

ZRTExpression::ZRTExpression() noexcept = default;

ZRTExpression::ZRTExpression(const ZRTExpression& source) noexcept { *this = source; }

ZRTExpression::~ZRTExpression() {
  delete[] DefaultDir;
  delete[] ErrorInstruction;
  delete owned_;
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
  if (!owned_ && source.Handler) owned_ = new (std::nothrow) OwnedState;
  if (owned_) {
    owned_->handler = source.owned_ ? source.owned_->handler : nullptr;
    Handler = owned_->handler.get();
  }
  return *this;
}

int ZRTExpression::SetDefaultDir(char* dir) {
  return zrt::StatusOf([&] {
    const bool is_empty = !dir || *dir == '\0';
    if (!is_empty && !CanEnter(dir)) return ErrBadDirectory;
    char* copy = CopyText(is_empty ? "" : dir);
    if (!copy) return ErrStreamWrite;
    Replace(DefaultDir, copy);
    return zrt::kOk;
  });
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
