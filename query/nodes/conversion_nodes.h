#pragma once
// Implicit conversions, made up by the parser where one type stands and
// another is needed. They cover their operand's text and print as it.

#include "query/node.h"

namespace tarnfold::zmf {

// Set to Numeric: the number of squares.
class SetToNumericConversionNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::SetToNumericConversion;

    SetToNumericConversionNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// Position to Numeric: the position's id.
class PositionToNumericConversionNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::PositionToNumericConversion;

    PositionToNumericConversionNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// Piece to Set: the square the piece stands on.
class PieceIDToSetConversionNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::PieceIDToSetConversion;

    PieceIDToSetConversionNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

}  // namespace tarnfold::zmf
