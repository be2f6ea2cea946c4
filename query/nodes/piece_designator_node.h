#pragma once
// A piece designator with everything known at parse time folded in: the
// squares and piece letters after any enclosing transforms.

#include <cstdint>
#include <optional>
#include <string>

#include "chess/types.h"
#include "query/node.h"

namespace tarnfold::zmf {

class PieceDesignatorNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::PieceDesignator;

    PieceDesignatorNode(OptionalOffset location, std::optional<Bitboard> squares,
                        std::optional<std::uint16_t> pieceMask, std::string text);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::optional<Bitboard> squares;         // absent: all 64 squares
    std::optional<std::uint16_t> pieceMask;  // absent: any piece or an empty square
    std::string text;                        // as written in the query
    // The sets were changed by an enclosing transform, so that `text` no
    // longer tells them.
    std::uint8_t transformed = 0;
};

}  // namespace tarnfold::zmf
