// The indented list. It runs down the left sides as a chain does, so only right sides go deeper;
// the indent ends somewhere, since a text may be as deep as memory.
#include <algorithm>
#include <utility>
#include <vector>

#include "picture.h"
#include "reading_text.h"
#include "shown_text.h"

namespace {

constexpr std::size_t kMostIndents = 20;
constexpr std::size_t kMostCharacters = 40;  // of an operand
constexpr std::size_t kValueColumn = 28;

using Node = ReadingTree::Node;
using NodeNumber = ReadingTree::NodeNumber;

class ListWriter {
 public:
  ListWriter(std::string_view text, const ReadingTree& tree) : text_(text), tree_(tree) {}

  std::vector<CutLine> Write() {
    std::vector<NodeNumber> loose = tree_.Loose();
    std::reverse(loose.begin(), loose.end());  // what is pushed last comes first
    for (const NodeNumber node : loose) PushNode(node, 0);
    while (!tasks_.empty()) {
      const Task task = tasks_.back();
      tasks_.pop_back();
      if (task.is_line) {
        AddLine(task);
      } else {
        Unfold(task);
      }
    }
    return std::move(lines_);
  }

 private:
  // A node that is to be unfolded, or a line: an operator and, but for the end of a side, what it
  // stands in front of; the value of `node` where it has one to show.
  struct Task {
    bool is_line;
    NodeNumber node;
    std::size_t depth;
    const char* before;
    std::string_view after;
    bool has_value;
  };

  void PushNode(NodeNumber node, std::size_t depth) {
    tasks_.push_back({false, node, depth, "", "", false});
  }
  void PushLine(NodeNumber node, std::size_t depth, const char* before, std::string_view after,
                bool has_value) {
    tasks_.push_back({true, node, depth, before, after, has_value});
  }

  // What is pushed last comes first.
  void Unfold(const Task& task) {
    NodeNumber number = task.node;
    while (tree_.nodes()[number].kind == Node::Kind::kBinary) {
      PushSide(number, tree_.nodes()[number].right, task.depth);
      number = tree_.nodes()[number].left;
    }
    const Node& node = tree_.nodes()[number];
    if (node.kind == Node::Kind::kOperand) {
      const Reading::Operand& operand = tree_.reading().operands()[node.at];
      const std::string_view name = PartOf(text_, operand.place);
      PushLine(number, task.depth, "", name, ValueText(operand.value) != name);
    } else {
      PushSide(number, node.left, task.depth);
    }
  }

  // "+ 2 = 12", or the side below.
  void PushSide(NodeNumber number, NodeNumber side, std::size_t depth) {
    const char* symbol = tree_.reading().operations()[tree_.nodes()[number].at].text.c_str();
    const Node& node = tree_.nodes()[side];
    if (node.kind == Node::Kind::kOperand) {
      const Reading::Operand& operand = tree_.reading().operands()[node.at];
      PushLine(number, depth, symbol, PartOf(text_, operand.place), true);
      return;
    }
    PushLine(number, depth, "", ")", true);
    PushNode(side, depth + 1);
    PushLine(number, depth, symbol, "(", false);
  }

  void AddLine(const Task& task) {
    CutLine line{task.depth, task.before, Shown(task.after, kMostCharacters), ""};
    if (task.has_value) line.value = ValueText(ValueOf(tree_.nodes()[task.node]));
    lines_.push_back(std::move(line));
  }

  [[nodiscard]] const ReadValue& ValueOf(const Node& node) const {
    const Reading& reading = tree_.reading();
    return node.kind == Node::Kind::kOperand ? reading.operands()[node.at].value
                                             : reading.operations()[node.at].result;
  }

  std::string_view text_;
  const ReadingTree& tree_;
  std::vector<Task> tasks_;
  std::vector<CutLine> lines_;
};

}  // namespace

std::vector<CutLine> CutLines(std::string_view text, const ReadingTree& tree) {
  return ListWriter(text, tree).Write();
}

std::string CutList(std::string_view text, const ReadingTree& tree) {
  std::string list;
  for (const CutLine& cut_line : CutLines(text, tree)) {
    std::string line(2 * std::min(cut_line.depth, kMostIndents), ' ');
    line += cut_line.symbol;
    if (!cut_line.symbol.empty()) line += ' ';
    line += cut_line.side;
    if (!cut_line.value.empty()) {
      line += ' ';
      line = Padded(line, kValueColumn);
      line += "= " + cut_line.value;
    }
    list += "    ";
    list += line;
    list += '\n';
  }
  return list;
}
