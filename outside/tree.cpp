// The red-black tree of objects by name, and the base of the objects. Insertion goes down and leans
// red links to the left on the way back; there is no removal, so three cases are all there is.
#include <cstring>
#include <utility>

#include "hq4170.h"

LObject::~LObject() = default;

RBTreeNode* RBTree::Search(RBTreeNode* from, char* key) {
  while (from != nullptr && key != nullptr) {
    const int order = std::strcmp(key, from->key_.c_str());
    if (order == 0) return from;
    from = order < 0 ? from->left_.get() : from->right_.get();
  }
  return nullptr;
}

void RBTree::Insert(const char* key, std::unique_ptr<LObject> object) {
  // Made before the descent, which can then not fail halfway.
  Place(&root_, Tree(new RBTreeNode(key, std::move(object))));
  root_->red_ = false;
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as the tree, twice the logarithm of its size
void RBTree::Place(Tree* tree, Tree node) {
  if (*tree == nullptr) {
    *tree = std::move(node);
    return;
  }
  Tree* side = node->key_ < (*tree)->key_ ? &(*tree)->left_ : &(*tree)->right_;
  Place(side, std::move(node));
  if (IsRed((*tree)->right_) && !IsRed((*tree)->left_)) RotateLeft(tree);
  if (IsRed((*tree)->left_) && IsRed((*tree)->left_->left_)) RotateRight(tree);
  if (IsRed((*tree)->left_) && IsRed((*tree)->right_)) {
    (*tree)->red_ = true;
    (*tree)->left_->red_ = false;
    (*tree)->right_->red_ = false;
  }
}

void RBTree::RotateLeft(Tree* tree) {
  Tree top = std::move((*tree)->right_);
  (*tree)->right_ = std::move(top->left_);
  top->red_ = std::exchange((*tree)->red_, true);
  top->left_ = std::move(*tree);
  *tree = std::move(top);
}

void RBTree::RotateRight(Tree* tree) {
  Tree top = std::move((*tree)->left_);
  (*tree)->left_ = std::move(top->right_);
  top->red_ = std::exchange((*tree)->red_, true);
  top->right_ = std::move(*tree);
  *tree = std::move(top);
}
