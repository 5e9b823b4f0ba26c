// The names that texts use, and where each is found. Nothing is evaluated.
#include <algorithm>
#include <iostream>
#include <map>

#include "commands.h"
#include "nearest_name.h"
#include "reading_text.h"
#include "shown_text.h"
#include "terminal.h"
#include "texts.h"

namespace {

using Meaning = zrt::OperandEvent::Meaning;

constexpr std::size_t kMostCharacters = 40;  // of a name

// The operands that are names, in the order of the text.
std::vector<Reading::Operand> NamesIn(const Reading& reading) {
  std::vector<Reading::Operand> names;
  for (const Reading::Operand& operand : reading.operands()) {
    if (operand.meaning != Meaning::kLiteral) names.push_back(operand);
  }
  std::sort(names.begin(), names.end(),
            [](const auto& a, const auto& b) { return a.place.offset < b.place.offset; });
  return names;
}

// A line for each name: the name, where it is found, and its columns.
void PrintNames(const std::string& text, const std::vector<Reading::Operand>& names,
                const std::vector<std::string>& known) {
  struct Row {
    std::string name;
    std::string origin;
    std::string columns;
  };
  std::vector<Row> rows;
  std::map<std::string_view, std::size_t> row_of;
  std::size_t width = 0;
  std::size_t origin_width = 0;
  for (const Reading::Operand& operand : names) {
    const std::string_view name = PartOf(text, operand.name);
    const auto [found, is_new] = row_of.emplace(name, rows.size());
    if (is_new) {
      std::string origin = name.empty() ? "an operand is missing" : OriginOf(text, operand);
      const std::string nearest =
          operand.meaning == Meaning::kUnknown && !name.empty() ? NearestName(name, known) : "";
      if (!nearest.empty()) origin += ", is " + Shown(nearest) + " meant?";
      rows.push_back({Shown(name, kMostCharacters), origin, ""});
      width = std::max(width, ColumnsOf(rows.back().name));
      origin_width = std::max(origin_width, ColumnsOf(origin));
    }
    std::string& columns = rows[found->second].columns;
    columns += columns.empty() ? "column " : ", ";
    columns += std::to_string(PositionOf(text, operand.name.offset).column);
  }
  for (const Row& row : rows) {
    std::cout << Padded(row.name, width) << "  " << Padded(row.origin, origin_width) << "  "
              << row.columns << '\n';
  }
}

std::string NameArray(const std::string& text, const std::vector<Reading::Operand>& names) {
  JsonArray array;
  for (const Reading::Operand& operand : names) {
    JsonLine object;
    object.AddText("name", PartOf(text, operand.name))
        .AddPlace(operand.name)
        .AddText("is", MeaningName(operand.meaning));
    if (*ScopeName(operand.scope) != '\0') object.AddText("scope", ScopeName(operand.scope));
    if (operand.meaning == Meaning::kToken) object.AddText("type", TypeName(operand.token_type));
    if (operand.meaning == Meaning::kField) object.AddNumber("rows", operand.row_count);
    array.Add(object.text());
  }
  return array.text();
}

}  // namespace

ExitCode ListNames(const ReadingRequest& request) {
  TextSession session(request);
  const std::vector<std::string> known = session.scope().names();
  bool is_first = true;
  return session.ForEach([&](const std::string& text, const Source& source) {
    Reading reading;
    zrt::Failure failure;
    session.evaluator().expression()->GetNames(text.c_str(), request.kind, &reading, &failure);
    const std::vector<Reading::Operand> names = NamesIn(reading);
    const bool is_cut = failure.status == 0;
    const auto hints =
        is_cut ? std::vector<Hint>()
               : FailureHints(text, request.kind, failure, reading, known, kOptionNames);
    if (request.as_json) {
      JsonLine line = session.NewAnswer();
      line.AddText("text", text).AddText("kind", KindName(request.kind));
      if (is_cut) line.AddNumber("status", 0);
      if (!is_cut) AddFailure(&line, failure, hints, &session.explainer());
      std::cout << line.AddWritten("names", NameArray(text, names)).text() << '\n';
    } else {
      if (!is_first) std::cout << '\n';
      is_first = false;
      PrintNames(text, names, known);
    }
    if (!is_cut && !request.as_json) {
      PrintFailure(ErrorStream(), source, failure, hints, &session.explainer(), ErrorStyle());
    }
    return is_cut && std::none_of(names.begin(), names.end(), [](const auto& operand) {
             return operand.meaning == Meaning::kUnknown;
           });
  });
}
