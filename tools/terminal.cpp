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
  const char* terminal = std::getenv("TERM");
  return isatty(file) != 0 && terminal != nullptr && std::string_view(terminal) != "dumb";
}

Style StyleOf(int file) {
  Style style;
  style.is_colored = WantsColor(file);
  winsize size{};
  // NOLINTNEXTLINE(*-pro-type-vararg): the system has no other way to ask
  if (isatty(file) != 0 && ioctl(file, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
    style.columns = size.ws_col;
  }
  return style;
}

}  // namespace

void ChooseColoring(Coloring coloring) { Chosen() = coloring; }

Style OutputStyle() { return StyleOf(STDOUT_FILENO); }
Style ErrorStyle() { return StyleOf(STDERR_FILENO); }

bool IsInputTerminal() { return isatty(STDIN_FILENO) != 0; }
bool IsErrorTerminal() { return isatty(STDERR_FILENO) != 0; }

bool IsOutputClosed() {
  pollfd output = {STDOUT_FILENO, 0, 0};
  return poll(&output, 1, 0) == 1 && (output.revents & POLLERR) != 0;
}

void SurviveClosedPipes() { static_cast<void>(std::signal(SIGPIPE, SIG_IGN)); }
