#pragma once
// Variables: a use of a name, and assignments to it.

#include <cstdint>
#include <string>

#include "query/node.h"
#include "query/token.h"

namespace tarnfold::zmf {

class IdentifierNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Identifier;

    IdentifierNode(OptionalOffset location, std::string name, std::uint32_t slot, ValueType valueType);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string name;
    std::uint32_t slot;
};

// x = v, x += v and the other assignment operators.
class AssignNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Assign;

    AssignNode(OptionalOffset location, NodePtr target, NodePtr value, TokenKind op, std::string spelling);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
    bool isAssignment() const override { return true; }

    NodePtr target;
    NodePtr value;
    TokenKind op;
    std::string spelling;
};

}  // namespace tarnfold::zmf
