#pragma once
// Attacks between sets of squares.

#include "query/node.h"

namespace tarnfold::zmf {

// S attacks S: the squares of the left set that attack some square of the right.
class AttacksNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Attacks;

    AttacksNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

// S attackedby S (also written `attacked by`): the squares of the left set
// that some square of the right attacks.
class AttackedByNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::AttackedBy;

    AttackedByNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

}  // namespace tarnfold::zmf
