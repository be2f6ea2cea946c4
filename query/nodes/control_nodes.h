#pragma once
// Control of evaluation: conditions, repetition, assertions, the choice of
// a best value among operands or over the game, and the comparison of the
// current position with every other.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "query/node.h"
#include "query/sort_slots.h"

namespace tarnfold::zmf {

// assert F: a false operand ends the run with an error.
class AssertNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Assert;

    AssertNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// loop F: evaluates F again and again until it is false.
class LoopNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Loop;

    LoopNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// if F then F else F. With an else branch of the then branch's type (one of
// Numeric, Set, Position and String) the node has that type; otherwise it
// is Boolean.
class IfNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::If;

    IfNode(OptionalOffset location, NodePtr condition, NodePtr thenBranch, NodePtr elseBranch);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr condition;
    NodePtr thenBranch;
    NodePtr elseBranch;  // null when absent
};

// while (F) F: the body runs as long as the condition holds.
class WhileNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::While;

    WhileNode(OptionalOffset location, NodePtr condition, NodePtr body);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr condition;
    NodePtr body;
};

// max(F F+): the greatest of the operands, all Numeric or all String.
class MaxNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Max;

    MaxNode(OptionalOffset location, std::vector<NodePtr> arguments);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::vector<NodePtr> arguments;
};

// min(F F+): the least of the operands, all Numeric or all String.
class MinNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Min;

    MinNode(OptionalOffset location, std::vector<NodePtr> arguments);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::vector<NodePtr> arguments;
};

// sort quiet min "description" F: the best value of F over the game, kept
// in a sort slot that every sort of the same description shares.
class SortNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Sort;

    SortNode(OptionalOffset location, std::uint32_t slot, SortDirection direction,
             std::optional<std::string> label, bool quiet, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::uint32_t slot;
    SortDirection direction;
    std::optional<std::string> label;  // the description, UTF-8 as written
    bool quiet;
    NodePtr operand;  // Numeric or String; a set arrives wrapped in its count
};

// echo quiet (S T) in all F: F at every position T, with S bound to the
// current one. Both variables are Position locals of the body.
class EchoNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Echo;

    EchoNode(OptionalOffset location, std::string sourceVariable, std::uint32_t sourceSlot,
             std::string targetVariable, std::uint32_t targetSlot, NodePtr body, bool inAll, bool quiet);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string sourceVariable;
    std::uint32_t sourceSlot;
    std::string targetVariable;
    std::uint32_t targetSlot;
    NodePtr body;
    // Put in front of the comments that mark a pair; the syntax gives no
    // way to write one, so it is empty.
    std::string label;
    bool inAll;  // the current position is compared with itself as well
    bool quiet;
};

}  // namespace tarnfold::zmf
