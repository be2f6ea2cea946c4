#include "query/nodes/slice_nodes.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

namespace {

// The subscripted operand is read as an operand of the bracket.
constexpr BindingPower subscriptPower = infixPrecedence(TokenKind::LeftBracket);

void printSubscripted(PrintTarget& target, const ZMFNode& operand) {
    PrintedEnds ends = printOperand(target, operand, subscriptPower, subscriptPower + 1);
    target.ends = PrintedEnds{ends.left, closedEnd};
}

}  // namespace

SliceNode::SliceNode(OptionalOffset location, NodePtr operand, NodePtr lower, NodePtr upper, bool range)
    : ZMFNode(kind, ValueType::String, location),
      operand(std::move(operand)),
      lower(std::move(lower)),
      upper(std::move(upper)),
      range(range) {
    firstOffset = this->operand->firstOffset;
}

void SliceNode::print(PrintTarget& target) const {
    PrintTarget inner = target.sibling();
    printSubscripted(inner, *operand);
    PrintedEnds ends = inner.ends;
    target << inner.text() << "[";
    if (lower) printOperand(target, *lower, 0, 0);
    if (range) target << ":";
    if (upper) printOperand(target, *upper, 0, 0);
    target << "]";
    target.ends = ends;
}

void SliceNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, range ? "Slice (range)" : "Slice (index)",
             {{operand.get(), "string"}, {lower.get(), "from"}, {upper.get(), "to"}});
}

DictionaryAccessNode::DictionaryAccessNode(OptionalOffset location, NodePtr dictionary, NodePtr key)
    : ZMFNode(kind, ValueType::String, location),
      dictionary(std::move(dictionary)),
      key(std::move(key)) {
    firstOffset = this->dictionary->firstOffset;
}

void DictionaryAccessNode::print(PrintTarget& target) const {
    PrintTarget inner = target.sibling();
    printSubscripted(inner, *dictionary);
    PrintedEnds ends = inner.ends;
    target << inner.text() << "[";
    printOperand(target, *key, 0, 0);
    target << "]";
    target.ends = ends;
}

void DictionaryAccessNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "DictionaryAccess",
             {{dictionary.get(), "dictionary"}, {key.get(), "key"}});
}

}  // namespace tarnfold::zmf
