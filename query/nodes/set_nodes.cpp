#include "query/nodes/set_nodes.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

namespace {

ValueType intersectionType(const ZMFNode& left, const ZMFNode& right) {
    bool positions = left.valueType == ValueType::Position && right.valueType == ValueType::Position;
    return positions ? ValueType::Position : ValueType::Set;
}

}  // namespace

BitAndNode::BitAndNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, intersectionType(*left, *right), location),
      left(std::move(left)),
      right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void BitAndNode::print(PrintTarget& target) const {
    printInfix(target, *left, "&", *right, TokenKind::BitAnd);
}

void BitAndNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "BitAndOperator", {left.get(), right.get()});
}

BitOrNode::BitOrNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Set, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void BitOrNode::print(PrintTarget& target) const { printInfix(target, *left, "|", *right, TokenKind::BitOr); }

void BitOrNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "BitOrOperator", {left.get(), right.get()});
}

BitComplementNode::BitComplementNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Set, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void BitComplementNode::print(PrintTarget& target) const {
    printPrefix(target, "~", *operand, complementOperand);
}

void BitComplementNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Complement", {operand.get()});
}

CardinalityNode::CardinalityNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Numeric, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void CardinalityNode::print(PrintTarget& target) const {
    printPrefix(target, "#", *operand, cardinalityOperand);
}

void CardinalityNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Cardinality", {operand.get()});
}

}  // namespace tarnfold::zmf
