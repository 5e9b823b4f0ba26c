// How ordinary arithmetic reads a text, and how that is written in this language: "^" before
// "*" "/" "%", then "+" "-", "<<" ">>", "&", "|", and "@" last, left to right among equals. Reads
// texts as anybody else would; how the language reads them is told by the library alone.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "reading_tree.h"

class OrdinaryText {
 public:
  /// Whether the language knows a text as one operand, a name or a literal. "size-1" can be one.
  using IsOperand = std::function<bool(std::string_view)>;

  /// `text` must outlive this.
  OrdinaryText(std::string_view text, zrt::ValueKind kind, const IsOperand& is_operand);

  /// Why the text has no ordinary reading, or none that can be written in this language; empty if
  /// it has one.
  [[nodiscard]] const std::string& refusal() const { return refusal_; }
  [[nodiscard]] zrt::Place refused() const { return refused_; }

  /// Whether an index is the reason: it takes chains alone.
  [[nodiscard]] bool refuses_index() const { return refuses_index_; }

  /// The text that the language reads so.
  [[nodiscard]] std::string Written() const;

  /// Whether the language groups the text so. `+` and the like may be grouped otherwise, where that
  /// changes no value.
  [[nodiscard]] bool IsGroupedSo(const ReadingTree& tree) const;

  /// Whether it also reads all of it, each operator and each literal so.
  [[nodiscard]] bool IsReadSo(const ReadingTree& tree) const;

 private:
  using NodeNumber = std::uint32_t;
  static constexpr NodeNumber kNone = UINT32_MAX;

  struct Node {
    std::string text;         // of an operand as it is to be written, or the operator
    zrt::Place place;         // in the text that was handed in
    NodeNumber left = kNone;  // also of a unary operator
    NodeNumber right = kNone;
    int rank = 0;           // of the operator, in the order of binding
    bool is_chain = false;  // both readings agree on it without parentheses

    [[nodiscard]] bool is_operand() const { return left == kNone; }
    [[nodiscard]] bool is_unary() const { return left != kNone && right == kNone; }
  };

  // An operator or "(" that waits for its right side.
  struct Pending {
    std::string_view text;
    std::size_t offset;
    int rank;  // 0 for "("
    bool is_unary;
  };

  bool Parse();
  bool TakeOperand();
  bool TakeOperator();
  bool TakePrefix(char c);
  std::size_t OperandEnd() const;
  bool AddOperand(zrt::Place place);
  bool AddIndexed(zrt::Place place, std::size_t open);
  std::string LiteralHere(std::string_view operand);
  void AddUnary(const Pending& pending, NodeNumber operand);
  void Reduce(int rank);
  NodeNumber Add(Node node);
  bool Refuse(std::size_t offset, std::size_t length, const std::string& reason);

  std::string_view text_;
  zrt::ValueKind kind_;
  const IsOperand& is_operand_;
  std::size_t at_ = 0;
  std::vector<Pending> pending_;
  std::vector<NodeNumber> values_;
  std::vector<Node> nodes_;  // sides stand in front of what joins them
  bool changes_literals_ = false;
  bool refuses_index_ = false;
  std::string refusal_;
  zrt::Place refused_;
};
