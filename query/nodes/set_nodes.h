#pragma once
// Set algebra and counting.

#include "query/node.h"

namespace tarnfold::zmf {

// Set, or Position when both operands are positions (the intersection of
// position sets).
class BitAndNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::BitAnd;

    BitAndNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class BitOrNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::BitOr;

    BitOrNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

// ~S: the squares not in the set.
class BitComplementNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::BitComplement;

    BitComplementNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// #F: the size of a set, a string or a dictionary.
class CardinalityNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Cardinality;

    CardinalityNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

}  // namespace tarnfold::zmf
