#include "query/nodes/operator_nodes.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

InNode::InNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Boolean, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void InNode::print(PrintTarget& target) const { printInfix(target, *left, "in", *right, TokenKind::KwIn); }

void InNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "InOperator", {left.get(), right.get()});
}

ColonNode::ColonNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, right->valueType, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void ColonNode::print(PrintTarget& target) const { printInfix(target, *left, ":", *right, TokenKind::Colon); }

void ColonNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "ColonOperator", {left.get(), right.get()});
}

IdentityNode::IdentityNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, operand->valueType, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void IdentityNode::print(PrintTarget& target) const { printPrefix(target, "`", *operand, backquoteOperand); }

void IdentityNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Identity", {operand.get()});
}

}  // namespace tarnfold::zmf
