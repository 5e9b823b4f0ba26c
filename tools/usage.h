// Wrong usage and help in words for a person: what the argument parser says is put in plain
// English, and its help is laid out with examples on top. Knows no command by name.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

/// How a help page begins, and what it tells besides the options.
struct CommandHelp {
  struct Argument {
    std::string name;
    std::string meaning;
  };

  std::vector<std::string> examples;  // whole commands
  std::vector<std::string> forms;     // what may stand behind the program's name
  std::vector<Argument> arguments;    // those that the parser does not know
};

/// Help of one command: examples, usage, description, arguments, options, and the footer.
class HelpLayout : public CLI::Formatter {
 public:
  explicit HelpLayout(CommandHelp help);

  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode mode) const override;

 private:
  CommandHelp help_;
};

/// Throws the Failure of a wrong command line. The message ends with where `command` is explained.
[[noreturn]] void RefuseUsage(const CLI::App& command, const std::string& message);

/// The same of what the parser refuses.
[[noreturn]] void RefuseUsage(const CLI::App& command, const CLI::ParseError& error);

/// Refuses options of `command` that are given twice or with an empty value, which is what a shell
/// variable that is not set leaves.
void CheckOptions(const CLI::App& command);

/// Refuses a word that looks like an option and is none of `command`. If it is not close to one,
/// the message ends with `note`, which tells what else may have been meant.
void CheckNoOption(const CLI::App& command, const std::string& word, const std::string& note);

/// Refuses a word where a command of `app` is wanted.
[[noreturn]] void RefuseCommand(const CLI::App& app, const std::string& word);
