// The commands of zrteval, each with its request. None knows the command line.
#pragma once

#include <climits>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "files.h"
#include "hints.h"
#include "output.h"
#include "scope_file.h"
#include "vector_image.h"
#include "zrtexpression/trace.h"

/// Asks a person on the terminal for texts and commands until the end of input.
ExitCode Talk();

/// What each evaluation is done with.
struct Setting {
  ScopeRequest scope;
  std::string data_dir;    // see Explainer
  int max_bits = INT_MAX;  // of a value
};

struct EvaluateRequest {
  Setting setting;
  zrt::ValueKind kind = zrt::ValueKind::kInteger;
  std::vector<std::string> texts;
  std::string input_path;  // if not empty: one text a line from there, "-" being standard input
  BitFormat format = BitFormat::kHex;
  bool with_length = false;  // the bit length behind each vector
  bool fresh_rows = false;   // every field at its first row before each text
  bool as_json = false;      // an object for each text, to standard output alone
};

/// Prints each value to standard output and each failure to standard error, and goes on.
/// Throws Failure for a wrong scope file, and if reading or writing fails.
ExitCode Evaluate(const EvaluateRequest& request);

struct BatchRequest {
  Setting setting;
  std::string input_path;  // "-" for standard input
};

/// Reads an object from each line, with a text, its kind, and maybe a scope, and prints an object
/// with the value or the failure for each, in order. Each text begins with the first row of each
/// field, so that its answer depends on its own line alone. Throws as Evaluate().
ExitCode EvaluateObjects(const BatchRequest& request);

/// Files for pictures, "-" for standard output; empty for none. With one, nothing is printed.
struct PageRequest {
  std::string svg_path;   // of one text
  std::string html_path;  // of any number
  [[nodiscard]] bool is_asked_for() const { return !svg_path.empty() || !html_path.empty(); }
};

/// What explain, check, names and show are asked.
struct ReadingRequest {
  Setting setting;
  zrt::ValueKind kind = zrt::ValueKind::kInteger;
  std::vector<std::string> texts;
  std::string input_path;  // as in EvaluateRequest
  bool as_json = false;
  PageRequest pages;                      // of explain and show
  std::function<void(Scope*)> add_names;  // further ones, which hide those of the setting
  const char* names_from = kOptionNames;  // what gives them, for hints
};

/// Prints how each text is read, and what comes of it step by step. Throws as Evaluate().
ExitCode Explain(const ReadingRequest& request);

/// Prints what of each text is read otherwise than it looks, and why it fails if it does. Ends with
/// kExpressionFailed if there is any of it. Throws as Evaluate().
ExitCode Check(const ReadingRequest& request);

/// Prints each text as it is to be written so that ordinary precedence is what the language reads.
/// Ends with kExpressionFailed if there is no such text. Throws as Evaluate().
ExitCode Mend(const ReadingRequest& request);

/// Prints the names that each text uses. Ends with kExpressionFailed if one is not known, or a text
/// cannot be cut. Throws as Evaluate().
ExitCode ListNames(const ReadingRequest& request);

struct ShowRequest {
  ReadingRequest reading;
  std::optional<std::string> against;  // each text is compared with this one
  std::optional<ByteRange> window;     // the bytes to show; all of them if missing
};

/// Prints a picture of each bit vector. Throws as Evaluate().
ExitCode Show(const ShowRequest& request);

struct CodecRequest {
  std::string input_path;  // "-" for a standard stream
  std::string output_path = "-";
  bool verify = true;      // read the text back and compare before it is written
  std::string data_dir;    // see Explainer
  int max_bits = INT_MAX;  // of a decoded value
};

/// Writes the file's bytes as text that decodes to the same bytes. Throws Failure.
ExitCode Encode(const CodecRequest& request);

/// Writes the bytes of the bit vector that the file's text stands for. Throws Failure.
ExitCode Decode(const CodecRequest& request);
