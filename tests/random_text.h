// Random texts of the language over the names that RichWorld holds: right ones and wrong ones, of
// every operator, and no result of more than some hundred bytes.
#pragma once

#include <array>
#include <random>
#include <string>

// NOLINTBEGIN(misc-no-recursion): three levels of groups
class RandomText {
 public:
  explicit RandomText(unsigned seed) : random_(seed) {}

  /// Counts of replications end a text, so that no other value becomes one.
  std::string operator()(int depth = 3) {
    const bool joins = Below(2) == 0;
    std::string text = Operand(depth);
    for (std::size_t count = Below(5); count > 0; --count) {
      text += joins ? Pick(kJoining) : Pick(kCalculating);
      text += Operand(depth);
    }
    return text + (Below(4) == 0 ? Pick(kCounts) : "");
  }

 private:
  std::size_t Below(std::size_t bound) { return random_() % bound; }

  template <std::size_t kCount>
  using Words = std::array<const char*, kCount>;
  static constexpr Words<8> kJoining = {"@", "@", " @ ", "&", "|", ",", "<<2@", "$"};
  static constexpr Words<12> kCalculating = {"+", "-", "*", "/",  "%",  "&",
                                             "|", ">", ",", "<<", ">>", " - "};
  static constexpr Words<4> kCounts = {"^2", "^n", " ^ 3", "^(5)"};
  static constexpr Words<6> kUnary = {"~", "!", "$", "x+~", "2-!", "0x1@~"};
  static constexpr Words<24> kOperands = {
      "n",    "neg",    "n",       "t[1]",     "10",     "2.5",           "f",          "t[n-1]",
      "A",    "B",      "hidden",  "Long",     "0x1234", "#101",          "0xABCDEF01", "3",
      "Less", "B[n+1]", "ID_MASK", "Spare[1]", "#1",     "FuseArray_TDO", "None",       "x"};

  template <std::size_t kCount>
  std::string Pick(const Words<kCount>& words) {
    return words.at(Below(kCount));
  }

  std::string Operand(int depth) {
    const std::size_t choice = Below(depth > 0 ? 24 : 15);
    if (choice < 13) return Pick(kOperands);
    if (choice == 13) return "0x" + std::string(2 * Below(40), 'C');
    if (choice == 14) return "t[" + std::string(Below(200), '0') + "1]";
    if (choice < 17) return Pick(kUnary).append(Operand(depth - 1));
    return "(" + (*this)(depth - 1) + ")";
  }

  std::mt19937 random_;
};
// NOLINTEND(misc-no-recursion)
