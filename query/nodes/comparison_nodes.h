#pragma once
// Comparisons of numbers, sets, strings and positions. The handler settles
// the operand types (converting a set or a position to a number where the
// other side is a number) and passes the result type in: the left
// operand's type, except for `!=`, which is always Boolean. All six take
// the same arguments so that one handler template builds them.

#include "query/node.h"
#include "query/value_type.h"

namespace tarnfold::zmf {

class EqualToNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::EqualTo;

    EqualToNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class NotEqualNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::NotEqual;

    NotEqualNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class LessThanNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::LessThan;

    LessThanNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class LessEqualNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::LessEqual;

    LessEqualNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class GreaterThanNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::GreaterThan;

    GreaterThanNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class GreaterEqualNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::GreaterEqual;

    GreaterEqualNode(OptionalOffset location, NodePtr left, NodePtr right, ValueType valueType);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

}  // namespace tarnfold::zmf
