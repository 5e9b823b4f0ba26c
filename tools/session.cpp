// The session itself never evaluates: each line is worked on in a process of its own, which sends
// back what has changed. So Ctrl-C, and even the end of memory, leave the session as it was.
#include "session.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <sstream>

#include "apart.h"
#include "evaluator.h"
#include "hints.h"
#include "nearest_name.h"
#include "reading_text.h"
#include "shown_text.h"
#include "terminal.h"
#include "zrtexpression/words.h"

namespace {

constexpr std::size_t kMostLastBytes = std::size_t{1} << 24U;  // of a last value that is kept

struct Command {
  std::string_view name;
  std::string_view form;
  std::string_view meaning;
};

constexpr std::array<Command, 14> kCommands = {
    {
     {"int", ":int", "texts are integers from now on"},
     {"float", ":float", "texts are floats"},
     {"bits", ":bits", "texts are bit vectors"},
     {"scope", ":scope FILE", "take the names of a scope file"},
     {"let", ":let NAME=VALUE", "name a number, [1,2], rows 0x12,0x34, or the value of a text"},
     {"names", ":names", "tell the names there are"},
     {"rows", ":rows", "tell at which row each field stands"},
     {"reset", ":reset", "put each field back to its first row"},
     {"explain", ":explain [TEXT]", "show how a text is read, or the last one"},
     {"show", ":show [TEXT]", "show its bits"},
     {"check", ":check [TEXT]", "tell what is read otherwise than it looks"},
     {"fix", ":fix [TEXT]", "write it as ordinary precedence would read it"},
     {"help", ":help", "this list"},
     {"quit", ":quit", "end, as Ctrl-D does"},
     }
};

constexpr std::string_view kBlanks = " \t";
constexpr char kNamesFrom[] = ":let name=value or :scope FILE";

std::string Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return "";
  return std::string(text.substr(first, text.find_last_not_of(kBlanks) + 1 - first));
}

// Prints words behind `head`, further lines indented, none wider than the terminal.
void TellWrapped(const std::string& head, std::string_view words, std::size_t indent) {
  const std::size_t columns = std::max(OutputStyle().columns, indent + 1);
  std::string front = Padded(head, indent);
  for (const std::string& line : Wrapped(words, columns - indent)) {
    std::cout << front << line << '\n';
    front.assign(indent, ' ');
  }
}

void TellHelp() {
  constexpr std::size_t kWidth = 19, kNarrow = 60;
  const bool is_narrow = OutputStyle().columns < kNarrow;
  TellWrapped("",
              "A line is a text, whose value is printed and has the name last; or a command:", 0);
  for (const Command& command : kCommands) {
    std::string form = "  " + std::string(command.form);
    if (is_narrow) std::cout << form << '\n';
    form.resize(is_narrow ? 0 : kWidth, ' ');
    TellWrapped(is_narrow ? "      " : form, command.meaning, is_narrow ? 6 : kWidth);
  }
  TellWrapped("", "Ctrl-C ends a line or an evaluation, Ctrl-D the session.", 0);
}

// The value of the last text as a name can have it; none if it is too long for that.
std::optional<NamedValue> ValueOf(TextEvaluator* evaluator) {
  const ReadValue& outcome = evaluator->reading().outcome_value();
  NamedValue value;
  value.kind = outcome.kind;
  value.integer = outcome.integer;
  value.floating = outcome.floating;
  if (outcome.kind != zrt::ValueKind::kBits) return value;
  if (outcome.byte_count > kMostLastBytes) return std::nullopt;
  value.bit_length = evaluator->bit_length();
  const std::string bytes = ValidBytes(&evaluator->bits());
  value.bytes.assign(bytes.begin(), bytes.end());
  return value;
}

void PrintHints(const std::vector<Hint>& hints) {
  constexpr std::size_t kMost = 3;
  for (std::size_t i = 0; i < std::min(hints.size(), kMost); ++i) {
    PrintNote(std::cout, HintMessage(hints[i]), OutputStyle());
  }
  if (hints.size() > kMost) {
    PrintNote(std::cout, "hint: :check tells " + std::to_string(hints.size() - kMost) + " more",
              OutputStyle());
  }
}

std::string RowWords(const Scope::RowPosition& position) {
  const std::string count = std::to_string(position.count);
  if (position.count == 0) return "no rows";
  if (position.count == 1) return "one row, given each time";
  if (position.taken == position.count) return "all " + count + " rows are used up";
  return "next is row " + std::to_string(position.taken + 1) + " of " + count;
}

// Whether a text can be this name and nothing else, of one kind of values at least.
bool CanBeRead(const std::string& name) {
  using zrt::ValueKind;
  const auto is_whole = [&name](ValueKind kind) {
    ZRTExpression expression;
    Reading reading;
    expression.GetNames(name.c_str(), kind, &reading);
    return reading.operands().size() == 1 && reading.operands().front().name.length == name.size();
  };
  return is_whole(ValueKind::kInteger) || is_whole(ValueKind::kFloat) || is_whole(ValueKind::kBits);
}

