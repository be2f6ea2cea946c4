#include "chess/perft.h"

#include <deque>

namespace tarnfold {

namespace {

// One list per ply, kept between calls so that counting allocates nothing
// once the lists have grown.
MoveList& listAtPly(int ply) {
    // A deque, so that growing keeps the outer plies' lists in place.
    thread_local std::deque<MoveList> lists;
    if (ply >= int(lists.size())) lists.resize(ply + 1);
    return lists[ply];
}

uint64_t countLeaves(Board& board, int depth, int ply, bool makeLastPly) {
    MoveList& moves = listAtPly(ply);
    board.generateLegalMoves(moves);
    if (depth == 1 && !makeLastPly) return moves.size();
    uint64_t nodes = 0;
    for (size_t i = 0; i < moves.size(); ++i) {
        board.makeMove(moves[i]);
        nodes += depth == 1 ? 1 : countLeaves(board, depth - 1, ply + 1, makeLastPly);
        board.unmakeMove();
    }
    return nodes;
}

}  // namespace

uint64_t perft(Board& board, int depth) { return depth <= 0 ? 1 : countLeaves(board, depth, 0, false); }

uint64_t perftMakingEveryMove(Board& board, int depth) {
    return depth <= 0 ? 1 : countLeaves(board, depth, 0, true);
}

}  // namespace tarnfold
