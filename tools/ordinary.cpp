// Two stacks, operators and values, as calculators have them. Texts may be deep: nothing recurses.
#include "ordinary.h"

#include <algorithm>
#include <utility>

#include "reading_text.h"

namespace {

struct Rank {
  std::string_view text;
  int rank;
};

// The higher binds first.
constexpr Rank kRanks[] = {
    {"<<", 4},
    {">>", 4},
    {"^",  7},
    {"*",  6},
    {"/",  6},
    {"%",  6},
    {"+",  5},
    {"-",  5},
    {"&",  3},
    {"|",  2},
    {"@",  1},
};
constexpr int kUnaryRank = 8;
constexpr int kOperandRank = 9;

constexpr zrt::Place kNowhere = {SIZE_MAX, 0};  // of the 0 that a sign becomes

constexpr std::string_view kOperators = "+-*/%&|@^~!$,<>";

bool IsOperator(char c) { return kOperators.find(c) != std::string_view::npos; }
bool IsExponentMark(char c) { return c == 'e' || c == 'E'; }

// Whether it makes no difference how such operators are grouped. Of "+" and "-" it is the sign of
// each term that counts.
bool IsFree(std::string_view text, zrt::ValueKind kind) {
  if (kind == zrt::ValueKind::kBits) return text == "@";
  if (kind == zrt::ValueKind::kFloat) return false;  // each step is rounded
  return text == "+" || text == "-" || text == "*" || text == "&" || text == "|";
}
bool AreFreeTogether(std::string_view outer, std::string_view inner, zrt::ValueKind kind) {
  const auto is_sum = [](std::string_view text) { return text == "+" || text == "-"; };
  return IsFree(inner, kind) && (outer == inner || (is_sum(outer) && is_sum(inner)));
}

// Two trees are the same reading if they have the same signature: operands by their places, with
// brackets where the grouping counts.
class Signature {
 public:
  struct Parts {
    bool is_operand;
    zrt::Place place;
    std::string_view text;
    std::uint32_t left;
    std::uint32_t right;  // UINT32_MAX for a unary operator
  };

  template <class PartsOf>
  static std::string Of(std::uint32_t root, zrt::ValueKind kind, const PartsOf& parts_of) {
    struct Task {
      std::uint32_t node = 0;
      std::string_view outer;
      bool is_minus = false;
    };
    constexpr std::uint32_t kClose = UINT32_MAX;
    std::string signature;
    std::vector<Task> tasks = {
        {root, "", false}
    };
    while (!tasks.empty()) {
      const Task task = tasks.back();
      tasks.pop_back();
      if (task.node == kClose) {
        signature += ')';
        continue;
      }
      const Parts parts = parts_of(task.node);
      const bool joins = !parts.is_operand && parts.right != UINT32_MAX &&
                         AreFreeTogether(task.outer, parts.text, kind);
      if (!joins) signature += task.is_minus ? " -" : " ";
      if (parts.is_operand) {
        signature += std::to_string(parts.place.offset) + ":" + std::to_string(parts.place.length);
        continue;
      }
      const bool is_free = parts.right != UINT32_MAX && IsFree(parts.text, kind);
      const bool is_sum = is_free && (parts.text == "+" || parts.text == "-");
      if (!joins) {
        signature += is_sum ? "+" : parts.text;
        signature += '(';
        tasks.push_back({kClose, "", false});
      }
      const bool is_minus = joins && is_sum && task.is_minus;
      const std::string_view outer = is_free ? parts.text : "";
      if (parts.right != UINT32_MAX) {
        tasks.push_back({parts.right, outer, is_sum && (parts.text == "-") != is_minus});
      }
      tasks.push_back({parts.left, outer, is_minus});
    }
    return signature;
  }
};

}  // namespace

// NOLINTBEGIN(misc-no-recursion): an index is a text of its own, and takes no further index
OrdinaryText::OrdinaryText(std::string_view text, zrt::ValueKind kind, const IsOperand& is_operand)
    : text_(text), kind_(kind), is_operand_(is_operand) {
  Parse();
}

bool OrdinaryText::Refuse(std::size_t offset, std::size_t length, const std::string& reason) {
  refused_ = {offset, length};
  refusal_ = reason;
  return false;
}

bool OrdinaryText::Parse() {
  bool wants_operand = true;
  for (;;) {
    while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\t')) ++at_;
    if (at_ == text_.size()) break;
    const char c = text_[at_];
    if (wants_operand) {
      if (TakePrefix(c)) continue;
      if (!TakeOperand()) return false;
      wants_operand = false;
    } else if (c == ')') {
      Reduce(1);
      if (pending_.empty()) return Refuse(at_, 1, "this \")\" has no \"(\"");
      pending_.pop_back();
      ++at_;
    } else {
      if (!TakeOperator()) return false;
      wants_operand = true;
    }
  }
  if (wants_operand) return Refuse(at_, 0, "an operand is missing here");
  Reduce(1);
  if (!pending_.empty()) return Refuse(pending_.back().offset, 1, "this \"(\" has no \")\"");
  return true;
}

