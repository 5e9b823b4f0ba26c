// Any bytes as an error list, against a plain reading of its lines: the list, or the line that is
// to blame and the list that was there before.
#include <sys/mman.h>
#include <unistd.h>

#include <map>
#include <sstream>
#include <utility>

#include "fuzz.h"

namespace {

using Key = std::pair<unsigned short, unsigned short>;  // code and category
using Entry = std::pair<std::string, int>;              // message and field

// Takes a number, and the blanks behind it, from the front of `line`.
bool Take(std::string& line, long least, long& number) {
  const std::size_t end = line.find_first_of(" \t");
  const std::string word = line.substr(0, end);
  const std::size_t sign_width = word.starts_with('-') ? 1 : 0;
  if (word.size() == sign_width || end == std::string::npos) return false;
  if (word.find_first_not_of("0123456789", sign_width) != std::string::npos) return false;
  number = std::strtol(word.c_str(), nullptr, 10);
  line.erase(0, line.find_first_not_of(" \t", end));
  return number >= least && number <= 65535;
}

// The number of the wrong line, or 0.
int ReadList(const std::string& bytes, std::map<Key, Entry>& list) {
  std::istringstream file(bytes);
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    if (line.ends_with('\r')) line.pop_back();
    if (line.size() > 65536) return number;
    line.erase(0, line.find_first_not_of(" \t"));
    line.erase(line.find_last_not_of(" \t") + 1);
    if (line.empty() || line[0] == '#') continue;
    long code = 0, category = 0, field = 0;
    if (line.find('\0') != std::string::npos || !Take(line, -32768, code) ||
        !Take(line, 0, category) || !Take(line, 0, field) || line.empty()) {
      return number;
    }
    const Key key(static_cast<unsigned short>(code), static_cast<unsigned short>(category));
    if (!list.try_emplace(key, line, static_cast<int>(field)).second) return number;
  }
  return 0;
}

class File {
 public:
  explicit File(const std::string& bytes) { Write(bytes); }
  void Write(const std::string& bytes) const {
    const auto size = static_cast<ssize_t>(bytes.size());
    Require(pwrite(file_, bytes.data(), bytes.size(), 0) == size && ftruncate(file_, size) == 0,
            "written");
  }
  int Load(ErrorHandler& handler) { return handler.Initialize(path_.data(), 8); }

 private:
  int file_ = memfd_create("list", 0);
  std::string path_ = "/proc/self/fd/" + std::to_string(file_);
};

std::string ErrorListsDiffer(Input input) {
  static File file(""), file_before("9 9 9 of before");
  const std::string bytes = input.Rest();
  ErrorHandler handler;
  std::map<Key, Entry> list;
  if (turn % 4 == 0) {
    Require(file_before.Load(handler) == 0, "a right list is read");
    list = {
        {{9, 9}, {"of before", 9}}
    };
  }
  std::map<Key, Entry> read;
  const int wrong_line = ReadList(bytes, read);
  file.Write(bytes);
  const int status = file.Load(handler);
  Require(status == (wrong_line > 0 ? ErrorHandler::kListWrongLine : 0), "the status");
  Require(handler.GetErrorLine() == wrong_line, "the wrong line");
  Require((*handler.GetListError() != '\0') == (wrong_line > 0), "the reason");
  if (wrong_line == 0) list = read;
  Require((handler.GetErrorElement(9, 9) != nullptr) == list.contains({9, 9}), "the older list");
  for (const auto& [key, entry] : list) {
    ErrorElement* element = handler.GetErrorElement(key.first, key.second);
    Require(element && Entry(element->GetErrorMessage(), element->GetErrorField()) == entry,
            entry.first);
  }
  return "";
}

}  // namespace

ZRT_FUZZ(ErrorListsDiffer)
