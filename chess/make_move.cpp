#include "chess/attacks.h"
#include "chess/board.h"
#include "chess/keys.h"

namespace tarnfold {

namespace {

constexpr CastlingRights rightsOf(Color color) {
    return color == White ? CastlingRights(WhiteShort | WhiteLong) : CastlingRights(BlackShort | BlackLong);
}

// The square of a pawn taken en passant: on the target's file, one rank
// nearer the capturer's side (rank 6 <-> 5, rank 3 <-> 4).
constexpr Square enPassantVictim(Square to) { return Square(to ^ 8); }

constexpr Square rookCastlingTarget(Color color, bool shortSide) {
    return makeSquare(shortSide ? 5 : 3, color == White ? 0 : 7);
}

void swapSquares(Board& board, Square a, Square b) {
    const Piece pieceA = board.squares[a], pieceB = board.squares[b];
    const uint16_t idA = board.pieceIds[a], idB = board.pieceIds[b];
    const bool promotedA = contains(board.promoted, a), promotedB = contains(board.promoted, b);
    board.setPiece(a, pieceB, idB, promotedB);
    board.setPiece(b, pieceA, idA, promotedA);
}

}  // namespace

// Lifting both before setting either makes every Chess960 overlap of the
// four squares work.
void Board::moveCastlers(Square kingFrom, Square kingTo, Square rookFrom, Square rookTo) {
    const Piece kingPiece = squares[kingFrom], rookPiece = squares[rookFrom];
    const uint16_t kingId = pieceIds[kingFrom], rookId = pieceIds[rookFrom];
    setPiece(kingFrom, NoPiece);
    setPiece(rookFrom, NoPiece);
    setPiece(kingTo, kingPiece, kingId);
    setPiece(rookTo, rookPiece, rookId);
}

Bitboard Board::explode(Square center) {
    const Bitboard blast = (kingAttacks[center] & occupied & ~byType[Pawn]) | (occupied & squareBit(center));
    for (Bitboard rest = blast; rest;) {
        const Square square = popLowest(rest);
        explosions.push_back({square, pieceIds[square], squares[square], contains(promoted, square)});
        setPiece(square, NoPiece);
    }
    return blast;
}

void Board::dropRightsTouching(Bitboard touched) {
    CastlingRights kept = castlingRights;
    for (int bit = 0; bit < 4; ++bit) {
        if (!(kept & (1 << bit))) continue;
        const Square rook = castlingRookSquare[bit], king = kingHomeSquare[castlingColor(bit)];
        if ((rook < NoSquare && contains(touched, rook)) || (king < NoSquare && contains(touched, king)))
            kept &= CastlingRights(~(1 << bit));
    }
    if (kept != castlingRights) setCastlingRights(kept);
}

// The record is written where it stays: one built aside and copied in
// stalls on store forwarding and costs more than the rest of the move.
UndoRecord& Board::pushUndoRecord(Move move) {
    UndoRecord& record = moveStack.emplace_back();
    record.move = move.value;
    record.previousEnPassantSquare = enPassantSquare;
    record.previousEnPassantCapturable = enPassantCapturable;
    record.previousCastlingRights = castlingRights;
    record.previousHalfmoveClock = halfmoveClock;
    record.previousKey = key;
    record.explosionCount = uint32_t(explosions.size());
    record.previousChecksRemaining = checksRemaining;
    record.previousNextPieceId = nextPieceId;
    return record;
}

void Board::makeMove(Move move) {
    UndoRecord& record = pushUndoRecord(move);
    if (move.isEdit()) {
        // The record keeps what actually stood on the square, whatever the
        // step claimed.
        const Square to = move.to();
        record.move = Move::edit(move.editCode(), move.moved(), move.from(), to, squares[to]).value;
        record.capturedPieceId = pieceIds[to];
        record.capturedWasPromoted = contains(promoted, to);
        makeEdit(move);
        return;
    }
    if (move.isReverse()) {
        record.capturedWasPromoted = contains(promoted, move.to());
        makeReverse(move, record);
        return;
    }

    const Color us = sideToMove, them = otherColor(us);
    const Square from = move.from(), to = move.to();
    const bool enPassant = move.isEnPassant();
    const Square victimSquare = enPassant ? enPassantVictim(to) : to;
    const Piece victim = enPassant ? makePiece(Pawn, them) : move.captured();
    if (victim != NoPiece) {
        record.capturedPieceId = pieceIds[victimSquare];
        record.capturedWasPromoted = contains(promoted, victimSquare);
        if (variantRules.hasPockets)
            addPocket(makePiece(record.capturedWasPromoted ? Pawn : pieceType(victim), us));
    }

    if (!move.isNull()) {
        Bitboard touched = squareBit(from) | squareBit(to);
        if (move.isDrop()) {
            setPiece(to, move.moved(), nextPieceId++);
            removePocket(move.moved());
        } else if (move.isCastle()) {
            const bool shortSide = move.isShortCastle();
            const Square rook = castlingRookSquare[castlingBit(us, shortSide)];
            setCastlingRights(castlingRights & ~rightsOf(us));
            moveCastlers(from, to, rook, rookCastlingTarget(us, shortSide));
        } else {
            const Piece piece = squares[from];
            const uint16_t id = pieceIds[from];
            const bool wasPromoted = contains(promoted, from);
            setPiece(from, NoPiece);
            setPiece(to, piece, id, wasPromoted);
            if (enPassant) setPiece(victimSquare, NoPiece);
            if (move.isPromotion()) setPiece(to, move.promotion(), id, true);
        }
        if (variantRules.explosions && victim != NoPiece) touched |= explode(to);
        if (castlingRights) dropRightsTouching(touched);
    }

    if (variantRules.countsChecks && checksRemaining[us] > 0 && isInCheck(them)) --checksRemaining[us];
    const bool fromStepRank = rankOf(from) == 1 || rankOf(from) == 6;
    setEnPassant(move.isDoubleStep() && fromStepRank ? Square((from + to) / 2) : NoSquare);
    ++plyCount;
    if (us == Black) ++fullmoveNumber;
    const bool pawnMove = !move.isNull() && pieceType(move.moved()) == Pawn;
    halfmoveClock = pawnMove || victim != NoPiece ? 0 : halfmoveClock + 1;
    sideToMove = them;
    key ^= sideKey;
}

void Board::unmakeMove() {
    const UndoRecord& record = moveStack.back();
    const Move move{record.move};
    if (move.isEdit()) {
        unmakeEdit(record);
    } else if (move.isReverse()) {
        unmakeReverse(record);
    } else {
        const Color us = otherColor(sideToMove), them = sideToMove;
        sideToMove = us;
        --plyCount;
        if (us == Black) --fullmoveNumber;
        if (!move.isNull()) {
            const Square from = move.from(), to = move.to();
            while (explosions.size() > record.explosionCount) {
                const ExplosionRecord blown = explosions.back();
                explosions.pop_back();
                setPiece(Square(blown.square), blown.piece, blown.id, blown.promoted);
            }
            if (move.isDrop()) {
                setPiece(to, NoPiece);
                ++pocket[us][pieceType(move.moved())];
            } else if (move.isCastle()) {
                const bool shortSide = move.isShortCastle();
                moveCastlers(to, from, rookCastlingTarget(us, shortSide),
                             castlingRookSquare[castlingBit(us, shortSide)]);
            } else {
                const uint16_t id = pieceIds[to];
                const bool wasPromoted = !move.isPromotion() && contains(promoted, to);
                const Piece piece = move.isPromotion() ? move.moved() : squares[to];
                setPiece(to, NoPiece);
                setPiece(from, piece, id, wasPromoted);
                if (move.isEnPassant())
                    setPiece(enPassantVictim(to), makePiece(Pawn, them), record.capturedPieceId,
                             record.capturedWasPromoted);
                else if (move.captured() != NoPiece)
                    setPiece(to, move.captured(), record.capturedPieceId, record.capturedWasPromoted);
            }
        }
        if (variantRules.hasPockets && move.isCapture()) {
            const PieceType gained =
                record.capturedWasPromoted || move.isEnPassant() ? Pawn : pieceType(move.captured());
            --pocket[us][gained];
        }
    }
    nextPieceId = record.previousNextPieceId;
    checksRemaining = record.previousChecksRemaining;
    enPassantSquare = record.previousEnPassantSquare;
    enPassantCapturable = record.previousEnPassantCapturable;
    castlingRights = record.previousCastlingRights;
    halfmoveClock = record.previousHalfmoveClock;
    key = record.previousKey;
    moveStack.pop_back();
}

void Board::makeEdit(Move move) {
    const Square from = move.from(), to = move.to();
    switch (move.editCode()) {
        case EditAdd: setPiece(to, move.moved(), nextPieceId++); break;
        case EditRemove: setPiece(to, NoPiece); break;
        case EditSwap: swapSquares(*this, from, to); break;
        case EditFlip:
            setSideToMove(otherColor(sideToMove));
            setEnPassant(NoSquare);
            return;
    }
    // An edited placement may no longer carry the rights or the en passant
    // chance it had.
    cutCastlingRights();
    if (enPassantSquare != NoSquare) setEnPassant(enPassantSquare);
}

void Board::unmakeEdit(const UndoRecord& record) {
    const Move move{record.move};
    const Square from = move.from(), to = move.to();
    switch (move.editCode()) {
        case EditAdd:
        case EditRemove:
            setPiece(to, move.captured(), record.capturedPieceId, record.capturedWasPromoted);
            break;
        case EditSwap: swapSquares(*this, from, to); break;
        case EditFlip: sideToMove = otherColor(sideToMove); break;
    }
}

}  // namespace tarnfold
