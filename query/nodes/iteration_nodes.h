#pragma once
// Loops that bind a variable of their own to each element of a set, a string
// or a dictionary and run a body for each; and the assignment of a piece
// identity. The loop variable is a local of the body's scope, with a slot of
// its own that outlives the scope, since slots are never reused.

#include <cstdint>
#include <string>

#include "query/node.h"

namespace tarnfold::zmf {

// piece V in S F, piece all V in S F: V is the identity of each piece on S.
class PieceNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Piece;

    PieceNode(OptionalOffset location, std::string variable, std::uint32_t slot, NodePtr set, NodePtr body,
              bool all);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string variable;
    std::uint32_t slot;
    NodePtr set;
    NodePtr body;
    bool all;  // Boolean: whether the body held for every piece
};

// piece V = S: V takes the identity of the piece on the one square of S.
class PieceAssignNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::PieceAssign;

    PieceAssignNode(OptionalOffset location, std::string variable, std::uint32_t slot, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string variable;
    std::uint32_t slot;
    NodePtr operand;
};

// square V in S F, square all V in S F: V is each square of S as a set.
class SquareNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Square;

    SquareNode(OptionalOffset location, std::string variable, std::uint32_t slot, NodePtr set, NodePtr body,
               bool all);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string variable;
    std::uint32_t slot;
    NodePtr set;
    NodePtr body;
    bool all;
};

// string V in T F: a String loop variable over the string T.
class StringIteratorNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::StringIterator;

    StringIteratorNode(OptionalOffset location, std::string variable, std::uint32_t slot, NodePtr target,
                       NodePtr body);
    // while (T ~~ "pattern") F: the body runs once for each match.
    StringIteratorNode(OptionalOffset location, NodePtr match, NodePtr body);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string variable;  // empty in the while form
    std::uint32_t slot = 0;
    NodePtr target;  // the string of the `string V in` form, else null
    NodePtr match;   // the pattern match of the while form (perhaps in parentheses), else null
    NodePtr body;
};

// string V in D F: V is each key of the dictionary variable D, in order.
class DictionaryIteratorNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::DictionaryIterator;

    DictionaryIteratorNode(OptionalOffset location, std::string variable, std::uint32_t slot,
                           NodePtr dictionary, std::uint32_t dictionarySlot, NodePtr body);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string variable;
    std::uint32_t slot;
    NodePtr dictionary;  // the variable as written, possibly in parentheses
    std::uint32_t dictionarySlot;
    NodePtr body;
};

}  // namespace tarnfold::zmf
