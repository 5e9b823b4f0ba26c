// The platform's calls for the process's current directory. A platform that lacks them under these
// names gets them from the shim beside the stand-ins.
#pragma once

// The names are the platform's, underscore and all.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" char* _getcwd(char* buffer, int size);
extern "C" int _chdir(const char* path);
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
