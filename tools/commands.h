// The commands of zrteval, each with its request. None knows the command line.
#pragma once

#include <string>
#include <vector>

#include "files.h"
#include "output.h"

enum class ValueKind { kInt, kFloat, kBits };

struct EvaluateRequest {
  ValueKind kind = ValueKind::kInt;
  std::vector<std::string> texts;
  bool batch = false;      // one text a line from standard input instead of `texts`
  std::string scope_path;  // empty for no scope
  std::string data_dir;    // see Explainer
  BitFormat format = BitFormat::kHex;
  bool with_length = false;  // the bit length behind each vector
  bool fresh_rows = false;   // every field at its first row before each text
};

/// Prints each value to standard output and each failure to standard error, and goes on.
/// Throws Failure for a wrong scope file, and if reading or writing fails.
ExitCode Evaluate(const EvaluateRequest& request);

struct CodecRequest {
  std::string input_path;  // "-" for a standard stream
  std::string output_path = "-";
  bool verify = true;    // read the text back and compare before it is written
  std::string data_dir;  // see Explainer
};

/// Writes the file's bytes as text that decodes to the same bytes. Throws Failure.
ExitCode Encode(const CodecRequest& request);

/// Writes the bytes of the bit vector that the file's text stands for. Throws Failure.
ExitCode Decode(const CodecRequest& request);
