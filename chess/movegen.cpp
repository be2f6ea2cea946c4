#include <algorithm>

#include "chess/attacks.h"
#include "chess/board.h"

namespace tarnfold {

namespace {

constexpr Bitboard allSquares = ~Bitboard(0);

// The order in which pins are looked for; it decides the order in which
// pinned sliders' moves are listed.
constexpr Direction pinRayOrder[rayDirectionCount] = {Up,        Down,      Left,      Right,
                                                      NorthEast, SouthWest, NorthWest, SouthEast};

constexpr bool isOrthogonal(Direction ray) { return ray == Up || ray == Down || ray == Left || ray == Right; }

constexpr Square nearestOnRay(Direction ray, Bitboard blockers) {
    return runsUpward(ray) ? lowestSquare(blockers) : highestSquare(blockers);
}

// A slider that moves along the ray, or attacks along it.
constexpr bool slidesAlong(PieceType type, Direction ray) {
    return type == Queen || type == (isOrthogonal(ray) ? Rook : Bishop);
}

void reserveList(MoveList& list) {
    list.clear();
    if (list.capacity() < reservedMoveListSize) list.reserve(reservedMoveListSize);
}

void addTargets(MoveList& list, const Board& board, Square from, Bitboard targets) {
    const Piece piece = board.squares[from];
    while (targets) {
        const Square to = popLowest(targets);
        list.push_back(Move::make(piece, from, to, board.squares[to]));
    }
}

void addPawnMove(MoveList& list, const Board& board, Square from, Square to, uint32_t flags) {
    const Color us = board.sideToMove;
    const Piece pawn = makePiece(Pawn, us);
    const Piece captured = board.squares[to];
    if (rankOf(to) != (us == White ? 7 : 0)) {
        list.push_back(Move::make(pawn, from, to, captured, NoPiece, flags));
        return;
    }
    for (PieceType type : {Queen, Rook, Bishop, Knight})
        list.push_back(Move::make(pawn, from, to, captured, makePiece(type, us), flags));
    if (board.variantRules.kingPromotion)
        list.push_back(Move::make(pawn, from, to, captured, makePiece(King, us)));
}

// What one side could take right now, en passant aside.
bool canCapture(const Board& board, Color color) {
    return (board.attackedSquares(color, board.occupied) & board.byColor[otherColor(color)]) != 0;
}

// The pinned pieces of the side to move and, per pinned piece, the line it
// may still move on (the pinner included, the king excluded).
struct PinSet {
    Bitboard pinned = 0;
    int count = 0;
    Square square[rayDirectionCount];
    Bitboard line[rayDirectionCount];

