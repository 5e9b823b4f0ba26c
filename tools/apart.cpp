// One for POSIX systems. The child ends without destructors and buffers that belong to this
// process.
#include "apart.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <exception>
#include <iostream>
#include <new>

#include "files.h"
#include "output.h"
#include "terminal.h"

namespace {

void WriteAll(int file, const std::string& bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const ssize_t count = write(file, bytes.data() + done, bytes.size() - done);
    if (count > 0) done += static_cast<std::size_t>(count);
    if (count < 0 && errno != EINTR) return;
  }
}

[[noreturn]] void WorkAndEnd(const std::function<std::string()>& work, int file) {
  static_cast<void>(std::signal(SIGINT, SIG_DFL));
  int status = 1;
  try {
    const std::string result = work();
    std::cout.flush();
    WriteAll(file, result);
    status = 0;
  } catch (const Failure& failure) {
    Complain(failure);
  } catch (const std::bad_alloc&) {
    Complain("memory has run out");
  } catch (const std::exception& error) {
    Complain(error.what());
  }
  std::cout.flush();
  std::cerr.flush();
  _exit(status);
}

// Reads until the other end is closed, or it is time to end the child.
ApartEnd ReadAll(int file, int most_milliseconds, std::string* result) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::milliseconds(most_milliseconds);
  std::array<char, 65536> buffer{};
  while (true) {
    int wait = -1;
    if (most_milliseconds > 0) {
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
      if (left <= 0) return ApartEnd::kTooLong;
      wait = static_cast<int>(left);
    }
    pollfd input = {file, POLLIN, 0};
    const int ready = poll(&input, 1, wait);
    if (TakeInterrupt()) return ApartEnd::kInterrupted;
    if (ready <= 0) continue;
    const ssize_t count = read(file, buffer.data(), buffer.size());
    if (count == 0) return ApartEnd::kDone;
    if (count > 0) result->append(buffer.data(), static_cast<std::size_t>(count));
  }
}

}  // namespace

ApartEnd RunApart(const std::function<std::string()>& work, int most_milliseconds,
                  std::string* result) {
  result->clear();
  std::cout.flush();
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) throw Failure{kInputOutput, std::strerror(errno)};
  const pid_t child = fork();
  if (child < 0) {
    const int error = errno;
    close(ends[0]);
    close(ends[1]);
    throw Failure{kInputOutput, std::strerror(error)};
  }
  if (child == 0) {
    close(ends[0]);
    WorkAndEnd(work, ends[1]);
  }
  close(ends[1]);
  ApartEnd end = ReadAll(ends[0], most_milliseconds, result);
  close(ends[0]);
  if (end != ApartEnd::kDone) kill(child, SIGKILL);
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) continue;
  if (end != ApartEnd::kDone) return end;
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) {
    TakeInterrupt();
    return ApartEnd::kInterrupted;
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? ApartEnd::kDone : ApartEnd::kDied;
}
