// Reasoning over the moves that could have led to a position: whether a check
// can have been given, and the tree of analyses a few moves back.

#include <algorithm>
#include <array>

#include "analysis/position_analysis.h"
#include "chess/attacks.h"

namespace tarnfold {

namespace {

// Checks given in answer to checks can chain back a long way. Past this many
// plies, or this many reverse moves tried, the check is taken to be possible:
// a question left open must never become a finding.
constexpr unsigned maxCrossCheckDepth = 8;
constexpr unsigned reverseMoveBudget = 20000;

// One list per level of the recursion, kept by the thread so that the
// lists stop allocating once they have grown.
MoveList& scratchList(unsigned depth) {
    thread_local std::array<MoveList, maxCrossCheckDepth> lists;
    return lists[depth];
}

// The common check, tried before any list is made: one piece gives it, and
// it can simply have stepped or slid there from an empty square, from which
// neither it nor anything else attacked the king it now checks, and with the
// side that moved not in check either. That move back is one the reverse
// generator lists; after a double step, though, the generator allows only
// that, so the shortcut is not taken then.
bool checkerSimplyArrived(const Board& board) {
    if (board.enPassantSquare != NoSquare) return false;
    const Color victim = board.sideToMove, mover = otherColor(victim);
    const Square king = board.royalKingSquare(victim);
    if (king == NoSquare) return false;
    const Bitboard checkers = board.attackersTo(king, mover);
    if (!checkers || moreThanOne(checkers)) return false;
    const Square checker = lowestSquare(checkers);
    const PieceType type = pieceType(board.squares[checker]);
    const Bitboard empty = ~board.occupied;
    Bitboard origins = 0;
    switch (type) {
        case Pawn: {
            const Square back = Square(mover == White ? checker - 8 : checker + 8);
            const bool fromFirstRank = rankOf(back) == (mover == White ? 0 : 7);
            if (!fromFirstRank && contains(empty, back)) origins = squareBit(back);
            break;
        }
        case Knight: origins = knightAttacks[checker] & empty; break;
        case Bishop: origins = bishopAttacks(checker, board.occupied) & empty; break;
        case Rook: origins = rookAttacks(checker, board.occupied) & empty; break;
        case Queen: origins = queenAttacks(checker, board.occupied) & empty; break;
        default: return false;
    }
    const Square moverKing = board.royalKingSquare(mover);
    for (Bitboard rest = origins; rest;) {
        const Square origin = popLowest(rest);
        const Bitboard before = board.occupied ^ squareBit(checker) ^ squareBit(origin);
        Bitboard reach;
        switch (type) {
            case Pawn: reach = pawnAttacks[mover][origin]; break;
            case Knight: reach = knightAttacks[origin]; break;
            case Bishop: reach = bishopAttacks(origin, before); break;
            case Rook: reach = rookAttacks(origin, before); break;
            default: reach = queenAttacks(origin, before); break;
        }
        if (contains(reach, king)) continue;
        if (board.attackersTo(king, mover, before) & ~squareBit(checker)) continue;
        if (moverKing != NoSquare && board.attackersTo(moverKing, victim, before)) continue;
        return true;
    }
    return false;
}

// The side to move is in check. The check can have arisen if some legal
// reverse move leads to a position where the side that moved was not in
// check, or was in a check that can have arisen in its turn. The moves of
// the checking pieces back are tried first, and the first predecessor found
// ends the search.
bool checkCanArise(Board& board, unsigned depth, unsigned& budget) {
    if (depth >= maxCrossCheckDepth || budget == 0) return true;
    if (checkerSimplyArrived(board)) return true;
    MoveList& list = scratchList(depth);
    board.generateReverseMoves(list);
    const Square king = board.royalKingSquare(board.sideToMove);
    const Bitboard checkers = king == NoSquare ? 0 : board.attackersTo(king, otherColor(board.sideToMove));
    std::partition(list.begin(), list.end(), [&](Move move) { return contains(checkers, move.to()); });
    for (const Move move : list) {
        if (!board.isLegalMove(move)) continue;
        if (budget == 0) return true;
        --budget;
        board.makeMove(move);
        const bool arises = !board.isInCheck(board.sideToMove) || checkCanArise(board, depth + 1, budget);
        board.unmakeMove();
        if (arises) return true;
    }
    return false;
}

}  // namespace

bool checkIsImpossible(Board& board, Color color) {
    if (!board.isInCheck(color)) return false;
    const Color saved = board.sideToMove;
    board.setSideToMove(color);
    unsigned budget = reverseMoveBudget;
    const bool impossible = !checkCanArise(board, 0, budget);
    board.setSideToMove(saved);
    return impossible;
}

bool analyzeRetrograde(Board& board, AnalysisReport& tree, unsigned depth) {
    if (!analyzePosition(board, tree, false)) return false;
    if (depth == 0) return true;
    MoveList moves;
    board.generateLegalReverseMoves(moves);
    bool reached = false;
    for (const Move move : moves) {
        AnalysisReport::AfterMove step{move, {}};
        board.makeMove(move);
        if (analyzeRetrograde(board, step.report, depth - 1)) reached = true;
        board.unmakeMove();
        tree.afterMoves.push_back(std::move(step));
    }
    return reached;
}

}  // namespace tarnfold
