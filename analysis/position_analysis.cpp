// The legality and reachability analysis of one position: cheap counts
// first, the searches only where the counts leave a question.

#include "analysis/position_analysis.h"

#include <algorithm>
#include <initializer_list>

#include "chess/attacks.h"
#include "chess/bitboard.h"

namespace tarnfold {

namespace {

// The placement part of the start position's key.
constexpr uint64_t startPieceKey = 0xC5D79D196E37D67CULL;
constexpr Bitboard startOccupancy = rankMask[0] | rankMask[1] | rankMask[6] | rankMask[7];

// Squares and ranks seen from a colour's side: White's view as it is, Black's
// mirrored top to bottom.
constexpr Square relative(Color color, Square square) {
    return color == White ? square : Square(square ^ 56);
}
constexpr Bitboard relativeRank(Color color, int rank) { return rankMask[color == White ? rank : 7 - rank]; }
constexpr Bitboard bitOf(Color color, Square square) { return squareBit(relative(color, square)); }
constexpr bool moreThanTwo(Bitboard set) { return moreThanOne(clearLowest(set)); }

// The number of squares in a set, computed in place: the counts of men are
// taken at every position analysed.
constexpr int countOf(Bitboard set) {
    set = set - ((set >> 1) & 0x5555555555555555ULL);
    set = (set & 0x3333333333333333ULL) + ((set >> 2) & 0x3333333333333333ULL);
    set = (set + (set >> 4)) & 0x0F0F0F0F0F0F0F0FULL;
    return int((set * 0x0101010101010101ULL) >> 56);
}

// Whether each square diagonally next to square on the rank step away (a
// square off the board is passed over) holds one of pawns.
bool diagonalsHold(Square square, int step, Bitboard pawns) {
    const int rank = rankOf(square) + step;
    if (rank < 0 || rank > 7) return false;
    for (const int file : {fileOf(square) - 1, fileOf(square) + 1})
        if (file >= 0 && file < 8 && !contains(pawns, makeSquare(file, rank))) return false;
    return true;
}

void add(AnalysisReport& report, uint32_t id, std::initializer_list<AnalysisArgument> arguments,
         bool explainsOnly = false) {
    report.findings.push_back({id, arguments, explainsOnly});
}

// What one side's home squares say about pieces that are gone but can
// never have left home, so that they fell there.
struct HomeTraps {
    bool bishop[2] = {false, false};  // by SquareColor
    bool rook[2] = {false, false};    // by Lateral
    bool rookHasSecondRank[2] = {false, false};
    bool queen = false;
};

// Written in place: a struct of flags handed back by value costs more to
// pack and unpack than all the tests that fill it.
template <Color color>
void findHomeTraps(const Board& board, HomeTraps& traps) {
    traps = HomeTraps();
    const auto& own = board.pieces[color];
    const Bitboard pawns = own[Pawn];
    auto has = [&](PieceType type, Square square) { return contains(own[type], relative(color, square)); };
    auto pawnOn = [&](Square square) { return has(Pawn, square); };

    // The bishops: both diagonals out of their homes shut by unmoved pawns.
    const bool queenBishopShut = pawnOn(B2) && pawnOn(D2), kingBishopShut = pawnOn(E2) && pawnOn(G2);
    if (queenBishopShut && !has(Bishop, C1)) traps.bishop[squareColor(relative(color, C1))] = true;
    if (kingBishopShut && !has(Bishop, F1)) traps.bishop[squareColor(relative(color, F1))] = true;

    // The rooks: with the bishop still at home between unmoved pawns and the
    // rook's pawn in front, the corner, the knight's square and the rook's
    // second-rank square are all the rook ever had.
    if (queenBishopShut && has(Bishop, C1) && (pawnOn(A2) || pawnOn(A3)) &&
        !(own[Rook] & (bitOf(color, A1) | bitOf(color, B1) | bitOf(color, A2)))) {
        traps.rook[int(Lateral::Queenside)] = true;
        traps.rookHasSecondRank[int(Lateral::Queenside)] = !pawnOn(A2);
    }
    if (kingBishopShut && has(Bishop, F1) && (pawnOn(H2) || pawnOn(H3)) &&
        !(own[Rook] & (bitOf(color, G1) | bitOf(color, H1) | bitOf(color, H2)))) {
        traps.rook[int(Lateral::Kingside)] = true;
        traps.rookHasSecondRank[int(Lateral::Kingside)] = !pawnOn(H2);
    }

    // The queen: boxed in by both bishops, the pawns and the king, which
    // cannot step aside before she does.
    const Bitboard centrePawns = bitOf(color, B2) | bitOf(color, C2) | bitOf(color, D2) | bitOf(color, E2) |
                                 bitOf(color, F2) | bitOf(color, G2);
    if ((pawns & centrePawns) == centrePawns && has(Bishop, C1) && has(Bishop, F1) && !has(Queen, D1))
        traps.queen = true;
}

// The home of a side's bishop of one square colour, from White's view.
constexpr Square bishopHome(Color color, SquareColor shade) {
    return squareColor(relative(color, C1)) == shade ? C1 : F1;
}

// The squares a trapped rook was confined to.
Bitboard rookArea(Color color, Lateral side, bool withSecondRank) {
    if (side == Lateral::Queenside)
        return bitOf(color, A1) | bitOf(color, B1) | (withSecondRank ? bitOf(color, A2) : 0);
    return bitOf(color, G1) | bitOf(color, H1) | (withSecondRank ? bitOf(color, H2) : 0);
}

// The promotions the pieces of one side imply, by kind.
struct ImpliedPromotions {
    int knights = 0;
    int queens = 0;
    int bishops[2] = {0, 0};  // by SquareColor
    bool bishopsAllTrapped[2] = {false, false};
    int rooks = 0;

