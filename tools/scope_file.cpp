// Reads a scope file: each function takes one kind of JSON value and its place in the file, and
// refuses all that it does not know, since a misspelt key would silently hide a name.
#include "scope_file.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <new>
#include <optional>
#include <string_view>

#include "files.h"

namespace {

using nlohmann::json;

// A value's place, as a chain from the value to the root. It copies no name, since a name may be
// long and have many elements. So it must not outlive the place that it was made from, nor the
// values.
class Place {
 public:
  Place() = default;

  Place operator/(std::string_view key) const { return {this, key, 0}; }
  Place operator/(std::size_t index) const { return {this, std::nullopt, index}; }

  JsonPath Path() const {
    JsonPath path;
    for (const Place* place = this; place->parent_ != nullptr; place = place->parent_) {
      if (place->key_) {
        path.emplace_back(std::string(*place->key_));
      } else {
        path.emplace_back(place->index_);
      }
    }
    std::reverse(path.begin(), path.end());
    return path;
  }

 private:
  Place(const Place* parent, std::optional<std::string_view> key, std::size_t index)
      : parent_(parent), key_(key), index_(index) {}

  const Place* parent_ = nullptr;
  std::optional<std::string_view> key_;
  std::size_t index_ = 0;  // where there is no key
};

[[noreturn]] void Refuse(const Place& place, const std::string& reason) {
  throw JsonRefusal{place.Path(), reason};
}

// The entry of an object; null, the reference, if it has none of that name.
const json* Find(const json& object, const char* key) {
  const auto found = object.find(key);
  return found == object.end() ? nullptr : &*found;
}

void CheckObject(const json& value, const Place& place, std::initializer_list<const char*> known) {
  if (!value.is_object()) Refuse(place, "an object is wanted here");
  for (const auto& [key, entry] : value.items()) {
    bool is_known = false;
    for (const char* name : known) is_known = is_known || key == name;
    if (!is_known) Refuse(place / key, "this key is not known here");
  }
}

int ReadInt(const json& value, const Place& place, std::int64_t low = INT32_MIN,
            std::int64_t high = INT32_MAX) {
  if (!value.is_number_integer()) Refuse(place, "an integer is wanted here");
  const bool is_huge = value.is_number_unsigned() && value.get<std::uint64_t>() > INT64_MAX;
  if (is_huge || value.get<std::int64_t>() < low || value.get<std::int64_t>() > high) {
    Refuse(place,
           value.dump() + " is not from " + std::to_string(low) + " to " + std::to_string(high));
  }
  return value.get<int>();
}

float ReadFloat(const json& value, const Place& place) {
  if (!value.is_number()) Refuse(place, "a number is wanted here");
  return value.is_number_float() ? value.get<float>() : static_cast<float>(ReadInt(value, place));
}

template <class Value>
std::vector<Value> ReadArray(const json& array, const Place& place,
                             Value (*read)(const json&, const Place&)) {
  if (!array.is_array()) Refuse(place, "an array is wanted here");
  std::vector<Value> values;
  values.reserve(array.size());
  for (std::size_t i = 0; i < array.size(); ++i) values.push_back(read(array[i], place / i));
  return values;
}

int ReadAnyInt(const json& value, const Place& place) { return ReadInt(value, place); }

constexpr unsigned short kFloatScalar = 1, kIntScalar = 2, kFloatArray = 5, kIntArray = 6;

ZRTTokens MakeToken(const char* name, unsigned short type, const json& value, const Place& place) {
  const bool is_float = type % 2 == 1;
  if (type < kFloatArray) {
    return is_float ? ZRTTokens::FloatScalar(name, ReadFloat(value, place), type)
                    : ZRTTokens::IntScalar(name, ReadInt(value, place), type);
  }
  return is_float ? ZRTTokens::FloatArray(name, ReadArray(value, place, ReadFloat), type)
                  : ZRTTokens::IntArray(name, ReadArray(value, place, ReadAnyInt), type);
}

// The type of a value that does not tell its own. An array with a float in it is one of floats.
unsigned short TypeOf(const json& value, const Place& place) {
  if (value.is_number_float()) return kFloatScalar;
  if (value.is_number()) return kIntScalar;
  if (!value.is_array()) Refuse(place, "a number, an array of numbers or an object is wanted here");
  for (const json& element : value) {
    if (element.is_number_float()) return kFloatArray;
  }
  return kIntArray;
}

ZRTTokens ReadToken(const char* name, const json& value, const Place& place) {
  if (!value.is_object()) return MakeToken(name, TypeOf(value, place), value, place);
  constexpr int kFirstType = 1, kLastType = 8;
  const json* type_value = Find(value, "type");
  if (type_value == nullptr) Refuse(place, "the key \"type\" is missing");
  const int type = ReadInt(*type_value, place / "type", kFirstType, kLastType);
  const char* key = type < kFloatArray ? "value" : "values";
  CheckObject(value, place, {"type", key});
  const json* content = Find(value, key);
  if (content == nullptr) Refuse(place, std::string("the key \"") + key + "\" is missing");
  return MakeToken(name, static_cast<unsigned short>(type), *content, place / key);
}

std::vector<unsigned char> ReadBytes(const json& value, const Place& place) {
  if (!value.is_string()) Refuse(place, "a text \"0x...\" is wanted here");
  std::string_view digits = value.get_ref<const std::string&>();
  if (digits.substr(0, 2) != "0x") Refuse(place, "the text does not begin with 0x");
  digits.remove_prefix(2);
  if (digits.size() % 2 != 0) Refuse(place, "the count of hexadecimal digits is odd");
  if (digits.find_first_not_of("0123456789ABCDEFabcdef") != std::string_view::npos) {
    Refuse(place, "there is a character that is no hexadecimal digit");
  }
  std::vector<unsigned char> bytes;
  bytes.reserve(digits.size() / 2);
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const int byte = util_HexAnsi2Hex(digits[i]) * 16 + util_HexAnsi2Hex(digits[i + 1]);
    bytes.push_back(static_cast<unsigned char>(byte));
  }
  return bytes;
}

