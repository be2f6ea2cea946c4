#pragma once
// Integer and truth literals.

#include <cstdint>

#include "query/node.h"

namespace tarnfold::zmf {

class IntegerNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Integer;

    IntegerNode(OptionalOffset location, std::int64_t value);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::int64_t value;
};

class TrueNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::True;

    explicit TrueNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

class FalseNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::False;

    explicit FalseNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

}  // namespace tarnfold::zmf
