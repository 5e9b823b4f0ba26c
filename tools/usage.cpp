// The one place that knows how the argument parser words its complaints.
#include "usage.h"

#include <algorithm>
#include <sstream>
#include <string_view>
#include <utility>

#include "files.h"
#include "nearest_name.h"
#include "shown_text.h"

namespace {

constexpr std::size_t kMostCharacters = 60;  // of a word that is shown

// ", is NAME meant?" of the name that `word` is close to, if there is one.
std::string Guess(std::string_view word, const std::vector<std::string>& names) {
  const std::string nearest = NearestName(word, names);
  return nearest.empty() ? "" : ", is " + nearest + " meant?";
}

std::string FullName(const CLI::App& command) {
  const CLI::App* parent = command.get_parent();
  return parent == nullptr ? command.get_name() : parent->get_name() + " " + command.get_name();
}

}  // namespace

HelpLayout::HelpLayout(CommandHelp help) : help_(std::move(help)) { column_width(26); }

std::string HelpLayout::make_help(const CLI::App* app, std::string /*name*/,
                                  CLI::AppFormatMode mode) const {
  std::string top = "Examples:\n";
  for (const std::string& example : help_.examples) top += "  " + example + "\n";
  for (std::size_t i = 0; i < help_.forms.size(); ++i) {
    top += (i == 0 ? "\nUsage: zrteval " : "       zrteval ") + help_.forms[i] + "\n";
  }
  std::ostringstream arguments;
  if (!help_.arguments.empty()) arguments << "\nArguments:\n";
  for (const auto& [name, meaning] : help_.arguments) {
    CLI::detail::format_help(arguments, "  " + name, meaning, get_column_width());
  }
  std::string options = make_positionals(app) + make_groups(app, mode);
  options.resize(options.find_last_not_of('\n') + 1);
  return top + "\n" + make_description(app) + arguments.str() + options + "\n" +
         make_subcommands(app, mode) + "\n" + make_footer(app);
}

void RefuseUsage(const CLI::App& command, const std::string& message) {
  throw Failure{kUsage, message + " (" + FullName(command) + " --help tells more)"};
}

void RefuseUsage(const CLI::App& command, const CLI::ParseError& error) {
  std::string what = error.what();
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) == nullptr) RefuseUsage(command, what);
  what.resize(std::min(what.find_first_of(": "), what.size()));  // the option's name comes first
  const CLI::Option* option = command.get_option_no_throw(what);
  // Of a flag the parser says the bare name.
  if (option == nullptr) RefuseUsage(command, "--" + what + " takes no value");
  RefuseUsage(command, what + " wants a " + option->get_type_name() + " behind it");
}

void CheckOptions(const CLI::App& command) {
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_expected_max() == 0 || option->count() == 0) continue;
    if (option->get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll) continue;
    const std::string name = option->get_name();
    if (option->count() > 1) RefuseUsage(command, name + " is given twice");
    if (option->results().front().empty()) RefuseUsage(command, name + " is given an empty value");
  }
}

void CheckNoOption(const CLI::App& command, const std::string& word, const std::string& note) {
  if (word.size() < 2 || word.front() != '-') return;
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) names.push_back(option->get_name());
  const std::string name = word.substr(0, word.find('='));
  const std::string guess = Guess(name, names);
  RefuseUsage(command, "no such option: " + Shown(word, kMostCharacters) +
                           (guess.empty() ? "; " + note : guess));
}

void RefuseCommand(const CLI::App& app, const std::string& word) {
  if (word.empty()) RefuseUsage(app, "the command is empty");
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) {
    names.push_back(command->get_name());
  }
  RefuseUsage(app, "no such command: " + Shown(word, kMostCharacters) + Guess(word, names));
}
