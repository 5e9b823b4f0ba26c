// The subjects of a run. Each file of subjects adds its own to the list; making a subject's texts
// and buffers waits until it is run, as some are large.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "measure.h"
#include "report.h"

namespace zrt_bench {

struct Subject {
  std::string id;     // of its row, as the table of aims knows it
  std::string title;  // the text that is evaluated, or what is done
  std::function<Row(const Subject&, const Effort&)> run;
  bool is_timed = false;  // run in each pass, keeping the least times; else in the first alone
};

using Subjects = std::vector<Subject>;

/// A subject whose contestants are timed; `make` makes them, the library first.
inline Subject Timed(std::string id, std::string title,
                     std::function<std::vector<Contestant>()> make) {
  return {std::move(id), std::move(title),
          [make = std::move(make)](const Subject& subject, const Effort& effort) {
            const std::vector<Contestant> contestants = make();
            return TimedRow(subject.id, subject.title, contestants, Measure(contestants, effort));
          },
          true};
}

// In the order of the table.
void AddScalars(Subjects* subjects);    // S
void AddBits(Subjects* subjects);       // B1 to B8
void AddBitTexts(Subjects* subjects);   // B9 to B11, H1, H2
void AddRunLength(Subjects* subjects);  // H4, H5
void AddGroups(Subjects* subjects);     // G1
void AddGrowth(Subjects* subjects);     // G2
void AddMemory(Subjects* subjects);     // G3
void AddOutside(Subjects* subjects);    // D
void AddTools(Subjects* subjects);      // L

}  // namespace zrt_bench
