// Names and values from JSON (docs/scope-file.md) and from the command line, into a Scope. Knows
// nothing of expressions.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "json_text.h"
#include "scope.h"

/// Where the names of an evaluation come from. Those of the command line hide those of the file.
struct ScopeRequest {
  std::string path;                 // a scope file, "-" for standard input; empty for none
  std::vector<std::string> tokens;  // "size=8", "order=[1,2,3]"
  std::vector<std::string> fields;  // "id=0x0ABC/12", "fuses=0x11,0x22"; a name again: more rows
  // How they are written, for complaints about them.
  std::string token_form = "; as in -t size=8 or -t order=[1,2,3]";
  std::string field_form = "; as in -d id=0x0ABC/12 or -d fuses=0x11,0x22";
};

/// Adds all that is asked for. Throws Failure, with kScopeFile or, of the command line, kUsage.
void LoadScope(const ScopeRequest& request, Scope* scope);

/// Why a value cannot be used, and the way to it.
struct JsonRefusal {
  JsonPath path;
  std::string reason;
};

/// Adds what a value holds that has the form of a scope file. Throws JsonRefusal.
void ReadScope(const nlohmann::json& value, Scope* scope);