// A text that goes on: its end says nothing yet.
bool IsUnfinished(const std::string& text) {
  const std::size_t last = text.find_last_not_of(' ');
  return last == std::string::npos ||
         std::string_view("+-*/%&|@^~!$,<>([#").find(text[last]) != std::string_view::npos;
}

}  // namespace

ExitCode Talk() {
  CatchInterrupts();
  Session().Run();
  return kAllEvaluated;
}

void Session::Run() {
  std::cout << "zrteval " << zrt::Version() << ", :help tells the commands, Ctrl-D ends\n";
  const auto editor =
      MakeLineEditor([this](std::string_view beginning) { return Complete(beginning); },
                     [this](const std::string& line) { return RemarkOn(line); });
  std::string line;
  while (!is_over_) {
    const LineEditor::End end = editor->Read(KindName(kind_) + std::string("> "), &line);
    if (end == LineEditor::End::kEndOfInput) return;
    if (end == LineEditor::End::kLine) HandleGuarded(line);
  }
}

void Session::HandleGuarded(const std::string& line) {
  try {
    Handle(line);
  } catch (const Failure& failure) {
    Complain(failure);
  }
  std::cout.flush();
}

void Session::Handle(const std::string& line) {
  if (line.empty()) return;
  const std::size_t colon = line.find_first_not_of(kBlanks);
  if (colon == std::string::npos || line[colon] != ':') return Evaluate(line);
  const std::size_t end = std::min(line.find_first_of(kBlanks, colon), line.size());
  // Of what follows, the blanks in front are the command's; those behind may be the text's.
  const std::size_t rest = std::min(line.find_first_not_of(kBlanks, end), line.size());
  HandleCommand(line.substr(colon + 1, end - colon - 1), line.substr(rest));
}

void Session::HandleCommand(std::string_view name, const std::string& rest) {
  const auto* command = std::find_if(kCommands.begin(), kCommands.end(),
                                     [name](const Command& entry) { return entry.name == name; });
  if (command == kCommands.end()) {
    std::vector<std::string> names;
    names.reserve(kCommands.size());
    for (const Command& entry : kCommands) names.emplace_back(entry.name);
    const std::string nearest = NearestName(name, names);
    throw Failure{kUsage,
                  "no such command: :" + std::string(name) +
                      (nearest.empty() ? "; :help tells them" : ", is :" + nearest + " meant?")};
  }
  const bool takes_nothing = command->form.find(' ') == std::string_view::npos;
  if (takes_nothing && !rest.empty()) {
    throw Failure{kUsage, ":" + std::string(name) + " stands alone"};
  }
  if (name == "int") kind_ = zrt::ValueKind::kInteger;
  if (name == "float") kind_ = zrt::ValueKind::kFloat;
  if (name == "bits") kind_ = zrt::ValueKind::kBits;
  if (name == "scope") {
    if (rest.empty()) throw Failure{kUsage, ":scope wants a FILE behind it"};
    scope_.Load(Trimmed(rest));
  }
  if (name == "let") Let(rest);
  if (name == "names") TellNames();
  if (name == "rows") TellRows();
  if (name == "reset") scope_.ResetRows();
  if (command->form.ends_with("[TEXT]")) Inspect(name, rest);
  if (name == "help") TellHelp();
  if (name == "quit") is_over_ = true;
}

bool Session::RunGuarded(const std::function<std::string()>& work, std::string* result) {
  switch (RunApart(work, 0, result)) {
    case ApartEnd::kDone: return true;
    case ApartEnd::kInterrupted:
    case ApartEnd::kTooLong: std::cout << "\nstopped; names and rows are as they were\n"; break;
    case ApartEnd::kDied: std::cout << "not done; names and rows are as they were\n"; break;
  }
  return false;
}

bool Session::EvaluateApart(const std::string& text, std::string* written) {
  const auto work = [&] {
    Scope scope;
    scope_.Fill(&scope);
    TextEvaluator::Options options;
    options.names_from = kNamesFrom;
    TextEvaluator evaluator(&scope, options);
    if (evaluator.EvaluateWatched(text, kind_)) {
      std::cout << ::ValueText(evaluator.reading().outcome_value()) << '\n';
      PrintHints(SurpriseHints(text, kind_, evaluator.reading()));
      return SessionScope::Written(scope, ValueOf(&evaluator));
    }
    Explainer explainer("");
    evaluator.PrintFailure(std::cout, ArgumentSource(text), &explainer, OutputStyle());
    return SessionScope::Written(scope, std::nullopt);
  };
  return RunGuarded(work, written);
}

