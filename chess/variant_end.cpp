// Ends of a game by a variant's own rules. Ordinary checkmate and stalemate
// are not among them.

#include "chess/board.h"

namespace tarnfold {

namespace {

bool onlyKing(const Board& board, Color color) {
    return board.byColor[color] && board.byColor[color] == board.pieces[color][King];
}

// Bare in the sense of the variant: no pieces at all, or, where kings are
// royal, nothing but the king.
bool isBare(const Board& board, Color color) {
    return !board.byColor[color] || (!board.variantRules.kingsNotRoyal && onlyKing(board, color));
}

bool hasUnpromotedKing(const Board& board, Color color) {
    return (board.pieces[color][King] & ~board.promoted) != 0;
}

// "Has no legal move" in the sense of stalemate: a game already ended by a
// variant rule has no moves either, and that is not being blocked.
bool blocked(Board& board) { return !board.isVariantEnd() && !board.hasLegalMove(); }

}  // namespace

bool Board::isVariantEnd() const {
    if (byType[King] & goalSquares) {
        const bool blackMayStillEqual =
            variantRules.blackMayEqual && sideToMove == Black && !(pieces[Black][King] & goalSquares);
        if (!blackMayStillEqual) return true;
    }
    if (variantRules.countsChecks && (checksRemaining[White] == 0 || checksRemaining[Black] == 0))
        return true;
    if (!byColor[sideToMove]) return true;
    if (variantRules.bareWins && (isBare(*this, White) || isBare(*this, Black))) return true;
    if (variantRules.explosions && (!hasUnpromotedKing(*this, White) || !hasUnpromotedKing(*this, Black)))
        return true;
    return false;
}

bool Board::isVariantWin() {
    const Color us = sideToMove, them = otherColor(us);
    if ((pieces[us][King] & goalSquares) && !(pieces[them][King] & goalSquares)) return true;
    if (variantRules.countsChecks && checksRemaining[us] == 0) return true;
    if (variantRules.bareWins && isBare(*this, us)) return true;
    if (variantRules.explosions && !hasUnpromotedKing(*this, them) && hasUnpromotedKing(*this, us))
        return true;
    const VariantRules& rules = variantRules;
    if (!rules.stalemateWins && !rules.stalemateByCount && !rules.checkmateWins) return false;
    if (!blocked(*this)) return false;
    const bool inCheck = isInCheck(us);
    if (!inCheck && rules.stalemateWins) return true;
    if (!inCheck && rules.stalemateByCount && popCount(byColor[us]) < popCount(byColor[them])) return true;
    return inCheck && rules.checkmateWins;
}

bool Board::isVariantLoss() {
    const Color us = sideToMove, them = otherColor(us);
    // Both kings home is a draw, not a loss.
    if ((pieces[them][King] & goalSquares) && !(pieces[us][King] & goalSquares) &&
        !(variantRules.blackMayEqual && us == Black))
        return true;
    if (variantRules.countsChecks && checksRemaining[them] == 0) return true;
    if (variantRules.bareWins) {
        if (isBare(*this, them)) return true;
    } else if (!byColor[us] && !hasLegalMove()) {
        return true;
    }
    if (variantRules.explosions && !hasUnpromotedKing(*this, us) && hasUnpromotedKing(*this, them))
        return true;
    return variantRules.stalemateByCount && !isInCheck(us) && blocked(*this) &&
           popCount(byColor[us]) > popCount(byColor[them]);
}

bool Board::isVariantDraw() {
    if (goalSquares && (pieces[White][King] & goalSquares) && (pieces[Black][King] & goalSquares))
        return true;
    if (variantRules.countsChecks && checksRemaining[White] == 0 && checksRemaining[Black] == 0) return true;
    return variantRules.bareWins && variantRules.stalemateByCount && byColor[sideToMove] && blocked(*this) &&
           popCount(byColor[White]) == popCount(byColor[Black]);
}

}  // namespace tarnfold
