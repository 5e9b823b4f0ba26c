// Wrong usage and help in words for a person: what the argument parser says is put in plain
// English, and its help is laid out with the usage on top. Knows no command by name.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

/// Help of one command: usage, description, options, and the footer with examples.
class HelpLayout : public CLI::Formatter {
 public:
  /// `forms` are what may stand behind the program's name, a line each.
  explicit HelpLayout(const std::vector<std::string>& forms);

  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode mode) const override;

 private:
  std::string usage_;
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