    Bitboard lineOf(Square pinnedSquare) const {
        for (int i = 0; i < count; ++i)
            if (square[i] == pinnedSquare) return line[i];
        return allSquares;
    }
};

}  // namespace

void Board::generateMoves(MoveList& list, Bitboard fromSet, Bitboard toSet, bool withoutKingSafety,
                          bool variantCuts) {
    reserveList(list);
    const Color us = sideToMove, them = otherColor(us);
    const Bitboard own = byColor[us], enemy = byColor[them];
    const Square king = variantRules.kingsNotRoyal ? NoSquare : royalKingSquare(us);
    const Bitboard enemyKings = pieces[them][King] & ~promoted;

    Bitboard checkers = 0, attacked = 0;
    if (king != NoSquare) {
        const bool kingsTouch = variantRules.kingsAdjacentSafe && (kingAttacks[king] & enemyKings);
        if (!kingsTouch) checkers = attackersTo(king, them);
        if (!withoutKingSafety) attacked = attackedSquares(them, occupied ^ squareBit(king));
    }
    const bool safety = !withoutKingSafety && king != NoSquare;

    bool enPassantAllowed = enPassantSquare != NoSquare && contains(toSet, enPassantSquare);
    if (variantCuts && variantRules.kingsNotRoyal && variantRules.mandatoryCapture &&
        (enPassantCapturable || canCapture(*this, us)))
        toSet &= enemy;
    if (variantCuts && variantRules.explosions) {
        Bitboard nearOwnKing = 0;
        for (Bitboard kings = pieces[us][King] & ~promoted; kings;)
            nearOwnKing |= kingAttacks[popLowest(kings)];
        toSet &= ~(enemy & nearOwnKing);
        if (enPassantSquare != NoSquare && contains(nearOwnKing, enPassantSquare)) enPassantAllowed = false;
    }

    for (Bitboard kings = pieces[us][King] & fromSet; kings;) {
        const Square from = popLowest(kings);
        Bitboard targets = kingAttacks[from] & ~own & toSet;
        if (from == king) targets &= ~attacked;
        addTargets(list, *this, from, targets);
    }

    if (safety && moreThanOne(checkers)) return;
    if (king != NoSquare && !checkers && contains(fromSet, king)) generateCastling(list, king, toSet);

    Bitboard evasion = allSquares;
    if (safety && checkers) {
        const Square checker = lowestSquare(checkers);
        const PieceType checkerType = pieceType(squares[checker]);
        evasion = checkerType == Bishop || checkerType == Rook || checkerType == Queen
                      ? betweenInclusive[king][checker] ^ squareBit(king)
                      : squareBit(checker);
    }
    const Bitboard target = toSet & evasion;

    PinSet pins;
    if (safety) {
        for (Direction ray : pinRayOrder) {
            const Bitboard blockers = rayAttacks[ray][king] & occupied;
            if (!blockers) continue;
            const Square first = nearestOnRay(ray, blockers);
            if (!contains(own, first)) continue;
            const Bitboard behind = rayAttacks[ray][first] & occupied;
            if (!behind) continue;
            const Square pinner = nearestOnRay(ray, behind);
            if (!contains(enemy, pinner) || !slidesAlong(pieceType(squares[pinner]), ray)) continue;
            const Bitboard line = betweenInclusive[king][pinner] ^ squareBit(king);
            pins.pinned |= squareBit(first);
            pins.square[pins.count] = first;
            pins.line[pins.count++] = line;
            if (slidesAlong(pieceType(squares[first]), ray) && contains(fromSet, first))
                addTargets(list, *this, first, line & ~squareBit(first) & target);
        }
    }

    const int forward = us == White ? 8 : -8;
    const int lastRank = us == White ? 7 : 0;
    const Bitboard doubleStepRanks = us == White ? rankMask[0] | rankMask[1] : rankMask[6] | rankMask[7];
    const Bitboard pawns = pieces[us][Pawn] & fromSet & ~rankMask[lastRank];
    for (Bitboard rest = pawns; rest;) {
        const Square from = popLowest(rest);
        const Bitboard allowed = target & (contains(pins.pinned, from) ? pins.lineOf(from) : allSquares);
        const Square single = Square(from + forward);
        if (contains(occupied, single)) continue;
        if (contains(allowed, single)) addPawnMove(list, *this, from, single, 0);
        if (!contains(doubleStepRanks, from)) continue;
        const Square twoAhead = Square(single + forward);
        if (!contains(occupied, twoAhead) && contains(allowed, twoAhead))
            list.push_back(
                Move::make(makePiece(Pawn, us), from, twoAhead, NoPiece, NoPiece, Move::DoubleStepBit));
    }
    for (Bitboard rest = pawns; rest;) {
        const Square from = popLowest(rest);
        Bitboard targets = pawnAttacks[us][from] & enemy & target;
        if (contains(pins.pinned, from)) targets &= pins.lineOf(from);
        while (targets) addPawnMove(list, *this, from, popLowest(targets), 0);
    }
    if (enPassantAllowed && rankOf(enPassantSquare) == (us == White ? 5 : 2) &&
        !contains(occupied, enPassantSquare)) {
        const Square ep = enPassantSquare;
        const Square victim = Square(ep - forward);
        const bool victimThere = squares[victim] == makePiece(Pawn, them);
        for (Bitboard capturers = victimThere ? pawnAttacks[them][ep] & pawns : 0; capturers;) {
            const Square from = popLowest(capturers);
            if (safety) {
                if (checkers && !contains(evasion, ep) && checkers != squareBit(victim)) continue;
                const Bitboard after = (occupied ^ squareBit(from) ^ squareBit(victim)) | squareBit(ep);
                const auto& enemyPieces = pieces[them];
                if (rookAttacks(king, after) & (enemyPieces[Rook] | enemyPieces[Queen])) continue;
                if (bishopAttacks(king, after) & (enemyPieces[Bishop] | enemyPieces[Queen])) continue;
            }
            list.push_back(Move::make(makePiece(Pawn, us), from, ep, NoPiece, NoPiece, Move::EnPassantBit));
        }
    }

    const Bitboard free = fromSet & ~pins.pinned;
    for (Bitboard set = pieces[us][Knight] & free; set;) {
        const Square from = popLowest(set);
        addTargets(list, *this, from, knightAttacks[from] & ~own & target);
    }
    for (Bitboard set = pieces[us][Bishop] & free; set;) {
        const Square from = popLowest(set);
        addTargets(list, *this, from, bishopAttacks(from, occupied) & ~own & target);
    }
    for (Bitboard set = pieces[us][Rook] & free; set;) {
        const Square from = popLowest(set);
        addTargets(list, *this, from, rookAttacks(from, occupied) & ~own & target);
    }
    for (Bitboard set = pieces[us][Queen] & free; set;) {
        const Square from = popLowest(set);
        addTargets(list, *this, from, queenAttacks(from, occupied) & ~own & target);
    }

    if (variantRules.hasPockets) generateDrops(list, target & ~occupied);
}

void Board::generateCastling(MoveList& list, Square king, Bitboard toSet) {
    const Color us = sideToMove, them = otherColor(us);
    if (variantRules.noCastling || king != kingHomeSquare[us]) return;
    const Bitboard enemyKings = pieces[them][King] & ~promoted;
    // In atomic chess a square next to the enemy king cannot be attacked in
    // earnest: taking there would blow up the taker's own king.
    auto attackedAt = [&](Square square, Bitboard occupancy) {
        if (variantRules.kingsAdjacentSafe && (kingAttacks[square] & enemyKings)) return false;
        return attackersTo(square, them, occupancy) != 0;
    };
    const int backRank = us == White ? 0 : 7;
    for (bool shortSide : {true, false}) {
        const int bit = castlingBit(us, shortSide);
        if (!(castlingRights & (1 << bit))) continue;
        const Square rook = castlingRookSquare[bit];
        if (rook >= NoSquare || squares[rook] != makePiece(Rook, us)) continue;
        const Square kingTarget = makeSquare(shortSide ? 6 : 2, backRank);
        const Square rookTarget = makeSquare(shortSide ? 5 : 3, backRank);
        const Bitboard kingPath = betweenInclusive[king][kingTarget];
        const Bitboard rookPath = betweenInclusive[rook][rookTarget];
        const Bitboard castlers = squareBit(king) | squareBit(rook);
        if ((kingPath | rookPath) & occupied & ~castlers) continue;
        if (!contains(toSet, kingTarget)) continue;
        const Bitboard kingLifted = occupied ^ squareBit(king);
        bool safe = true;
        for (Bitboard crossed = kingPath & ~squareBit(kingTarget); crossed && safe;)
            safe = !attackedAt(popLowest(crossed), kingLifted);
        if (!safe || attackedAt(kingTarget, (occupied & ~castlers) | squareBit(rookTarget))) continue;
        list.push_back(Move::make(makePiece(King, us), king, kingTarget, NoPiece, NoPiece,
                                  shortSide ? Move::ShortCastleBit : Move::LongCastleBit));
    }
}

void Board::generateDrops(MoveList& list, Bitboard empties) {
    const Color us = sideToMove;
    const auto& held = pocket[us];
    if (held[Knight] | held[Bishop] | held[Rook] | held[Queen]) {
        for (Bitboard rest = empties; rest;) {
            const Square to = popLowest(rest);
            for (PieceType type : {Knight, Bishop, Rook, Queen})
                if (held[type]) list.push_back(Move::drop(makePiece(type, us), to));
        }
    }
    if (held[Pawn]) {
        for (Bitboard rest = empties & ~rankMask[0] & ~rankMask[7]; rest;)
            list.push_back(Move::drop(makePiece(Pawn, us), popLowest(rest)));
    }
}

void Board::keepLegal(MoveList& list) {
    auto legalEnd = std::remove_if(list.begin(), list.end(), [&](Move move) { return !isLegalMove(move); });
    list.erase(legalEnd, list.end());
}

void Board::generateLegalMoves(MoveList& list, Bitboard fromSet, Bitboard toSet, bool withoutKingSafety) {
    reserveList(list);
    if (isVariantEnd()) return;
    if (variantRules.mandatoryCapture && !variantRules.kingsNotRoyal) {
        // A capture is compulsory only if it is also legal, so the narrowing
        // follows generation.
        generateMoves(list, allSquares, allSquares, withoutKingSafety, true);
        const bool anyCapture =
            std::any_of(list.begin(), list.end(), [](Move move) { return move.isCapture(); });
        auto kept = std::remove_if(list.begin(), list.end(), [&](Move move) {
            if (anyCapture && !move.isCapture()) return true;
            return !contains(toSet, move.to()) || (!move.isDrop() && !contains(fromSet, move.from()));
        });
        list.erase(kept, list.end());
        return;
    }
    if ((variantRules.explosions || variantRules.noCheckGiving) && !withoutKingSafety) {
        generateMoves(list, fromSet, toSet, true, true);
        keepLegal(list);
        return;
    }
    generateMoves(list, fromSet, toSet, withoutKingSafety, true);
}

void Board::generatePseudoLegalMoves(MoveList& list) {
    generateMoves(list, allSquares, allSquares, true, false);
}

bool Board::isLegalMove(Move move) {
    const Color mover = move.isReverse() ? otherColor(sideToMove) : sideToMove;
    const bool hadKing = royalKingSquare(mover) != NoSquare;
    const Bitboard enemyKingsNear =
        (kingAttacks[move.to()] | squareBit(move.to())) & pieces[otherColor(mover)][King] & ~promoted;
    makeMove(move);
    bool refused;
    if (move.isReverse() && pieceType(move.captured()) == Pawn &&
        (rankOf(move.to()) == 0 || rankOf(move.to()) == 7)) {
        refused = true;
    } else {
        // Whoever is not to move now must not stand in check: the mover after
        // a move, the opponent after a move taken back.
        refused = isInCheck(otherColor(sideToMove)) ||
                  (variantRules.noCheckGiving && !move.isReverse() && isInCheck(sideToMove));
    }
    const bool ownKingBlown =
        variantRules.explosions && !move.isReverse() && hadKing && royalKingSquare(mover) == NoSquare;
    unmakeMove();
    if (ownKingBlown) return false;
    if (refused && variantRules.explosions && move.isCapture() && !move.isReverse() && enemyKingsNear)
        return true;
    return !refused;
}

bool Board::isPseudoLegal(Move move) {
    thread_local MoveList scratch;
    generatePseudoLegalMoves(scratch);
    return std::find(scratch.begin(), scratch.end(), move) != scratch.end();
}

bool Board::hasLegalMove() {
    thread_local MoveList scratch;
    generateLegalMoves(scratch);
    return !scratch.empty();
}

bool Board::isCheckmate() { return isInCheck(sideToMove) && !hasLegalMove(); }

bool Board::isStalemate() {
    return byColor[sideToMove] && !isInCheck(sideToMove) && !isVariantEnd() && !hasLegalMove();
}

}  // namespace tarnfold
