// The utility library's contract: text operations, chains of byte blocks, the error list and
// record, a tree of objects by name, digit functions. This is a stand-in: it does all that the
// contract promises, and the evaluator relies on nothing else. It knows nothing of expressions,
// tokens or data fields.
//
// Each class shows its contract first. What stands below "Host side" is this stand-in's own, for
// programs that build and inspect objects; a library that only evaluates must not rely on it.
// No operation of the contract throws. No class takes a lock. What is owned is deleted by plain
// destructors: the header of the standard library's owning pointers costs a host's compiler as much
// as all that stands here.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#define ZRT_OUTSIDE_EXPORT __attribute__((visibility("default")))
#define ZRT_OUTSIDE_HIDDEN __attribute__((visibility("hidden")))

/// Operations on NUL-terminated texts; positions count from 0, a blank is the space alone. `dst`
/// and `src` may be one buffer. Counts and starts outside the text are taken to its nearest end.
class ZRT_OUTSIDE_EXPORT LString {
 public:
  /// The first position of what is looked for (ReverseFindOneOf: the last), or -1.
  int Find(const char* text, char c);
  int Find(const char* text, const char* sub);
  int FindOneOf(const char* text, const char* set);
  int ReverseFindOneOf(const char* text, const char* set);

  /// The first `n` characters, the last `n`, and `n` from `start` on.
  void Left(char* dst, const char* src, int n);
  void Right(char* dst, const char* src, int n);
  void Mid(char* dst, const char* src, int start, int n);

  /// Drops leading, trailing blanks in place.
  void TrimLeft(char* text);
  void TrimRight(char* text);
};

// Made so by the contract: blocks are deleted by their own type.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// A chain of byte blocks, held by its head; an index counts from the block called through the
/// chain. A block grows in one piece if its head was made without a size, and else holds exactly
/// that size; a block that another follows is full. A chain holds up to 2147483647 bytes, as many
/// as an index reaches. An object allocates nothing before its first byte or its second block.
/// Pointers to later blocks are valid until the chain ends or is cleared. Several threads may read
/// a chain that nobody changes. The destructor is not virtual: delete a block by its own type.
class ZRT_OUTSIDE_EXPORT LByteBuffer {
 public:
  LByteBuffer() noexcept;

  /// A block of `size` bytes, 4 at least.
  explicit LByteBuffer(int size) noexcept;

  /// The same bytes in blocks of its own; empty if memory runs out.
  LByteBuffer(const LByteBuffer& other) noexcept;

  /// Afterwards both refer to the same blocks: a write through one is seen through the other, and
  /// the last owner frees them. An object that has had neither byte nor second block has nothing to
  /// share: both are empty then and go their own ways. Only whole chains are shared: a block that
  /// AllocateNewBlock() made gives a copy of the bytes from it on, and assigning to it does
  /// nothing.
  LByteBuffer& operator=(const LByteBuffer& other) noexcept;

  ~LByteBuffer();

  /// Appends an empty block of this block's kind at the chain's end, with room for 4 bytes at
  /// least; null if memory runs out or the chain can hold no more.
  virtual LByteBuffer* AllocateNewBlock();

  /// Appends the bytes of `source`, which may be of this chain; as many as find memory.
  virtual void CopyBlock(LByteBuffer* source);

  /// The last block of the chain that `from` is part of.
  LByteBuffer* GetLastBlock(LByteBuffer* from);

  /// Appends a byte to this block. Returns 0 if the block is full or cannot grow, else 1.
  int WriteData(unsigned char b) {
    Block* block = block_;
    if (block == nullptr || block->end == block->limit) return WriteSlowly(b);
    unsigned char* const end = block->end;  // kept and stored last: the byte may alias the members
    *end = b;
    block->end = end + 1;
    return 1;
  }

  /// Replaces a stored byte. Returns 0 if `index` is outside the stored bytes, else 1.
  int WriteData(int index, unsigned char b) {
    unsigned char* place = Find(index);
    if (place == nullptr) return 0;
    *place = b;
    return 1;
  }

  /// A stored byte, 0 outside the stored bytes.
  unsigned char ReadData(int index) {
    const unsigned char* place = Find(index);
    return place == nullptr ? static_cast<unsigned char>(0) : *place;
  }

  /// This block's bytes, null or not if there are none, and their count.
  unsigned char* GetDataBlock() { return block_ == nullptr ? nullptr : block_->data; }
  int GetDataSize() { return block_ == nullptr ? 0 : block_->size(); }

  /// The bytes from this block on through the chain.
  unsigned int GetTotalSize();

  /// Empties this block, keeping the memory of its bytes, and frees the blocks behind it.
  void ClearBuffer();

  // ---- Host side -----------------------------------------------------------------------------

  /// Appends the first k of `count` bytes to this block and returns k, which is less than `count`
  /// only if the block is full then or memory runs out. `bytes` may lie in the block itself.
  std::size_t AppendData(const unsigned char* bytes, std::size_t count);

