#include "chess/board.h"

#include "chess/attacks.h"
#include "chess/keys.h"

namespace tarnfold {

namespace {

// Deep enough for any real game and its variations; a deeper stack still
// works, it just reallocates.
constexpr size_t reservedMoves = 512;
constexpr size_t reservedExplosions = 64;

}  // namespace

Board::Board(Variant initialVariant) {
    moveStack.reserve(reservedMoves);
    explosions.reserve(reservedExplosions);
    reset();
    setVariant(initialVariant);
}

void Board::reset() {
    for (auto& counts : pocket) counts.fill(0);
    for (auto& sets : pieces) sets.fill(0);
    byType.fill(0);
    byColor.fill(0);
    occupied = 0;
    promoted = 0;
    sideToMove = White;
    enPassantSquare = NoSquare;
    enPassantCapturable = false;
    plyCount = 0;
    fullmoveNumber = 1;
    halfmoveClock = 0;
    castlingRights = 0;
    squares.fill(NoPiece);
    pieceIds.fill(0);
    moveStack.clear();
    explosions.clear();
    key = sideKey;
    nextPieceId = 1;
    // Slots 1 and 2 hold a1 and h8, crosswise to their bit meaning; harmless,
    // because a right is only ever granted together with its own slot.
    castlingRookSquare = {H1, A1, H8, A8};
    kingHomeSquare = {E1, E8};
    const uint8_t checks = variantRules.countsChecks ? 3 : 0;
    checksRemaining = {checks, checks};
}

void Board::setEnPassant(Square square) {
    if (enPassantCapturable) key ^= enPassantKey(fileOf(enPassantSquare));
    enPassantSquare = square;
    if (square == NoSquare) {
        enPassantCapturable = false;
        return;
    }
    // A square on rank 3 lies behind a white pawn, so a black pawn captures.
    if (rankOf(square) == 2)
        enPassantCapturable = (pawnAttacks[White][square] & pieces[Black][Pawn]) != 0;
    else
        enPassantCapturable = (pawnAttacks[Black][square] & pieces[White][Pawn]) != 0;
    if (enPassantCapturable) key ^= enPassantKey(fileOf(square));
}

void Board::setSideToMove(Color color) {
    if (color != sideToMove) key ^= sideKey;
    sideToMove = color;
}

void Board::setCastlingRights(CastlingRights rights) {
    key ^= castlingKeyPart(CastlingRights(castlingRights ^ rights));
    castlingRights = rights;
}

void Board::cutCastlingRights(bool standardHomes) {
    CastlingRights kept = 0;
    if (!variantRules.noCastling) {
        static constexpr Square standardRook[4] = {H1, H8, A1, A8};
        static constexpr Square standardKing[2] = {E1, E8};
        for (int bit = 0; bit < 4; ++bit) {
            if (!(castlingRights & (1 << bit))) continue;
            const Color color = castlingColor(bit);
            const Square rook = standardHomes ? standardRook[bit] : castlingRookSquare[bit];
            const Square king = standardHomes ? standardKing[color] : kingHomeSquare[color];
            const int backRank = color == White ? 0 : 7;
            const bool sideOk = castlingIsShort(bit) ? king < rook : king > rook;
            if (rook >= NoSquare || king >= NoSquare) continue;
            if (rankOf(rook) != backRank || rankOf(king) != backRank || !sideOk) continue;
            if (squares[rook] != makePiece(Rook, color) || squares[king] != makePiece(King, color)) continue;
            if (contains(promoted, rook) || contains(promoted, king)) continue;
            if (standardHomes && (castlingRookSquare[bit] != rook || kingHomeSquare[color] != king)) continue;
            kept |= CastlingRights(1 << bit);
        }
    }
    setCastlingRights(kept);
}

void Board::addPocket(Piece piece) { setPocketCount(piece, uint8_t(pocketCount(piece) + 1)); }

void Board::removePocket(Piece piece) { setPocketCount(piece, uint8_t(pocketCount(piece) - 1)); }

void Board::setPocketCount(Piece piece, uint8_t count) {
    uint8_t& stored = pocket[pieceColor(piece)][pieceType(piece)];
    if (variantRules.hasPockets) key ^= (stored * pocketKey[piece]) ^ (count * pocketKey[piece]);
    stored = count;
}

}  // namespace tarnfold