// "(" and unary operators, among them signs, which the language does not have.
bool OrdinaryText::TakePrefix(char c) {
  const bool is_unary =
      c == '~' || c == '!' || c == '-' || (c == '$' && kind_ == zrt::ValueKind::kBits);
  if (c != '(' && c != '+' && !is_unary) return false;
  if (is_unary) pending_.push_back({text_.substr(at_, 1), at_, kUnaryRank, true});
  if (c == '(') pending_.push_back({text_.substr(at_, 1), at_, 0, false});
  ++at_;
  return true;
}

// An operand ends at an operator that is neither in its index nor part of its name.
std::size_t OrdinaryText::OperandEnd() const {
  std::size_t end = at_ + NumberEnd(text_.substr(at_));  // 1e-5
  bool is_indexed = false;
  for (; end < text_.size(); ++end) {
    const char c = text_[end];
    if (c == '[' && !is_indexed) {
      is_indexed = true;
      end = std::min(text_.find(']', end), text_.size() - 1);
    } else if (c == '(' || c == ')') {
      break;
    } else if (IsOperator(c)) {
      if (c != '-' || end == at_ || !IsExponentMark(text_[end - 1])) break;
      const std::size_t next = text_.find_first_of("+-*/%&|@^~!$,<>()[", end + 1);
      std::string_view name = text_.substr(at_, next == std::string_view::npos ? next : next - at_);
      name = name.substr(0, name.find_last_not_of(' ') + 1);
      if (!is_operand_(name)) break;
    }
  }
  while (text_[end - 1] == ' ') --end;
  return end;
}

bool OrdinaryText::TakeOperand() {
  if (text_[at_] == ')' || IsOperator(text_[at_])) {
    return Refuse(at_, 0, "an operand is missing here");
  }
  const std::size_t begin = at_;
  at_ = OperandEnd();
  const std::size_t open = text_.find('[', begin);
  const zrt::Place place = {begin, at_ - begin};
  return open < at_ ? AddIndexed(place, open) : AddOperand(place);
}

bool OrdinaryText::AddOperand(zrt::Place place) {
  values_.push_back(
      Add({LiteralHere(PartOf(text_, place)), place, kNone, kNone, kOperandRank, true}));
  return true;
}

// An index is an expression of its own, and must be a chain.
bool OrdinaryText::AddIndexed(zrt::Place place, std::size_t open) {
  const std::size_t close = place.offset + place.length - 1;
  const std::size_t bracket = text_.find(']', open);
  if (bracket > close) return Refuse(open, 1, R"(this "[" has no "]")");
  if (bracket < close && text_.find('[', open + 1) > bracket) {
    return Refuse(bracket + 1, close - bracket, "nothing reads what stands behind the \"]\"");
  }
  const std::string_view index = text_.substr(open + 1, close - open - 1);
  refuses_index_ = true;  // as long as it has not been taken
  if (index.find('[') != std::string_view::npos) {
    return Refuse(open + 1, index.size(), "an index takes no index of its own");
  }
  const OrdinaryText inner(index, zrt::ValueKind::kInteger, is_operand_);
  if (!inner.refusal_.empty()) {
    return Refuse(open + 1 + inner.refused_.offset, inner.refused_.length, inner.refusal_);
  }
  if (!inner.nodes_[inner.values_.back()].is_chain) {
    return Refuse(open + 1, index.size(), "an index takes no parentheses and no unary operator");
  }
  refuses_index_ = false;
  const std::string written = inner.Written();
  const std::string name(text_.substr(place.offset, open - place.offset));
  changes_literals_ = changes_literals_ || inner.changes_literals_;
  values_.push_back(Add({name + "[" + written + "]", place, kNone, kNone, kOperandRank, true}));
  return true;
}

// NOLINTEND(misc-no-recursion)

// What the language reads as 0 in all but bit vectors, and floats that it does not know: 1.5e+3.
std::string OrdinaryText::LiteralHere(std::string_view operand) {
  std::string literal(operand);
  if (kind_ == zrt::ValueKind::kBits) return literal;
  std::string decimal = DecimalOf(operand);
  if (kind_ == zrt::ValueKind::kFloat && decimal.empty()) decimal = WithPlainExponent(operand);
  if (decimal.empty()) return literal;
  changes_literals_ = true;
  return decimal;
}

