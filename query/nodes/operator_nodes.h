#pragma once
// Operators of no larger family: membership, evaluation at another position,
// and the identity that only marks where an operand ends.

#include "query/node.h"

namespace tarnfold::zmf {

// S in S: a subset; T in T: a substring. Boolean either way.
class InNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::In;

    InNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

// P : F evaluates F at the position P; its value, and so its type, is F's.
class ColonNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Colon;

    ColonNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

// `F: the operand itself. It lets a range endpoint be more than a literal,
// and ends a piece designator where the text would otherwise continue it.
class IdentityNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Identity;

    IdentityNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

}  // namespace tarnfold::zmf
