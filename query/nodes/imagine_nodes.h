#pragma once
// imagine: a filter evaluated on a changed copy of the board, where pieces
// appear, two squares swap their contents or the other side is to move. The
// specifier nodes are never evaluated on their own; the imagine filter reads
// their fields.

#include <cstdint>
#include <string>
#include <vector>

#include "chess/types.h"
#include "query/node.h"

namespace tarnfold::zmf {

// imagine specifier* : F, of the body's type.
class ImagineNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Imagine;

    ImagineNode(OptionalOffset location, std::vector<NodePtr> specifiers, NodePtr body);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    // ImaginePieceNode, ImagineSwapNode and ImagineSidetomoveNode, applied in order.
    std::vector<NodePtr> specifiers;
    NodePtr body;
};

// piece designator --> S: the piece appears on each square of the set.
class ImaginePieceNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::ImaginePiece;

    ImaginePieceNode(OptionalOffset location, Piece piece, std::string text, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    Piece piece;       // after any enclosing colour swap
    std::string text;  // the designator as written
    NodePtr operand;
};

// swap S S: the contents of two single squares change places.
class ImagineSwapNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::ImagineSwap;

    ImagineSwapNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

enum class ImaginedSide : std::uint8_t { White = 0, Black = 1, Reverse = 2 };

// sidetomove white, black or reverse.
class ImagineSidetomoveNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::ImagineSidetomove;

    ImagineSidetomoveNode(OptionalOffset location, ImaginedSide side);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    ImaginedSide side;
};

}  // namespace tarnfold::zmf
