// Reverse moves: the moves that could have led to the current position,
// taken back by the side that is not to move.

#include <algorithm>

#include "chess/attacks.h"
#include "chess/board.h"
#include "chess/keys.h"

namespace tarnfold {

namespace {

// The types the side to move may have lost on the last move, in the order
// they are tried. A side with all sixteen men lost nothing; one with eight
// pawns has promoted nothing, so it can only miss pieces of its first set.
struct PutBackTypes {
    PieceType types[5];
    int count = 0;
};

PutBackTypes putBackTypes(const Board& board, Color victim) {
    PutBackTypes result;
    const auto& own = board.pieces[victim];
    if (popCount(board.byColor[victim]) >= 16) return result;
    if (popCount(own[Pawn]) >= 8) {
        for (PieceType type : {Knight, Bishop, Rook})
            if (popCount(own[type]) < 2) result.types[result.count++] = type;
        if (!own[Queen]) result.types[result.count++] = Queen;
        return result;
    }
    for (PieceType type : {Knight, Bishop, Rook, Queen, Pawn}) result.types[result.count++] = type;
    return result;
}

constexpr uint32_t reverseFlag = Move::ReverseBit;

// Castling is taken back only to the ordinary homes, whatever the board's
// castling slots say.
constexpr Square standardRookHome(Color color, bool shortSide) {
    return makeSquare(shortSide ? 7 : 0, color == White ? 0 : 7);
}

class ReverseGenerator {
public:
    ReverseGenerator(const Board& board, MoveList& list)
        : board_(board),
          list_(list),
          mover_(otherColor(board.sideToMove)),
          victim_(board.sideToMove),
          empty_(~board.occupied),
          back_(mover_ == White ? -8 : 8),
          putBack_(putBackTypes(board, victim_)) {}

    bool undoDoubleStep() {
        const Square ep = board_.enPassantSquare;
        if (ep == NoSquare || rankOf(ep) != (mover_ == White ? 2 : 5)) return false;
        const Square pawnSquare = Square(ep - back_), start = Square(ep + back_);
        if (board_.squares[pawnSquare] != makePiece(Pawn, mover_) || !contains(empty_, ep) ||
            !contains(empty_, start))
            return false;
        list_.push_back(Move::make(makePiece(Pawn, mover_), start, pawnSquare, NoPiece, NoPiece,
                                   Move::DoubleStepBit | reverseFlag));
        return true;
    }

    void pawns() {
        const Piece pawn = makePiece(Pawn, mover_);
        const int firstRank = mover_ == White ? 0 : 7;
        const int doubleStepTargetRank = mover_ == White ? 3 : 4;
        const int enPassantRank = mover_ == White ? 5 : 2;
        const Bitboard possibleOrigins = empty_ & ~rankMask[firstRank];
        for (Bitboard rest = board_.pieces[mover_][Pawn] & ~rankMask[firstRank]; rest;) {
            const Square to = popLowest(rest);
            const Square oneBack = Square(to + back_);
            if (contains(possibleOrigins, oneBack)) {
                list_.push_back(Move::make(pawn, oneBack, to, NoPiece, NoPiece, reverseFlag));
                const Square twoBack = Square(oneBack + back_);
                if (rankOf(to) == doubleStepTargetRank && contains(empty_, twoBack))
                    list_.push_back(
                        Move::make(pawn, twoBack, to, NoPiece, NoPiece, Move::DoubleStepBit | reverseFlag));
            }
            const Bitboard diagonals = pawnAttacks[victim_][to] & possibleOrigins;
            for (Bitboard origins = diagonals; origins;)
                withPutBack(pawn, popLowest(origins), to, NoPiece, false);
            // The pawn taken en passant stood beside the origin and had just
            // passed the target square from the square in front of it.
            const Square inFront = Square(to - back_);
            const bool pawnLost = std::find(putBack_.types, putBack_.types + putBack_.count, Pawn) !=
                                  putBack_.types + putBack_.count;
            if (pawnLost && rankOf(to) == enPassantRank && contains(empty_, oneBack) &&
                contains(empty_, inFront)) {
                for (Bitboard origins = diagonals; origins;)
                    list_.push_back(Move::make(pawn, popLowest(origins), to, NoPiece, NoPiece,
                                               Move::EnPassantBit | reverseFlag));
            }
        }
    }

    void kings() {
        for (Bitboard rest = board_.pieces[mover_][King]; rest;) {
            const Square to = popLowest(rest);
            for (Bitboard origins = kingAttacks[to] & empty_; origins;)
                withPutBack(board_.squares[to], popLowest(origins), to, NoPiece, true);
        }
        if (board_.variantRules.noCastling) return;
        for (bool shortSide : {true, false}) uncastle(shortSide);
    }

    void pieces() {
        for (PieceType type : {Knight, Bishop, Rook, Queen}) {
            for (Bitboard rest = board_.pieces[mover_][type]; rest;) {
                const Square to = popLowest(rest);
                for (Bitboard origins = reach(type, to) & empty_; origins;)
                    withPutBack(board_.squares[to], popLowest(origins), to, NoPiece, true);
            }
        }
    }

    void promotions() {
        if (popCount(board_.pieces[mover_][Pawn]) >= 8) return;
        const int lastRank = mover_ == White ? 7 : 0;
        const auto& own = board_.pieces[mover_];
        Bitboard promotable = own[Knight] | own[Bishop] | own[Rook] | own[Queen];
        if (board_.variantRules.kingPromotion) promotable |= own[King];
        const Piece pawn = makePiece(Pawn, mover_);
        for (Bitboard rest = promotable & rankMask[lastRank]; rest;) {
            const Square to = popLowest(rest);
            const Square oneBack = Square(to + back_);
            if (contains(empty_, oneBack))
                list_.push_back(Move::make(pawn, oneBack, to, NoPiece, board_.squares[to], reverseFlag));
            for (Bitboard origins = pawnAttacks[victim_][to] & empty_; origins;)
                withPutBack(pawn, popLowest(origins), to, board_.squares[to], false);
        }
    }

private:
    Bitboard reach(PieceType type, Square square) const {
        switch (type) {
            case Knight: return knightAttacks[square];
            case Bishop: return bishopAttacks(square, board_.occupied);
            case Rook: return rookAttacks(square, board_.occupied);
            default: return queenAttacks(square, board_.occupied);
        }
    }

