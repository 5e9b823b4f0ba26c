// A stack whose first elements live inside the object, so that short texts cost no allocation and
// deep ones cost heap, not native stack. It knows nothing of what it holds.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace zrt {

/// Elements move when the stack outgrows its room: a reference lasts until the next Push. Throws
/// std::bad_alloc from Push alone, which then leaves the stack as it was.
template <class T, std::size_t kInlineCount>
class SmallStack {
 public:
  SmallStack() noexcept : data_(Inline()) {}
  SmallStack(const SmallStack&) = delete;
  SmallStack& operator=(const SmallStack&) = delete;
  ~SmallStack() {
    std::destroy_n(data_, size_);
    Free();
  }

  [[nodiscard]] bool empty() const { return size_ == 0; }
  [[nodiscard]] std::size_t size() const { return size_; }
  T& operator[](std::size_t index) { return data_[index]; }
  const T& operator[](std::size_t index) const { return data_[index]; }
  T& Top() { return data_[size_ - 1]; }

  void Push(T&& element) {
    if (size_ == capacity_) Grow();
    ::new (static_cast<void*>(data_ + size_)) T(std::move(element));
    ++size_;
  }

  T Pop() {
    T element = std::move(Top());
    Drop(1);
    return element;
  }

  void Drop(std::size_t count) {
    std::destroy_n(data_ + (size_ - count), count);
    size_ -= count;
  }

 private:
  T* Inline() { return reinterpret_cast<T*>(inline_); }

  void Grow() {
    const std::size_t capacity = capacity_ * 2;
    T* data = std::allocator<T>().allocate(capacity);
    std::uninitialized_move_n(data_, size_, data);
    std::destroy_n(data_, size_);
    Free();
    data_ = data;
    capacity_ = capacity;
  }

  void Free() {
    if (data_ != Inline()) std::allocator<T>().deallocate(data_, capacity_);
  }

  T* data_;
  std::size_t size_ = 0;
  std::size_t capacity_ = kInlineCount;
  alignas(T) std::byte inline_[sizeof(T) * kInlineCount];  // left uninitialised: it would cost time
};

}  // namespace zrt
