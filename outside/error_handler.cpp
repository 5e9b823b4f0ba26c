// Reading the error list and keeping the record. A list is built beside the one in use and takes
// its place only when the whole file is right. It does not know which statuses there are.
#include <algorithm>
#include <charconv>
#include <fstream>
#include <map>
#include <memory>
#include <new>
#include <utility>

#include "hq4170.h"

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::size_t kMostLineSize = 65536;     // characters
constexpr std::size_t kMostFileSize = 16777216;  // characters

// Code and category, as a type of this file's own so that no symbol of the map leaves it.
struct Key : std::pair<unsigned short, unsigned short> {
  using pair::pair;
};

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

struct ErrorHandler::List {
  // How reading ended: a status, and which line is to blame (0 if none is) and why.
  struct Outcome {
    int status = 0;
    int line = 0;
    const char* reason = "";
  };

  Outcome Read(const std::string& path);
  const char* Add(std::string_view line);

  std::map<Key, ErrorElement> entries;
};

ErrorHandler::ErrorHandler() = default;

ErrorHandler::~ErrorHandler() { delete list_; }

void ErrorHandler::SetDefaultDir(const char* dir) {
  try {
    default_dir_ = std::string(dir == nullptr ? "" : dir);
  } catch (const std::bad_alloc&) {
    default_dir_.reset();  // better no list than that of another directory
  }
}

int ErrorHandler::Initialize(char* file, int /*category*/) {
  List::Outcome outcome{kListUnreadable, 0, "no file to read"};
  error_line_ = 0;
  list_error_.clear();
  try {
    if (file != nullptr && default_dir_) {
      auto list = std::make_unique<List>();
      outcome = list->Read(default_dir_->empty() ? file : *default_dir_ + "/" + file);
      if (outcome.status == 0) delete std::exchange(list_, list.release());
    }
    error_line_ = outcome.line;
    if (outcome.line > 0) list_error_ = "line " + std::to_string(outcome.line) + ": ";
    list_error_ += outcome.reason;
  } catch (const std::bad_alloc&) {
    list_error_ = "out of memory";  // short enough to need none
  }
  return outcome.status;
}

ErrorElement* ErrorHandler::GetErrorElement(unsigned short code, unsigned short category) {
  if (list_ == nullptr) return nullptr;
  const auto found = list_->entries.find(Key(code, category));
  return found == list_->entries.end() ? nullptr : &found->second;
}

void ErrorHandler::SetErrorOccured(char* text) {
  try {
    record_ = text == nullptr ? "" : text;
  } catch (const std::bad_alloc&) {
    record_.clear();  // an older text would pass for this error's
  }
}

ErrorHandler::List::Outcome ErrorHandler::List::Read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return {kListUnreadable, 0, "the file cannot be opened"};
  std::string text;
  for (char chunk[4096]; file;) {
    file.read(chunk, sizeof(chunk));
    text.append(chunk, static_cast<std::size_t>(file.gcount()));
    if (text.size() > kMostFileSize) return {kListUnreadable, 0, "the file is too long"};
  }
  if (file.bad()) return {kListUnreadable, 0, "the file cannot be read"};
  int line_number = 0;
  for (std::string_view rest = text; !rest.empty();) {
    ++line_number;
    std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (const char* reason = Add(line)) return {kListWrongLine, line_number, reason};
  }
  return {};
}

// Adds the entry of `line`, or gives the reason why it is none.
const char* ErrorHandler::List::Add(std::string_view line) {
  if (line.size() > kMostLineSize) return "the line is longer than 65536 characters";
  line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
  if (line.empty() || line.front() == '#') return nullptr;
  line = line.substr(0, line.find_last_not_of(kBlanks) + 1);
  if (line.find('\0') != std::string_view::npos) return "a line holds a NUL";
  int code = 0;
  int category = 0;
  int field = 0;
  if (!TakeNumber(&line, -32768, 65535, &code)) return "the code is no number of -32768 to 65535";
  if (!TakeNumber(&line, 0, 65535, &category)) return "the category is no number of 0 to 65535";
  if (!TakeNumber(&line, 0, 65535, &field)) return "the field is no number of 0 to 65535";
  if (line.empty()) return "the message is missing";
  const Key key(static_cast<unsigned short>(code), static_cast<unsigned short>(category));
  const bool is_new =
      entries.try_emplace(key, std::string(line), static_cast<unsigned short>(field)).second;
  return is_new ? nullptr : "an entry of that code and category is there already";
}
