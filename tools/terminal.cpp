// One for systems with terminals and pipes as POSIX tells of them.
#include "terminal.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string_view>

namespace {

Coloring& Chosen() {
  static Coloring chosen = Coloring::kAuto;
  return chosen;
}

bool WantsColor(int file) {
  if (Chosen() != Coloring::kAuto) return Chosen() == Coloring::kAlways;
  const char* no_color = std::getenv("NO_COLOR");
  if (no_color != nullptr && *no_color != '\0') return false;
  return isatty(file) != 0 && CanMoveCursor();
}

Style StyleOf(int file) {
  Style style;
  style.is_colored = WantsColor(file);
  winsize size{};
  // NOLINTNEXTLINE(*-pro-type-vararg): the system has no other way to ask
  if (isatty(file) != 0 && ioctl(file, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
    style.columns = size.ws_col;
    style.wraps = true;
  }
  return style;
}

// NOLINTNEXTLINE(*-avoid-non-const-global-variables): a signal has nowhere else to leave a word
volatile std::sig_atomic_t interrupted = 0;

void NoteInterrupt(int /*signal*/) { interrupted = 1; }

}  // namespace

bool CanMoveCursor() {
  const char* terminal = std::getenv("TERM");
  return terminal != nullptr && std::string_view(terminal) != "dumb";
}

void ChooseColoring(Coloring coloring) { Chosen() = coloring; }

Style OutputStyle() { return StyleOf(STDOUT_FILENO); }
Style ErrorStyle() { return StyleOf(STDERR_FILENO); }

bool IsInputTerminal() { return isatty(STDIN_FILENO) != 0; }
bool IsOutputTerminal() { return isatty(STDOUT_FILENO) != 0; }
bool IsErrorTerminal() { return isatty(STDERR_FILENO) != 0; }

bool IsOutputClosed() {
  pollfd output = {STDOUT_FILENO, 0, 0};
  return poll(&output, 1, 0) == 1 && (output.revents & POLLERR) != 0;
}

void SurviveClosedPipes() { static_cast<void>(std::signal(SIGPIPE, SIG_IGN)); }

void CatchInterrupts() {
  struct sigaction action {};
  action.sa_handler = NoteInterrupt;  // without SA_RESTART: waiting ends
  sigaction(SIGINT, &action, nullptr);
}

bool TakeInterrupt() {
  const bool was_interrupted = interrupted != 0;
  interrupted = 0;
  return was_interrupted;
}

void ReturnInterrupt() { interrupted = 1; }
