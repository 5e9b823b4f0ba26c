// The values of bits that wait in a walk for what comes before them. It knows nothing of operators.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

#include "bits/bit_value.h"
#include "bits/word.h"
#include "solve/small_stack.h"

namespace zrt {

/// A stack as SmallStack is. A value that lies deep in it is kept as a word, if it is one, in a
/// quarter of its memory, since each piece of a long text may leave one: (#101)@(#101)@...
///
/// `Solved` holds the value and nothing else. A reference to an element lasts until the next Push
/// or Drop. Throws std::bad_alloc from Push alone; nothing but the end of the stack may follow.
template <class Solved>
class WaitingValues {
 public:
  WaitingValues() noexcept = default;
  WaitingValues(const WaitingValues&) = delete;
  WaitingValues& operator=(const WaitingValues&) = delete;
  ~WaitingValues() {
    while (top_ > bottom_) std::destroy_at(&At(--top_));
  }

  Solved& Top() { return At(top_ - 1); }

  /// The element that lies `depth` below the top one, less than kReach.
  Solved& Below(std::size_t depth) { return At(top_ - 1 - depth); }

  Solved& Push() {
    if (top_ - bottom_ == kWholeCount) PutAway();
    return *::new (static_cast<void*>(&At(top_++))) Solved();
  }

  void Drop() {
    std::destroy_at(&At(--top_));
    if (top_ - bottom_ < kReach && bottom_ > 0) FetchBack();
  }

 private:
  static constexpr std::size_t kWholeCount = 64;
  static constexpr std::size_t kReach = 3;                     // a middle and its sides
  static constexpr std::uint32_t kNoWord = ~std::uint32_t{0};  // as a count of bytes

  Solved& At(std::size_t index) { return reinterpret_cast<Solved*>(whole_)[index % kWholeCount]; }

  // The lowest value that is kept whole.
  void PutAway() {
    BitValue& value = At(bottom_).value;
    BitWord& word = words_.Push();
    if (value.is_word()) {
      word = value.word();
    } else {
      word.byte_count = kNoWord;
      others_.Push() = std::move(value);
    }
    std::destroy_at(&At(bottom_));
    ++bottom_;
  }

  void FetchBack() {
    --bottom_;
    BitValue& value = (::new (static_cast<void*>(&At(bottom_))) Solved())->value;
    if (words_.Top().byte_count == kNoWord) {
      value = std::move(others_.Top());
      others_.Drop();
    } else {
      value.Set(words_.Top());
    }
    words_.Drop();
  }

  std::size_t top_ = 0;     // elements
  std::size_t bottom_ = 0;  // those below it are put away
  SmallStack<BitWord, kWholeCount> words_;
  SmallStack<BitValue, 2> others_;
  alignas(Solved) std::byte whole_[sizeof(Solved) * kWholeCount];  // uninitialised, for time
};

}  // namespace zrt
