// What a run found out: a row a subject, printed as one table and kept as JSON. Knows nothing of
// how a subject is run.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "measure.h"

namespace zrt_bench {

enum class Unit { kSeconds, kBytes, kCount };

/// A peer, or a limit, beside the library.
struct Rival {
  std::string name;
  Role role = Role::kPeer;
  double amount = 0;
  double ratio = 0;           // the library's amount by this one's
  std::optional<double> aim;  // the ratio at most

  bool IsMet() const { return !aim || ratio <= *aim; }
};

/// The time of one contestant over the size of its subject.
struct Line {
  std::string name;
  Role role = Role::kLibrary;
  std::vector<std::pair<double, double>> points;  // bytes, seconds
};

struct Row {
  std::string id;
  std::string subject;
  Unit unit = Unit::kSeconds;
  double amount = 0;
  std::vector<Rival> rivals;
  std::string panel;        // of the picture; empty if this row has no lines
  std::vector<Line> lines;  // of growing subjects

  bool IsMet() const;
  const Rival* BestPeer() const;
  const Rival* Limit() const;

  /// Takes the lesser times from another run of the same row.
  void KeepLeast(const Row& again);

  /// Adds a rival with the aim that the table of aims has for it.
  void AddRival(const std::string& name, Role role, double rival_amount, double ratio);
};

/// The row of contestants that have been timed, the library first.
Row TimedRow(std::string id, std::string subject, const std::vector<Contestant>& contestants,
             const std::vector<double>& seconds);

/// The machine and the compiler, a line each, without any name of a host.
std::vector<std::string> Surroundings();

void PrintTable(const std::vector<Row>& rows, std::ostream& out);
void WriteJson(const std::vector<Row>& rows, const std::string& path);

/// "43 ns", "1.25 ms", "12 MiB", "3".
std::string Shown(double amount, Unit unit);

}  // namespace zrt_bench
