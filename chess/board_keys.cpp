#include "chess/board.h"
#include "chess/keys.h"

namespace tarnfold {

namespace {

// The key table lists the rights as White short, White long, Black short,
// Black long; the rights bits run White short, Black short, White long,
// Black long.
constexpr int castlingKeyIndex[4] = {0, 2, 1, 3};

}  // namespace

uint64_t Board::castlingKeyPart(CastlingRights rights) const {
    uint64_t part = 0;
    for (int bit = 0; bit < 4; ++bit)
        if (rights & (1 << bit)) part ^= castlingKey[castlingKeyIndex[bit]];
    return part;
}

uint64_t Board::pocketKeyPart() const {
    if (!variantRules.hasPockets) return 0;
    uint64_t part = 0;
    for (int color = 0; color < 2; ++color)
        for (PieceType type = Pawn; type < NoPieceType; ++type)
            part ^= pocket[color][type] * pocketKey[makePiece(type, Color(color))];
    return part;
}

uint64_t Board::stateKey() const {
    uint64_t part = castlingKeyPart(castlingRights) ^ pocketKeyPart();
    if (enPassantCapturable) part ^= enPassantKey(fileOf(enPassantSquare));
    if (sideToMove == White) part ^= sideKey;
    return part;
}

uint64_t Board::pieceKey() const { return key ^ stateKey(); }

uint64_t Board::fullKey() const {
    uint64_t full = stateKey();
    for (Bitboard rest = occupied; rest;) {
        const Square square = popLowest(rest);
        full ^= pieceSquareKey(squares[square], square);
    }
    return full;
}

uint64_t Board::maskedKey(Bitboard squareSet, bool withState) const {
    uint64_t masked = withState ? key : pieceKey();
    for (Bitboard outside = occupied & ~squareSet; outside;) {
        const Square square = popLowest(outside);
        masked ^= pieceSquareKey(squares[square], square);
    }
    return masked;
}

}  // namespace tarnfold
