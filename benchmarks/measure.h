// Times contestants beside each other: the same work done by this library, by its peers and by the
// limit, in turns, so that what else the machine does hits them alike. Knows nothing of what the
// work is.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zrt_bench {

/// What a contestant stands for: the library, what others use for the work, or what bounds it.
enum class Role { kLibrary, kPeer, kLimit };

/// One way to do a subject's work.
struct Contestant {
  std::string name;
  Role role = Role::kLibrary;
  std::function<void(std::size_t count)> repeat;  // does the work `count` times
  std::function<std::string()> value;  // what came of it; all that tell one agree. May be null.
};

/// A contestant whose work is one call of `work`.
template <typename Work>
Contestant MakeContestant(std::string name, Role role, Work work,
                          std::function<std::string()> value) {
  return {std::move(name), role,
          [work](std::size_t count) mutable {
            for (; count > 0; --count) {
              work();
              benchmark::ClobberMemory();
            }
          },
          std::move(value)};
}

/// The contestants of a subject, the library first.
template <typename... Others>
std::vector<Contestant> Contest(Contestant library, Others... others) {
  std::vector<Contestant> contestants;
  contestants.push_back(std::move(library));
  (contestants.push_back(std::move(others)), ...);
  return contestants;
}

/// How long to measure. The whole list is gone through several times, since a machine that others
/// use can be slow for longer than a subject takes.
struct Effort {
  int pass_count = 0;
  double turn_seconds = 0;     // of one contestant, if its work is shorter than that
  double subject_seconds = 0;  // of all turns in a pass, if the fewest rounds are no longer
  int fewest_rounds = 0;
  std::size_t longest_text_bytes = 0;  // of the growing subjects

  static Effort Quick() { return {2, 0.0005, 0.2, 1, std::size_t{4} << 20U}; }
  static Effort Full() { return {3, 0.002, 1.3, 2, std::size_t{64} << 20U}; }
};

/// Checks that all contestants give one value; throws std::runtime_error if they do not. Then times
/// them. Gives the least seconds of processor time that each of them took for its work once.
std::vector<double> Measure(const std::vector<Contestant>& contestants, const Effort& effort);

}  // namespace zrt_bench
