#include "query/nodes/set_nodes.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

namespace {

constexpr BindingPower bitOrPower = 65;
constexpr BindingPower bitAndPower = 70;
constexpr BindingPower cardinalityOperandPower = 48;
constexpr BindingPower complementOperandPower = 75;

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
    printInfix(target, *left, "&", *right, bitAndPower, false);
}

void BitAndNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "BitAndOperator", {left.get(), right.get()});
}

BitOrNode::BitOrNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Set, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void BitOrNode::print(PrintTarget& target) const {
    printInfix(target, *left, "|", *right, bitOrPower, false);
}

void BitOrNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "BitOrOperator", {left.get(), right.get()});
}

BitComplementNode::BitComplementNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Set, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void BitComplementNode::print(PrintTarget& target) const {
    printPrefix(target, "~", *operand, complementOperandPower);
}

void BitComplementNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Complement", {operand.get()});
}

CardinalityNode::CardinalityNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Numeric, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void CardinalityNode::print(PrintTarget& target) const {
    printPrefix(target, "#", *operand, cardinalityOperandPower);
}

void CardinalityNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Cardinality", {operand.get()});
}

}  // namespace tarnfold::zmf
