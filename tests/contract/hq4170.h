// The utility library as its contract has it and nothing more: what compiles and runs with it uses
// the contract alone. Where the contract leaves a value open, the stand-ins' one is not taken. What
// is private is for ContractHost, which the tests define; what is only declared the library has no
// use for.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

struct ContractHost;

// Nobody is to rely on what could be const; settings are for the tests' program as a whole.
// NOLINTBEGIN(readability-make-member-function-const,*-avoid-non-const-global-variables)

class LString {
 public:
  int Find(const char* text, char c) {
    const char* found = std::strchr(text, c);
    return found ? static_cast<int>(found - text) : -9;
  }
  int Find(const char* text, const char* sub);
  int FindOneOf(const char* text, const char* set);
  int ReverseFindOneOf(const char* text, const char* set);
  void Left(char* dst, const char* src, int n) {
    const std::string part(src, static_cast<std::size_t>(n));
    dst[part.copy(dst, part.size())] = '\0';
  }
  void Right(char* dst, const char* src, int n);
  void Mid(char* dst, const char* src, int start, int n);
  void TrimLeft(char* text);
  void TrimRight(char* text);
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
    if (IsRefused()) return nullptr;
    Block& last = *GetLastBlock(this)->block_;
    last.next = std::make_unique<LByteBuffer>();
    return last.next.get();
  }
  virtual void CopyBlock(LByteBuffer* /*source*/) { std::abort(); }  // nobody calls it

  LByteBuffer* GetLastBlock(LByteBuffer* from) {
    if (from != this) std::abort();
    while (from->block_->next) from = from->block_->next.get();
    return from;
  }
  int WriteData(unsigned char b) {
    if (IsRefused() || block_->bytes.size() == block_->bytes.capacity()) return 0;
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
    std::size_t size = 0;
    for (const LByteBuffer* at = this; at; at = at->block_->next.get()) {
      size += at->block_->bytes.size();
    }
    return static_cast<unsigned int>(size);
  }
  void ClearBuffer() {
    block_->bytes.clear();
    block_->next.reset();
  }

 private:
  friend struct ContractHost;

  struct Block {
    std::vector<unsigned char> bytes;  // as many as it has been reserved for
    std::unique_ptr<LByteBuffer> next;
  };

  static bool IsRefused() {
    ++call_count_;
    return call_count_ >= first_refused_ && call_count_ <= last_refused_;
  }
  unsigned char* Find(int index) {
    for (LByteBuffer* at = this; at && index >= 0; at = at->block_->next.get()) {
      if (index < at->GetDataSize()) return &at->block_->bytes[static_cast<std::size_t>(index)];
      index -= at->GetDataSize();
    }
    return nullptr;
  }

  static constexpr long kNever = std::numeric_limits<long>::max();
  static inline int default_size_ = 8;  // bytes
  static inline long call_count_ = 0, first_refused_ = kNever, last_refused_ = kNever;

  std::shared_ptr<Block> block_;
};

class LObject {
 public:
  virtual ~LObject() = default;
};

class ErrorElement {
 public:
  char* GetErrorMessage() { return message_.data(); }
  unsigned short GetErrorField() { return field_; }

 private:
  friend struct ContractHost;
  std::string message_;
  unsigned short field_ = 0;
};

// The list is what the host puts into it; reading it only tells how reading goes.
class ErrorHandler : public LObject {
 public:
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

 private:
  friend struct ContractHost;
  static inline int list_status_ = 3;
  std::string dir_, request_, record_;
  std::map<std::pair<unsigned, unsigned>, ErrorElement> list_;
};

class RBTreeNode {
 public:
  void* GetObject() { return object_; }

 private:
  friend struct ContractHost;
  friend class RBTree;
  std::string key_;
  void* object_ = nullptr;
  RBTreeNode* next_ = nullptr;
};

class RBTree {
 public:
  RBTreeNode* Search(RBTreeNode* from, char* key) {
    while (from && from->key_ != key) from = from->next_;
    return from;
  }
  RBTreeNode* GetRoot() { return root_; }

 private:
  friend struct ContractHost;
  RBTreeNode* root_ = nullptr;
};

inline void util_strncpy(char* dst, const char* src, int n, int m) {
  const std::string part(src + m);
  dst[part.copy(dst, n == 0 ? part.size() : static_cast<std::size_t>(n))] = '\0';
}
void util_strncpy(char* dst, char* src, int n, int m);
void util_strncat(char* dst, const char* src, int n, int m);
void util_strncat(char* dst, char* src, int n, int m);
inline char util_Hex2HexAnsi(unsigned char v) { return "0123456789abcdef"[v]; }
unsigned char util_HexAnsi2Hex(char c);

// NOLINTEND(readability-make-member-function-const,*-avoid-non-const-global-variables)
