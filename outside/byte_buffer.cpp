// Chains of byte blocks. A chain keeps its blocks in an array in their order, so that finding a
// byte is a guess at the block read last and a binary search if that fails, and so that no number
// of blocks makes freeing them recurse. It does not know what the bytes mean.
#include <algorithm>
#include <atomic>
#include <climits>
#include <new>
#include <utility>
#include <vector>

#include "hq4170.h"

namespace {

constexpr int kSmallestBlock = 4;   // bytes: callers write so many without looking
constexpr int kFirstCapacity = 32;  // bytes of a growing block

// The one setting that objects share, as hosts set it for a whole run.
std::atomic<int> default_block_size{0};  // NOLINT(*-avoid-non-const-global-variables)

int FixedSize(int size) { return std::max(size, kSmallestBlock); }

}  // namespace

// A block behind the head, with the object through which callers reach it.
struct LByteBuffer::Link {
  explicit Link(int block_size) : handle(&block, block_size) {}

  Block block;
  LByteBuffer handle;
};

struct LByteBuffer::Chain {
  Chain() { first.chain = this; }

  Block& At(int ordinal) {
    return ordinal == 0 ? first : links[static_cast<std::size_t>(ordinal) - 1]->block;
  }
  Block& Last() { return links.empty() ? first : links.back()->block; }

  LByteBuffer* Append(int block_size) {
    links.push_back(std::make_unique<Link>(block_size));
    const auto ordinal = static_cast<int>(links.size());
    Block& before = At(ordinal - 1);
    before.limit = before.size;
    Block& added = links.back()->block;
    added.ordinal = ordinal;
    added.start = before.start + static_cast<std::size_t>(before.size);
    added.chain = this;
    return &links.back()->handle;
  }

  // A byte went into a block that others follow.
  void MoveStartsBehind(const Block& block) {
    for (auto i = static_cast<std::size_t>(block.ordinal); i < links.size(); ++i) {
      ++links[i]->block.start;
    }
  }

  static bool Holds(const Block& block, std::size_t position) {
    return position >= block.start && position - block.start < static_cast<std::size_t>(block.size);
  }

  // The block that holds the byte at `position`, counted from the chain's first, or the last one.
  Block& Holder(std::size_t position) {
    const int guess = hint.load(std::memory_order_relaxed);
    const int last = static_cast<int>(links.size());
    for (int ordinal = guess; ordinal <= std::min(guess + 1, last); ++ordinal) {
      if (Block& block = At(ordinal); Holds(block, position)) {
        if (ordinal != guess) hint.store(ordinal, std::memory_order_relaxed);
        return block;
      }
    }
    const auto behind = std::upper_bound(links.begin(), links.end(), position,
                                         [](std::size_t place, const std::unique_ptr<Link>& link) {
                                           return place < link->block.start;
                                         });
    const auto ordinal = static_cast<int>(behind - links.begin());
    hint.store(ordinal, std::memory_order_relaxed);
    return At(ordinal);
  }

  Block first;
  std::vector<std::unique_ptr<Link>> links;
  std::atomic<int> hint{0};  // the block read last, perhaps cut off; all readers set it
};

LByteBuffer::LByteBuffer() noexcept : block_size_(GetDefaultBlockSize()) {}

LByteBuffer::LByteBuffer(int size) noexcept : block_size_(FixedSize(size)) {}

LByteBuffer::LByteBuffer(const LByteBuffer& other) noexcept : block_size_(other.block_size_) {
  if (!CopyFrom(other)) {
    chain_.reset();
    block_ = nullptr;
  }
}

LByteBuffer& LByteBuffer::operator=(const LByteBuffer& other) noexcept {
  if (this == &other || IsLink()) return *this;
  // What this object held may hold `other`, so it goes last.
  LByteBuffer kept(other.IsLink() ? LByteBuffer(other) : LByteBuffer());
  const LByteBuffer& source = other.IsLink() ? kept : other;
  block_size_ = source.block_size_;
  source.EnsureChain();
  block_ = source.block_;
  const std::shared_ptr<Chain> held = std::exchange(chain_, source.chain_);
  return *this;
}

LByteBuffer::~LByteBuffer() = default;

