#include "query/nodes/comparison_nodes.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

namespace {

// All comparisons share one right-associative level.
constexpr BindingPower comparisonPower = 40;

void printComparison(PrintTarget& target, const NodePtr& left, std::string_view spelling,
                     const NodePtr& right) {
    printInfix(target, *left, spelling, *right, comparisonPower, true);
}

}  // namespace

EqualToNode::EqualToNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType)
    : ZMFNode(kind, valueType, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void EqualToNode::print(PrintTarget& target) const { printComparison(target, left, "==", right); }

void EqualToNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "EqualToOperator", {left.get(), right.get()});
}

NotEqualNode::NotEqualNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType)
    : ZMFNode(kind, valueType, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void NotEqualNode::print(PrintTarget& target) const { printComparison(target, left, "!=", right); }

void NotEqualNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "NotEqualOperator", {left.get(), right.get()});
}

LessThanNode::LessThanNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType)
    : ZMFNode(kind, valueType, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void LessThanNode::print(PrintTarget& target) const { printComparison(target, left, "<", right); }

void LessThanNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "LessThanOperator", {left.get(), right.get()});
}

LessEqualNode::LessEqualNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType)
    : ZMFNode(kind, valueType, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void LessEqualNode::print(PrintTarget& target) const { printComparison(target, left, "<=", right); }

void LessEqualNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "LessEqualOperator", {left.get(), right.get()});
}

GreaterThanNode::GreaterThanNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType)
    : ZMFNode(kind, valueType, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void GreaterThanNode::print(PrintTarget& target) const { printComparison(target, left, ">", right); }

void GreaterThanNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "GreaterThanOperator", {left.get(), right.get()});
}

GreaterEqualNode::GreaterEqualNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType)
    : ZMFNode(kind, valueType, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void GreaterEqualNode::print(PrintTarget& target) const { printComparison(target, left, ">=", right); }

void GreaterEqualNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "GreaterEqualOperator", {left.get(), right.get()});
}

}  // namespace tarnfold::zmf
