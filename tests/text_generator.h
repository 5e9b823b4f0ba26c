// Texts of the expression language by the rules of grammar.txt, right ones and damaged ones, from
// any source of numbers. The same numbers give the same texts everywhere; numbers that run out into
// zeros end a text soon. Knows of no evaluator.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#ifndef ZRT_TESTS
#define ZRT_TESTS "tests"
#endif

class TextGenerator {
 public:
  explicit TextGenerator(std::function<std::uint64_t()> source) : source_(std::move(source)) {
    std::ifstream file(ZRT_TESTS "/grammar.txt");
    for (std::string line; std::getline(file, line);) {
      if (!line.empty() && line[0] != '#') AddRule(line);
    }
  }

  /// A text that suits one of the evaluators, most of the time; every third is damaged.
  std::string Text() {
    text_.clear();
    words_left_ = Below(32) == 31 ? 2000 : 10 + Below(150);
    Put("text");
    for (std::size_t count = Below(3) == 2 ? 1 + Below(3) : 0; count > 0; --count) Damage();
    return text_;
  }

  /// One of which no replication fills the memory.
  std::string BoundedText() {
    while (!IsBounded(Text())) {
    }
    return text_;
  }

  /// A number below `limit`, which is above 0.
  std::size_t Below(std::size_t limit) { return static_cast<std::size_t>(source_() % limit); }

 private:
  using Words = std::vector<std::string>;

  // There are three replications at most, by less than ten. Beside a group or a unary operator the
  // count may be all the rest.
  static bool IsBounded(const std::string& text) {
    const bool is_flat = text.find_first_of("(~!$") == std::string::npos;
    const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
    std::size_t count = 0;
    for (std::size_t i = 0; (i = text.find('^', i)) != std::string::npos; ++count) {
      i = std::min(text.find_first_not_of(' ', i + 1), text.size());
      if (count == 3 || !is_digit(text.c_str()[i])) return false;
      const char next = text.c_str()[i + 1];
      if (is_digit(next) || (!is_flat && next != ')' && next != '\0')) return false;
    }
    return true;
  }

  void AddRule(const std::string& line) {
    std::size_t end = line.find(' ');
    std::vector<Words>& alternatives = rules_[line.substr(0, end)];
    while (end < line.size()) {
      const std::size_t start = line.find_first_not_of(' ', end);
      end = std::min(line.find("  ", start), line.size());
      std::istringstream words(line.substr(start, end - start));
      alternatives.emplace_back(std::istream_iterator<std::string>(words),
                                std::istream_iterator<std::string>());
    }
  }

  // NOLINTNEXTLINE(misc-no-recursion): each call takes one of the words that are left
  void Put(const std::string& word) {
    const auto rule = rules_.find(word);
    if (rule == rules_.end()) {
      text_ += word == "BLANK" ? " " : word == "TAB" ? "\t" : word == "NONE" ? "" : word;
      return;
    }
    words_left_ -= words_left_ > 0 ? 1 : 0;
    for (const std::string& each : rule->second[words_left_ > 0 ? Below(rule->second.size()) : 0]) {
      Put(each);
    }
  }

  // A character goes, comes, is doubled or changes places with the next.
  void Damage() {
    constexpr std::string_view kCharacters = "()()[][]~!$<>,+-*/%&|@^eE.#0x1A  \t\x80";
    const std::size_t place = text_.empty() ? 0 : Below(text_.size());
    const std::size_t choice = text_.empty() ? 1 : Below(4);
    if (choice == 0) text_.erase(place, 1);
    if (choice == 1) text_.insert(place, 1, kCharacters[Below(kCharacters.size())]);
    if (choice == 2) text_.insert(place, 1, text_[place]);
    if (choice == 3 && place + 1 < text_.size()) std::swap(text_[place], text_[place + 1]);
  }

  std::function<std::uint64_t()> source_;
  std::map<std::string, std::vector<Words>, std::less<>> rules_;
  std::string text_;
  std::size_t words_left_ = 0;
};
