// The options that several commands share: how they are named and told, and where their values go.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "commands.h"
#include "usage.h"

/// Adds a command. What it leaves over of the words behind it is looked through afterwards.
CLI::App* AddCommand(CLI::App* app, const std::string& name, const std::string& description,
                     const CommandHelp& help);

/// --version, and the exit statuses at the end of the help.
void AddCommonHelp(CLI::App* app, const CommandHelp& help);

/// --scope, -t and -d.
void AddScopeOptions(CLI::App* command, ScopeRequest* request);

/// --data-dir.
void AddDataDir(CLI::App* command, std::string* data_dir);

/// --max-bits.
void AddMaxBits(CLI::App* command, int* max_bits);

/// An option that may be given again and again, each time with a value that may be any text.
CLI::Option* AddRepeatable(CLI::App* command, const std::string& name,
                           std::vector<std::string>* values, const std::string& description);

/// Joins each option of AddRepeatable() in `words` to a value behind it that begins with "-", which
/// the parser would take for an option.
void JoinValues(std::vector<std::string>* words);
