#pragma once
// Facts about the current position that need no operand.

#include "query/node.h"

namespace tarnfold::zmf {

class CheckNode : public ZMFNode {
public:
    explicit CheckNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

class MateNode : public ZMFNode {
public:
    explicit MateNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

class WhiteToMoveNode : public ZMFNode {
public:
    explicit WhiteToMoveNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

class BlackToMoveNode : public ZMFNode {
public:
    explicit BlackToMoveNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

}  // namespace tarnfold::zmf
