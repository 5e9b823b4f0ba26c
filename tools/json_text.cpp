// Builds the JSON value from the parser's events instead of letting the parser do it, since only
// the events show a repeated key, and an integer too large for 64 bits before it turns into a
// float.
#include "json_text.h"

#include <charconv>
#include <cmath>
#include <utility>
#include <vector>

namespace {

using nlohmann::json;

class Builder : public nlohmann::json_sax<json> {
 public:
  explicit Builder(json* root) : root_(root) {}

  bool null() override { return Put(nullptr); }
  bool boolean(bool value) override { return Put(value); }
  bool number_integer(json::number_integer_t value) override { return Put(value); }
  bool number_unsigned(json::number_unsigned_t value) override { return Put(value); }
  bool string(std::string& value) override { return Put(std::move(value)); }
  bool binary(json::binary_t& value) override { return Put(std::move(value)); }

  bool number_float(double value, const std::string& written) override {
    if (written.find_first_of(".eE") == std::string::npos) Refuse(written + " is out of range");
    float single = 0;
    const char* end = written.data() + written.size();
    if (std::from_chars(written.data(), end, single).ec != std::errc()) {
      single = static_cast<float>(value);  // out of range: infinity above, 0 or nearly so below
    }
    if (std::isinf(single)) Refuse(written + " is out of range for a 32-bit float");
    return Put(double{single});
  }

  bool start_object(std::size_t) override { return Open(json::object()); }
  bool end_object() override { return Close(); }
  bool start_array(std::size_t) override { return Open(json::array()); }
  bool end_array() override { return Close(); }

  bool key(std::string& name) override {
    key_ = std::move(name);
    if (open_.back()->contains(key_)) Refuse("the name is there already");
    return true;
  }

  bool parse_error(std::size_t, const std::string& token, const json::exception& error) override {
    constexpr int kNumberOverflow = 406;
    if (error.id == kNumberOverflow) Refuse(token + " is out of range");
    const std::string what = error.what();  // "[json.exception...] parse error at line 1, ..."
    throw JsonError(what.substr(what.find(']') + 2));
  }

 private:
  json* Place(json value) {
    if (open_.empty()) return &(*root_ = std::move(value));
    json& parent = *open_.back();
    return parent.is_array() ? &parent.emplace_back(std::move(value))
                             : &(parent[key_] = std::move(value));
  }

  bool Put(json value) {
    Place(std::move(value));
    return true;
  }

  bool Open(json value) {
    open_.push_back(Place(std::move(value)));
    outer_keys_.push_back(key_);
    return true;
  }

  bool Close() {
    open_.pop_back();
    outer_keys_.pop_back();
    return true;
  }

  // The place where the next value would stand.
  [[noreturn]] void Refuse(const std::string& reason) const {
    json::json_pointer place;
    for (std::size_t i = 0; i < open_.size(); ++i) {
      const bool last = i + 1 == open_.size();
      if (open_[i]->is_array()) {
        place /= open_[i]->size() - (last ? 0 : 1);
      } else {
        place /= last ? key_ : outer_keys_[i + 1];
      }
    }
    throw JsonError(place.to_string() + ": " + reason);
  }

  json* root_;
  std::vector<json*> open_;  // an open value's parent gets no further value before it is closed
  std::vector<std::string> outer_keys_;  // the key under which each of them was opened
  std::string key_;
};

}  // namespace

json ParseJson(const std::string& text) {
  json root;
  Builder builder(&root);
  json::sax_parse(text, &builder, json::input_format_t::json, true, true);
  return root;
}
