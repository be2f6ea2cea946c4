#include "query/nodes/arithmetic_nodes.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

AddNode::AddNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, left->valueType, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void AddNode::print(PrintTarget& target) const { printInfix(target, *left, "+", *right, TokenKind::Plus); }

void AddNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "AddOperator", {left.get(), right.get()});
}

SubtractNode::SubtractNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Numeric, location),
      left(std::move(left)),
      right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void SubtractNode::print(PrintTarget& target) const {
    printInfix(target, *left, "-", *right, TokenKind::Minus);
}

void SubtractNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "SubtractOperator", {left.get(), right.get()});
}

MultiplyNode::MultiplyNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Numeric, location),
      left(std::move(left)),
      right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void MultiplyNode::print(PrintTarget& target) const {
    printInfix(target, *left, "*", *right, TokenKind::Star);
}

void MultiplyNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "MultiplyOperator", {left.get(), right.get()});
}

DivideNode::DivideNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Numeric, location),
      left(std::move(left)),
      right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void DivideNode::print(PrintTarget& target) const {
    printInfix(target, *left, "/", *right, TokenKind::Divide);
}

void DivideNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "DivideOperator", {left.get(), right.get()});
}

ModulusNode::ModulusNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Numeric, location),
      left(std::move(left)),
      right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void ModulusNode::print(PrintTarget& target) const {
    printInfix(target, *left, "%", *right, TokenKind::Modulus);
}

void ModulusNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "ModulusOperator", {left.get(), right.get()});
}

NegateNode::NegateNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Numeric, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void NegateNode::print(PrintTarget& target) const { printPrefix(target, "-", *operand, backquoteOperand); }

void NegateNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Negate", {operand.get()});
}

AbsNode::AbsNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Numeric, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void AbsNode::print(PrintTarget& target) const { printPrefix(target, "abs", *operand, absOperand); }

void AbsNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Abs", {operand.get()});
}

}  // namespace tarnfold::zmf