bool OrdinaryText::TakeOperator() {
  const Rank* found = std::find_if(std::begin(kRanks), std::end(kRanks), [this](const Rank& rank) {
    return text_.substr(at_).starts_with(rank.text);
  });
  if (found == std::end(kRanks)) {
    const char c = text_[at_];
    if (c == '(' || c == '~' || c == '!') return Refuse(at_, 0, "an operator is missing here");
    return Refuse(at_, 1, std::string("\"") + c + "\" computes nothing");
  }
  Reduce(found->rank);
  pending_.push_back({text_.substr(at_, found->text.size()), at_, found->rank, false});
  at_ += found->text.size();
  return true;
}

void OrdinaryText::AddUnary(const Pending& pending, NodeNumber operand) {
  if (pending.text == "$" && !nodes_[operand].is_operand()) {
    Refuse(pending.offset, 1, "\"$\" takes one operand, no group");
  }
  values_.push_back(Add({
      std::string(pending.text), {pending.offset, 1},
       operand, kNone, kUnaryRank, false
  }));
}

// Joins all that binds at least as much as `rank`, up to a "(".
void OrdinaryText::Reduce(int rank) {
  while (!pending_.empty() && pending_.back().rank >= rank) {
    const Pending pending = pending_.back();
    pending_.pop_back();
    const NodeNumber right = values_.back();
    values_.pop_back();
    if (pending.is_unary && pending.text != "-") {
      AddUnary(pending, right);
      continue;
    }
    NodeNumber left = kNone;
    if (pending.is_unary) {  // the text has nothing like it
      left = Add({"0", kNowhere, kNone, kNone, kOperandRank, true});
    } else {
      left = values_.back();
      values_.pop_back();
    }
    const int rank_here = pending.is_unary ? 5 : pending.rank;  // a sign becomes a "-"
    const bool is_chain =
        nodes_[left].is_chain && nodes_[left].rank >= rank_here && nodes_[right].is_operand();
    values_.push_back(Add({
        std::string(pending.text),
        {pending.offset, pending.text.size()},
        left,
        right,
        rank_here,
        is_chain
    }));
  }
}

OrdinaryText::NodeNumber OrdinaryText::Add(Node node) {
  nodes_.push_back(std::move(node));
  return static_cast<NodeNumber>(nodes_.size() - 1);
}

std::string OrdinaryText::Written() const {
  struct Task {
    NodeNumber node;
    std::string_view text;
  };
  std::string written;
  std::vector<Task> tasks = {
      {values_.back(), ""}
  };
  const auto push = [&](NodeNumber side, bool is_bare) {  // what is pushed last comes first
    if (!is_bare) tasks.push_back({kNone, ")"});
    tasks.push_back({side, ""});
    if (!is_bare) tasks.push_back({kNone, "("});
  };
  while (!tasks.empty()) {
    const Task task = tasks.back();
    tasks.pop_back();
    if (task.node == kNone) {
      // Behind an "e" a "-" would be taken for an exponent's.
      const bool is_apart = task.text == "-" && !written.empty() && IsExponentMark(written.back());
      written += is_apart ? " - " : task.text;
      continue;
    }
    const Node& node = nodes_[task.node];
    if (node.is_operand()) {
      written += node.text;
    } else if (node.is_unary()) {
      written += node.text;
      push(node.left, nodes_[node.left].is_operand());
    } else {
      push(node.right, nodes_[node.right].is_operand());
      tasks.push_back({kNone, node.text});
      const Node& left = nodes_[node.left];
      push(node.left, left.is_chain && left.rank >= node.rank);
    }
  }
  return written;
}

bool OrdinaryText::IsReadSo(const ReadingTree& tree) const {
  const Reading& reading = tree.reading();
  const bool reads_all = std::all_of(
      reading.operations().begin(), reading.operations().end(), [](const auto& operation) {
        return operation.effect == zrt::OperatorEvent::Effect::kApplies;
      });
  return !changes_literals_ && reads_all && reading.unread().empty() && IsGroupedSo(tree);
}

bool OrdinaryText::IsGroupedSo(const ReadingTree& tree) const {
  if (!refusal_.empty() || tree.root() == ReadingTree::kNone) return false;
  const std::string read =
      Signature::Of(tree.root(), kind_, [&tree](std::uint32_t number) -> Signature::Parts {
        const ReadingTree::Node& node = tree.nodes()[number];
        if (node.kind == ReadingTree::Node::Kind::kOperand) {
          return {true, node.span, "", ReadingTree::kNone, ReadingTree::kNone};
        }
        return {false, {}, tree.reading().operations()[node.at].text, node.left, node.right};
      });
  return read ==
         Signature::Of(values_.back(), kind_, [this](NodeNumber number) -> Signature::Parts {
           const Node& node = nodes_[number];
           return {node.is_operand(), node.place, node.text, node.left, node.right};
         });
}
