#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "chess/board.h"
#include "chess/board_from.h"

namespace tarnfold {
namespace {

std::vector<std::string> texts(const MoveList& moves) {
    std::vector<std::string> result;
    for (Move move : moves) result.push_back(moveToCoordinates(move));
    return result;
}

std::vector<std::string> legalTexts(Board& board, Bitboard fromSet = ~Bitboard(0),
                                    Bitboard toSet = ~Bitboard(0), bool withoutKingSafety = false) {
    MoveList moves;
    board.generateLegalMoves(moves, fromSet, toSet, withoutKingSafety);
    return texts(moves);
}

Move findMove(Board& board, const std::string& coordinates) {
    MoveList moves;
    board.generateLegalMoves(moves);
    for (Move move : moves)
        if (moveToCoordinates(move) == coordinates) return move;
    ADD_FAILURE() << "no legal move " << coordinates << " in " << board.toFen();
    return Move{};
}

using Texts = std::vector<std::string>;

TEST(LegalMoves, ComeInTheDocumentedOrder) {
    // King steps, castling, pawns, knights, then rooks, each ascending.
    Board open = boardFrom("4k3/8/8/8/8/8/3P4/RN2K2R w KQ - 0 1");
    EXPECT_EQ(legalTexts(open), (Texts{"e1d1", "e1f1", "e1e2", "e1f2", "e1g1", "d2d3", "d2d4", "b1a3", "b1c3",
                                       "a1a2", "a1a3", "a1a4", "a1a5", "a1a6", "a1a7", "a1a8", "h1f1", "h1g1",
                                       "h1h2", "h1h3", "h1h4", "h1h5", "h1h6", "h1h7", "h1h8"}));
    EXPECT_TRUE(findMove(open, "e1g1").isShortCastle());

    // A pinned rook moves along its pin right after the king; a pinned
    // knight not at all.
    Board pinned = boardFrom("4r1k1/8/8/8/1b6/8/3NR3/4K3 w - - 0 1");
    EXPECT_EQ(legalTexts(pinned),
              (Texts{"e1d1", "e1f1", "e1f2", "e2e3", "e2e4", "e2e5", "e2e6", "e2e7", "e2e8"}));

    // Promotions: queen, rook, bishop, knight, and king where kings may be
    // promoted to.
    Board promoting = boardFrom("8/P6k/8/8/8/8/8/K7 w - - 0 1");
    EXPECT_EQ(legalTexts(promoting, squareBit(A7)), (Texts{"a7a8q", "a7a8r", "a7a8b", "a7a8n"}));
    Board giveaway = boardFrom("8/P7/8/8/8/8/7p/8 w - - 0 1", Giveaway);
    EXPECT_EQ(legalTexts(giveaway), (Texts{"a7a8q", "a7a8r", "a7a8b", "a7a8n", "a7a8k"}));
}

TEST(LegalMoves, FromAndToSetsAndTheFastPathWithoutKingSafety) {
    Board start = boardFrom(startFen.data());
    EXPECT_EQ(legalTexts(start, squareBit(G1)), (Texts{"g1f3", "g1h3"}));
    EXPECT_EQ(legalTexts(start, ~Bitboard(0), squareBit(F3)), (Texts{"f2f3", "g1f3"}));
    EXPECT_EQ(legalTexts(start, squareBit(E1)), Texts{});

    // Without king safety the pinned knight's moves are candidates, and
    // isLegalMove turns each of them down.
    Board pinned = boardFrom("4r1k1/8/8/8/1b6/8/3NR3/4K3 w - - 0 1");
    EXPECT_EQ(legalTexts(pinned, squareBit(D2)), Texts{});
    MoveList candidates;
    pinned.generateLegalMoves(candidates, squareBit(D2), ~Bitboard(0), true);
    EXPECT_EQ(texts(candidates), (Texts{"d2b1", "d2f1", "d2b3", "d2f3", "d2c4", "d2e4"}));
    for (Move move : candidates) EXPECT_FALSE(pinned.isLegalMove(move)) << moveToCoordinates(move);
    EXPECT_TRUE(pinned.isLegalMove(findMove(pinned, "e2e5")));
}

TEST(EnPassant, SquareCapturabilityAndBookKeys) {
    // The published book keys along two openings; the second ends with an
    // en passant capture.
    const struct {
        std::vector<std::string> moves;
        uint64_t key;
    } lines[] = {
        {{"e2e4"}, 0x823C9B50FD114196ULL},
        {{"e2e4", "d7d5"}, 0x0756B94461C50FB0ULL},
        {{"e2e4", "d7d5", "e4e5"}, 0x662FAFB965DB29D4ULL},
        {{"e2e4", "d7d5", "e4e5", "f7f5"}, 0x22A48B5A8E47FF78ULL},
        {{"e2e4", "d7d5", "e4e5", "f7f5", "e1e2"}, 0x652A607CA3F242C1ULL},
        {{"e2e4", "d7d5", "e4e5", "f7f5", "e1e2", "e8f7"}, 0x00FDD303C946BDD9ULL},
        {{"a2a4", "b7b5", "h2h4", "b5b4", "c2c4"}, 0x3C8123EA7B067637ULL},
        {{"a2a4", "b7b5", "h2h4", "b5b4", "c2c4", "b4c3", "a1a3"}, 0x5C3F9B829B279560ULL},
    };
    for (const auto& line : lines) {
        Board board = boardFrom(startFen.data());
        for (const std::string& text : line.moves) board.makeMove(findMove(board, text));
        EXPECT_EQ(board.key, line.key) << line.moves.back();
        EXPECT_EQ(board.key, board.fullKey());
    }

    Board board = boardFrom(startFen.data());
    board.makeMove(findMove(board, "e2e4"));
    EXPECT_EQ(board.enPassantSquare, E3);
    EXPECT_FALSE(board.enPassantCapturable);
    for (const char* text : {"d7d5", "e4e5", "f7f5"}) board.makeMove(findMove(board, text));
    EXPECT_EQ(board.enPassantSquare, F6);
    EXPECT_TRUE(board.enPassantCapturable);
    const Move capture = findMove(board, "e5f6");
    EXPECT_TRUE(capture.isEnPassant());
    EXPECT_EQ(capture.captured(), NoPiece);
    board.makeMove(capture);
    EXPECT_EQ(board.squares[F5], NoPiece);
    EXPECT_EQ(board.squares[F6], WhitePawn);
}

TEST(EnPassant, NotWhenItOpensALineToTheKingButToRemoveAChecker) {
    Board rank = boardFrom("8/8/8/KPp4r/8/8/8/7k w - c6 0 2");
    EXPECT_EQ(legalTexts(rank), (Texts{"a5a4", "a5a6", "a5b6", "b5b6"}));

    // The pawn that just stepped twice gives check; taking it en passant
    // answers the check.
    Board checked = boardFrom("8/8/8/2k5/3Pp3/8/8/4K3 b - d3 0 1");
    EXPECT_TRUE(checked.isInCheck(Black));
    EXPECT_TRUE(findMove(checked, "e4d3").isEnPassant());
}

TEST(Castling, Chess960KingAlreadyOnItsTarget) {
    Board board = boardFrom("rk5r/8/8/8/8/8/8/R5KR w HAha - 0 1", Chess960);
    const Board before = board;
    const Texts kingMoves = legalTexts(board, squareBit(G1));
    EXPECT_EQ(kingMoves, (Texts{"g1f1", "g1f2", "g1g2", "g1g1", "g1c1"}));
    const Move shortCastle = findMove(board, "g1g1");
    EXPECT_TRUE(shortCastle.isShortCastle());
    EXPECT_EQ(shortCastle.moved(), WhiteKing);
    board.makeMove(shortCastle);
    EXPECT_EQ(board.squares[G1], WhiteKing);
    EXPECT_EQ(board.squares[F1], WhiteRook);
    EXPECT_EQ(board.squares[H1], NoPiece);
    EXPECT_EQ(board.castlingRights, BlackShort | BlackLong);
    EXPECT_EQ(board.key, board.fullKey());
    board.unmakeMove();
    EXPECT_TRUE(board == before);

    board.makeMove(findMove(board, "g1c1"));
    EXPECT_EQ(board.toFen(), "rk5r/8/8/8/8/8/8/2KR3R b kq - 1 1");
}

TEST(Castling, NotOutOfThroughOrIntoCheck) {
    // The rook covers f1 and the queen d1: no castling to either side.
    Board board = boardFrom("4kr2/8/8/8/3q4/8/8/R3K2R w KQ - 0 1");
    EXPECT_EQ(legalTexts(board, squareBit(E1)), (Texts{"e1e2"}));
    // Behind the king, b1 may be attacked: long castling only crosses d1.
    Board longSide = boardFrom("1r2k3/8/8/8/8/8/8/R3K3 w Q - 0 1");
    EXPECT_TRUE(findMove(longSide, "e1c1").isLongCastle());
}

TEST(SpecialMoves, NullMoveAndHordePawnsOnTheFirstRank) {
    Board board = boardFrom(startFen.data());
    board.makeMove(findMove(board, "e2e4"));
    const Board before = board;
    board.makeMove(Move::null(BlackKing, E8));
    EXPECT_EQ(board.sideToMove, White);
    EXPECT_EQ(board.enPassantSquare, NoSquare);
    EXPECT_EQ(board.halfmoveClock, 1u);
    EXPECT_EQ(board.plyCount, 2u);
    EXPECT_EQ(board.fullmoveNumber, 2u);
    EXPECT_EQ(board.key, board.fullKey());
    board.unmakeMove();
    EXPECT_TRUE(board == before);

    Board horde = boardFrom("4k3/8/8/8/8/8/8/P7 w - - 0 1", Horde);
    EXPECT_EQ(legalTexts(horde, squareBit(A1)), (Texts{"a1a2", "a1a3"}));
    const Move twoSteps = findMove(horde, "a1a3");
    EXPECT_TRUE(twoSteps.isDoubleStep());
    horde.makeMove(twoSteps);
    EXPECT_EQ(horde.enPassantSquare, NoSquare);
}

TEST(GameEnd, CheckmateStalemateAndNonsensePlacements) {
    Board foolsMate = boardFrom("rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3");
    EXPECT_TRUE(foolsMate.isInCheck(White));
    EXPECT_TRUE(foolsMate.isCheckmate());
    EXPECT_FALSE(foolsMate.isStalemate());

    Board stalemate = boardFrom("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1");
    EXPECT_TRUE(stalemate.isStalemate());
    EXPECT_FALSE(stalemate.isCheckmate());
    EXPECT_FALSE(stalemate.hasLegalMove());

    // Boards no game reaches still give exact answers.
    Board empty = boardFrom("8/8/8/8/8/8/8/8 w - - 0 1");
    EXPECT_EQ(legalTexts(empty), Texts{});
    EXPECT_FALSE(empty.isStalemate());
    EXPECT_FALSE(empty.isInCheck(White));
    Board firstRankPawns = boardFrom("8/8/8/8/8/8/8/P6p w - - 0 1");
    EXPECT_EQ(legalTexts(firstRankPawns), (Texts{"a1a2", "a1a3"}));
    Board blackPawnsOnRankOne = boardFrom("8/8/8/8/8/8/8/pppppppp b - - 0 1");
    EXPECT_EQ(legalTexts(blackPawnsOnRankOne), Texts{});
    Board twoKings = boardFrom("K7/8/8/8/8/8/8/K7 w - - 0 1");
    EXPECT_EQ(legalTexts(twoKings), (Texts{"a1b1", "a1a2", "a1b2", "a8a7", "a8b7", "a8b8"}));
    Board nineQueens = boardFrom("QQQQQQQQ/Q7/8/8/8/8/8/k7 b - - 0 1");
    EXPECT_TRUE(nineQueens.isCheckmate());
    Board kingless = boardFrom("8/8/8/8/8/8/8/QQ6 w - - 0 1");
    MoveList queenMoves;
    kingless.generateLegalMoves(queenMoves);
    EXPECT_EQ(queenMoves.size(), 34u);
}

TEST(AttackQueries, AttackersAttackedSquaresAttacksFromAndPins) {
    Board start = boardFrom(startFen.data());
    EXPECT_EQ(start.attackersTo(F3, White), squareBit(E2) | squareBit(G2) | squareBit(G1));
    EXPECT_EQ(start.attackersTo(F3, Black), 0u);
    EXPECT_EQ(start.attackedSquares(White, start.occupied), 0xFFFF7EULL);
    EXPECT_EQ(start.attacksFrom(E1),
              squareBit(D1) | squareBit(F1) | squareBit(D2) | squareBit(E2) | squareBit(F2));
    EXPECT_EQ(start.attacksFrom(E2), squareBit(D3) | squareBit(F3));
    EXPECT_EQ(start.attacksFrom(E4), 0u);
    EXPECT_EQ(start.attacksFrom(D1),
              squareBit(C1) | squareBit(E1) | squareBit(C2) | squareBit(D2) | squareBit(E2));

    Board pinned = boardFrom("4r1k1/8/8/8/1b6/8/3NR3/4K3 w - - 0 1");
    Bitboard candidates = pinned.byColor[Black], through = ~Bitboard(0), target = ~Bitboard(0);
    pinned.pins(candidates, through, target);
    EXPECT_EQ(candidates, squareBit(E8) | squareBit(B4));
    EXPECT_EQ(through, squareBit(E2) | squareBit(D2));
    EXPECT_EQ(target, squareBit(E1));
    // Only pins to the given targets count.
    candidates = pinned.byColor[Black], through = ~Bitboard(0), target = squareBit(E2);
    pinned.pins(candidates, through, target);
    EXPECT_EQ(candidates, 0u);
}

TEST(EditSteps, AddRemoveSwapFlipAndTakeBack) {
    Board board = boardFrom(startFen.data());
    const Board before = board;
    const uint16_t nextId = board.nextPieceId;
    board.makeMove(Move::edit(EditAdd, WhiteQueen, E4, E4));
    EXPECT_EQ(board.squares[E4], WhiteQueen);
    EXPECT_EQ(board.pieceIds[E4], nextId);
    board.makeMove(Move::edit(EditRemove, NoPiece, A1, A1, WhiteRook));
    EXPECT_EQ(board.castlingRights, WhiteShort | BlackShort | BlackLong);
    board.makeMove(Move::edit(EditSwap, NoPiece, E4, E7));
    EXPECT_EQ(board.squares[E7], WhiteQueen);
    EXPECT_EQ(board.squares[E4], BlackPawn);
    board.makeMove(Move::edit(EditFlip, NoPiece, A1, A1));
    EXPECT_EQ(board.sideToMove, Black);
    EXPECT_EQ(board.toFen(), "rnbqkbnr/ppppQppp/8/8/4p3/8/PPPPPPPP/1NBQKBNR b Kkq - 0 1");
    EXPECT_EQ(board.key, board.fullKey());
    for (int i = 0; i < 4; ++i) board.unmakeMove();
    EXPECT_TRUE(board == before);
}

TEST(Pockets, PromotionCaptureAndRecaptureTakeBackExactly) {
    Board board = boardFrom("4k2r/6P1/6n1/8/8/8/8/4K3[] w k - 0 1", Crazyhouse);
    const Board before = board;
    board.makeMove(findMove(board, "g7h8q"));
    EXPECT_EQ(board.pocketCount(WhiteRook), 1);
    EXPECT_TRUE(contains(board.promoted, H8));
    EXPECT_EQ(board.castlingRights, 0);
    const Board afterPromotion = board;
    board.makeMove(findMove(board, "g6h8"));
    // A promoted piece goes back to the pocket as a pawn.
    EXPECT_EQ(board.pocketCount(BlackPawn), 1);
    EXPECT_EQ(board.pocketCount(BlackQueen), 0);
    EXPECT_EQ(board.key, board.fullKey());
    board.unmakeMove();
    EXPECT_TRUE(board == afterPromotion);
    board.unmakeMove();
    EXPECT_TRUE(board == before);
}

}  // namespace
}  // namespace tarnfold
