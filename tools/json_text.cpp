// Builds the JSON value from the parser's events instead of letting the parser do it, since only
// the events show a repeated key, and an integer too large for 64 bits before it turns into a
// float, and where in the text they are. Built values know no place: to tell it, the text is parsed
// once more up to there.
#include "json_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <istream>
#include <optional>
#include <streambuf>
#include <string_view>
#include <utility>

#include "shown_text.h"

namespace {

using nlohmann::json;

// A text to read from, which tells how far that has come.
class Source : public std::streambuf {
 public:
  explicit Source(std::string* text) {
    setg(text->data(), text->data(), text->data() + text->size());
  }

  std::size_t offset() const { return static_cast<std::size_t>(gptr() - eback()); }
  std::string_view text() const { return {eback(), static_cast<std::size_t>(egptr() - eback())}; }
};

// The offset of the value behind a value, a key or a bracket that ends at `offset`.
std::size_t NextToken(std::string_view text, std::size_t offset) {
  for (;;) {
    offset = std::min(text.find_first_not_of(" \t\r\n,:", offset), text.size());
    const std::string_view rest = text.substr(offset);
    if (rest.starts_with("//")) {
      offset += std::min(rest.find('\n'), rest.size());
    } else if (rest.starts_with("/*")) {
      offset += std::min(rest.find("*/", 2), rest.size() - 2) + 2;
    } else {
      return offset;
    }
  }
}

// The place as a JSON pointer, cut if it is long: line and column tell the rest.
std::string Pointer(const JsonPath& path) {
  constexpr std::size_t kMostCharacters = 200;
  constexpr std::size_t kEnoughBytes = 4 * kMostCharacters + 1;
  std::string pointer = path.empty() ? "/" : "";
  for (const auto& step : path) {
    if (pointer.size() > kEnoughBytes) break;
    pointer += '/';
    if (const auto* index = std::get_if<std::size_t>(&step)) {
      pointer += std::to_string(*index);
      continue;
    }
    for (const char c : std::get<std::string>(step).substr(0, kEnoughBytes)) {
      pointer += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
    }
  }
  return Shown(pointer, kMostCharacters);
}

// Reads `source` to its end, or up to the value at the place `wanted`.
class Builder : public nlohmann::json_sax<json> {
 public:
  Builder(Source* source, const JsonPath* wanted) : source_(source), wanted_(wanted) {}

  void Run() {
    std::istream input(source_);
    json::sax_parse(input, this, json::input_format_t::json, true, true);
  }

  json TakeRoot() { return std::move(root_); }
  std::size_t found_offset() const { return found_offset_.value_or(0); }

  bool null() override { return Put(nullptr); }
  bool boolean(bool value) override { return Put(value); }
  bool number_integer(json::number_integer_t value) override { return PutNumber(value); }
  bool number_unsigned(json::number_unsigned_t value) override { return PutNumber(value); }
  bool string(std::string& value) override { return Put(std::move(value)); }
  bool binary(json::binary_t& value) override { return Put(std::move(value)); }

  bool number_float(double value, const std::string& written) override {
    if (written.find_first_of(".eE") == std::string::npos) RefuseNumber(written, "");
    float single = 0;
    const char* end = written.data() + written.size();
    if (std::from_chars(written.data(), end, single).ec != std::errc()) {
      single = static_cast<float>(value);  // out of range: infinity above, 0 or nearly so below
    }
    if (std::isinf(single)) RefuseNumber(written, " for a 32-bit float");
    return PutNumber(double{single});
  }

  bool start_object(std::size_t /*size*/) override { return Open(json::object()); }
  bool end_object() override { return Close(); }
  bool start_array(std::size_t /*size*/) override { return Open(json::array()); }
  bool end_array() override { return Close(); }

  bool key(std::string& name) override {
    auto& entries = open_.back().value->get_ref<json::object_t&>();
    const auto [entry, is_new] = entries.try_emplace(std::move(name));
    open_.back().key = &entry->first;
    slot_ = &entry->second;
    if (!is_new) Refuse("the name is there already");
    end_ = source_->offset();
    return true;
  }