LByteBuffer* LByteBuffer::AllocateNewBlock() {
  if (!EnsureChain()) return nullptr;
  try {
    LByteBuffer* added = block_->chain->Append(block_size_);
    if (added->Grow()) return added;  // its first bytes have their place before anyone writes
    block_->chain->links.pop_back();
    return nullptr;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void LByteBuffer::CopyBlock(LByteBuffer* source) {
  if (source == nullptr) return;
  const unsigned int byte_count = source->GetTotalSize();
  LByteBuffer* last = GetLastBlock(this);
  for (unsigned int i = 0; i < byte_count; ++i) {
    const unsigned char b = source->ReadData(static_cast<int>(i));
    if (last->WriteData(b) != 0) continue;
    last = last->AllocateNewBlock();
    if (last == nullptr || last->WriteData(b) == 0) return;
  }
}

LByteBuffer* LByteBuffer::GetLastBlock(LByteBuffer* from) {
  if (from == nullptr) from = this;
  if (from->block_ == nullptr || from->block_->chain->links.empty()) return from;
  return &from->block_->chain->links.back()->handle;
}

unsigned int LByteBuffer::GetTotalSize() {
  if (block_ == nullptr) return 0;
  const Block& last = block_->chain->Last();
  return static_cast<unsigned int>(last.start + static_cast<std::size_t>(last.size) -
                                   block_->start);
}

void LByteBuffer::ClearBuffer() {
  if (block_ == nullptr) return;
  block_->chain->links.resize(static_cast<std::size_t>(block_->ordinal));
  block_->size = 0;
  block_->limit = block_->capacity;
}

void LByteBuffer::SetDefaultBlockSize(int size) noexcept {
  default_block_size.store(size <= 0 ? 0 : FixedSize(size), std::memory_order_relaxed);
}

int LByteBuffer::GetDefaultBlockSize() noexcept {
  return default_block_size.load(std::memory_order_relaxed);
}

bool LByteBuffer::EnsureChain() const noexcept {
  if (block_ != nullptr) return true;
  try {
    chain_ = std::make_shared<Chain>();
    block_ = &chain_->first;
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

// Repeats the other's blocks, each as full as it is there.
bool LByteBuffer::CopyFrom(const LByteBuffer& other) {
  if (other.block_ == nullptr) return true;
  Chain& chain = *other.block_->chain;
  LByteBuffer* target = this;
  for (int ordinal = other.block_->ordinal;; ++ordinal) {
    const Block& source = chain.At(ordinal);
    if (!target->EnsureChain() || !target->Reserve(source.size)) return false;
    Block& block = *target->block_;
    std::copy_n(source.data.get(), source.size, block.data.get());
    block.size = source.size;
    block.limit = source.size;
    if (&source == &chain.Last()) return true;
    target = target->LByteBuffer::AllocateNewBlock();
    if (target == nullptr) return false;
  }
}

// Makes room for so many bytes; `capacity` is within what the block may hold.
bool LByteBuffer::Reserve(int capacity) {
  if (block_size_ != 0) capacity = block_size_;
  std::unique_ptr<unsigned char[]> larger(
      new (std::nothrow) unsigned char[static_cast<std::size_t>(capacity)]);
  if (larger == nullptr) return false;
  std::copy_n(block_->data.get(), block_->size, larger.get());
  block_->data = std::move(larger);
  block_->capacity = capacity;
  return true;
}

bool LByteBuffer::Grow() {
  const int capacity = block_->capacity;
  if (block_size_ != 0) return capacity == 0 && Reserve(block_size_);
  if (capacity == INT_MAX) return false;
  return Reserve(capacity > INT_MAX / 2 ? INT_MAX : std::max(kFirstCapacity, 2 * capacity));
}

int LByteBuffer::WriteSlowly(unsigned char b) {
  if (!EnsureChain() || (block_->size == block_->capacity && !Grow())) return 0;
  block_->data[static_cast<std::size_t>(block_->size++)] = b;
  const bool is_last = block_ == &block_->chain->Last();
  block_->limit = is_last ? block_->capacity : block_->size;
  if (!is_last) block_->chain->MoveStartsBehind(*block_);
  return 1;
}

unsigned char* LByteBuffer::FindInChain(int index) {
  if (block_ == nullptr || index < 0) return nullptr;
  const std::size_t position = block_->start + static_cast<std::size_t>(index);
  Block& holder = block_->chain->Holder(position);
  if (!Chain::Holds(holder, position)) return nullptr;
  return &holder.data[position - holder.start];
}
