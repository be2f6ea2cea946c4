#pragma once
// Facts about the current position that need no operand.

#include "query/node.h"

namespace tarnfold::zmf {

class CheckNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Check;

    explicit CheckNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

class MateNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Mate;

    explicit MateNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

class WhiteToMoveNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::WhiteToMove;

    explicit WhiteToMoveNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

class BlackToMoveNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::BlackToMove;

    explicit BlackToMoveNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

}  // namespace tarnfold::zmf
