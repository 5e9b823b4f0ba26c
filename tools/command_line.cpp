// Knows each command's options and help, and which of them do not go together. The work is done by
// the commands.
#include "command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <utility>

#include "arguments.h"
#include "commands.h"
#include "lines.h"
#include "options.h"
#include "output.h"
#include "terminal.h"
#include "usage.h"

namespace {

void AddFile(CLI::App* command, std::string* path, const std::string& description) {
  command->add_option("-f", *path, description)->type_name("FILE");
}

CLI::App* AddEvaluation(CLI::App* app, const std::string& name, const std::string& value,
                        const std::vector<std::string>& examples, Arguments* arguments) {
  const CommandHelp help = {
      examples,
      {name + " [OPTIONS] [--] TEXT...", name + " [OPTIONS] -f FILE", name + " [OPTIONS] < FILE"},
      {{"TEXT", "What to evaluate, behind -- if it begins with -"}     }
  };
  CLI::App* command = AddCommand(app, name, "Evaluate texts to " + value, help);
  AddRepeatable(command, "-e", &arguments->texts, "A text, in front of the others; any number")
      ->type_name("TEXT");
  AddFile(command, &arguments->file, "Evaluate each line of a file, - for standard input");
  command->add_flag("--batch", arguments->is_batch,
                    "Evaluate each line of standard input, as without any text if that is no "
                    "terminal");
  AddScopeOptions(command, &arguments->evaluate.setting.scope);
  command->add_flag("--json", arguments->evaluate.as_json,
                    "Print an object for each text, also for one that fails");
  AddDataDir(command, &arguments->evaluate.setting.data_dir);
  return command;
}

void AddBits(CLI::App* app, Arguments* arguments) {
  CLI::App* command =
      AddEvaluation(app, "bits", "bit vectors",
                    {"zrteval bits '(0xFF^4)@0x1234'", "zrteval bits -d id=0x0ABC/12 'id@#1111'",
                     "zrteval bits --format bin --length '#101@#11'"},
                    arguments);
  command
      ->add_option("--format", arguments->format,
                   "hex (0x and digits, the default), bin (the valid bits) or raw (bytes)")
      ->type_name("FORMAT");
  command->add_flag("--length", arguments->evaluate.with_length,
                    "Print the length in bits behind each value");
  command->add_flag("--fresh", arguments->evaluate.fresh_rows,
                    "Begin each text with the first row of each field");
  AddMaxBits(command, &arguments->evaluate.setting.max_bits);
}

void AddBatch(CLI::App* app, BatchRequest* request) {
  const CommandHelp help = {
      {"zrteval batch < tasks.jsonl > answers.jsonl",
       "zrteval batch --scope names.json -f tasks.jsonl"},
      {"batch [OPTIONS] < FILE",                                             "batch [OPTIONS] -f FILE"},
      {                                                                     }
  };
  CLI::App* command = AddCommand(
      app, "batch",
      "Read an object a line, such as {\"kind\":\"int\",\"text\":\"size+1\",\n"
      "\"scope\":{\"tokens\":{\"local\":{\"size\":8}}}}, and print one a line with its value",
      help);
  AddFile(command, &request->input_path, "Where to read; standard input if missing");
  AddScopeOptions(command, &request->setting.scope);
  AddMaxBits(command, &request->setting.max_bits);
  AddDataDir(command, &request->setting.data_dir);
}

CLI::App* AddCodec(CLI::App* app, const std::string& name, const std::string& description,
                   const std::string& example, CodecRequest* request) {
  CLI::App* command =
      AddCommand(app, name, description, {{example}, {name + " [OPTIONS] [--] [FILE]"}, {}});
  command
      ->add_option("FILE", request->input_path,
                   "What to read; standard input if it is - or missing")
      ->type_name("");
  command
      ->add_option("-o,--output", request->output_path,
                   "Where to write; standard output if missing")
      ->type_name("FILE");
  AddDataDir(command, &request->data_dir);
  return command;
}

void AddPages(CLI::App* command, PageRequest* request) {
  command->add_option("--svg", request->svg_path, "Draw one text into a file instead, - for output")
      ->type_name("FILE");
  command
      ->add_option("--html", request->html_path, "Write a page instead, to be opened in a browser")
      ->type_name("FILE");
}

// Texts of any origin, and what they are evaluated with.
void AddTexts(CLI::App* command, Arguments* arguments) {
  AddRepeatable(command, "-e", &arguments->texts, "A text, in front of the others; any number")
      ->type_name("TEXT");
  AddFile(command, &arguments->file, "Take each line of a file, - for standard input");
  AddScopeOptions(command, &arguments->reading.setting.scope);
  AddDataDir(command, &arguments->reading.setting.data_dir);
}

CLI::App* AddReading(CLI::App* app, const std::string& name, const std::string& description,
                     const std::vector<std::string>& examples, Arguments* arguments) {
  const CommandHelp help = {
      examples,
      {name + " int|float|bits [OPTIONS] [--] TEXT...", name + " int|float|bits [OPTIONS] -f FILE"},
      {{"int|float|bits", "The kind of value"},
        {"TEXT", "What to look at, behind -- if it begins with -"}                                 }
  };
  CLI::App* command = AddCommand(app, name, description, help);
  AddTexts(command, arguments);
  return command;
}

void AddReadings(CLI::App* app, Arguments* arguments) {
  const auto add_json = [arguments](CLI::App* command) {
    command->add_flag("--json", arguments->reading.as_json, "Print an object for each text");
  };
  CLI::App* explain = AddReading(
      app, "explain", "Show how texts are read, step by step with values",
      {"zrteval explain int '2+3*4'", "zrteval explain bits -d fuses=0x11,0x22 'fuses@(fuses)'",
       "zrteval explain int --html page.html '2+3*4'"},
      arguments);
  add_json(explain);
  AddPages(explain, &arguments->reading.pages);
  CLI::App* check = AddReading(
      app, "check", "Tell what is read otherwise than it looks, and what to write instead",
      {"zrteval check int '2+3*4'", "zrteval check int --fix '2+3*4'"}, arguments);
  add_json(check);
  check->add_flag("--fix", arguments->fixes,
                  "Print the texts that are read with ordinary precedence instead");
  add_json(AddReading(app, "names", "Tell the names that texts use, and where each is found",
                      {"zrteval names int --scope names.json 'order[rows/2]*limit'"}, arguments));
}

void AddShow(CLI::App* app, Arguments* arguments) {
  const CommandHelp help = {
      {"zrteval show -d id=0x0ABC/12 'id@#1111'", "zrteval show 0x1234 --against 0x1274",
       "zrteval show --bytes 1-2 0x12345678"},
      {"show [OPTIONS] [--] TEXT...",     "show [OPTIONS] -f FILE"},
      {{"TEXT", "A bit vector to look at, behind -- if it begins with -"}            },
  };
  CLI::App* command = AddCommand(app, "show", "Show bit vectors as pictures", help);
  AddTexts(command, arguments);
  command->add_option("--against", arguments->against, "Show what differs from this text")
      ->type_name("TEXT");
  command
      ->add_option("--against-file", arguments->against_file,
                   "Show what differs from the text in the first line of a file")
      ->type_name("FILE");
  command->add_option("--bytes", arguments->window, "Show these bytes alone, counted from 0")
      ->type_name("FIRST-LAST");
  AddPages(command, &arguments->reading.pages);
}

BitFormat FormatOf(const CLI::App& command, const std::string& name) {
  if (name == "hex") return BitFormat::kHex;
  if (name == "bin") return BitFormat::kBin;
  if (name == "raw") return BitFormat::kRaw;
  RefuseUsage(command, "--format is hex, bin or raw");
}

ExitCode RunEvaluation(const CLI::App& command, zrt::ValueKind kind, Arguments* arguments) {
  EvaluateRequest& request = arguments->evaluate;
  request.kind = kind;
  request.texts = TextsOf(command, *arguments);
  request.input_path = InputOf(command, *arguments, request.texts);
  request.format = FormatOf(command, arguments->format);
  CheckInput(command, request.input_path, request.setting.scope);
  if (request.with_length && request.format == BitFormat::kRaw) {
    RefuseUsage(command, "--length has no place among raw bytes");
  }
  if (request.as_json && (request.with_length || request.format != BitFormat::kHex)) {
    RefuseUsage(command, "--json tells digits and length: --format and --length have no place");
  }
  return Evaluate(request);
}

ExitCode RunShow(const CLI::App& command, Arguments* arguments) {
  ShowRequest request;
  request.reading = arguments->reading;
  request.reading.kind = zrt::ValueKind::kBits;
  request.reading.texts = TextsOf(command, *arguments);
  request.reading.input_path = InputOf(command, *arguments, request.reading.texts);
  CheckInput(command, request.reading.input_path, request.reading.setting.scope);
  CheckPages(command, request.reading);
  const bool has_text = !arguments->against.empty(), has_file = !arguments->against_file.empty();
  if (has_text && has_file) RefuseUsage(command, "give --against or --against-file");
  if (has_text) request.against = arguments->against;
  if (has_file) request.against = FirstLine(arguments->against_file);
  if (!arguments->window.empty()) request.window = WindowOf(command, arguments->window);
  if (request.window && request.reading.pages.is_asked_for()) {
    RefuseUsage(command, "--bytes is for the terminal: --svg and --html show all of a vector");
  }
  return Show(request);
}

// The kind is the first word.
ExitCode RunReading(const CLI::App& command, Arguments* arguments) {
  ReadingRequest& request = arguments->reading;
  request.texts = TextsOf(command, *arguments);
  const std::size_t at = arguments->texts.size();  // behind those of -e
  const std::string kind = at < request.texts.size() ? request.texts[at] : "";
  if (kind != "int" && kind != "float" && kind != "bits") {
    RefuseUsage(command, "the first word is the kind: int, float or bits");
  }
  request.kind = kind == "int"     ? zrt::ValueKind::kInteger
                 : kind == "float" ? zrt::ValueKind::kFloat
                                   : zrt::ValueKind::kBits;
  request.texts.erase(request.texts.begin() + static_cast<std::ptrdiff_t>(at));
  request.input_path = InputOf(command, *arguments, request.texts);
  CheckInput(command, request.input_path, request.setting.scope);
  CheckPages(command, request);
  const std::string& name = command.get_name();
  if (name == "explain") return Explain(request);
  if (name == "names") return ListNames(request);
  if (arguments->fixes && request.as_json) {
    RefuseUsage(command, "--fix prints texts: --json has no place beside it");
  }
  return arguments->fixes ? Mend(request) : Check(request);
}

ExitCode RunBatch(const CLI::App& command, Arguments* arguments) {
  BatchRequest& request = arguments->batch;
  std::vector<std::string> words = command.remaining();
  for (const std::string& word : words) CheckNoOption(command, word, "batch takes no texts");
  words.insert(words.end(), arguments->marked.begin(), arguments->marked.end());
  if (!words.empty()) RefuseUsage(command, "batch takes no texts, but objects with -f FILE");
  if (request.input_path.empty()) request.input_path = "-";
  CheckInput(command, request.input_path, request.setting.scope);
  return EvaluateObjects(request);
}

ExitCode RunCodec(const CLI::App& command, bool is_encode, Arguments* arguments) {
  CodecRequest& request = arguments->codec;
  request.verify = !arguments->no_verify;
  std::vector<std::string> files = command.remaining();
  for (const std::string& file : files)
    CheckNoOption(command, file, "a FILE that begins with - stands behind --");
  files.insert(files.end(), arguments->marked.begin(), arguments->marked.end());
  if (!request.input_path.empty()) files.insert(files.begin(), request.input_path);
  if (files.size() > 1) RefuseUsage(command, "one FILE only");
  if (files == std::vector<std::string>{""}) RefuseUsage(command, "FILE is given an empty value");
  request.input_path = files.empty() ? "-" : files.front();
  return is_encode ? Encode(request) : Decode(request);
}

// The words in front of the command, or instead of it.
void CheckRest(const CLI::App& app) {
  const std::vector<std::string> words = app.remaining();
  if (!words.empty()) {
    CheckNoOption(app, words.front(), "the options of a command stand behind it");
    RefuseCommand(app, words.front());
  }
}

void AddCommands(CLI::App* app, Arguments* arguments) {
  AddEvaluation(app, "int", "32-bit integers",
                {"zrteval int '2+3*4' '2+(3*4)'", "zrteval int -t size=8 'size - 1'",
                 "zrteval int --scope names.json < texts.txt"},
                arguments);
  AddEvaluation(app, "float", "32-bit floats",
                {"zrteval float 1/3", "zrteval float --scope names.json 'voltage*1000'"},
                arguments);
  AddBits(app, arguments);
  AddReadings(app, arguments);
  AddShow(app, arguments);
  AddBatch(app, &arguments->batch);
  AddCodec(app, "encode", "Write a file's bytes as run-length text",
           "zrteval encode image.bin -o image.txt", &arguments->codec)
      ->add_flag("--no-verify", arguments->no_verify, "Do not read the text back and compare");
  CLI::App* decode = AddCodec(app, "decode", "Write the bytes that a text stands for",
                              "zrteval decode image.txt -o image.bin", &arguments->codec);
  AddMaxBits(decode, &arguments->codec.max_bits);
}

ExitCode RunCommand(const CLI::App& command, Arguments* arguments) {
  CheckOptions(command);
  const std::string& name = command.get_name();
  if (name == "int") return RunEvaluation(command, zrt::ValueKind::kInteger, arguments);
  if (name == "float") return RunEvaluation(command, zrt::ValueKind::kFloat, arguments);
  if (name == "bits") return RunEvaluation(command, zrt::ValueKind::kBits, arguments);
  if (name == "explain" || name == "check" || name == "names") {
    return RunReading(command, arguments);
  }
  if (name == "batch") return RunBatch(command, arguments);
  if (name == "show") return RunShow(command, arguments);
  return RunCodec(command, name == "encode", arguments);
}

// The command among the words that were parsed, null if there is none.
const CLI::App* CommandOf(const CLI::App& app) {
  const std::vector<CLI::App*> commands = app.get_subcommands();
  return commands.empty() ? nullptr : commands.front();
}

}  // namespace

