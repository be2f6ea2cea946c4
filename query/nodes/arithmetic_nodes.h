#pragma once
// Integer arithmetic; `+` also joins strings.

#include "query/node.h"

namespace tarnfold::zmf {

// The type is the left operand's: Numeric or String.
class AddNode : public ZMFNode {
public:
    AddNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class SubtractNode : public ZMFNode {
public:
    SubtractNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class MultiplyNode : public ZMFNode {
public:
    MultiplyNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class DivideNode : public ZMFNode {
public:
    DivideNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class ModulusNode : public ZMFNode {
public:
    ModulusNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

class NegateNode : public ZMFNode {
public:
    NegateNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

class AbsNode : public ZMFNode {
public:
    AbsNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

}  // namespace tarnfold::zmf
