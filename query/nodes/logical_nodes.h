#pragma once
// not, and, or: operands of any type, judged by their truth.

#include "query/node.h"

namespace tarnfold::zmf {

class NotNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Not;

    NotNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

class AndNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::And;

    AndNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class OrNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Or;

    OrNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

}  // namespace tarnfold::zmf
