// Rounds of turns. What is kept is the least time of each contestant: a disturbance only ever adds
// to a time, so the least of many is what repeats best on a machine that has other work to do.
#include "measure.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <limits>
#include <stdexcept>

namespace zrt_bench {

namespace {

// Processor time of this thread, its page faults included; turns of other processes are not in it.
double Now() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double SecondsOf(const Contestant& contestant, std::size_t count) {
  const double start = Now();
  contestant.repeat(count);
  return Now() - start;
}

// How often a contestant does its work in one turn, from the time of doing it once.
std::size_t TurnCount(const Contestant& contestant, double seconds, double turn_seconds) {
  constexpr std::size_t kMost = std::size_t{1} << 30U;
  std::size_t count = 1;
  while (seconds < turn_seconds / 4 && count < kMost) {
    count *= 2;
    seconds = SecondsOf(contestant, count);
  }
  const double turns = turn_seconds / std::max(seconds, 1e-9);
  return std::max<std::size_t>(1, static_cast<std::size_t>(static_cast<double>(count) * turns));
}

std::string Shown(const std::string& value) {
  constexpr std::size_t kLongest = 40;
  return std::to_string(value.size()) + " characters, " + value.substr(0, kLongest);
}

// Does each work once, and gives the seconds that this took.
std::vector<double> CheckValues(const std::vector<Contestant>& contestants) {
  std::vector<double> seconds;
  std::string expected;
  const Contestant* first = nullptr;
  for (const Contestant& contestant : contestants) {
    seconds.push_back(SecondsOf(contestant, 1));
    if (!contestant.value) continue;
    const std::string value = contestant.value();
    if (first == nullptr) {
      first = &contestant;
      expected = value;
    } else if (value != expected) {
      throw std::runtime_error(first->name + " gives " + Shown(expected) + ", but " +
                               contestant.name + " gives " + Shown(value));
    }
  }
  return seconds;
}

}  // namespace

std::vector<double> Measure(const std::vector<Contestant>& contestants, const Effort& effort) {
  const std::vector<double> once = CheckValues(contestants);
  std::vector<std::size_t> counts;
  for (std::size_t i = 0; i < contestants.size(); ++i) {
    counts.push_back(TurnCount(contestants[i], once[i], effort.turn_seconds));
  }
  std::vector<double> least(contestants.size(), std::numeric_limits<double>::infinity());
  const auto start = std::chrono::steady_clock::now();
  const std::chrono::duration<double> longest(effort.subject_seconds);
  for (int round = 0;; ++round) {
    const auto elapsed = std::chrono::steady_clock::now() - start;
    if (round >= effort.fewest_rounds && elapsed > longest) break;
    for (std::size_t i = 0; i < contestants.size(); ++i) {
      const double seconds = SecondsOf(contestants[i], counts[i]) / static_cast<double>(counts[i]);
      least[i] = std::min(least[i], seconds);
    }
  }
  return least;
}

}  // namespace zrt_bench
