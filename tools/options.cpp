// Values that the parser would take apart or refuse in its own words are looked at here.
#include "options.h"

#include <algorithm>
#include <charconv>
#include <memory>

#include "terminal.h"
#include "usage.h"
#include "zrtexpression/version.h"

namespace {

constexpr char kVersion[] = "zrteval " ZRT_VERSION;

constexpr char kExitStatuses[] =
    "Exit status:\n"
    "  0  all is done\n"
    "  1  a text cannot be evaluated (others still are), does not read back, or has hints\n"
    "  2  wrong usage\n"
    "  3  wrong scope file\n"
    "  4  input or output failed";

void AddColor(CLI::App* command) {
  const auto choose = [command](const CLI::results_t& results) {
    const std::string& when = results.back();
    if (when == "auto") {
      ChooseColoring(Coloring::kAuto);
    } else if (when == "always") {
      ChooseColoring(Coloring::kAlways);
    } else if (when == "never") {
      ChooseColoring(Coloring::kNever);
    } else {
      RefuseUsage(*command, "--color is auto, always or never");
    }
    return true;
  };
  command->add_option("--color", choose, "auto (on terminals without NO_COLOR), always or never")
      ->type_name("WHEN");
}

}  // namespace

void AddCommonHelp(CLI::App* app, const CommandHelp& help) {
  app->formatter(std::make_shared<HelpLayout>(help));
  app->set_version_flag("--version", kVersion, "Print the version and exit");
  app->allow_extras();
  app->footer(kExitStatuses);
}

CLI::App* AddCommand(CLI::App* app, const std::string& name, const std::string& description,
                     const CommandHelp& help) {
  CLI::App* command = app->add_subcommand(name, description);
  AddCommonHelp(command, help);
  command->group("Commands");
  command->option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
  command->option_defaults()->disable_flag_override();
  AddColor(command);
  return command;
}

void AddScopeOptions(CLI::App* command, ScopeRequest* request) {
  command
      ->add_option("--scope", request->path,
                   "JSON file of names and their values, - for standard input")
      ->type_name("FILE");
  AddRepeatable(command, "-t", &request->tokens,
                "A token, over those of the file: size=8, gain=2.5, order=[1,2,3]")
      ->type_name("NAME=VALUE");
  AddRepeatable(command, "-d", &request->fields,
                "A data field, likewise: id=0x0ABC/12, with rows f=0x11,0x22 or -d f=.. again")
      ->type_name("NAME=ROWS");
}

void AddDataDir(CLI::App* command, std::string* data_dir) {
  command
      ->add_option("--data-dir", *data_dir,
                   "Directory of an ErrorList.txt, whose sentences tell of failures")
      ->type_name("DIR");
}

void AddMaxBits(CLI::App* command, int* max_bits) {
  const auto read = [command, max_bits](const CLI::results_t& results) {
    const std::string& text = results.back();
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, *max_bits);
    if (error != std::errc() || stopped != end || *max_bits < 0) {
      RefuseUsage(*command, "--max-bits wants a number from 0 to 2147483647");
    }
    return true;
  };
  command->add_option("--max-bits", read, "Refuse values of more bits")->type_name("N");
}

CLI::Option* AddRepeatable(CLI::App* command, const std::string& name,
                           std::vector<std::string>* values, const std::string& description) {
  const auto take = [values](const CLI::results_t& results) {
    *values = results;
    return true;
  };
  return command->add_option(name, take, description)->take_all();
}

void JoinValues(std::vector<std::string>* words) {
  for (std::size_t i = 0; i + 1 < words->size(); ++i) {
    const std::string& word = (*words)[i];
    if (word == "--") return;
    if (word != "-e" && word != "-t" && word != "-d") continue;
    if (!(*words)[i + 1].starts_with('-')) continue;
    (*words)[i] += (*words)[i + 1];
    words->erase(words->begin() + static_cast<std::ptrdiff_t>(i) + 1);
  }
}
