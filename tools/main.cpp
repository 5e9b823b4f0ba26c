// zrteval: the evaluator at a command line. Here every failure turns into a message and an exit
// status.
#include <exception>
#include <iostream>
#include <new>

#include "command_line.h"
#include "output.h"
#include "terminal.h"

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  std::cin.tie(nullptr);
  SurviveClosedPipes();
  try {
    return RunCommandLine({argv + 1, argv + argc});
  } catch (const Failure& failure) {
    Complain(failure);
    return failure.exit_code;
  } catch (const std::bad_alloc&) {
    Complain("memory has run out");
  } catch (const std::exception& error) {
    Complain(error.what());
  }
  return kInputOutput;
}
