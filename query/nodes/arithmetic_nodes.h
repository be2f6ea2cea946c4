#pragma once
// Integer arithmetic; `+` also joins strings.

#include "query/node.h"

namespace tarnfold::zmf {

// The type is the left operand's: Numeric or String.
class AddNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Add;

    AddNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class SubtractNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Subtract;

    SubtractNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class MultiplyNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Multiply;

    MultiplyNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class DivideNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Divide;

    DivideNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class ModulusNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Modulus;

    ModulusNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class NegateNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Negate;

    NegateNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

class AbsNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Abs;

    AbsNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

}  // namespace tarnfold::zmf
