// Reading the error list and keeping the record. A list is built beside the one in use and takes
// its place only when the whole file is right. It does not know which statuses there are.
#include <algorithm>
#include <charconv>
#include <fstream>
#include <new>
#include <string_view>

#include "hq4170.h"

namespace {

constexpr std::string_view kBlanks = " \t";

// Takes a number that ends at a blank, and the blanks behind it, from the front of `line`.
bool TakeNumber(std::string_view* line, int least, int most, int* number) {
  const char* end = line->data() + line->size();
  const auto [rest, error] = std::from_chars(line->data(), end, *number);
  if (error != std::errc() || *number < least || *number > most) return false;
  line->remove_prefix(static_cast<std::size_t>(rest - line->data()));
  const std::size_t blank_count = line->find_first_not_of(kBlanks);
  if (blank_count == 0) return false;
  line->remove_prefix(blank_count == std::string_view::npos ? line->size() : blank_count);
  return true;
}

}  // namespace

ErrorHandler::ErrorHandler() = default;

ErrorHandler::~ErrorHandler() = default;

void ErrorHandler::SetDefaultDir(const char* dir) {
  try {
    default_dir_ = std::string(dir == nullptr ? "" : dir);
  } catch (const std::bad_alloc&) {
    default_dir_.reset();  // better no list than that of another directory
  }
}

int ErrorHandler::Initialize(char* file, int /*category*/) {
  error_line_ = 0;
  list_error_.clear();
  if (file == nullptr || !default_dir_) return Refuse(kListUnreadable, 0, "no file to read");
  try {
    return Load(default_dir_->empty() ? file : *default_dir_ + "/" + file);
  } catch (const std::bad_alloc&) {
    return Refuse(kListUnreadable, 0, "out of memory");
  }
}

ErrorElement* ErrorHandler::GetErrorElement(unsigned short code, unsigned short category) {
  const auto found = list_.find({code, category});
  return found == list_.end() ? nullptr : &found->second;
}

// NOLINTNEXTLINE(readability-non-const-parameter): as the contract has it
void ErrorHandler::SetErrorOccured(char* text) {
  try {
    record_ = text == nullptr ? "" : text;
  } catch (const std::bad_alloc&) {
    record_.clear();  // an older text would pass for this error's
  }
}

int ErrorHandler::Load(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return Refuse(kListUnreadable, 0, "the file cannot be opened");
  List list;
  int line_number = 0;
  for (std::string line; std::getline(file, line);) {
    ++line_number;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (const char* reason = ParseLine(line, &list)) {
      return Refuse(kListWrongLine, line_number, reason);
    }
  }
  if (file.bad()) return Refuse(kListUnreadable, 0, "the file cannot be read");
  list_ = std::move(list);
  return 0;
}

// Adds the entry of `text` to `list`, or gives the reason why it is none.
const char* ErrorHandler::ParseLine(std::string_view text, List* list) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  if (text.empty() || text.front() == '#') return nullptr;
  text = text.substr(0, text.find_last_not_of(kBlanks) + 1);
  if (text.find('\0') != std::string_view::npos) return "a line holds a NUL";
  int code = 0;
  int category = 0;
  int field = 0;
  if (!TakeNumber(&text, -32768, 65535, &code)) return "the code is no number of -32768 to 65535";
  if (!TakeNumber(&text, 0, 65535, &category)) return "the category is no number of 0 to 65535";
  if (!TakeNumber(&text, 0, 65535, &field)) return "the field is no number of 0 to 65535";
  if (text.empty()) return "the message is missing";
  const Key key(static_cast<unsigned short>(code), static_cast<unsigned short>(category));
  const bool is_new =
      list->try_emplace(key, std::string(text), static_cast<unsigned short>(field)).second;
  return is_new ? nullptr : "an entry of that code and category is there already";
}

int ErrorHandler::Refuse(int status, int line, const char* reason) {
  error_line_ = line;
  try {
    list_error_ = line == 0 ? reason : "line " + std::to_string(line) + ": " + reason;
  } catch (const std::bad_alloc&) {
    list_error_ = "out of memory";  // short enough to need none
  }
  return status;
}
