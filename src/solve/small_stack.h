// A stack whose first elements live inside the object, so that short texts cost no allocation and
// deep ones cost heap, not native stack. It knows nothing of what it holds.
//
// Its memory is a list of segments, the first of them inside the object, each twice as large as the
// one before. A vector would move all elements each time it grows, which touches twice the memory
// that a deep text needs: half of the time of a text of 64 MiB went into page faults then.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

#include "bits/huge_pages.h"

namespace zrt {

/// Elements stay where they are put: a reference lasts until its element is dropped. Throws
/// std::bad_alloc from Push alone, which then changes nothing.
template <class T, std::size_t kInlineCount>
class SmallStack {
 public:
  SmallStack() noexcept : begin_(SegmentAt(0)), top_(begin_), end_(begin_ + SizeOf(0)) {}
  SmallStack(const SmallStack&) = delete;
  SmallStack& operator=(const SmallStack&) = delete;
  ~SmallStack() {
    while (!empty()) Drop();
    if (has_spare_) Free(1);
  }

  [[nodiscard]] bool empty() const { return top_ == begin_; }  // only the inline one is ever empty
  [[nodiscard]] bool is_full() const { return top_ == end_; }  // more elements take more memory
  T& Top() { return top_[-1]; }

  /// The element that lies `depth` below the top one, at most kInlineCount.
  T& Below(std::size_t depth) {
    const auto above = static_cast<std::size_t>(top_ - begin_);
    return depth < above ? *(top_ - 1 - depth)
                         : *(SegmentAt(level_ - 1) + SizeOf(level_ - 1) - 1 - (depth - above));
  }

  /// Puts a new element on top, made in its place.
  T& Push() {
    if (top_ == end_) Climb();
    T* const element = ::new (static_cast<void*>(top_)) T();
    ++top_;
    return *element;
  }

  void Drop() {
    std::destroy_at(--top_);
    if (top_ == begin_ && level_ > 0) Descend();
  }

 private:
  static constexpr std::size_t kMaxSegments =
      32;  // they hold more elements than a text has characters
  static constexpr std::size_t SizeOf(std::size_t level) { return kInlineCount << level; }

  T* SegmentAt(std::size_t level) {
    return level == 0 ? reinterpret_cast<T*>(inline_) : segments_[level - 1];
  }

  void Enter(std::size_t level) {
    level_ = level;
    begin_ = SegmentAt(level);
    end_ = begin_ + SizeOf(level);
  }

  void Climb() {
    if (!has_spare_) {
      const std::size_t count = SizeOf(level_ + 1);
      segments_[level_] = std::allocator<T>().allocate(count);
      PreferHugePages(segments_[level_], count * sizeof(T));
    }
    has_spare_ = false;
    Enter(level_ + 1);
    top_ = begin_;
  }

  // Keeps the emptied segment, for a text that goes up and down across its edge.
  void Descend() {
    if (has_spare_) Free(level_ + 1);
    has_spare_ = true;
    Enter(level_ - 1);
    top_ = end_;
  }

  void Free(std::size_t level) { std::allocator<T>().deallocate(SegmentAt(level), SizeOf(level)); }

  T* begin_;  // of the segment of the top element
  T* top_;    // one behind the top element
  T* end_;
  std::size_t level_ = 0;
  bool has_spare_ = false;  // the segment above this one is there, empty
  // From level 1 on. Neither this nor the inline segment is initialised: it would cost time.
  std::array<T*, kMaxSegments> segments_;
  alignas(T) std::byte inline_[sizeof(T) * kInlineCount];
};

}  // namespace zrt