  bool parse_error(std::size_t position, const std::string& token,
                   const json::exception& error) override {
    constexpr int kNumberOverflow = 406;
    constexpr std::size_t kMostCharacters = 300;
    if (error.id == kNumberOverflow) RefuseNumber(token, "");
    const std::string_view what = error.what();  // "[...] parse error at line 1, column 2: ..."
    const std::size_t reason = std::min(what.find(": "), what.size() - 2) + 2;
    throw JsonError(position - std::min<std::size_t>(position, 1), "",
                    Shown(what.substr(reason), kMostCharacters));
  }

 private:
  struct Container {
    json* value;             // its parent gets no further value before it is closed
    const std::string* key;  // of an object: that of its last entry
  };

  // Each value comes by here once it has been read. Where it was looked for, parsing ends.
  json* Place(json value) {
    if (IsWanted()) found_offset_ = NextToken(source_->text(), end_);
    end_ = source_->offset();
    if (open_.empty()) return &(root_ = std::move(value));
    json& parent = *open_.back().value;
    return parent.is_array() ? &parent.emplace_back(std::move(value))
                             : &(*slot_ = std::move(value));
  }

  bool Put(json value) {
    Place(std::move(value));
    return !found_offset_;
  }

  // A number ends where the next character is none of it, which thus has been read too.
  bool PutNumber(json value) {
    Put(std::move(value));
    --end_;
    return !found_offset_;
  }

  bool Open(json value) {
    open_.push_back({Place(std::move(value)), nullptr});
    return !found_offset_;
  }

  bool Close() {
    open_.pop_back();
    end_ = source_->offset();
    return true;
  }

  // The index of the open array's entry that is being read.
  std::size_t IndexIn(const Container& array) const {
    return array.value->size() - (&array == &open_.back() ? 0 : 1);
  }

  // Whether the next value is the one looked for. The last step differs most often.
  bool IsWanted() const {
    if (wanted_ == nullptr || wanted_->size() != open_.size()) return false;
    for (std::size_t i = open_.size(); i-- > 0;) {
      if (!LeadsOn(open_[i], (*wanted_)[i])) return false;
    }
    return true;
  }

  bool LeadsOn(const Container& container, const JsonStep& step) const {
    if (container.value->is_array()) {
      const auto* index = std::get_if<std::size_t>(&step);
      return index != nullptr && *index == IndexIn(container);
    }
    const auto* key = std::get_if<std::string>(&step);
    return key != nullptr && *key == *container.key;
  }

  [[noreturn]] void RefuseNumber(const std::string& written, const char* for_what) const {
    constexpr std::size_t kMostCharacters = 60;
    Refuse(Shown(written, kMostCharacters) + " is out of range" + for_what);
  }

  // At the place where the next value would stand.
  [[noreturn]] void Refuse(const std::string& reason) const {
    JsonPath path;
    for (const Container& container : open_) {
      if (container.value->is_array()) {
        path.emplace_back(IndexIn(container));
      } else {
        path.emplace_back(*container.key);
      }
    }
    throw JsonError(NextToken(source_->text(), end_), Pointer(path), reason);
  }

  Source* source_;
  const JsonPath* wanted_;
  json root_;
  std::vector<Container> open_;
  json* slot_ = nullptr;  // of the last key
  std::size_t end_ = 0;   // of what was read last
  std::optional<std::size_t> found_offset_;
};

}  // namespace

json JsonText::Parse() {
  Source source(&text_);
  Builder builder(&source, nullptr);
  builder.Run();
  return builder.TakeRoot();
}

JsonError JsonText::Complaint(const JsonPath& path, const std::string& reason) {
  Source source(&text_);
  Builder builder(&source, &path);
  builder.Run();
  return {builder.found_offset(), Pointer(path), reason};
}
