#pragma once
// The frame of a query: the container of its top-level filters, braces,
// parentheses, and the numeric range that several filters take.

#include <vector>

#include "query/node.h"

namespace tarnfold::zmf {

// The root. Its filters are joined by juxtaposition, which is a conjunction.
class QueryContainer : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::QueryContainer;

    explicit QueryContainer(OptionalOffset location, std::vector<NodePtr> children = {});

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::vector<NodePtr> children;
};

// { F+ }: the type is the last filter's.
class CompoundNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Compound;

    CompoundNode(OptionalOffset location, std::vector<NodePtr> children);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
    const ZMFNode& unwrapAll() const override;
    ZMFNode& unwrapAll() override;

    std::vector<NodePtr> children;

private:
    // Whether the braces stand for their only filter and nothing more. Braces
    // that must be evaluated as one unit will have to answer false here.
    bool transparent() const;
};

// ( F ): only kept in the tree when the dump asks for it.
class ParenNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Paren;

    ParenNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
    const ZMFNode& unwrapParens() const override;
    ZMFNode& unwrapParens() override;
    const ZMFNode& unwrapAll() const override;
    ZMFNode& unwrapAll() override;

    NodePtr operand;
};

// A numeric range; without `upper` it is exactly `lower`.
class RangeNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Range;

    RangeNode(OptionalOffset location, NodePtr lower, NodePtr upper);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr lower;
    NodePtr upper;  // may be null
};

}  // namespace tarnfold::zmf
