// Objects in, objects out. What is wrong with an object is told in its answer, and the next goes
// on.
#include <iostream>
#include <optional>

#include "commands.h"
#include "evaluator.h"
#include "lines.h"

namespace {

using nlohmann::json;

// What a line asks for.
struct Task {
  std::string line;  // its number, as it is written
  zrt::ValueKind kind = zrt::ValueKind::kInteger;
  std::string text;
  std::optional<Scope> scope;
};

[[noreturn]] void Refuse(JsonPath path, const std::string& reason) {
  throw JsonRefusal{std::move(path), reason};
}

zrt::ValueKind KindOf(const json& value) {
  for (const zrt::ValueKind kind :
       {zrt::ValueKind::kInteger, zrt::ValueKind::kFloat, zrt::ValueKind::kBits}) {
    const auto* const name = value.get_ptr<const std::string*>();
    if (name && *name == KindName(kind)) return kind;
  }
  Refuse({"kind"}, "int, float or bits is wanted here");
}

std::string TextOf(const json& value) {
  if (!value.is_string()) Refuse({"text"}, "a text is wanted here");
  const auto& text = value.get_ref<const std::string&>();
  if (text.find('\0') != std::string::npos) Refuse({"text"}, "the text holds a NUL");
  return text;
}

void ReadOwnScope(const json& value, Scope* scope) try {
  ReadScope(value, scope);
} catch (JsonRefusal& refusal) {
  refusal.path.insert(refusal.path.begin(), "scope");
  throw;
}

void ReadTask(const json& object, Task* task) {
  if (!object.is_object()) Refuse({}, "an object is wanted here");
  if (const auto line = object.find("line"); line != object.end()) {
    if (!line->is_number_integer()) Refuse({"line"}, "an integer is wanted here");
    task->line = line->dump();
  }
  for (const auto& [key, value] : object.items()) {
    if (key == "kind") {
      task->kind = KindOf(value);
    } else if (key == "text") {
      task->text = TextOf(value);
    } else if (key == "scope") {
      ReadOwnScope(value, &task->scope.emplace());
    } else if (key != "line") {
      Refuse({key}, "this key is not known here");
    }
  }
  for (const char* key : {"kind", "text"}) {
    if (!object.contains(key)) Refuse({}, std::string("the key \"") + key + "\" is missing");
  }
}

class Answerer {
 public:
  explicit Answerer(const BatchRequest& request)
      : explainer_(request.setting.data_dir),
        evaluator_(&common_, {request.setting.max_bits, true, true}) {
    LoadScope(request.setting.scope, &common_);
  }

  std::string AnswerTo(const LineReader& reader, LineReader::State state) {
    Task task;
    task.line = std::to_string(reader.number());
    JsonText text(reader.line());
    try {
      if (state != LineReader::State::kComplete) {
        throw JsonError(text.text().size(), "", Reason(state));
      }
      ReadTask(text.Parse(), &task);
      return Evaluate(&task);
    } catch (const JsonError& error) {
      return Error(task, error);
    } catch (const JsonRefusal& refusal) {
      return Error(task, text.Complaint(refusal.path, refusal.reason));
    }
  }

  [[nodiscard]] ExitCode exit_code() const { return exit_code_; }

 private:
  std::string Evaluate(Task* task) {
    if (task->scope) {
      task->scope->AddMissing(common_);
      evaluator_.Use(&*task->scope);
    } else {
      evaluator_.Use(&common_);
    }
    if (!evaluator_.Evaluate(task->text, task->kind)) exit_code_ = kExpressionFailed;
    JsonLine answer;
    answer.AddWritten("line", task->line);
    evaluator_.AddAnswer(&answer, &explainer_);
    return answer.text();
  }

  std::string Error(const Task& task, const JsonError& error) {
    exit_code_ = kExpressionFailed;
    return JsonLine()
        .AddWritten("line", task.line)
        .AddText("error", error.what())
        .AddNumber("at", static_cast<long long>(error.offset))
        .text();
  }

  Scope common_;
  Explainer explainer_;
  TextEvaluator evaluator_;
  ExitCode exit_code_ = kAllEvaluated;
};

}  // namespace

ExitCode EvaluateObjects(const BatchRequest& request) {
  Answerer answerer(request);
  LineReader reader(request.input_path);
  while (std::cout) {
    const LineReader::State state = reader.Next();
    if (state == LineReader::State::kEndOfInput) break;
    std::cout << answerer.AnswerTo(reader, state) << '\n';
    if (reader.must_wait()) std::cout.flush();
  }
  FlushStandardOutput();
  return answerer.exit_code();
}