void Session::Evaluate(const std::string& text) {
  last_text_ = text;
  last_kind_ = kind_;
  last_scope_ = scope_;
  std::string written;
  if (EvaluateApart(text, &written)) scope_.Read(written);
}

void Session::Let(const std::string& rest) {
  const std::size_t equals = rest.find('=');
  const std::string name = Trimmed(rest.substr(0, equals));
  const std::string value = equals == std::string::npos ? "" : Trimmed(rest.substr(equals + 1));
  if (name.empty() || value.empty()) {
    throw Failure{kUsage, ":let wants NAME=VALUE behind it, such as :let size=8"};
  }
  if (name == SessionScope::kLast) {
    throw Failure{kUsage, "last is the last value: take another name"};
  }
  if (!CanBeRead(name)) {
    throw Failure{kUsage, "no text can hold this name, since it is cut: take another one"};
  }
  if (SessionScope::IsWritten(value)) return scope_.Define(name, value);
  std::string written;
  if (!EvaluateApart(value, &written)) return;
  scope_.Read(written);
  if (const auto& last = scope_.last()) scope_.Define(name, *last);
}

void Session::TellRows() {
  Scope scope;
  scope_.Fill(&scope);
  std::size_t width = 0;
  const std::vector<Scope::RowPosition> positions = scope.RowPositions();
  for (const auto& position : positions) {
    width = std::max(width, ColumnsOf(Shown(position.name)));
  }
  for (const auto& position : positions) {
    std::cout << Padded(Shown(position.name), width) << "  " << RowWords(position) << '\n';
  }
  if (positions.empty()) std::cout << "there are no fields\n";
}

std::vector<std::string> Session::Names() const {
  Scope scope;
  scope_.Fill(&scope);
  std::vector<std::string> names = scope.names();
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

void Session::TellNames() {
  std::size_t used = 0;
  for (const std::string& name : Names()) {
    const std::string shown = Shown(name);
    const std::size_t columns = ColumnsOf(shown);
    if (used > 0 && used + columns >= OutputStyle().columns) {
      std::cout << '\n';
      used = 0;
    }
    std::cout << shown << "  ";
    used += columns + 2;
  }
  std::cout << (used > 0 ? "\n" : "there are no names\n");
}

void Session::Inspect(std::string_view command, const std::string& rest) {
  const bool is_last = rest.empty();
  if (is_last && last_text_.empty()) throw Failure{kUsage, "there is no last text yet"};
  ShowRequest request;
  request.reading.kind = is_last ? last_kind_ : kind_;
  request.reading.texts = {is_last ? last_text_ : rest};
  const SessionScope& names = is_last ? last_scope_ : scope_;
  request.reading.add_names = [&names](Scope* scope) { names.Fill(scope); };
  request.reading.names_from = kNamesFrom;
  const auto work = [&]() -> std::string {
    if (command == "explain") Explain(request.reading);
    if (command == "show") Show(request);
    if (command == "fix") Mend(request.reading);
    if (command == "check" && Check(request.reading) == kAllEvaluated) {
      std::cout << "read as it looks\n";
    }
    return "";
  };
  std::string nothing;
  RunGuarded(work, &nothing);
}

LineEditor::Completion Session::Complete(std::string_view beginning) const {
  LineEditor::Completion completion;
  const bool is_command =
      beginning.starts_with(':') && beginning.find_first_of(kBlanks) == std::string_view::npos;
  const std::size_t start =
      is_command ? 1 : beginning.find_last_of(" +-*/%&|@^~!$,<>()[]=") + 1;  // npos + 1 is 0
  const std::string_view word = beginning.substr(start);
  completion.typed = word.size();
  if (is_command) {
    for (const Command& command : kCommands) {
      if (command.name.starts_with(word)) completion.words.emplace_back(command.name);
    }
    return completion;
  }
  for (const std::string& name : Names()) {
    if (name.starts_with(word)) completion.words.push_back(name);
  }
  return completion;
}

std::string Session::RemarkOn(const std::string& line) {
  constexpr int kMostMilliseconds = 100;
  if (line.starts_with(':') || IsUnfinished(line)) return "";
  const auto work = [&]() -> std::string {
    Scope scope;
    scope_.Fill(&scope);
    TextEvaluator evaluator(&scope, {});
    if (!evaluator.EvaluateWatched(line, kind_)) return "";
    const std::vector<Hint> hints = SurpriseHints(line, kind_, evaluator.reading());
    return hints.empty() ? "" : HintMessage(hints.front());
  };
  std::string remark;
  const ApartEnd end = RunApart(work, kMostMilliseconds, &remark);
  if (end == ApartEnd::kInterrupted) ReturnInterrupt();  // it is meant for the line
  if (end != ApartEnd::kDone) return "";
  return Shown(remark, std::max<std::size_t>(OutputStyle().columns, 10) - 5);
}
