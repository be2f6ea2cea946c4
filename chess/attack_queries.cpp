#include "chess/attacks.h"
#include "chess/board.h"

namespace tarnfold {

Bitboard Board::attackersTo(Square square, Color color, Bitboard occupancy) const {
    const auto& own = pieces[color];
    return (pawnAttacks[otherColor(color)][square] & own[Pawn]) | (knightAttacks[square] & own[Knight]) |
           (kingAttacks[square] & own[King]) |
           (bishopAttacks(square, occupancy) & (own[Bishop] | own[Queen])) |
           (rookAttacks(square, occupancy) & (own[Rook] | own[Queen]));
}

Bitboard Board::attackedSquares(Color color, Bitboard occupancy) const {
    const auto& own = pieces[color];
    const Bitboard pawns = own[Pawn];
    Bitboard attacked = color == White ? ((pawns & ~fileMask[0]) << 7) | ((pawns & ~fileMask[7]) << 9)
                                       : ((pawns & ~fileMask[0]) >> 9) | ((pawns & ~fileMask[7]) >> 7);
    for (Bitboard set = own[Knight]; set;) attacked |= knightAttacks[popLowest(set)];
    for (Bitboard set = own[King]; set;) attacked |= kingAttacks[popLowest(set)];
    for (Bitboard set = own[Bishop] | own[Queen]; set;) attacked |= bishopAttacks(popLowest(set), occupancy);
    for (Bitboard set = own[Rook] | own[Queen]; set;) attacked |= rookAttacks(popLowest(set), occupancy);
    return attacked;
}

Bitboard Board::attacksFrom(Square square) const {
    const Piece piece = squares[square];
    if (piece == NoPiece) return 0;
    switch (pieceType(piece)) {
        case Pawn: return pawnAttacks[pieceColor(piece)][square];
        case Knight: return knightAttacks[square];
        case Bishop: return bishopAttacks(square, occupied);
        case Rook: return rookAttacks(square, occupied);
        case Queen: return queenAttacks(square, occupied);
        case King: return kingAttacks[square];
        case NoPieceType: break;
    }
    return 0;
}

Square Board::royalKingSquare(Color color) const {
    const Bitboard kings = pieces[color][King] & ~promoted;
    return kings && !moreThanOne(kings) ? lowestSquare(kings) : NoSquare;
}

bool Board::isInCheck(Color color) const {
    if (variantRules.kingsNotRoyal) return false;
    const Square king = royalKingSquare(color);
    if (king == NoSquare) return false;
    const Color enemy = otherColor(color);
    if (variantRules.kingsAdjacentSafe && (kingAttacks[king] & pieces[enemy][King] & ~promoted)) return false;
    return attackersTo(king, enemy) != 0;
}

void Board::pins(Bitboard& candidates, Bitboard& throughSet, Bitboard& targetSet) const {
    Bitboard pinners = 0, pinned = 0, pinnedTo = 0;
    for (Bitboard sliders = candidates & (byType[Bishop] | byType[Rook] | byType[Queen]); sliders;) {
        const Square slider = popLowest(sliders);
        const PieceType type = pieceType(squares[slider]);
        const Color enemy = otherColor(pieceColor(squares[slider]));
        for (int ray = 0; ray < rayDirectionCount; ++ray) {
            const bool diagonal =
                ray == NorthEast || ray == NorthWest || ray == SouthWest || ray == SouthEast;
            if (type == (diagonal ? Rook : Bishop)) continue;
            const Bitboard blockers = rayAttacks[ray][slider] & occupied;
            if (!blockers) continue;
            const Square first =
                runsUpward(Direction(ray)) ? lowestSquare(blockers) : highestSquare(blockers);
            if (!contains(throughSet & byColor[enemy], first)) continue;
            const Bitboard behind = rayAttacks[ray][first] & occupied;
            if (!behind) continue;
            const Square second = runsUpward(Direction(ray)) ? lowestSquare(behind) : highestSquare(behind);
            if (!contains(targetSet & byColor[enemy], second)) continue;
            pinners |= squareBit(slider);
            pinned |= squareBit(first);
            pinnedTo |= squareBit(second);
        }
    }
    candidates = pinners;
    throughSet = pinned;
    targetSet = pinnedTo;
}

}  // namespace tarnfold
