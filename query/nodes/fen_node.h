#pragma once
// fen "...": the placement of the current position against a FEN text.

#include <array>
#include <optional>
#include <string>

#include "chess/types.h"
#include "query/node.h"

namespace tarnfold::zmf {

class FenNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Fen;

    FenNode(OptionalOffset location, std::string fen);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string fen;  // as written between the quotes

    // What the text asks of a board, worked out once: the side to move if
    // the text gives one, the squares that must be empty, and the squares
    // each colour's piece type must hold.
    std::optional<Color> sideToMove;
    Bitboard emptySquares = 0;
    std::array<std::array<Bitboard, 6>, 2> pieces{};
};

}  // namespace tarnfold::zmf
