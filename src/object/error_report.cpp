// Error reports: the error list's loading, and the one way into the handler's record. Evaluators do
// not report; a host has their status.
#include <memory>
#include <string>
#include <string_view>

#include "ZRTExpression.h"
#include "object/owned_state.h"
#include "object/status_of.h"

namespace {

constexpr int kCategory = 8;  // this library's in the error list
constexpr const char* kListFile = "ErrorList.txt";
constexpr std::string_view kFallbackText = "ZRT Template Process Error.\n";
constexpr std::size_t kReportSize = 65536;  // longer detail texts are left out, bytes
constexpr int kNoEntry = -1;

}  // namespace

int ZRTExpression::Initialize(char* dir) {
  return zrt::StatusOf([&] {
    if (const int status = SetDefaultDir(dir); status < 0) {
      ProcessException(status, kCategory, dir);
      return status;
    }
    if (!Handler) {
      if (!owned_) owned_ = new OwnedState;
      owned_->handler = std::make_shared<ErrorHandler>();
      Handler = owned_->handler.get();
    }
    // Not `dir` itself: it may have been the object's own text, which is released by now.
    Handler->SetDefaultDir(dir ? DefaultDir : nullptr);
    std::string file(kListFile);  // the handler wants it writable
    const int status = Handler->Initialize(file.data(), kCategory);
    if (status < 0) ProcessException(status, kCategory, "");
    return status;
  });
}

int ZRTExpression::ProcessException(int code, unsigned long category, const char* text) {
  if (!Handler) return kNoEntry;
  return zrt::OnExhaustedMemory(kNoEntry, [&]() -> int {  // then nothing is recorded
    const std::string_view given(text ? text : "");
    std::string detail("\n");
    if (given.size() < kReportSize) detail += given;
    ErrorElement* entry = Handler->GetErrorElement(static_cast<unsigned short>(code),
                                                   static_cast<unsigned short>(category));
    if (!entry) {
      if (given.empty()) detail += kFallbackText;
      Handler->SetErrorOccured(detail.data());
      return kNoEntry;
    }
    std::string message("\n");
    message.append(entry->GetErrorMessage()).append(detail).append("\n");
    Handler->SetErrorOccured(message.data());
    return static_cast<unsigned short>(entry->GetErrorField());
  });
}
