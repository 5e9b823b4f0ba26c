// Work in a process of its own, which Ctrl-C or a time limit ends without harm to this one: an
// evaluation cannot be stopped from outside, nor given back its memory, in any other way.
#pragma once

#include <functional>
#include <string>

enum class ApartEnd { kDone, kInterrupted, kTooLong, kDied };

/// Runs `work` in a child process with a copy of all that this one holds, and waits. What it
/// returns comes back in `result`; what it prints, it prints. An exception that leaves it is told
/// of on standard error, and it is kDied. `most_milliseconds` 0: no limit. CatchInterrupts() must
/// have been called. Throws Failure if there can be no further process.
ApartEnd RunApart(const std::function<std::string()>& work, int most_milliseconds,
                  std::string* result);