    // The plain reverse move (unless the mover must have captured) and one
    // per type that may be put back on the square left.
    void withPutBack(Piece moved, Square from, Square to, Piece promotion, bool plainToo) {
        if (plainToo) list_.push_back(Move::make(moved, from, to, NoPiece, promotion, reverseFlag));
        for (int i = 0; i < putBack_.count; ++i)
            list_.push_back(
                Move::make(moved, from, to, makePiece(putBack_.types[i], victim_), promotion, reverseFlag));
    }

    // Only the standard homes: the king on e, the rook in the corner.
    void uncastle(bool shortSide) {
        const int backRank = mover_ == White ? 0 : 7;
        const Square kingHome = makeSquare(4, backRank), rookHome = makeSquare(shortSide ? 7 : 0, backRank);
        const Square kingNow = makeSquare(shortSide ? 6 : 2, backRank),
                     rookNow = makeSquare(shortSide ? 5 : 3, backRank);
        if (board_.squares[kingNow] != makePiece(King, mover_) ||
            board_.squares[rookNow] != makePiece(Rook, mover_))
            return;
        if (contains(board_.promoted, kingNow) || contains(board_.promoted, rookNow)) return;
        const Bitboard vacated =
            betweenInclusive[kingHome][rookHome] & ~squareBit(kingNow) & ~squareBit(rookNow);
        if (vacated & board_.occupied) return;
        const Bitboard before = (board_.occupied ^ squareBit(kingNow) ^ squareBit(rookNow)) |
                                squareBit(kingHome) | squareBit(rookHome);
        for (Bitboard crossed = betweenInclusive[kingHome][kingNow]; crossed;)
            if (board_.attackersTo(popLowest(crossed), victim_, before)) return;
        list_.push_back(Move::make(makePiece(King, mover_), kingHome, kingNow, NoPiece, NoPiece,
                                   (shortSide ? Move::ShortCastleBit : Move::LongCastleBit) | reverseFlag));
    }

    const Board& board_;
    MoveList& list_;
    const Color mover_, victim_;
    const Bitboard empty_;
    const int back_;
    const PutBackTypes putBack_;
};

}  // namespace

void Board::generateReverseMoves(MoveList& list) {
    list.clear();
    if (list.capacity() < reservedMoveListSize) list.reserve(reservedMoveListSize);
    ReverseGenerator generator(*this, list);
    if (generator.undoDoubleStep()) return;
    generator.pawns();
    generator.kings();
    generator.pieces();
    generator.promotions();
}

void Board::generateLegalReverseMoves(MoveList& list) {
    generateReverseMoves(list);
    keepLegal(list);
}

void Board::makeReverse(Move move, UndoRecord& record) {
    const Color mover = otherColor(sideToMove), victim = sideToMove;
    const Square from = move.from(), to = move.to();
    if (move.isCastle()) {
        const bool shortSide = move.isShortCastle();
        moveCastlers(to, from, makeSquare(shortSide ? 5 : 3, rankOf(to)), standardRookHome(mover, shortSide));
        // Castling gave up both rights. Each comes back where its rook stands
        // at home, but only if the right's slot already names that home: a
        // right without its slot would send a later castling astray.
        CastlingRights restored = castlingRights;
        for (bool side : {true, false}) {
            const int bit = castlingBit(mover, side);
            const Square rook = standardRookHome(mover, side);
            if (castlingRookSquare[bit] == rook && kingHomeSquare[mover] == from &&
                squares[rook] == makePiece(Rook, mover) && !contains(promoted, rook))
                restored |= CastlingRights(1 << bit);
        }
        setCastlingRights(restored);
    } else {
        const uint16_t id = pieceIds[to];
        const Piece back = move.isPromotion() ? makePiece(Pawn, mover) : squares[to];
        const bool backPromoted = !move.isPromotion() && record.capturedWasPromoted;
        setPiece(to, NoPiece);
        setPiece(from, back, id, backPromoted);
        if (move.isEnPassant())
            setPiece(Square(to ^ 8), makePiece(Pawn, victim), nextPieceId++);
        else if (move.captured() != NoPiece)
            setPiece(to, move.captured(), nextPieceId++);
    }
    setEnPassant(move.isEnPassant() ? to : NoSquare);
    sideToMove = mover;
    key ^= sideKey;
}

void Board::unmakeReverse(const UndoRecord& record) {
    const Move move{record.move};
    const Color mover = sideToMove;
    const Square from = move.from(), to = move.to();
    if (move.isCastle()) {
        const bool shortSide = move.isShortCastle();
        moveCastlers(from, to, standardRookHome(mover, shortSide), makeSquare(shortSide ? 5 : 3, rankOf(to)));
    } else {
        if (move.isEnPassant())
            setPiece(Square(to ^ 8), NoPiece);
        else if (move.captured() != NoPiece)
            setPiece(to, NoPiece);
        const uint16_t id = pieceIds[from];
        const Piece piece = move.isPromotion() ? move.promotion() : squares[from];
        setPiece(from, NoPiece);
        setPiece(to, piece, id, record.capturedWasPromoted);
    }
    sideToMove = otherColor(mover);
}

}  // namespace tarnfold
