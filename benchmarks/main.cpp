// The benchmark program: runs the subjects that the arguments name and reports. What is measured is
// told in the files of subjects, what is aimed at in aims.h.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <regex>

#include "memory_subjects.h"
#include "picture.h"
#include "subject.h"

namespace zrt_bench {

namespace {

struct Arguments {
  bool is_quick = false;
  std::string filter;
  std::string json_path;
  std::string picture_path;
  std::vector<std::size_t> peak_memory;  // a shape and a length: what the child process is asked
};

Subjects AllSubjects() {
  Subjects subjects;
  AddScalars(&subjects);
  AddBits(&subjects);
  AddBitTexts(&subjects);
  AddRunLength(&subjects);
  AddGroups(&subjects);
  AddGrowth(&subjects);
  AddMemory(&subjects);
  AddOutside(&subjects);
#if defined(ZRT_BENCH_TO_ZRTEVAL)
  AddTools(&subjects);
#endif
  return subjects;
}

void ShowProgress(const std::string& step) {
  if (isatty(STDERR_FILENO) != 0) std::cerr << "\r\033[K" << step << std::flush;
}

Subjects Selected(const std::string& filter) {
  const std::regex pattern(filter);
  Subjects subjects = AllSubjects();
  std::erase_if(subjects, [&pattern](const Subject& subject) {
    return !std::regex_search(subject.id + " " + subject.title, pattern);
  });
  if (subjects.empty()) throw std::runtime_error("no subject is named like " + filter);
  return subjects;
}

Row RunOne(const Subject& subject, const Effort& effort, const std::string& progress) {
  ShowProgress(progress + " " + subject.id + " " + subject.title);
  try {
    return subject.run(subject, effort);
  } catch (const std::exception& error) {
    ShowProgress("");
    throw std::runtime_error(subject.id + " " + subject.title + ": " + error.what());
  }
}

// The first pass makes the rows, the others better their times.
void RunPass(int pass, const Subjects& subjects, const Effort& effort, std::vector<Row>* rows) {
  const std::string progress =
      "pass " + std::to_string(pass) + " of " + std::to_string(effort.pass_count);
  for (std::size_t i = 0; i < subjects.size(); ++i) {
    if (pass == 1) {
      rows->push_back(RunOne(subjects[i], effort, progress));
    } else if (subjects[i].is_timed) {
      (*rows)[i].KeepLeast(RunOne(subjects[i], effort, progress));
    }
  }
}

std::vector<Row> RunAll(const Subjects& subjects, const Effort& effort) {
  std::vector<Row> rows;
  for (int pass = 1; pass <= effort.pass_count; ++pass) RunPass(pass, subjects, effort, &rows);
  ShowProgress("");
  return rows;
}

void Run(const Arguments& arguments) {
  const Effort effort = arguments.is_quick ? Effort::Quick() : Effort::Full();
  const std::vector<Row> rows = RunAll(Selected(arguments.filter), effort);
  PrintTable(rows, std::cout);
  if (!arguments.json_path.empty()) WriteJson(rows, arguments.json_path);
  const bool has_lines =
      std::any_of(rows.begin(), rows.end(), [](const Row& row) { return !row.lines.empty(); });
  if (!arguments.picture_path.empty() && has_lines) WritePicture(rows, arguments.picture_path);
}

int RunCommandLine(int argc, char** argv) {
  Arguments arguments;
  CLI::App app("Times the library beside its peers and its limits.", "zrt_bench");
  app.add_flag("--quick", arguments.is_quick, "Fewer rounds, and no growing text above 4 MiB");
  app.add_option("--filter", arguments.filter, "Only rows whose name and subject match this")
      ->type_name("REGEX");
  app.add_option("--json", arguments.json_path, "Where to write the figures")->type_name("FILE");
  app.add_option("--svg", arguments.picture_path, "Where to write the picture")->type_name("FILE");
  app.add_option("--peak-memory", arguments.peak_memory)->expected(2)->group("");
  CLI11_PARSE(app, argc, argv);
  if (!arguments.peak_memory.empty()) {
    return PrintPeakMemory(arguments.peak_memory[0], arguments.peak_memory[1]);
  }
  Run(arguments);
  return 0;
}

}  // namespace

}  // namespace zrt_bench

int main(int argc, char** argv) {
  try {
    return zrt_bench::RunCommandLine(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "zrt_bench: " << error.what() << '\n';
    return 1;
  }
}
