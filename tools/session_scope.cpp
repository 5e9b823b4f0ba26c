// Names of one source after the other are added to the scope, the ones that hide others first.
#include "session_scope.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {

using nlohmann::json;

void AddValue(const std::string& name, const NamedValue& value, Scope* scope) {
  constexpr unsigned short kFloat = 1, kInteger = 2;
  switch (value.kind) {
    case zrt::ValueKind::kInteger:
      scope->Add(Scope::kLocalTokens, ZRTTokens::IntScalar(name.c_str(), value.integer, kInteger));
      return;
    case zrt::ValueKind::kFloat:
      scope->Add(Scope::kLocalTokens, ZRTTokens::FloatScalar(name.c_str(), value.floating, kFloat));
      return;
    case zrt::ValueKind::kBits: break;
  }
  QLMDataField* field = scope->AddField(Scope::kExternalData, name);
  if (field->AddRow(value.bit_length, value.bytes) == nullptr) throw std::bad_alloc();
}

}  // namespace

SessionScope::SessionScope() : file_(std::make_shared<const Scope>()) {}

void SessionScope::Load(const std::string& path) {
  auto file = std::make_shared<Scope>();
  LoadScope({path, {}, {}}, file.get());
  file_ = std::move(file);
  ResetRows();
}

bool SessionScope::IsWritten(const std::string& value) {
  if (value.starts_with('[')) return true;
  if (!value.starts_with("0x")) return json::accept(value);
  return value.find_first_not_of("0123456789ABCDEFabcdefx,/") == std::string::npos;
}

void SessionScope::Define(const std::string& name, const std::string& value) {
  Definition definition{name, {}, std::nullopt};
  const bool is_field = value.starts_with("0x");
  (is_field ? definition.request.fields : definition.request.tokens).push_back(name + '=' + value);
  definition.request.token_form = "; as in :let size=8 or :let order=[1,2,3]";
  definition.request.field_form = "; as in :let id=0x0ABC/12 or :let fuses=0x11,0x22";
  Scope tried;
  LoadScope(definition.request, &tried);
  Put(std::move(definition));
}

void SessionScope::Define(const std::string& name, NamedValue value) {
  Put({name, {}, std::move(value)});
}

void SessionScope::Put(Definition definition) {
  const auto has_name = [&](const auto& other) { return other.name == definition.name; };
  std::erase_if(definitions_, has_name);
  std::erase_if(positions_, has_name);
  definitions_.push_back(std::move(definition));
}

void SessionScope::Fill(Scope* scope) const {
  if (last_) AddValue(kLast, *last_, scope);
  for (const Definition& definition : definitions_) {
    Scope own;
    if (definition.value) {
      AddValue(definition.name, *definition.value, &own);
    } else {
      LoadScope(definition.request, &own);
    }
    scope->AddMissing(own);
  }
  scope->AddMissing(*file_);
  for (const Scope::RowPosition& position : positions_) scope->MoveTo(position);
}

std::string SessionScope::Written(const Scope& scope, const std::optional<NamedValue>& last) {
  json rows = json::array();
  for (const Scope::RowPosition& position : scope.RowPositions()) {
    if (position.taken > 0) rows.push_back({position.set, position.name, position.taken});
  }
  json all = {
      {"rows", std::move(rows)}
  };
  if (last) {
    all["last"] = {
        {"kind",    static_cast<int>(last->kind)},
        {"integer", last->integer               },
        {"float",   last->floating              },
        {"bits",    last->bit_length            },
        {"bytes",   json::binary(last->bytes)   },
    };
  }
  std::string written;
  json::to_msgpack(all, written);
  return written;
}

void SessionScope::Read(const std::string& written) {
  const json all = json::from_msgpack(written);
  positions_.clear();
  for (const json& row : all.at("rows")) {
    positions_.push_back(
        {row.at(0).get<Scope::DataSet>(), row.at(1).get<std::string>(), row.at(2).get<int>(), 0});
  }
  const auto found = all.find("last");
  if (found == all.end()) return;
  NamedValue last;
  last.kind = static_cast<zrt::ValueKind>(found->at("kind").get<int>());
  last.integer = found->at("integer").get<int>();
  last.floating = found->at("float").get<float>();
  last.bit_length = found->at("bits").get<int>();
  last.bytes = found->at("bytes").get_binary();
  last_ = std::move(last);
}
