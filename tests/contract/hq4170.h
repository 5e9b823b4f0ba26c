// The utility library as its contract has it and nothing more: what compiles and runs with it uses
// the contract alone. Where the contract leaves a value open, the stand-ins' one is not taken. What
// the library has no use for is missing; what a name here ends in "_" is the host's.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "environment.h"

// Nobody is to rely on what could be const; settings are for the tests' program as a whole.
// NOLINTBEGIN(readability-make-member-function-const,*-avoid-non-const-global-variables)
// NOLINTBEGIN(readability-identifier-naming)

struct LString {
  int Find(const char* text, char c) {
    const char* found = std::strchr(text, c);
    return found ? static_cast<int>(found - text) : -9;
  }
  void Left(char* dst, const char* src, int n) {
    const std::string part(src, static_cast<std::size_t>(n));
    dst[part.copy(dst, part.size())] = '\0';
  }
};

class LByteBuffer {
 public:
  LByteBuffer() : LByteBuffer(default_size_) {}
  explicit LByteBuffer(int size) : block_(std::make_shared<Block>()) {
    block_->bytes.reserve(static_cast<std::size_t>(std::max(size, 4)));
  }
  // NOLINTNEXTLINE(misc-no-recursion): as deep as the chain is long, and those here are short
  LByteBuffer(const LByteBuffer& other) : LByteBuffer() {
    block_->bytes = other.block_->bytes;
    if (other.block_->next) block_->next = std::make_unique<LByteBuffer>(*other.block_->next);
  }
  LByteBuffer& operator=(const LByteBuffer&) = default;  // the same blocks for both
  ~LByteBuffer() = default;

  virtual LByteBuffer* AllocateNewBlock() {
    if (stores_.IsRefused()) return nullptr;
    return (GetLastBlock(this)->block_->next = std::make_unique<LByteBuffer>()).get();
  }
  virtual void CopyBlock(LByteBuffer* /*source*/) { std::abort(); }  // nobody calls it

  LByteBuffer* GetLastBlock(LByteBuffer* from) {
    if (from != this) std::abort();
    while (from->block_->next) from = from->block_->next.get();
    return from;
  }
  int WriteData(unsigned char b) {
    if (stores_.IsRefused() || block_->bytes.size() == block_->bytes.capacity()) return 0;
    block_->bytes.push_back(b);
    return -1;
  }
  int WriteData(int index, unsigned char b) {
    unsigned char* place = Find(index);
    if (place) *place = b;
    return place ? 256 : 0;
  }
  unsigned char ReadData(int index) {
    const unsigned char* place = Find(index);
    return place ? *place : 0xEE;
  }
  unsigned char* GetDataBlock() { return block_->bytes.data(); }
  int GetDataSize() { return static_cast<int>(block_->bytes.size()); }
  unsigned int GetTotalSize() {
    unsigned int size = 0;
    for (LByteBuffer* block = this; block; block = block->block_->next.get()) {
      size += static_cast<unsigned int>(block->GetDataSize());
    }
    return size;
  }
  void ClearBuffer() {
    block_->bytes.clear();
    block_->next.reset();
  }

  static inline int default_size_ = 8;  // bytes
  static inline Supply stores_;         // of bytes and blocks

 private:
  struct Block {
    std::vector<unsigned char> bytes;  // as many as it has been reserved for
    std::unique_ptr<LByteBuffer> next;
  };

  unsigned char* Find(int index) {
    for (LByteBuffer* at = this; at && index >= 0; at = at->block_->next.get()) {
      if (index < at->GetDataSize()) return &at->block_->bytes[static_cast<std::size_t>(index)];
      index -= at->GetDataSize();
    }
    return nullptr;
  }

  std::shared_ptr<Block> block_;
};

struct LObject {
  virtual ~LObject() = default;
};

struct ErrorElement {
  char* GetErrorMessage() { return message_.data(); }
  unsigned short GetErrorField() { return 7; }
  std::string message_;
};

// The list is what the host puts into it; reading it only tells how reading goes.
struct ErrorHandler : LObject {
  void SetDefaultDir(const char* dir) { dir_ = dir; }
  int Initialize(char* file, int category) {
    request_ = dir_ + "/" + file + " " + std::to_string(category);
    return list_status_;
  }
  ErrorElement* GetErrorElement(unsigned short code, unsigned short category) {
    const auto found = list_.find({code, category});
    return found == list_.end() ? nullptr : &found->second;
  }
  void SetErrorOccured(char* text) { record_ = text; }

  static inline int list_status_ = 3;
  std::string dir_, request_, record_;
  std::map<std::pair<unsigned, unsigned>, ErrorElement> list_;
};

struct RBTreeNode {
  void* GetObject() { return object_.get(); }
  std::string key_;
  std::shared_ptr<void> object_;
  std::unique_ptr<RBTreeNode> next_;
};

struct RBTree {
  RBTreeNode* Search(RBTreeNode* from, char* key) {
    while (from && from->key_ != key) from = from->next_.get();
    return from;
  }
  RBTreeNode* GetRoot() { return root_.get(); }
  std::unique_ptr<RBTreeNode> root_;
};

inline void util_strncpy(char* dst, const char* src, int n, int m) {
  const std::string part(src + m);
  dst[part.copy(dst, n == 0 ? part.size() : static_cast<std::size_t>(n))] = '\0';
}
inline char util_Hex2HexAnsi(unsigned char v) { return "0123456789abcdef"[v]; }

// NOLINTEND(readability-identifier-naming)
// NOLINTEND(readability-make-member-function-const,*-avoid-non-const-global-variables)
