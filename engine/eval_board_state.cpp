// Filters that read the current row's board: check, mate, stalemate, the
// side to move, and piece designators.

#include "engine/node_cast.h"
#include "engine/zmf_engine.h"
#include "query/piece_designator.h"

namespace tarnfold::zmf {

Value ZMFEngine::evaluateBoardState(const ZMFNode& node) {
    const Color side = board().sideToMove;
    switch (node.kind) {
        case NodeKind::Check: return Value::boolean(board().isInCheck(side));
        case NodeKind::Mate: return Value::boolean(mutableBoard().isCheckmate());
        case NodeKind::Stalemate: return Value::boolean(mutableBoard().isStalemate());
        case NodeKind::WhiteToMove: return Value::boolean(side == White);
        case NodeKind::BlackToMove: return Value::boolean(side == Black);
        default: return Value::numeric(side == White ? 1 : -1);
    }
}

Value ZMFEngine::evaluatePieceDesignator(const ZMFNode& node) const {
    const auto& designator = as<PieceDesignatorNode>(node);
    return Value::set(pieceDesignatorValue(designator.squares, designator.pieceMask, board()));
}

}  // namespace tarnfold::zmf
