// Knows each command's options and help, and which of them do not go together. The work is done in
// evaluate.cpp and codec.cpp.
#include "command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <utility>

#include "commands.h"
#include "usage.h"
#include "zrtexpression/version.h"

namespace {

// What the parser fills in.
struct Arguments {
  EvaluateRequest evaluate;
  CodecRequest codec;
  std::string format = "hex";
  bool no_verify = false;
  std::vector<std::string> marked;  // what stands behind "--"; the parser does not see it
};

constexpr char kVersion[] = "zrteval " ZRT_VERSION;

constexpr char kExitStatuses[] =
    "Exit status:\n"
    "  0  all is done\n"
    "  1  a text cannot be evaluated (others still are), or does not read back\n"
    "  2  wrong usage\n"
    "  3  wrong scope file\n"
    "  4  input or output failed";

CLI::App* AddCommand(CLI::App* app, const std::string& name, const std::string& description,
                     const std::vector<std::string>& forms) {
  CLI::App* command = app->add_subcommand(name, description);
  command->formatter(std::make_shared<HelpLayout>(forms));
  command->set_version_flag("--version", kVersion)->group("");
  command->group("Commands");
  command->allow_extras();  // looked through afterwards, for better words
  command->option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
  command->option_defaults()->disable_flag_override();
  return command;
}

void AddDataDir(CLI::App* command, std::string* data_dir) {
  command
      ->add_option("--data-dir", *data_dir, "Directory of ErrorList.txt, the messages of failures")
      ->type_name("DIR");
}

CLI::App* AddEvaluation(CLI::App* app, const std::string& name, const std::string& value,
                        const std::string& examples, EvaluateRequest* request) {
  CLI::App* command = AddCommand(app, name, "Evaluate texts to " + value,
                                 {name + " [OPTIONS] [--] TEXT...", name + " [OPTIONS] --batch"});
  command->footer("Examples:\n" + examples + "\n\n" + kExitStatuses);
  command
      ->add_option("--scope", request->scope_path,
                   "JSON file of names and their values, - for standard input")
      ->type_name("FILE");
  command->add_flag("--batch", request->batch,
                    "Evaluate each line of standard input instead of TEXTs");
  AddDataDir(command, &request->data_dir);
  return command;
}

CLI::App* AddBits(CLI::App* app, Arguments* arguments) {
  CLI::App* command = AddEvaluation(app, "bits", "bit vectors",
                                    "  zrteval bits '(0xFF^4)@0x1234'\n"
                                    "  zrteval bits --format bin --length '#101@#11'",
                                    &arguments->evaluate);
  command
      ->add_option("--format", arguments->format,
                   "hex (0x and digits, the default), bin (the valid bits) or raw (bytes)")
      ->type_name("FORMAT");
  command->add_flag("--length", arguments->evaluate.with_length,
                    "Print the length in bits behind each value");
  command->add_flag("--fresh", arguments->evaluate.fresh_rows,
                    "Begin each text with the first row of each field");
  return command;
}

CLI::App* AddCodec(CLI::App* app, const std::string& name, const std::string& description,
                   const std::string& example, CodecRequest* request) {
  CLI::App* command = AddCommand(app, name, description, {name + " [OPTIONS] [--] [FILE]"});
  command->footer("Example:\n" + example + "\n\n" + kExitStatuses);
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

// Texts are taken from what the parser leaves over, not as an option, since as a list it would take
// "[1]" apart. What looks like an option is a text behind "--" alone.
std::vector<std::string> TextsOf(const CLI::App& command, const Arguments& arguments) {
  std::vector<std::string> texts = command.remaining();
  for (const std::string& text : texts)
    CheckNoOption(command, text, "a text that begins with - stands behind --");
  texts.insert(texts.end(), arguments.marked.begin(), arguments.marked.end());
  return texts;
}

BitFormat FormatOf(const CLI::App& command, const std::string& name) {
  if (name == "hex") return BitFormat::kHex;
  if (name == "bin") return BitFormat::kBin;
  if (name == "raw") return BitFormat::kRaw;
  RefuseUsage(command, "--format is hex, bin or raw");
}

ExitCode RunEvaluation(const CLI::App& command, ValueKind kind, Arguments* arguments) {
  EvaluateRequest& request = arguments->evaluate;
  request.kind = kind;
  request.texts = TextsOf(command, *arguments);
  request.format = FormatOf(command, arguments->format);
  if (request.batch != request.texts.empty()) RefuseUsage(command, "give either texts or --batch");
  if (request.batch && request.scope_path == "-") {
    RefuseUsage(command, "--batch and --scope - cannot both read standard input");
  }
  if (request.with_length && request.format == BitFormat::kRaw) {
    RefuseUsage(command, "--length has no place among raw bytes");
  }
  return Evaluate(request);
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
void CheckRest(const CLI::App& app, const CLI::App* command) {
  const std::vector<std::string> words = app.remaining();
  if (!words.empty()) {
    CheckNoOption(app, words.front(), "the options of a command stand behind it");
    RefuseCommand(app, words.front());
  }
  if (command == nullptr) RefuseUsage(app, "a command is missing");
}

void AddCommands(CLI::App* app, Arguments* arguments) {
  AddEvaluation(app, "int", "32-bit integers",
                "  zrteval int '2+3*4' '2+(3*4)'\n"
                "  zrteval int --scope names.json --batch < texts.txt",
                &arguments->evaluate);
  AddEvaluation(app, "float", "32-bit floats",
                "  zrteval float '1/3'\n"
                "  zrteval float --scope names.json 'voltage*1000'",
                &arguments->evaluate);
  AddBits(app, arguments);
  AddCodec(app, "encode", "Write a file's bytes as run-length text",
           "  zrteval encode image.bin -o image.txt", &arguments->codec)
      ->add_flag("--no-verify", arguments->no_verify, "Do not read the text back and compare");
  AddCodec(app, "decode", "Write the bytes that a text stands for",
           "  zrteval decode image.txt -o image.bin", &arguments->codec);
}

ExitCode RunCommand(const CLI::App& command, Arguments* arguments) {
  CheckOptions(command);
  const std::string& name = command.get_name();
  if (name == "int") return RunEvaluation(command, ValueKind::kInt, arguments);
  if (name == "float") return RunEvaluation(command, ValueKind::kFloat, arguments);
  if (name == "bits") return RunEvaluation(command, ValueKind::kBits, arguments);
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
  app.formatter(std::make_shared<HelpLayout>(
      std::vector<std::string>{"COMMAND [OPTIONS] ...", "COMMAND --help"}));
  app.require_subcommand(0, 1);  // behind a command, the names of others are texts
  app.allow_extras();
  app.set_version_flag("--version", kVersion);
  app.footer(kExitStatuses);
  Arguments arguments;
  AddCommands(&app, &arguments);

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
  CheckRest(app, command);
  return RunCommand(*command, &arguments);
}
