#include "query/nodes/attack_nodes.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

AttacksNode::AttacksNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Set, location), left(std::move(left)), right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

void AttacksNode::print(PrintTarget& target) const {
    printInfix(target, *left, "attacks", *right, TokenKind::KwAttacks);
}

void AttacksNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Attacks", {left.get(), right.get()});
}

AttackedByNode::AttackedByNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Set, location),
      left(std::move(left)),
      right(std::move(right)) {
    spanOperands(*this, *this->left, *this->right);
}

// Both spellings read back the same; the one-word form is the canonical one.
void AttackedByNode::print(PrintTarget& target) const {
    printInfix(target, *left, "attackedby", *right, TokenKind::KwAttackedby);
}

void AttackedByNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "AttackedBy", {left.get(), right.get()});
}

}  // namespace tarnfold::zmf
