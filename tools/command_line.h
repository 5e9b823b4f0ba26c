// The command line: options and arguments in, a request to one of the commands out.
#pragma once

#include <string>
#include <vector>

#include "files.h"

/// Does what the words behind the program's name ask for. Throws Failure.
ExitCode RunCommandLine(std::vector<std::string> words);
