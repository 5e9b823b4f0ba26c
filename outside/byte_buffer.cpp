// Chains of byte blocks. A chain keeps its blocks in an array in their order, so that no number of
// blocks makes freeing them recurse, and holds no more bytes than an index reaches. It does not
// know what the bytes mean.
#include <algorithm>
#include <atomic>
#include <bit>
#include <climits>
#include <memory>
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

std::unique_ptr<unsigned char[]> NewBytes(int count) {
  return std::unique_ptr<unsigned char[]>(
      new (std::nothrow) unsigned char[static_cast<std::size_t>(count)]);
}

}  // namespace

struct ZRT_OUTSIDE_HIDDEN LByteBuffer::Link {
  Link(Chain* holder, int block_size) : block(holder), handle(&block, block_size) {}

  Block block;
  LByteBuffer handle;
};

struct ZRT_OUTSIDE_HIDDEN LByteBuffer::Chain {
  Chain() : first(this) {}

  Block& At(std::size_t ordinal);
  int SizeFrom(const Block& block);
  LByteBuffer* Add(std::unique_ptr<Link> link);
  void DropBehind(const Block& block);
  void KeepEven(std::size_t block_count);
  static std::unique_ptr<unsigned char[]> MakeRoom(LByteBuffer* buffer, std::size_t count);

  std::size_t even_size = 1;     // bytes of each even block
  std::size_t shifted_size = 1;  // the same, 0 if it is no power of two
  Block first;
  std::vector<std::unique_ptr<Link>> links;
  std::vector<unsigned char*> even_blocks;
  std::atomic<int> owner_count{1};
};

LByteBuffer::Block::Block(Chain* holder) noexcept : chain(holder) {}

LByteBuffer::Block& LByteBuffer::Chain::At(std::size_t ordinal) {
  return ordinal == 0 ? first : links[ordinal - 1]->block;
}

int LByteBuffer::Chain::SizeFrom(const Block& block) {
  const Block& last = At(links.size());
  return last.start + last.size() - block.start;
}

// Throws std::bad_alloc with the chain unchanged but for the even blocks, which may have the last
// block.
LByteBuffer* LByteBuffer::Chain::Add(std::unique_ptr<Link> link) {
  Block& last = At(links.size());
  link->block.start = last.start + last.size();
  link->block.ordinal = last.ordinal + 1;
  const auto last_size = static_cast<std::size_t>(last.size());
  if (last.ordinal == 0) {
    even_size = std::max(last_size, std::size_t{1});
    shifted_size = std::has_single_bit(even_size) ? even_size : 0;
    first.even.shift = static_cast<unsigned int>(std::countr_zero(even_size));
  }
  const bool is_even = last_size == even_size;
  if (is_even && even_blocks.size() == last.ordinal) even_blocks.push_back(last.data);
  KeepEven(even_blocks.size());
  links.push_back(std::move(link));
  last.limit = last.end;
  return &links.back()->handle;
}

void LByteBuffer::Chain::DropBehind(const Block& block) {
  links.resize(block.ordinal);
  if (even_blocks.size() > block.ordinal) KeepEven(block.ordinal);
}

void LByteBuffer::Chain::KeepEven(std::size_t block_count) {
  even_blocks.resize(block_count);
  first.even.data = even_blocks.data();
  first.even.bytes = block_count * shifted_size;
}

LByteBuffer::LByteBuffer() noexcept : block_size_(GetDefaultBlockSize()) {}

LByteBuffer::LByteBuffer(int size) noexcept : block_size_(FixedSize(size)) {}

LByteBuffer::LByteBuffer(const LByteBuffer& other) noexcept : block_size_(other.block_size_) {
  if (!AppendChain(other)) Share(nullptr);
}

LByteBuffer& LByteBuffer::operator=(const LByteBuffer& other) noexcept {
  if (this == &other || IsLink()) return *this;
  block_size_ = other.block_size_;
  if (other.IsLink()) {
    const LByteBuffer copy(other);  // before this object's blocks go: `other` may be one of them
    Share(&copy);
  } else {
    Share(&other);
  }
  return *this;
}

LByteBuffer::~LByteBuffer() { Share(nullptr); }

LByteBuffer* LByteBuffer::AllocateNewBlock() {
  if (!EnsureChain()) return nullptr;
  Chain& chain = *block_->chain;
  const int room = INT_MAX - chain.SizeFrom(chain.first);
  if (room < FixedSize(block_size_)) return nullptr;
  const Block& last = chain.At(chain.links.size());
  try {
    auto link = std::make_unique<Link>(&chain, block_size_);
    const int capacity = block_size_ == 0 ? std::min(kFirstCapacity, room) : block_size_;
    link->block.data = NewBytes(capacity).release();  // its first bytes are sure to find room
    if (link->block.data == nullptr) return nullptr;
    link->block.end = link->block.data;
    link->block.limit = link->block.end + capacity;
    return chain.Add(std::move(link));
  } catch (const std::bad_alloc&) {
    chain.DropBehind(last);
    return nullptr;
  }
}

void LByteBuffer::CopyBlock(LByteBuffer* source) {
  if (source != nullptr) AppendChain(*source);
}

LByteBuffer* LByteBuffer::GetLastBlock(LByteBuffer* from) {
  if (from == nullptr) from = this;
  if (from->block_ == nullptr || from->block_->chain->links.empty()) return from;
  return &from->block_->chain->links.back()->handle;
}

unsigned int LByteBuffer::GetTotalSize() {
  return block_ == nullptr ? 0 : static_cast<unsigned int>(block_->chain->SizeFrom(*block_));
}

void LByteBuffer::ClearBuffer() {
  if (block_ == nullptr) return;
  block_->chain->DropBehind(*block_);
  block_->end = block_->data;
}

