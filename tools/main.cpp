// zrteval: the evaluator at a command line. This file knows the arguments and hands each command
// its request; the work is done in evaluate.cpp and codec.cpp.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "zrtexpression/version.h"
#include "commands.h"

namespace {

// What the parser fills in.
struct Arguments {
  EvaluateRequest evaluate;
  CodecRequest codec;
  std::string format = "hex";
  bool no_verify = false;
  std::vector<std::string> marked;  // what stands behind "--"; the parser does not see it
};

// Texts are taken from what the parser leaves over, not as an option, since as a list it would take
// "[1]" apart. What looks like an option is a text behind "--" alone.
std::vector<std::string> TextsOf(const CLI::App& command, const Arguments& arguments) {
  std::vector<std::string> texts = command.remaining();
  for (const std::string& text : texts) {
    if (text.size() > 1 && text.front() == '-') {
      throw Failure{kUsage,
                    "no such option: " + text + " (texts that begin with - stand behind --)"};
    }
  }
  texts.insert(texts.end(), arguments.marked.begin(), arguments.marked.end());
  return texts;
}

void AddDataDir(CLI::App* command, std::string* data_dir) {
  command
      ->add_option("--data-dir", *data_dir, "Directory of ErrorList.txt, the messages of failures")
      ->type_name("DIR");
}

CLI::App* AddEvaluation(CLI::App* app, const std::string& name, const std::string& value,
                        EvaluateRequest* request) {
  CLI::App* command = app->add_subcommand(name, "Evaluate texts to " + value);
  command->allow_extras();
  command->footer("Texts are given as arguments, or one a line with --batch:\n  zrteval " + name +
                  " [OPTIONS] [--] TEXT...\n  zrteval " + name + " [OPTIONS] --batch");
  command->add_option("--scope", request->scope_path, "JSON file of names and their values")
      ->type_name("FILE");
  command->add_flag("--batch", request->batch, "Evaluate each line of standard input");
  AddDataDir(command, &request->data_dir);
  return command;
}

CLI::App* AddBits(CLI::App* app, Arguments* arguments) {
  CLI::App* command = AddEvaluation(app, "bits", "bit vectors", &arguments->evaluate);
  command
      ->add_option("--format", arguments->format,
                   "hex (0x and digits), bin (the valid bits) or raw (the bytes as they are)")
      ->type_name("FORMAT")
      ->check(CLI::IsMember({"hex", "bin", "raw"}));
  command->add_flag("--length", arguments->evaluate.with_length,
                    "Print the length in bits behind each value");
  command->add_flag("--fresh", arguments->evaluate.fresh_rows,
                    "Begin each text with the first row of each field");
  return command;
}

CLI::App* AddCodec(CLI::App* app, const char* name, const char* description,
                   CodecRequest* request) {
  CLI::App* command = app->add_subcommand(name, description);
  command->add_option("FILE", request->input_path, "What to read; standard input if none is named")
      ->type_name("");
  command->add_option("-o,--output", request->output_path, "Where to write")->type_name("FILE");
  AddDataDir(command, &request->data_dir);
  return command;
}

ExitCode RunEvaluation(const CLI::App& command, ValueKind kind, Arguments* arguments) {
  EvaluateRequest& request = arguments->evaluate;
  request.kind = kind;
  request.texts = TextsOf(command, *arguments);
  if (arguments->format == "bin") request.format = BitFormat::kBin;
  if (arguments->format == "raw") request.format = BitFormat::kRaw;
  if (request.batch != request.texts.empty()) {
    throw Failure{kUsage, "give either texts or --batch (zrteval --help tells more)"};
  }
  if (request.with_length && request.format == BitFormat::kRaw) {
    throw Failure{kUsage, "--length has no place among raw bytes"};
  }
  return Evaluate(request);
}

ExitCode RunCodec(bool is_encode, Arguments* arguments) {
  CodecRequest& request = arguments->codec;
  request.verify = !arguments->no_verify;
  if (arguments->marked.size() > (request.input_path.empty() ? 1 : 0)) {
    throw Failure{kUsage, "one FILE only"};
  }
  if (!arguments->marked.empty()) request.input_path = arguments->marked.front();
  if (request.input_path.empty()) request.input_path = "-";
  return is_encode ? Encode(request) : Decode(request);
}

ExitCode Run(std::vector<std::string> words) {
  CLI::App app("Evaluates the expressions of a template language for device data.", "zrteval");
  app.require_subcommand(1);
  app.set_version_flag("--version", "zrteval " ZRT_VERSION);
  app.footer(
      "Exit status: 0 all evaluated, 1 an expression failed, 2 usage, 3 scope file,\n"
      "4 input or output.");
  Arguments arguments;
  const CLI::App* ints = AddEvaluation(&app, "int", "32-bit integers", &arguments.evaluate);
  const CLI::App* floats = AddEvaluation(&app, "float", "32-bit floats", &arguments.evaluate);
  const CLI::App* bits = AddBits(&app, &arguments);
  CLI::App* encode =
      AddCodec(&app, "encode", "Write a file's bytes as run-length text", &arguments.codec);
  encode->add_flag("--no-verify", arguments.no_verify, "Do not read the text back and compare");
  AddCodec(&app, "decode", "Write the bytes that a text stands for", &arguments.codec);

  const auto mark = std::find(words.begin(), words.end(), "--");
  if (mark != words.end()) arguments.marked.assign(mark + 1, words.end());
  words.erase(mark, words.end());
  std::reverse(words.begin(), words.end());  // as the parser wants them
  try {
    app.parse(std::move(words));
  } catch (const CLI::ParseError& error) {
    const bool is_asked_for = error.get_exit_code() == 0;  // --help and --version
    if (!is_asked_for) {
      throw Failure{kUsage, std::string(error.what()) + " (zrteval --help tells more)"};
    }
    app.exit(error);
    FlushStandardOutput();
    return kAllEvaluated;
  }
  if (ints->parsed()) return RunEvaluation(*ints, ValueKind::kInt, &arguments);
  if (floats->parsed()) return RunEvaluation(*floats, ValueKind::kFloat, &arguments);
  if (bits->parsed()) return RunEvaluation(*bits, ValueKind::kBits, &arguments);
  return RunCodec(encode->parsed(), &arguments);
}

}  // namespace

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  std::cin.tie(nullptr);
  try {
    return Run({argv + 1, argv + argc});
  } catch (const Failure& failure) {
    Complain(failure.message);
    return failure.exit_code;
  } catch (const std::bad_alloc&) {
    Complain("memory has run out");
  } catch (const std::exception& error) {
    Complain(error.what());
  }
  return kInputOutput;
}
