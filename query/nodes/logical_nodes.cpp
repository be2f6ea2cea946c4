#include "query/nodes/logical_nodes.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

NotNode::NotNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Boolean, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void NotNode::print(PrintTarget& target) const { printPrefix(target, "not", *operand, notOperand); }

void NotNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Not", {operand.get()});
}

AndNode::AndNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Boolean, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void AndNode::print(PrintTarget& target) const { printInfix(target, *left, "and", *right, TokenKind::KwAnd); }

void AndNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "AndOperator", {left.get(), right.get()});
}

OrNode::OrNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Boolean, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void OrNode::print(PrintTarget& target) const { printInfix(target, *left, "or", *right, TokenKind::KwOr); }

void OrNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "OrOperator", {left.get(), right.get()});
}

}  // namespace tarnfold::zmf