  /// Room behind this block's bytes, for `count` bytes or more that are to be appended: filled
  /// first and then handed to AppendData(), they are not copied. Moves no byte, so it is empty if a
  /// block with bytes has less room; or if another block follows, or memory runs out.
  std::span<unsigned char> RoomToAppend(std::size_t count);

  /// Appends behind the last block of the chain, making new blocks as blocks fill up. False if
  /// memory runs out or the chain can hold no more; the bytes that found room stay. `bytes` may lie
  /// in the chain itself.
  bool Append(std::span<const unsigned char> bytes);

  /// Gives every LByteBuffer that is made without a size from now on blocks of `size` bytes (4 at
  /// least) that are full then; 0 goes back to growing. For tests that need chains. Any thread.
  static void SetDefaultBlockSize(int size) noexcept;
  static int GetDefaultBlockSize() noexcept;

 private:
  // The blocks of a chain: the heads that share it own it, and the last one deletes it.
  struct ZRT_OUTSIDE_HIDDEN Chain;
  struct ZRT_OUTSIDE_HIDDEN Link;  // a block behind the head, with the object to reach it through

  // Where bytes are found by a shift: the blocks at a chain's front that others follow, as far as
  // they are as large as the first, if that is a power of two.
  struct ZRT_OUTSIDE_HIDDEN EvenBlocks {
    unsigned char* const* data = nullptr;
    unsigned int shift = 0;  // each has 2 to the power of this bytes
    std::size_t bytes = 0;   // in all of them; 0 if their size is no power of two
  };

  struct ZRT_OUTSIDE_HIDDEN Block {
    explicit Block(Chain* holder) noexcept;
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;
    ~Block() { delete[] data; }

    [[nodiscard]] int size() const { return static_cast<int>(end - data); }        // bytes
    [[nodiscard]] int capacity() const { return static_cast<int>(limit - data); }  // bytes

    unsigned char* data = nullptr;   // owned
    unsigned char* end = nullptr;    // of the bytes
    unsigned char* limit = nullptr;  // of the memory; the bytes' end once another block follows
    int start = 0;                   // bytes in the blocks before it
    std::size_t ordinal = 0;         // its place in the chain
    Chain* chain;
    EvenBlocks even;  // of a head; none of a later block
  };

  LByteBuffer(Block* block, int block_size) noexcept : block_(block), block_size_(block_size) {}

  unsigned char* Find(int index) {
    if (block_ == nullptr) return nullptr;
    const std::size_t place = static_cast<unsigned int>(index);  // of a negative one: behind all
    if (place < static_cast<std::size_t>(block_->end - block_->data)) {
      return &block_->data[place];
    }
    const EvenBlocks& even = block_->even;
    if (place >= even.bytes) return FindElsewhere(place);
    return even.data[place >> even.shift] + (place & ((std::size_t{1} << even.shift) - 1));
  }

  unsigned char* FindElsewhere(std::size_t place);
  int WriteSlowly(unsigned char b);
  bool IsLink() const { return block_ != nullptr && chain_ == nullptr; }
  ZRT_OUTSIDE_HIDDEN int MostBytes() const;
  ZRT_OUTSIDE_HIDDEN bool EnsureChain();
  ZRT_OUTSIDE_HIDDEN bool AppendChain(const LByteBuffer& source);
  ZRT_OUTSIDE_HIDDEN void Share(const LByteBuffer* other) noexcept;

  Chain* chain_ = nullptr;  // shared; null in a later block: its chain holds it
  Block* block_ = nullptr;  // null before the first byte
  int block_size_;          // bytes of each block, 0 if blocks grow
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

/// The base of what trees store and hosts delete.
class ZRT_OUTSIDE_EXPORT LObject {
 public:
  LObject() = default;
  LObject(const LObject&) = default;
  LObject& operator=(const LObject&) = default;
  virtual ~LObject();
};

/// An entry of the error list.
class ZRT_OUTSIDE_EXPORT ErrorElement {
 public:
  char* GetErrorMessage() { return message_.data(); }
  // NOLINTNEXTLINE(readability-make-member-function-const): no caller is to rely on it
  unsigned short GetErrorField() { return field_; }

  // ---- Host side -----------------------------------------------------------------------------

  ErrorElement(std::string message, unsigned short field)
      : message_(std::move(message)), field_(field) {}

 private:
  std::string message_;
  unsigned short field_;
};

/// The error list and the record of the last error.
///
/// The list is a text file with an entry a line: code, category, 16-bit field and message,
/// separated by blanks or tabs. The message is the rest of the line.
///
///   # The statuses of the evaluator.
///   -500   8  1  The directory cannot be entered.
///   65030  8  1  Two operators have nothing between them.
///
/// A code is a signed status or its low 16 bits: -32768 to 65535. Category and field are 0 to
/// 65535. Empty lines and lines that begin with "#" are skipped, a CR at a line's end is dropped. A
/// line has up to 65536 characters, the file up to 16777216.
class ZRT_OUTSIDE_EXPORT ErrorHandler : public LObject {
 public:
  ErrorHandler();
  ErrorHandler(const ErrorHandler&) = delete;
  ErrorHandler& operator=(const ErrorHandler&) = delete;
  ~ErrorHandler() override;

