#include "query/nodes/comparison_nodes.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

EqualToNode::EqualToNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType)
    : ZMFNode(kind, valueType, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void EqualToNode::print(PrintTarget& target) const {
    printInfix(target, *left, "==", *right, TokenKind::Equal);
}

void EqualToNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "EqualToOperator", {left.get(), right.get()});
}

NotEqualNode::NotEqualNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType)
    : ZMFNode(kind, valueType, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void NotEqualNode::print(PrintTarget& target) const {
    printInfix(target, *left, "!=", *right, TokenKind::NotEqual);
}

void NotEqualNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "NotEqualOperator", {left.get(), right.get()});
}

LessThanNode::LessThanNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType)
    : ZMFNode(kind, valueType, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void LessThanNode::print(PrintTarget& target) const {
    printInfix(target, *left, "<", *right, TokenKind::Less);
}

void LessThanNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "LessThanOperator", {left.get(), right.get()});
}

LessEqualNode::LessEqualNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType)
    : ZMFNode(kind, valueType, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void LessEqualNode::print(PrintTarget& target) const {
    printInfix(target, *left, "<=", *right, TokenKind::LessEqual);
}

void LessEqualNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "LessEqualOperator", {left.get(), right.get()});
}

GreaterThanNode::GreaterThanNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType)
    : ZMFNode(kind, valueType, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void GreaterThanNode::print(PrintTarget& target) const {
    printInfix(target, *left, ">", *right, TokenKind::Greater);
}

void GreaterThanNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "GreaterThanOperator", {left.get(), right.get()});
}

GreaterEqualNode::GreaterEqualNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType)
    : ZMFNode(kind, valueType, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void GreaterEqualNode::print(PrintTarget& target) const {
    printInfix(target, *left, ">=", *right, TokenKind::GreaterEqual);
}

void GreaterEqualNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "GreaterEqualOperator", {left.get(), right.get()});
}

}  // namespace tarnfold::zmf
