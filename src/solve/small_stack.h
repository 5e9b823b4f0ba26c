// A stack whose first elements live inside the object, so that short texts cost no allocation and
// deep ones cost heap, not native stack. It knows nothing of what it holds.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace zrt {

/// Elements stay where they are put: a reference lasts until its element is dropped. They stand in
/// rooms, each twice as large as the one below it, so that a deep text touches no page of memory
/// for elements that only move. Throws std::bad_alloc from Push alone, which then changes nothing.
template <class T, std::size_t kInlineCount>
class SmallStack {
 public:
  SmallStack() noexcept : begin_(RoomAt(0)), top_(begin_), end_(begin_ + SizeOf(0)) {}
  SmallStack(const SmallStack&) = delete;
  SmallStack& operator=(const SmallStack&) = delete;
  ~SmallStack() {
    while (!empty()) Drop();
    if (has_spare_) Free(1);
  }

  [[nodiscard]] bool empty() const { return top_ == begin_; }  // only the inline room is ever empty
  T& Top() { return top_[-1]; }

  /// The element that lies `depth` below the top one, at most kInlineCount.
  T& Below(std::size_t depth) {
    const auto above = static_cast<std::size_t>(top_ - begin_);
    return depth < above ? *(top_ - 1 - depth)
                         : *(RoomAt(level_ - 1) + SizeOf(level_ - 1) - 1 - (depth - above));
  }

  void Push(T&& element) {
    if (top_ == end_) Climb();
    ::new (static_cast<void*>(top_)) T(std::move(element));
    ++top_;
  }

  void Drop() {
    std::destroy_at(--top_);
    if (top_ == begin_ && level_ > 0) Descend();
  }

  T Pop() {
    T element = std::move(Top());
    Drop();
    return element;
  }

 private:
  static constexpr std::size_t kMaxRooms = 32;  // they hold more than a text has characters
  static constexpr std::size_t SizeOf(std::size_t level) { return kInlineCount << level; }

  T* RoomAt(std::size_t level) {
    return level == 0 ? reinterpret_cast<T*>(inline_) : rooms_[level - 1];
  }

  void Enter(std::size_t level) {
    level_ = level;
    begin_ = RoomAt(level);
    end_ = begin_ + SizeOf(level);
  }

  void Climb() {
    if (!has_spare_) rooms_[level_] = std::allocator<T>().allocate(SizeOf(level_ + 1));
    has_spare_ = false;
    Enter(level_ + 1);
    top_ = begin_;
  }

  // Keeps the emptied room, for a text that goes up and down across its edge.
  void Descend() {
    if (has_spare_) Free(level_ + 1);
    has_spare_ = true;
    Enter(level_ - 1);
    top_ = end_;
  }

  void Free(std::size_t level) { std::allocator<T>().deallocate(RoomAt(level), SizeOf(level)); }

  T* begin_;  // of the room of the top element
  T* top_;    // one behind the top element
  T* end_;
  std::size_t level_ = 0;
  bool has_spare_ = false;  // the room above this one is there, empty
  // From level 1 on. Neither this nor the inline room is initialised: it would cost time.
  std::array<T*, kMaxRooms> rooms_;
  alignas(T) std::byte inline_[sizeof(T) * kInlineCount];
};

}  // namespace zrt
