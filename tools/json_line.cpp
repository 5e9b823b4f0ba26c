// The packaged library escapes texts; numbers and order are written here, since it would write a
// 32-bit float as the nearest 64-bit one.
#include "json_line.h"

#include <nlohmann/json.hpp>

std::string JsonQuoted(std::string_view text) {
  return nlohmann::json(text).dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
}

JsonLine& JsonLine::AddText(std::string_view key, std::string_view text) {
  return AddWritten(key, JsonQuoted(text));
}

JsonLine& JsonLine::AddNumber(std::string_view key, long long number) {
  return AddWritten(key, std::to_string(number));
}

JsonLine& JsonLine::AddPlace(zrt::Place place) {
  return AddNumber("at", static_cast<long long>(place.offset))
      .AddNumber("length", static_cast<long long>(place.length));
}

JsonLine& JsonLine::AddWritten(std::string_view key, std::string_view value) {
  if (text_.size() > 1) text_ += ',';
  text_ += '"';
  text_ += key;
  text_ += "\":";
  text_ += value;
  return *this;
}