    int total() const { return knights + queens + bishops[light] + bishops[dark] + rooks; }
};

template <Color color>
void impliedPromotions(const Board& board, const HomeTraps& traps, ImpliedPromotions& implied) {
    // Counted only where there may be more than the start position had.
    const auto& own = board.pieces[color];
    implied = ImpliedPromotions();
    if (moreThanTwo(own[Knight])) implied.knights = popCount(own[Knight]) - 2;
    if (own[Queen] && (traps.queen || moreThanOne(own[Queen])))
        implied.queens = popCount(own[Queen]) - (traps.queen ? 0 : 1);

    // A bishop on the last rank between two of the other side's unmoved
    // pawns cannot have come there along a diagonal: it was promoted there.
    const int step = color == White ? -1 : 1;
    const Bitboard otherPawns = board.pieces[otherColor(color)][Pawn];
    Bitboard trappedOnLastRank = 0;
    for (Bitboard rest = own[Bishop] & relativeRank(color, 7); rest;) {
        const Square square = popLowest(rest);
        if (diagonalsHold(square, step, otherPawns)) trappedOnLastRank |= squareBit(square);
    }
    for (const SquareColor shade : {light, dark}) {
        const Bitboard bishops = own[Bishop] & (shade == light ? lightSquares : darkSquares);
        if (!bishops) continue;
        if ((bishops & ~trappedOnLastRank) == 0) {
            implied.bishops[shade] = popCount(bishops);
            implied.bishopsAllTrapped[shade] = true;
        } else {
            implied.bishops[shade] =
                (moreThanOne(bishops) ? popCount(bishops) - 1 : 0) + (traps.bishop[shade] ? 1 : 0);
        }
    }
    const int trappedRooks = int(traps.rook[0]) + int(traps.rook[1]);
    if (trappedRooks > 0 || moreThanTwo(own[Rook]))
        implied.rooks = std::max(0, popCount(own[Rook]) + trappedRooks - 2);
}

// A rank of eight pawns on the second and third ranks that no rook has ever
// passed. A pawn on the third rank beside an unmoved one came straight up;
// two side by side on the third rank may have crossed by captures, leaving
// both files open for a moment, which takes two captures.
bool wallNeverOpened(const Board& board, Color color, int otherMissing) {
    const Bitboard pawns = board.pieces[color][Pawn];
    const Bitboard second = pawns & relativeRank(color, 1), third = pawns & relativeRank(color, 2);
    if (second + third != pawns) return false;
    // One pawn on each file: the two ranks together fill all eight files
    // and no file has both.
    const unsigned onSecond = unsigned(second >> (color == White ? 8 : 48)) & 0xFF;
    const unsigned onThird = unsigned(third >> (color == White ? 16 : 40)) & 0xFF;
    if ((onSecond | onThird) != 0xFF || (onSecond & onThird)) return false;
    const bool neighbours = ((third << 1) & ~fileMask[0] & third) != 0;
    return !neighbours || otherMissing < 2;
}

struct Counts {
    int total[2];
    int pawns[2];
    int missing[2];
};

// What one side's men say about the past: its pawn structure, the home
// pieces it lost where they stood, the promotions its men imply against
// those possible and their cost in captures, and the capture squares of the
// other side's pawns. The side is a template argument, so that every square
// and rank seen from its side is a constant.
template <Color color>
void analyzeSide(const Board& board, AnalysisReport& report, const Counts& counts) {
    constexpr Color other = otherColor(color);
    const size_t findingsBefore = report.findings.size();
    const Bitboard pawns = board.pieces[color][Pawn];
    const int otherMissing = counts.missing[other];

    // Each pawn needs a start file of its own, and the captures that
    // brought the pawns apart took the other side's men.
    Bitboard offenders;
    const bool feasible = pawnStructureFeasible(pawns, color, offenders);
    if (!feasible) add(report, 16, {arg(color), bitboardArg(offenders)});
    const unsigned pawnCaptures = minimalPawnCaptures(pawns);
    if (int(pawnCaptures) > otherMissing)
        add(report, 15,
            {arg(color), countArg(pawnCaptures), arg(other), countArg(otherMissing), arg(otherMissing != 0)});
    const bool structureFailed = report.findings.size() != findingsBefore;

    // Only a home piece shut in, or more men of a kind than the start
    // position has, lets the steps up to the verdict on promotions find
    // anything; most positions have neither.
    const auto& men = board.pieces[color];
    const Bitboard queenBishopWall = bitOf(color, B2) | bitOf(color, D2);
    const Bitboard kingBishopWall = bitOf(color, E2) | bitOf(color, G2);
    const bool mayTrap =
        (pawns & queenBishopWall) == queenBishopWall || (pawns & kingBishopWall) == kingBishopWall;
    const bool mayExceed = moreThanTwo(men[Knight]) || moreThanOne(men[Queen]) || moreThanTwo(men[Rook]) ||
                           moreThanOne(men[Bishop] & lightSquares) ||
                           moreThanOne(men[Bishop] & darkSquares) || (men[Bishop] & relativeRank(color, 7));
    const Bitboard otherPawns = board.pieces[other][Pawn];
    const Bitboard otherStartRank = relativeRank(other, 1);
    if (mayTrap || mayExceed) {
        HomeTraps traps;
        findHomeTraps<color>(board, traps);
        ImpliedPromotions implied;
        impliedPromotions<color>(board, traps, implied);
        const int promotions = implied.total();
        const bool blockade = (otherPawns & otherStartRank) == otherStartRank;
        const int possible = blockade ? 0 : 8 - counts.pawns[color];

        bool capturesFail = false;
        unsigned promotionCost = 0;
        FileSet openFiles = 0;
        Bitboard pawnStarts = 0;
        if (promotions > 0 && promotions <= possible && !structureFailed &&
            promotionCaptureCost(board, color, unsigned(promotions), promotionCost, openFiles, pawnStarts))
            capturesFail = int(promotionCost + pawnCaptures) > otherMissing;

        // When every missing man of this side fell to a pawn of the other
        // side still on the board, none of them fell at home: a pawn taking
        // on the first rank promotes. A rook whose area reaches its second
        // rank may have fallen to a pawn there, and is left out.
        const bool anyTrap = traps.queen || traps.bishop[light] || traps.bishop[dark] ||
                             (traps.rook[0] && !traps.rookHasSecondRank[0]) ||
                             (traps.rook[1] && !traps.rookHasSecondRank[1]);
        if (anyTrap && counts.missing[color] > 0 && counts.pawns[other] <= 8 &&
            counts.missing[color] == int(minimalPawnCaptures(otherPawns))) {
            auto trapped = [&](Square home, PieceType type) {
                add(report, 35, {arg(color), arg(other), arg(relative(color, home)), arg(type)});
            };
            const Bitboard kingHome = bitOf(color, E1);
            if (traps.queen && !(board.pieces[color][King] & kingHome)) trapped(D1, Queen);
            if (traps.rook[0] && !traps.rookHasSecondRank[0]) trapped(A1, Rook);
            if (traps.rook[1] && !traps.rookHasSecondRank[1]) trapped(H1, Rook);
            for (const SquareColor shade : {light, dark})
                if (traps.bishop[shade]) trapped(bishopHome(color, shade), Bishop);
        }

        if (promotions > possible || capturesFail) {
            // The one promotion implied is the queen beside a king that stands
            // on her home square, where she could never have left: the two
            // were set up the wrong way round.
            if (promotions == 1 && traps.queen && contains(board.pieces[color][King], relative(color, D1)) &&
                contains(board.pieces[color][Queen], relative(color, E1))) {
                add(report, 13, {arg(color)});
                return;
            }
            if (promotions <= possible)
                add(report, 21, {countArg(promotions), arg(color)});
            else
                add(report, 20,
                    {countArg(promotions), arg(color), countArg(possible), arg(possible != 0),
                     arg(possible != 1)});

            const auto& own = board.pieces[color];
            if (implied.knights > 0)
                add(report, 22,
                    {countArg(popCount(own[Knight])), arg(makePiece(Knight, color)), bitboardArg(own[Knight]),
                     countArg(implied.knights)},
                    true);
            if (implied.queens > 0) {
                add(report, 25,
                    {countArg(popCount(own[Queen])), arg(makePiece(Queen, color)), bitboardArg(own[Queen]),
                     countArg(implied.queens)},
                    true);
                if (traps.queen)
                    add(report, 26, {arg(makePiece(Queen, color)), arg(relative(color, D1))}, true);
            }
            if (implied.rooks > 0) {
                add(report, 24,
                    {countArg(popCount(own[Rook])), arg(makePiece(Rook, color)), bitboardArg(own[Rook]),
                     countArg(implied.rooks)},
                    true);
                for (const Lateral side : {Lateral::Queenside, Lateral::Kingside}) {
                    const int index = int(side);
                    if (traps.rook[index])
                        add(report, 27,
                            {arg(side), arg(makePiece(Rook, color)),
                             bitboardArg(rookArea(color, side, traps.rookHasSecondRank[index]))},
                            true);
                }
            }
            for (const SquareColor shade : {light, dark}) {
                if (implied.bishops[shade] == 0) continue;
                const Bitboard bishops = own[Bishop] & (shade == light ? lightSquares : darkSquares);
                add(report, 23,
                    {countArg(popCount(bishops)), arg(shade), arg(makePiece(Bishop, color)),
                     bitboardArg(bishops), countArg(implied.bishops[shade]),
                     arg(implied.bishopsAllTrapped[shade])},
                    true);
                if (traps.bishop[shade])
                    add(report, 28,
                        {arg(shade), arg(makePiece(Bishop, color)),
                         arg(relative(color, bishopHome(color, shade)))},
                        true);
            }

            if (blockade) {
                add(report, 29, {arg(color), arg(other)}, true);
            } else if (capturesFail) {
                if (pawnCaptures > 0) add(report, 32, {arg(color), countArg(pawnCaptures)}, true);
                add(report, 31, {arg(other), countArg(otherMissing), arg(otherMissing != 0)}, true);
                add(report, 33, {countArg(promotions), arg(color), countArg(promotionCost)}, true);
                add(report, 34, {bitboardArg(pawnStarts), fileSetArg(openFiles)}, true);
                const int otherPawnsMissing = 8 - counts.pawns[other];
                add(report, 30, {arg(other), countArg(otherPawnsMissing), arg(otherPawnsMissing != 0)}, true);
            }
        }
    }

    // A pawn on its third rank with its file's unmoved pawn behind it
    // came there by a capture on that square. If there were as many such
    // captures as this side has men missing, every one of them fell on
    // those squares, and a bishop gone from the other colour never did.
    {
        const Bitboard behind = otherPawns & otherStartRank;
        const Bitboard captureSquares =
            otherPawns & relativeRank(other, 2) & (other == White ? behind << 8 : behind >> 8);
        if (captureSquares && popCount(captureSquares) == counts.missing[color]) {
            const Bitboard bishops = board.pieces[color][Bishop];
            if ((captureSquares & lightSquares) == 0 && (bishops & lightSquares) == 0)
                add(report, 37, {arg(color), arg(light), arg(other), arg(dark), bitboardArg(captureSquares)});
            if ((captureSquares & darkSquares) == 0 && (bishops & darkSquares) == 0)
                add(report, 37, {arg(color), arg(dark), arg(other), arg(light), bitboardArg(captureSquares)});
        }
    }
}

}  // namespace

bool analyzePosition(Board& board, AnalysisReport& report, bool basicOnly) {
    report.findings.clear();
    report.afterMoves.clear();
    if (board.occupied == 0) return true;
    const AnalysisScope scope = analysisScope(board.variant);

    if (scope.fromStart && board.occupied == startOccupancy && board.pieceKey() == startPieceKey) {
        if (board.sideToMove == White) return true;
        // Knights going out and back and rooks stepping aside and back each
        // take an even number of moves: the start placement recurs only with
        // White to move.
        add(report, 12, {});
        return false;
    }

    // The cheap counts; the rest are counted where a step needs them.
    Counts counts;
    for (const Color color : {White, Black}) {
        counts.total[color] = countOf(board.byColor[color]);
        counts.pawns[color] = countOf(board.pieces[color][Pawn]);
        counts.missing[color] = 16 - counts.total[color];
    }
    const Bitboard kings[2] = {board.pieces[White][King], board.pieces[Black][King]};
    auto oneKing = [&](Color color) { return kings[color] && !moreThanOne(kings[color]); };
    const Color toMove = board.sideToMove, waiting = otherColor(toMove);
    const bool inCheck[2] = {board.isInCheck(White), board.isInCheck(Black)};
    const bool oneSideInCheck = inCheck[White] != inCheck[Black];
    bool tooManyCheckers = false;

    if (scope.rulesOfPlay) {
        if (!kings[White]) add(report, 1, {});
        if (!kings[Black]) add(report, 2, {});
        if (moreThanOne(kings[White])) add(report, 3, {bitboardArg(kings[White])});
        if (moreThanOne(kings[Black])) add(report, 4, {bitboardArg(kings[Black])});

        if (inCheck[waiting]) {
            if (inCheck[toMove]) add(report, 6, {});
            add(report, 5, {arg(waiting)});
        }

        const Bitboard pawns = board.byType[Pawn];
        if (const Bitboard low = pawns & rankMask[0])
            add(report, 7, {countArg(popCount(low)), bitboardArg(low)});
        if (const Bitboard high = pawns & rankMask[7])
            add(report, 8, {countArg(popCount(high)), bitboardArg(high)});

        // A move opens at most one line besides its own: two checkers at most.
        if (oneSideInCheck) {
            const Color checked = inCheck[White] ? White : Black;
            if (oneKing(checked)) {
                const Square king = lowestSquare(kings[checked]);
                const Bitboard checkers = board.attackersTo(king, otherColor(checked));
                if (moreThanTwo(checkers)) {
                    add(report, 9,
                        {arg(checked), arg(king), countArg(popCount(checkers)), bitboardArg(checkers)});
                    tooManyCheckers = true;
                }
            }
        }
    }

    if (scope.material) {
        for (const Color color : {White, Black}) {
            if (counts.total[color] > 16)
                add(report, 11, {arg(color), countArg(counts.total[color])});
            else if (counts.pawns[color] > 8)
                add(report, 10,
                    {arg(color), countArg(counts.pawns[color]), bitboardArg(board.pieces[color][Pawn])});
        }

        // Pawns on b, c, f and g of their start rank cover the whole rank in
        // front of them, and have done so since the first move: a king
        // behind them never crossed it.
        for (const Color color : {White, Black}) {
            const Color other = otherColor(color);
            const Bitboard wall = bitOf(other, B2) | bitOf(other, C2) | bitOf(other, F2) | bitOf(other, G2);
            const Bitboard king = kings[color];
            if (oneKing(color) && (king & (relativeRank(other, 0) | relativeRank(other, 1))) &&
                (board.pieces[other][Pawn] & wall) == wall)
                add(report, 17, {arg(makePiece(King, color)), bitboardArg(king)});
        }
    }

    if (basicOnly || !scope.fromStart) return report.findings.empty();

    // Colour symmetry of a closed position: with every pawn at home or one
    // step up on a rook's file, no bishop has moved, and every move made
    // took a piece to a square of the other colour, so each ply flips the
    // parity of the men on light and on dark squares. A queen can only have
    // been taken at home by a knight, whose capture flips one parity only.
    {
        auto closedSide = [&](Color color) {
            const Bitboard allowed = relativeRank(color, 1) | bitOf(color, A3) | bitOf(color, H3);
            if ((board.pieces[color][Pawn] & ~allowed) != 0 || counts.pawns[color] != 8) return false;
            const int total = counts.total[color];
            return total == 16 || (total == 15 && !board.pieces[color][Queen]);
        };
        if (closedSide(White) && closedSide(Black)) {
            const int onLight = countOf(board.occupied & lightSquares) & 1;
            const int onDark = countOf(board.occupied & darkSquares) & 1;
            const int blackToMove = toMove == Black;
            const int whiteQueenless = board.pieces[White][Queen] == 0;
            const int blackQueenless = board.pieces[Black][Queen] == 0;
            if (onLight != (blackToMove ^ whiteQueenless) || onDark != (blackToMove ^ blackQueenless))
                add(report, 36, {arg(toMove)});
        }
    }

    // Bishops that no diagonal can have brought where they stand.
    for (const Color color : {White, Black}) {
        const Color other = otherColor(color);
        const int forward = color == White ? 1 : -1;
        const Bitboard bishopHomes = fileMask[2] | fileMask[5];
        for (Bitboard rest = board.pieces[color][Bishop] & relativeRank(color, 0) & ~bishopHomes; rest;) {
            const Square square = popLowest(rest);
            if (diagonalsHold(square, forward, board.pieces[color][Pawn]))
                add(report, 18, {arg(color), arg(Bishop), arg(square)});
        }
        // On the other side's first rank the bishop might have been promoted
        // there, unless a pawn in front shuts that way too.
        for (Bitboard rest = board.pieces[color][Bishop] & relativeRank(other, 0); rest;) {
            const Square square = popLowest(rest);
            const Bitboard otherPawns = board.pieces[other][Pawn];
            if (!diagonalsHold(square, -forward, otherPawns)) continue;
            if (counts.pawns[color] < 8 && !contains(otherPawns, Square(square - 8 * forward))) continue;
            add(report, 18, {arg(color), arg(Bishop), arg(square)});
        }
    }

    // Rooks against a wall of eight pawns: they cannot have gone out, and
    // the other side's can only have come in as pawns that captured their way
    // round it and promoted behind it.
    for (const Color color : {White, Black}) {
        const Color other = otherColor(color);
        if (!wallNeverOpened(board, color, counts.missing[other])) continue;
        const Bitboard home = relativeRank(color, 0) | relativeRank(color, 1);
        if (const Bitboard out = board.pieces[color][Rook] & ~home)
            add(report, 19, {arg(color), arg(Rook), countArg(popCount(out)), bitboardArg(out)});
        const Bitboard in = board.pieces[other][Rook] & home;
        const int otherPawns = counts.pawns[other];
        if (otherPawns <= 8 && counts.total[color] <= 16 &&
            popCount(in) > std::min(counts.missing[color], 8 - otherPawns))
            add(report, 19, {arg(other), arg(Rook), countArg(popCount(in)), bitboardArg(in)});
    }

    // A side with too many men has told all there is to tell.
    const bool countsHold = counts.total[White] <= 16 && counts.total[Black] <= 16;
    if (countsHold && counts.pawns[White] <= 8) analyzeSide<White>(board, report, counts);
    if (countsHold && counts.pawns[Black] <= 8) analyzeSide<Black>(board, report, counts);

    // A check that no move can have given.
    if (oneSideInCheck && !tooManyCheckers) {
        if (inCheck[toMove] && checkIsImpossible(board, toMove))
            add(report, 14, {arg(toMove)});
        else if (inCheck[waiting] && checkIsImpossible(board, waiting))
            add(report, 14, {arg(waiting)});
    }
    return report.findings.empty();
}

}  // namespace tarnfold
