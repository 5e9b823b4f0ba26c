// Refusals, each with the words for a person.
#include "arguments.h"

#include <charconv>
#include <cstdint>

#include "terminal.h"
#include "usage.h"

std::vector<std::string> TextsOf(const CLI::App& command, const Arguments& arguments) {
  std::vector<std::string> texts = arguments.texts;
  for (const std::string& text : command.remaining()) {
    CheckNoOption(command, text, "a text that begins with - stands behind --");
    texts.push_back(text);
  }
  texts.insert(texts.end(), arguments.marked.begin(), arguments.marked.end());
  return texts;
}

void CheckInput(const CLI::App& command, const std::string& input_path, const ScopeRequest& scope) {
  if (input_path == "-" && scope.path == "-") {
    RefuseUsage(command, "texts and --scope - cannot both come from standard input");
  }
}

std::string InputOf(const CLI::App& command, const Arguments& arguments,
                    const std::vector<std::string>& texts) {
  const bool has_texts = !texts.empty(), has_file = !arguments.file.empty();
  if (int{has_texts} + int{has_file} + int{arguments.is_batch} > 1) {
    RefuseUsage(command, "give texts, -f or --batch, and one of them alone");
  }
  if (has_texts || has_file) return arguments.file;
  if (!arguments.is_batch && IsInputTerminal()) {
    RefuseUsage(command, "give texts, -f FILE, or --batch to type them");
  }
  return "-";
}

void CheckPages(const CLI::App& command, const ReadingRequest& request) {
  const PageRequest& pages = request.pages;
  if (!pages.svg_path.empty() && (request.texts.size() != 1 || !request.input_path.empty())) {
    RefuseUsage(command, "--svg draws one text; --html takes any number");
  }
  if (pages.svg_path == "-" && pages.html_path == "-") {
    RefuseUsage(command, "--svg and --html cannot both go to standard output");
  }
  if (pages.is_asked_for() && request.as_json) {
    RefuseUsage(command, "--json does not go with --svg and --html");
  }
}

ByteRange WindowOf(const CLI::App& command, const std::string& words) {
  std::size_t first = 0, last = 0;
  const char* end = words.data() + words.size();
  auto [at, error] = std::from_chars(words.data(), end, first);
  last = first;
  if (error == std::errc() && at != end && *at == '-') {
    last = SIZE_MAX - 1;
    if (++at != end) {
      const auto rest = std::from_chars(at, end, last);
      at = rest.ptr;
      error = rest.ec;
    }
  }
  if (error != std::errc() || at != end || last < first || last == SIZE_MAX) {
    RefuseUsage(command, "--bytes is FIRST-LAST, such as 1000-1063");
  }
  return {first, last - first + 1};
}
