// What a command line has given, and what of it goes together. Knows no command by name.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "commands.h"

// What the parser fills in.
struct Arguments {
  EvaluateRequest evaluate;
  ReadingRequest reading;
  BatchRequest batch;
  CodecRequest codec;
  std::string against;
  std::string against_file;
  std::string window;
  std::vector<std::string> texts;  // of -e
  std::string file;                // of -f
  std::string format = "hex";
  bool is_batch = false;
  bool no_verify = false;
  bool fixes = false;
  std::vector<std::string> marked;  // what stands behind "--"; the parser does not see it
};

/// The texts of a command, those of -e first. They are taken from what the parser leaves over, not
/// as an option, since as a list it would take "[1]" apart. What looks like an option is a text
/// behind "--" alone. This function and the others refuse wrong usage.
std::vector<std::string> TextsOf(const CLI::App& command, const Arguments& arguments);

/// Where lines come from; empty if there are texts.
std::string InputOf(const CLI::App& command, const Arguments& arguments,
                    const std::vector<std::string>& texts);

/// Standard input can be read once.
void CheckInput(const CLI::App& command, const std::string& input_path, const ScopeRequest& scope);

/// Refuses files that do not go together, or with the texts.
void CheckPages(const CLI::App& command, const ReadingRequest& request);

/// "1000-1063", "1000-" or "1000".
ByteRange WindowOf(const CLI::App& command, const std::string& words);
