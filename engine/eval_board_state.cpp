// Filters that read the current row's board: check, mate, stalemate, the
// side to move, piece designators; and the game's number.

#include "engine/node_cast.h"
#include "engine/zmf_engine.h"
#include "query/piece_designator.h"

namespace tarnfold::zmf {

Value ZMFEngine::eval(const CheckNode&) { return Value::boolean(board().isInCheck(board().sideToMove)); }

Value ZMFEngine::eval(const MateNode&) { return Value::boolean(mutableBoard().isCheckmate()); }

Value ZMFEngine::eval(const StalemateNode&) { return Value::boolean(mutableBoard().isStalemate()); }

Value ZMFEngine::eval(const WhiteToMoveNode&) { return Value::boolean(board().sideToMove == White); }

Value ZMFEngine::eval(const BlackToMoveNode&) { return Value::boolean(board().sideToMove == Black); }

Value ZMFEngine::eval(const SideToMoveNode&) { return Value::numeric(board().sideToMove == White ? 1 : -1); }

Value ZMFEngine::eval(const WhiteNode&) { return Value::numeric(1); }

Value ZMFEngine::eval(const BlackNode&) { return Value::numeric(-1); }

Value ZMFEngine::eval(const GamenumberNode&) { return Value::numeric(gameNumber); }

Value ZMFEngine::eval(const PieceDesignatorNode& node) {
    return Value::set(pieceDesignatorValue(node.squares, node.pieceMask, board()));
}

}  // namespace tarnfold::zmf
