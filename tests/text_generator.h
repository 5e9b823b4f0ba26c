// Texts of the expression language by the rules of grammar.txt, right ones and damaged ones, from
// any source of numbers. The same numbers give the same texts everywhere; numbers that run out into
// zeros end a text soon. Knows of no evaluator.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <functional>
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
  /// Texts come to an end about where they have so many words.
  explicit TextGenerator(std::function<std::uint64_t()> source, std::size_t most_words = 2000)
      : source_(std::move(source)), most_words_(most_words) {
    std::ifstream file(ZRT_TESTS "/grammar.txt");
    for (std::string line; std::getline(file, line);) {
      if (!line.empty() && line[0] != '#') AddRule(line);
    }
  }

  /// A text that suits one of the evaluators, most of the time; every third is damaged.
  std::string Text() {
    text_.clear();
    words_left_ = std::min(Below(32) == 31 ? 2000 : 10 + Below(150), most_words_);
    Put(words_["text"]);
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
  // It stands for one of the alternatives, or for its text if it has none.
  struct Word {
    std::string text;
    std::vector<std::vector<const Word*>> alternatives;
  };

  // There are three replications at most, by less than ten, not by 0x1, which is 2 to the power 24.
  // Beside a group or a unary operator the count may be all the rest.
  static bool IsBounded(const std::string& text) {
    const bool is_flat = text.find_first_of("(~!$") == std::string::npos;
    const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
    std::size_t count = 0;
    for (std::size_t i = 0; (i = text.find('^', i)) != std::string::npos; ++count) {
      i = std::min(text.find_first_not_of(' ', i + 1), text.size());
      if (count == 3 || !is_digit(text.c_str()[i])) return false;
      const char next = text.c_str()[i + 1];
      if (is_digit(next) || next == 'x' || (!is_flat && next != ')' && next != '\0')) return false;
    }
    return true;
  }

  void AddRule(const std::string& line) {
    std::size_t end = line.find(' ');
    auto& alternatives = words_[line.substr(0, end)].alternatives;
    while (end < line.size()) {
      const std::size_t start = line.find_first_not_of(' ', end);
      end = std::min(line.find("  ", start), line.size());
      std::istringstream words(line.substr(start, end - start));
      alternatives.emplace_back();
      for (std::string word; words >> word;) {
        words_[word].text = word == "BLANK"  ? " "
                            : word == "TAB"  ? "\t"
                            : word == "NONE" ? ""
                                             : word;
        alternatives.back().push_back(&words_[word]);
      }
    }
  }

  // NOLINTNEXTLINE(misc-no-recursion): each call takes one of the words that are left
  void Put(const Word& word) {
    if (word.alternatives.empty()) {
      text_ += word.text;
      return;
    }
    words_left_ -= words_left_ > 0 ? 1 : 0;
    const std::size_t choice = words_left_ > 0 ? Below(word.alternatives.size()) : 0;
    for (const Word* each : word.alternatives[choice]) Put(*each);
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
  std::map<std::string, Word> words_;
  std::string text_;
  std::size_t most_words_;
  std::size_t words_left_ = 0;
};