ExitCode RunCommandLine(std::vector<std::string> words) {
  CLI::App app("Evaluates the expressions of a template language for device data.", "zrteval");
  const CommandHelp help = {
      {"zrteval int '2+3*4' '2+(3*4)'",           "zrteval bits -d id=0x0ABC/12 'id@#1111'",
       "zrteval int --json -t size=8 'size - 1'", "zrteval batch < tasks.jsonl > answers.jsonl"},
      {"COMMAND [OPTIONS] ...", "COMMAND --help"},
      {                        }
  };
  AddCommonHelp(&app, help);
  app.require_subcommand(0, 1);  // behind a command, the names of others are texts
  Arguments arguments;
  AddCommands(&app, &arguments);

  JoinValues(&words);
  const auto mark = std::find(words.begin(), words.end(), "--");
  if (mark != words.end()) arguments.marked.assign(mark + 1, words.end());
  words.erase(mark, words.end());
  for (const std::string& word : words) {  // the parser would take the next word as the value
    if (word.starts_with("--") && word.ends_with('=')) {
      RefuseUsage(app, word.substr(0, word.size() - 1) + " is given an empty value");
    }
  }
  std::reverse(words.begin(), words.end());  // as the parser wants them
  try {
    app.parse(std::move(words));
  } catch (const CLI::ParseError& error) {
    const bool is_asked_for = error.get_exit_code() == 0;  // --help and --version
    const CLI::App* command = CommandOf(app);
    if (!is_asked_for) RefuseUsage(command == nullptr ? app : *command, error);
    app.exit(error);
    FlushStandardOutput();
    return kAllEvaluated;
  }
  const CLI::App* command = CommandOf(app);
  CheckRest(app);
  if (command == nullptr) {
    if (IsInputTerminal() && IsOutputTerminal()) return Talk();
    RefuseUsage(app, "a command is missing; on a terminal, none begins a session");
  }
  return RunCommand(*command, &arguments);
}
