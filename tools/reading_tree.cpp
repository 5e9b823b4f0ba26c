// Values keep their numbers as operators work on them, so the tree grows by number. Texts may be
// deep: nothing here recurses.
#include "reading_tree.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "reading_text.h"

namespace {

using Effect = zrt::OperatorEvent::Effect;
using StepKind = Reading::Step::Kind;

zrt::Place Through(zrt::Place first, zrt::Place last) {
  const std::size_t begin = std::min(first.offset, last.offset);
  const std::size_t end = std::max(first.offset + first.length, last.offset + last.length);
  return {begin, end - begin};
}

// Writes nodes from a stack of what is still to be written.
class BracketWriter {
 public:
  BracketWriter(const ReadingTree& tree, std::string_view text) : tree_(tree), text_(text) {}

  std::string Write(ReadingTree::NodeNumber root) {
    tasks_.push_back({root, "", true});
    while (!tasks_.empty()) {
      const Task task = tasks_.back();
      tasks_.pop_back();
      if (task.node == ReadingTree::kNone) {
        // As this language wants it, too: behind an "e" a "-" is an exponent's.
        const bool is_apart =
            task.text == "-" && !out_.empty() && (out_.back() == 'e' || out_.back() == 'E');
        out_ += is_apart ? " - " : task.text;
      } else {
        WriteNode(tree_.nodes()[task.node], task.is_outermost);
      }
    }
    return std::move(out_);
  }

 private:
  struct Task {
    ReadingTree::NodeNumber node;  // or kNone and a text
    std::string_view text;
    bool is_outermost;
  };

  void PushText(std::string_view text) { tasks_.push_back({ReadingTree::kNone, text, false}); }
  void Push(ReadingTree::NodeNumber node, bool is_outermost = false) {
    tasks_.push_back({node, "", is_outermost});
  }

  // What is pushed last is written first.
  void WriteNode(const ReadingTree::Node& node, bool is_outermost) {
    const Reading& reading = tree_.reading();
    if (node.kind == ReadingTree::Node::Kind::kOperand) {
      const Reading::Operand& operand = reading.operands()[node.at];
      out_ += OperandInBrackets(text_, operand);
      if (!IsArrayToken(operand) || node.index == ReadingTree::kNone) return;
      PushText("]");
      Push(node.index, true);
      PushText("[");
      return;
    }
    const Reading::Operation& operation = reading.operations()[node.at];
    if (!is_outermost) {
      out_ += '(';
      PushText(")");
    }
    if (operation.is_unary || IsLeftOnly(operation)) {
      Push(node.left);
      PushText(operation.text);
    } else {
      Push(node.right);
      PushText(operation.text);
      Push(node.left);
    }
  }

  const ReadingTree& tree_;
  std::string_view text_;
  std::vector<Task> tasks_;
  std::string out_;
};

}  // namespace

ReadingTree::ReadingTree(const Reading& reading)
    : reading_(reading),
      sides_(reading.operations().size()),
      takers_(reading.operations().size(), kNone) {
  for (const Reading::Step& step : reading.steps()) {
    switch (step.kind) {
      case StepKind::kOperand: AddOperand(step.at); break;
      case StepKind::kOperation: AddOperation(step.at); break;
      case StepKind::kIndexBegin: last_ = kNone; break;
      case StepKind::kIndexEnd: index_ = last_; break;
      case StepKind::kCut:
      case StepKind::kUnread: break;
    }
  }
  if (reading.has_outcome()) root_ = Holder(reading.outcome());
}

ReadingTree::NodeNumber ReadingTree::Add(const Node& node) {
  nodes_.push_back(node);
  return last_ = static_cast<NodeNumber>(nodes_.size() - 1);
}

void ReadingTree::AddOperand(std::uint32_t at) {
  const Reading::Operand& operand = reading_.operands()[at];
  Node node{Node::Kind::kOperand, at, kNone, kNone, kNone, operand.place};
  if (operand.has_index) node.index = index_;
  Hold(operand.number, Add(node));
}

void ReadingTree::AddOperation(std::uint32_t at) {
  const Reading::Operation& operation = reading_.operations()[at];
  const NodeNumber left = Holder(operation.left);
  const NodeNumber right = operation.is_unary ? kNone : Holder(operation.right);
  sides_[at] = {left, right};
  for (const NodeNumber side : {left, right}) {
    if (side != kNone && nodes_[side].kind != Node::Kind::kOperand) takers_[nodes_[side].at] = at;
  }
  last_ = left;
  if (left == kNone) return;
  if (operation.effect == Effect::kIgnored) {
    dropped_.push_back(right);
  } else if (operation.effect == Effect::kReplaces) {
    dropped_.push_back(left);
    Hold(operation.left, right);
    last_ = right;
  } else if (operation.effect == Effect::kApplies && operation.has_result) {
    const auto kind = operation.is_unary ? Node::Kind::kUnary : Node::Kind::kBinary;
    zrt::Place span = Through(nodes_[left].span, operation.place);
    if (right != kNone) span = Through(span, nodes_[right].span);
    Hold(operation.left, Add({kind, at, left, right, kNone, span}));
  }
}

ReadingTree::NodeNumber ReadingTree::Holder(zrt::ValueNumber number) const {
  return number < holders_.size() ? holders_[number] : kNone;
}

void ReadingTree::Hold(zrt::ValueNumber number, NodeNumber node) {
  if (number >= holders_.size()) holders_.resize(number + 1, kNone);
  holders_[number] = node;
}

std::vector<ReadingTree::NodeNumber> ReadingTree::Loose() const {
  if (root_ != kNone) return {root_};
  std::vector<bool> is_taken(nodes_.size());
  for (const Node& node : nodes_) {
    for (const NodeNumber side : {node.left, node.right, node.index}) {
      if (side != kNone) is_taken[side] = true;
    }
  }
  for (const NodeNumber node : dropped_) is_taken[node] = true;
  std::vector<NodeNumber> loose;
  for (NodeNumber node = 0; node < nodes_.size(); ++node) {
    if (!is_taken[node]) loose.push_back(node);
  }
  std::sort(loose.begin(), loose.end(), [this](NodeNumber a, NodeNumber b) {
    return nodes_[a].span.offset < nodes_[b].span.offset;
  });
  return loose;
}

std::string ReadingTree::Brackets(std::string_view text, NodeNumber node) const {
  return BracketWriter(*this, text).Write(node);
}
