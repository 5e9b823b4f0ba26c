// How a host fills the closed libraries, here those of this folder, and what they do where their
// contract leaves it open.
#pragma once

#include "qlmplusdata.h"
#include "reference.h"
#include "zrttokentree.h"

inline void AddToken(ZRTTokenTree& tree, const std::string& name, int type,
                     const std::vector<int>& ints, const std::vector<float>& floats = {}) {
  const ZRTTokens token{static_cast<unsigned short>(type), ints, floats};
  auto node = std::make_unique<RBTreeNode>();
  node->key_ = name;
  node->object_ = std::make_shared<ZRTTokens>(token);
  node->next_ = std::move(tree.root_);
  tree.root_ = std::move(node);
}
inline QLMDataField* AddField(QLMPlusData& data, const std::string& name) {
  return (data.fields_[name] = std::make_unique<QLMDataField>()).get();
}
inline std::string NameOf(const QLMDataField& field) { return field.name_; }
inline void SetBlockSize(int byte_count) {
  LByteBuffer::default_size_ = byte_count == 0 ? 8 : byte_count;
}

inline constexpr reference::Closed kClosed = {7, 5, true, "0123456789abcdef"};
/// What runs out in this build of the tests.
inline constexpr bool kIsMemoryShort = false;
inline Supply& Scarce() { return LByteBuffer::stores_; }