  /// The directory of the list; null or empty is the current one. Copied.
  void SetDefaultDir(const char* dir);

  /// Replaces the list by that of `file` in the default directory. Entries of every category are
  /// kept, since a lookup names its category: `category` selects nothing. On failure the list
  /// loaded before stays. Returns 0, or kListUnreadable or kListWrongLine.
  int Initialize(char* file, int category);

  /// The entry of that code and category, or null. Valid until the next Initialize().
  ErrorElement* GetErrorElement(unsigned short code, unsigned short category);

  /// Records a copy of `text`; null, and a text that finds no memory, make the record empty.
  void SetErrorOccured(char* text);

  // ---- Host side -----------------------------------------------------------------------------

  static constexpr int kListUnreadable = -1;  // no such file, a read error, too long, no memory
  static constexpr int kListWrongLine = -2;   // too long, no entry, or code and category are taken

  /// The text recorded last, empty if there is none.
  const char* GetErrorText() const { return record_.c_str(); }

  /// Why the last Initialize() failed: the number of the wrong line, counted from 1 (0 if no line
  /// is to blame), and a text with line and reason, empty if nothing failed.
  int GetErrorLine() const { return error_line_; }
  const char* GetListError() const { return list_error_.c_str(); }

 private:
  struct ZRT_OUTSIDE_HIDDEN List;

  std::optional<std::string> default_dir_ = std::string();  // empty only if memory ran out
  List* list_ = nullptr;                                    // owned; null before one is loaded
  std::string record_;
  std::string list_error_;
  int error_line_ = 0;
};

/// A node of an RBTree: the object that is stored under a name.
class ZRT_OUTSIDE_EXPORT RBTreeNode {
 public:
  LObject* GetObject() { return object_; }

  // ---- Host side -----------------------------------------------------------------------------

  /// Takes over an object that was made by new.
  explicit RBTreeNode(LObject* object) noexcept : object_(object) {}
  RBTreeNode(const RBTreeNode&) = delete;
  RBTreeNode& operator=(const RBTreeNode&) = delete;
  ~RBTreeNode() { delete object_; }

 private:
  LObject* object_;
};

/// A red-black tree of objects by name, as std::map is one. It owns the objects; it cannot be
/// copied.
class ZRT_OUTSIDE_EXPORT RBTree {
 public:
  RBTree() = default;
  RBTree(const RBTree&) = delete;
  RBTree& operator=(const RBTree&) = delete;

  /// The node of that name, or null. A search from any node goes through the whole tree; from null
  /// it finds nothing.
  RBTreeNode* Search(RBTreeNode* from, char* key) { return from == nullptr ? nullptr : Find(key); }

  /// A node to search from; null in an empty tree.
  RBTreeNode* GetRoot() { return nodes_.empty() ? nullptr : &nodes_.begin()->second; }

 protected:
  /// The node of that name, or null. Many texts that are looked up are literals: they fail at once,
  /// since hardly a name begins like one.
  RBTreeNode* Find(const char* name) const {
    if (name == nullptr) return nullptr;
    auto* const likely = likely_[static_cast<unsigned char>(*name)];
    if (likely == nullptr) return nullptr;
    return std::strcmp(likely->first.c_str(), name) == 0 ? &likely->second : FindNode(name);
  }

  /// For trees of one kind of object: stores `object`, which was made by new, under `name`, which
  /// no node has yet. Throws std::bad_alloc with the tree unchanged; then the object stays the
  /// caller's.
  void Insert(const char* name, LObject* object);

 private:
  RBTreeNode* FindNode(std::string_view name) const;

  using Nodes = std::map<std::string, RBTreeNode, std::less<>>;

  mutable Nodes nodes_;  // a tree that nobody changes hands out objects that somebody may change
  // By the first character, that of the empty name being its terminator: one that begins so.
  std::array<Nodes::value_type*, 256> likely_{};
};

/// Copies, appends `n` characters of `src` from position `m` on, terminated; `n` 0 takes them all.
ZRT_OUTSIDE_EXPORT void util_strncpy(char* dst, const char* src, int n, int m);
ZRT_OUTSIDE_EXPORT void util_strncpy(char* dst, char* src, int n, int m);
ZRT_OUTSIDE_EXPORT void util_strncat(char* dst, const char* src, int n, int m);
ZRT_OUTSIDE_EXPORT void util_strncat(char* dst, char* src, int n, int m);

/// The digit of 0 to 15, in capitals (the low four bits of other values); the value of a digit in
/// either case, 0 for any other character.
ZRT_OUTSIDE_EXPORT char util_Hex2HexAnsi(unsigned char v);
ZRT_OUTSIDE_EXPORT unsigned char util_HexAnsi2Hex(char c);
