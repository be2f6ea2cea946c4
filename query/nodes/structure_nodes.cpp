#include "query/nodes/structure_nodes.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

QueryContainer::QueryContainer(OptionalOffset location, std::vector<NodePtr> children)
    : ZMFNode(kind, ValueType::Boolean, location), children(std::move(children)) {}

void QueryContainer::print(PrintTarget& target) const { printSequence(target, children, "", "\n"); }

void QueryContainer::dump(DumpTarget& target, bool isLast) const {
    target.writeLine(*this, isLast, "QueryContainer");
    target.dumpChildren(isLast, children);
}

CompoundNode::CompoundNode(OptionalOffset location, std::vector<NodePtr> children)
    : ZMFNode(kind, children.empty() ? ValueType::Empty : children.back()->valueType, location),
      children(std::move(children)) {}

void CompoundNode::print(PrintTarget& target) const {
    target << "{";
    printSequence(target, children, " ", "");
    target << "}";
}

void CompoundNode::dump(DumpTarget& target, bool isLast) const {
    target.writeLine(*this, isLast, "Compound");
    target.dumpChildren(isLast, children);
}

bool CompoundNode::transparent() const { return children.size() == 1; }

const ZMFNode& CompoundNode::unwrapAll() const {
    if (transparent()) return children.front()->unwrapAll();
    return *this;
}

ZMFNode& CompoundNode::unwrapAll() {
    if (transparent()) return children.front()->unwrapAll();
    return *this;
}

ParenNode::ParenNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, operand->valueType, location), operand(std::move(operand)) {}

void ParenNode::print(PrintTarget& target) const {
    target << "(";
    printOperand(target, *operand, 0, 0);
    target << ")";
}

void ParenNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Parentheses", {operand.get()});
}

const ZMFNode& ParenNode::unwrapParens() const { return operand->unwrapParens(); }
ZMFNode& ParenNode::unwrapParens() { return operand->unwrapParens(); }
const ZMFNode& ParenNode::unwrapAll() const { return operand->unwrapAll(); }
ZMFNode& ParenNode::unwrapAll() { return operand->unwrapAll(); }

RangeNode::RangeNode(OptionalOffset location, NodePtr lower, NodePtr upper)
    : ZMFNode(kind, ValueType::Numeric, location),
      lower(std::move(lower)),
      upper(std::move(upper)) {
    spanOperands(*this, *this->lower, this->upper ? *this->upper : *this->lower);
}

void RangeNode::print(PrintTarget& target) const {
    printOperand(target, *lower, 0, 0);
    if (upper) {
        target << " ";
        printOperand(target, *upper, 0, 0);
    }
}

void RangeNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Range", {lower.get(), upper.get()});
}

}  // namespace tarnfold::zmf
