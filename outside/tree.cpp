// The tree of objects by name, and the base of the objects. What is inline in the header turns away
// most names that are not there.
#include "hq4170.h"

LObject::~LObject() = default;

void RBTree::Insert(const char* name, LObject* object) {
  const auto place = nodes_.try_emplace(name, object).first;
  likely_[static_cast<unsigned char>(*name)] = &*place;
}

RBTreeNode* RBTree::FindNode(std::string_view name) const {
  const auto found = nodes_.find(name);
  return found == nodes_.end() ? nullptr : &found->second;
}
