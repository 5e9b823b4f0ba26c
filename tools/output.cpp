// Values as text, and statuses in words. The words come from the error list through the library, as
// they would for any host.
#include "output.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <system_error>

#include "shown_text.h"

namespace {

struct NamedStatus {
  int status;
  const char* name;
};

constexpr NamedStatus kNames[] = {
    {ErrBadDirectory,          "ErrBadDirectory"         },
    {ErrMissingOperand,        "ErrMissingOperand"       },
    {ErrBadTokenType,          "ErrBadTokenType"         },
    {ErrUnbalancedParenthesis, "ErrUnbalancedParenthesis"},
    {ErrMisplacedOperator,     "ErrMisplacedOperator"    },
    {ErrInvalidOperator,       "ErrInvalidOperator"      },
    {ErrUnknownOperand,        "ErrUnknownOperand"       },
    {ErrMissingCloseBracket,   "ErrMissingCloseBracket"  },
    {ErrEmptyIndex,            "ErrEmptyIndex"           },
    {ErrStrayCloseBracket,     "ErrStrayCloseBracket"    },
    {ErrMissingArrayName,      "ErrMissingArrayName"     },
    {ErrNegativeIndex,         "ErrNegativeIndex"        },
    {ErrOperandTooWide,        "ErrOperandTooWide"       },
    {ErrStreamWrite,           "ErrStreamWrite"          },
};

std::string NameOf(int status) {
  for (const NamedStatus& entry : kNames) {
    if (entry.status == status) return entry.name;
  }
  return "unknown status";
}

// The data directory stands in the same place to the program's in the build tree and installed.
std::string OwnDataDir() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) return "";
  return (program.parent_path() / ZRT_BIN_TO_DATA).lexically_normal().string();
}

}  // namespace

std::string ValidBytes(RowDataStream* stream) {
  const std::size_t wanted = (static_cast<std::size_t>(std::max(stream->BitLength, 0)) + 7) / 8;
  const std::size_t held = stream->GetTotalSize();
  const std::size_t count = std::min(wanted, held);
  std::string bytes(wanted, '\0');
  const auto target = bytes.end() - static_cast<std::ptrdiff_t>(count);
  if (held == static_cast<std::size_t>(stream->GetDataSize())) {  // a single block
    std::copy_n(stream->GetDataBlock() + (held - count), count, target);
    return bytes;
  }
  int index = static_cast<int>(held - count);
  std::generate(target, bytes.end(), [&] { return static_cast<char>(stream->ReadData(index++)); });
  return bytes;
}

std::string HexText(const std::string& bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text = "0x";
  text.reserve(2 + 2 * bytes.size());
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0xFU];
  }
  return text;
}

std::string BitText(RowDataStream* stream, BitFormat format) {
  std::string bytes = ValidBytes(stream);
  if (format == BitFormat::kHex) return HexText(bytes);
  if (format == BitFormat::kRaw) return bytes;
  std::string bits(static_cast<std::size_t>(std::max(stream->BitLength, 0)), '0');
  for (std::size_t k = 0; k < bits.size(); ++k) {
    const auto byte = static_cast<unsigned char>(bytes[bytes.size() - 1 - k / 8]);
    if (((byte >> (k % 8)) & 1U) != 0) bits[bits.size() - 1 - k] = '1';
  }
  return bits;
}

// The language knows no "+" in an exponent and no fraction beside one: 1.5e+20 becomes 15e19.
std::string FloatText(float value) {
  if (std::isnan(value)) return "nan";  // to_chars would tell the sign of it
  char buffer[32];
  std::string text(buffer, std::to_chars(std::begin(buffer), std::end(buffer), value).ptr);
  const std::size_t exponent_mark = text.find('e');
  if (exponent_mark == std::string::npos) return text;
  std::string digits = text.substr(0, exponent_mark);
  int exponent = std::atoi(text.c_str() + exponent_mark + 1);
  if (const std::size_t point = digits.find('.'); point != std::string::npos) {
    digits.erase(point, 1);
    exponent -= static_cast<int>(digits.size() - point);
  }
  return digits + "e" + std::to_string(exponent);
}

Explainer::Explainer(const std::string& data_dir) {
  if (!data_dir.empty()) LoadList(data_dir);
}

void Explainer::LoadList(const std::string& dir) {
  is_loaded_ = true;
  std::string writable = dir;
  const int status = expression_.Initialize(writable.data());
  if (status >= 0) return;
  const ErrorHandler* handler = expression_.GetErrorHandler();
  std::string reason = handler == nullptr ? "memory has run out" : handler->GetListError();
  if (status == ErrBadDirectory) reason = "the directory cannot be entered";
  Complain((std::filesystem::path(dir) / "ErrorList.txt").string() + ": " + reason +
           " (failures are told without a sentence)");
}

std::string Explainer::Explain(int status) {
  constexpr unsigned short kCategory = 8;
  if (!is_loaded_) {
    is_loaded_ = true;
    const std::string dir = OwnDataDir();
    std::error_code error;  // a program that was copied alone has no list, which is nothing wrong
    if (std::filesystem::exists(dir + "/ErrorList.txt", error)) LoadList(dir);
  }
  std::string text = std::to_string(status) + " " + NameOf(status);
  ErrorHandler* handler = expression_.GetErrorHandler();
  if (handler == nullptr) return text;
  ErrorElement* entry = handler->GetErrorElement(static_cast<unsigned short>(status), kCategory);
  return entry == nullptr ? text : text + ": " + entry->GetErrorMessage();
}

void Complain(const std::string& message) {
  std::cout.flush();
  ShowProgress("");
  std::cerr << "zrteval: " << Shown(message) << '\n';
}

void ShowProgress(const std::string& step) {
  if (isatty(STDERR_FILENO) == 0) return;
  std::cerr << "\r\033[K" << step << (step.empty() ? "" : " ...") << std::flush;
}
