// The tree that the operators of a reading make of its operands: how the language has read a text.
// What is ignored or dropped is no part of it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "reading.h"

class ReadingTree {
 public:
  using NodeNumber = std::uint32_t;
  static constexpr NodeNumber kNone = UINT32_MAX;

  struct Node {
    enum class Kind : std::uint8_t { kOperand, kUnary, kBinary };

    Kind kind{};
    std::uint32_t at = 0;     // in operands() or operations() of the reading
    NodeNumber left = kNone;  // also of a unary operator
    NodeNumber right = kNone;
    NodeNumber index = kNone;  // of an operand
    zrt::Place span;           // from its first operand or unary operator through its last operand
  };

  /// `reading` must outlive the tree.
  explicit ReadingTree(const Reading& reading);

  [[nodiscard]] const Reading& reading() const { return reading_; }
  [[nodiscard]] const std::vector<Node>& nodes() const { return nodes_; }

  /// What the evaluation ended with; kNone if it failed.
  [[nodiscard]] NodeNumber root() const { return root_; }

  /// The values that nothing has taken, in the order of the text: the root alone, or what there was
  /// at a failure.
  [[nodiscard]] std::vector<NodeNumber> Loose() const;

  /// The node that was the side of an operation, as it stood before that; kNone for none.
  [[nodiscard]] NodeNumber LeftOf(std::uint32_t operation) const { return sides_[operation].left; }
  [[nodiscard]] NodeNumber RightOf(std::uint32_t operation) const {
    return sides_[operation].right;
  }

  /// The operation that has taken the result of `operation`; kNone for none.
  [[nodiscard]] std::uint32_t TakerOf(std::uint32_t operation) const { return takers_[operation]; }

  /// The reading with brackets around each operation but the outermost one, so that anything that
  /// computes would agree: literals that read otherwise elsewhere stand as their value.
  [[nodiscard]] std::string Brackets(std::string_view text, NodeNumber node) const;

 private:
  struct Sides {
    NodeNumber left = kNone;
    NodeNumber right = kNone;
  };

  NodeNumber Add(const Node& node);
  void AddOperand(std::uint32_t at);
  void AddOperation(std::uint32_t at);
  [[nodiscard]] NodeNumber Holder(zrt::ValueNumber number) const;
  void Hold(zrt::ValueNumber number, NodeNumber node);

  const Reading& reading_;
  std::vector<Node> nodes_;
  std::vector<NodeNumber> holders_;    // by the number of a value
  std::vector<Sides> sides_;           // by operation
  std::vector<std::uint32_t> takers_;  // by operation
  std::vector<NodeNumber> dropped_;
  NodeNumber last_ = kNone;   // what the last event has left
  NodeNumber index_ = kNone;  // of the operand that is being read
  NodeNumber root_ = kNone;
};