void ReadRow(const json& row, const Place& place, QLMDataField* field) {
  std::vector<unsigned char> bytes;
  const json* width_value = nullptr;
  if (row.is_object()) {
    CheckObject(row, place, {"bytes", "width"});
    const json* text = Find(row, "bytes");
    if (text == nullptr) Refuse(place, "the key \"bytes\" is missing");
    bytes = ReadBytes(*text, place / "bytes");
    width_value = Find(row, "width");
  } else {
    bytes = ReadBytes(row, place);
  }
  if (bytes.size() > INT32_MAX / 8) Refuse(place, "the row has more bits than can be counted");
  const int width = width_value == nullptr ? static_cast<int>(bytes.size() * 8)
                                           : ReadInt(*width_value, place / "width", 0);
  if (field->AddRow(width, bytes) == nullptr) throw std::bad_alloc();
}

void ReadField(const json& value, const Place& place, QLMDataField* field) {
  if (!value.is_array()) return ReadRow(value, place, field);
  for (std::size_t i = 0; i < value.size(); ++i) ReadRow(value[i], place / i, field);
}

// Calls `read` with each name, value and place of a section, and the set that the name belongs to.
template <class Set, class Read>
void ReadSection(const json& root, const char* section, const std::map<std::string, Set>& sets,
                 Read read) {
  const json* scopes = Find(root, section);
  if (scopes == nullptr) return;
  const Place top;
  const Place place = top / section;
  if (!scopes->is_object()) Refuse(place, "an object is wanted here");
  for (const auto& [scope, names] : scopes->items()) {
    const auto set = sets.find(scope);
    if (set == sets.end()) Refuse(place / scope, "this key is not known here");
    if (!names.is_object()) Refuse(place / scope, "an object of names is wanted here");
    for (const auto& [name, value] : names.items()) {
      if (name.empty()) Refuse(place / scope, "a name is empty");
      if (name.find('\0') != std::string::npos) Refuse(place / scope, "a name holds a NUL");
      read(name, value, place / scope / name, set->second);
    }
  }
}

}  // namespace

void ReadScope(const json& value, Scope* scope) {
  static const std::map<std::string, Scope::TokenSet> token_sets = {
      {"local",  Scope::kLocalTokens },
      {"global", Scope::kGlobalTokens},
  };
  static const std::map<std::string, Scope::DataSet> data_sets = {
      {"external", Scope::kExternalData},
      {"local",    Scope::kLocalData   },
      {"global",   Scope::kGlobalData  },
  };
  CheckObject(value, Place(), {"tokens", "data"});
  ReadSection(
      value, "tokens", token_sets,
      [scope](const std::string& name, const json& token, const Place& place, Scope::TokenSet set) {
        scope->Add(set, ReadToken(name.c_str(), token, place));
      });
  ReadSection(value, "data", data_sets,
              [scope](const std::string& name, const json& field, const Place& place,
                      Scope::DataSet set) { ReadField(field, place, scope->AddField(set, name)); });
}