std::size_t LByteBuffer::AppendData(const unsigned char* bytes, std::size_t count) {
  const auto replaced =
      Chain::MakeRoom(this, count);  // ends after the copy: the bytes may lie in it
  if (block_ == nullptr) return 0;
  const auto room = static_cast<std::size_t>(block_->limit - block_->end);
  const std::size_t taken = std::min(count, room);
  if (bytes != block_->end) std::copy_n(bytes, taken, block_->end);  // else they stand there
  block_->end += taken;
  return taken;
}

std::span<unsigned char> LByteBuffer::RoomToAppend(std::size_t count) {
  if (block_ == nullptr || block_->size() == 0) Chain::MakeRoom(this, count);
  if (block_ == nullptr) return {};
  const auto room = static_cast<std::size_t>(block_->limit - block_->end);
  if (room < count) return {};
  return {block_->end, room};
}

bool LByteBuffer::Append(std::span<const unsigned char> bytes) {
  LByteBuffer* last = GetLastBlock(this);
  const auto replaced = Chain::MakeRoom(last, bytes.size());  // ends after all copies, as above
  for (;;) {
    bytes = bytes.subspan(last->AppendData(bytes.data(), bytes.size()));
    if (bytes.empty()) return true;
    const bool is_full = last->block_ != nullptr && last->block_->size() == last->MostBytes();
    // By its own name: this may be a copy that is being made, which no call reaches as derived.
    last = is_full ? last->LByteBuffer::AllocateNewBlock() : nullptr;
    if (last == nullptr) return false;
  }
}

void LByteBuffer::SetDefaultBlockSize(int size) noexcept {
  default_block_size.store(size <= 0 ? 0 : FixedSize(size), std::memory_order_relaxed);
}

int LByteBuffer::GetDefaultBlockSize() noexcept {
  return default_block_size.load(std::memory_order_relaxed);
}

// A byte that no shift finds: the blocks are of some other size, or it lies in the last block or
// behind one of another size, or there is none.
unsigned char* LByteBuffer::FindElsewhere(std::size_t place) {
  Chain& chain = *block_->chain;
  const std::size_t position = static_cast<unsigned int>(block_->start) + place;
  const std::size_t ordinal = position / chain.even_size;
  if (ordinal < chain.even_blocks.size()) {
    return chain.even_blocks[ordinal] + position % chain.even_size;
  }
  const auto behind = std::upper_bound(chain.links.begin(), chain.links.end(), position,
                                       [](std::size_t where, const std::unique_ptr<Link>& link) {
                                         return where < static_cast<std::size_t>(link->block.start);
                                       });
  const Block& holder = chain.At(static_cast<std::size_t>(behind - chain.links.begin()));
  const std::size_t index = position - static_cast<std::size_t>(holder.start);
  return index < static_cast<std::size_t>(holder.size()) ? &holder.data[index] : nullptr;
}

int LByteBuffer::WriteSlowly(unsigned char b) { return AppendData(&b, 1) == 0 ? 0 : 1; }

bool LByteBuffer::EnsureChain() {
  if (block_ != nullptr) return true;
  try {
    chain_ = new Chain;
    block_ = &chain_->first;
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

// What the block may hold, unless another follows it.
int LByteBuffer::MostBytes() const {
  return block_size_ == 0 ? INT_MAX - block_->start : block_size_;
}

// From now on this object refers to the blocks of `other`, a whole chain, or to none.
void LByteBuffer::Share(const LByteBuffer* other) noexcept {
  Chain* chain = other == nullptr ? nullptr : other->chain_;
  if (chain != nullptr) ++chain->owner_count;
  if (chain_ != nullptr && --chain_->owner_count == 0) delete chain_;
  chain_ = chain;
  block_ = chain == nullptr ? nullptr : &chain->first;
}

// Makes room in the buffer's block for `count` more bytes, or as many as it may hold, if there is
// memory. Gives the memory that the block had before.
std::unique_ptr<unsigned char[]> LByteBuffer::Chain::MakeRoom(LByteBuffer* buffer,
                                                              std::size_t count) {
  if (count == 0 || !buffer->EnsureChain()) return nullptr;
  Block& block = *buffer->block_;
  if (block.ordinal < block.chain->links.size()) return nullptr;  // full
  const auto size = static_cast<std::size_t>(block.size());
  const auto capacity = static_cast<std::size_t>(block.capacity());
  const auto most = static_cast<std::size_t>(buffer->MostBytes());
  if (count <= capacity - size || capacity == most) return nullptr;
  const std::size_t needed = size + std::min(count, most - size);
  std::size_t larger = std::max({needed, 2 * capacity, std::size_t{kFirstCapacity}});
  if (buffer->block_size_ != 0 || larger > most) larger = most;
  auto bytes = NewBytes(static_cast<int>(larger));
  if (bytes == nullptr) return nullptr;
  std::copy_n(block.data, size, bytes.get());
  std::unique_ptr<unsigned char[]> replaced(std::exchange(block.data, bytes.release()));
  block.end = block.data + size;
  block.limit = block.data + larger;
  return replaced;
}

// Repeats the bytes, not how they are spread over blocks. What `source` held at first is all,
// should it be of this very chain.
bool LByteBuffer::AppendChain(const LByteBuffer& source) {
  if (source.block_ == nullptr) return true;
  Chain& chain = *source.block_->chain;
  int left = chain.SizeFrom(*source.block_);
  for (std::size_t ordinal = source.block_->ordinal; left > 0; ++ordinal) {
    const Block& block = chain.At(ordinal);
    const int count = std::min(left, block.size());
    if (!Append({block.data, static_cast<std::size_t>(count)})) return false;
    left -= count;
  }
  return true;
}
