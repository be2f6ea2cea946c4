#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "chess/board.h"
#include "chess/board_from.h"

namespace tarnfold {
namespace {

bool listed(const MoveList& moves, Move move) {
    return std::find(moves.begin(), moves.end(), move) != moves.end();
}

// Every legal move of a position reached by play is among the legal reverse
// moves of the position it leads to, and taking it back restores the
// placement, and the whole key where the move used up no castling right or
// en passant chance (which a reverse move cannot know of).
void checkEveryMoveTakesBack(Board& board, int& checked) {
    MoveList moves, reverses;
    board.generateLegalMoves(moves);
    const uint64_t pieceKey = board.pieceKey(), key = board.key;
    for (Move move : moves) {
        board.makeMove(move);
        const Board after = board;
        board.generateLegalReverseMoves(reverses);
        const Move back = reversed(move);
        ASSERT_TRUE(listed(reverses, back)) << after.toFen() << " lacks ~" << moveToCoordinates(move);
        board.makeMove(back);
        EXPECT_EQ(board.pieceKey(), pieceKey) << after.toFen() << " ~" << moveToCoordinates(move);
        EXPECT_EQ(board.key, board.fullKey());
        const bool rightsKept = after.castlingRights == board.moveStack.front().previousCastlingRights;
        if (!board.moveStack.front().previousEnPassantCapturable && rightsKept) {
            EXPECT_EQ(board.key, key) << after.toFen() << " ~" << moveToCoordinates(move);
        }
        board.unmakeMove();
        ASSERT_TRUE(board == after);
        board.unmakeMove();
        ++checked;
    }
}

TEST(ReverseMoves, EveryLegalMoveOfRandomGamesTakesBack) {
    std::mt19937 random(20261121);
    int checked = 0;
    for (int game = 0; game < 60; ++game) {
        Board board = boardFrom(startFen.data());
        MoveList moves;
        for (int ply = 0; ply < 120; ++ply) {
            // The stack bottom is the move under test, so play on a copy
            // that starts with an empty stack.
            Board position = board;
            position.moveStack.clear();
            checkEveryMoveTakesBack(position, checked);
            if (HasFatalFailure()) return;
            board.generateLegalMoves(moves);
            if (moves.empty()) break;
            // Prefer captures and promotions a little so that games thin out.
            Move chosen = moves[random() % moves.size()];
            for (Move move : moves)
                if ((move.isCapture() || move.isPromotion()) && random() % 3 == 0) chosen = move;
            board.makeMove(chosen);
        }
    }
    EXPECT_GT(checked, 50000);
}

TEST(ReverseMoves, SpecialMovesTakeBack) {
    struct Case {
        const char* fen;
        const char* move;  // coordinates of the legal move made first
    };
    const Case cases[] = {
        {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "e1g1"}, {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "e1c1"},
        {"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 2", "e5d6"},    {"1r2k3/P7/8/8/8/8/8/4K3 w - - 0 1", "a7b8q"},
        {"4k3/P7/8/8/8/8/8/4K3 w - - 0 1", "a7a8n"},
    };
    for (const Case& c : cases) {
        Board board = boardFrom(c.fen);
        int checked = 0;
        checkEveryMoveTakesBack(board, checked);
        MoveList moves;
        board.generateLegalMoves(moves);
        const auto it = std::find_if(moves.begin(), moves.end(),
                                     [&](Move move) { return moveToCoordinates(move) == c.move; });
        ASSERT_NE(it, moves.end()) << c.move;
        const Board before = board;
        board.makeMove(*it);
        board.makeMove(reversed(*it));
        // The clocks cannot be known backwards and stay as they were.
        FenOptions withoutClock;
        withoutClock.zeroHalfmoveClock = true;
        EXPECT_EQ(board.toFen(withoutClock), before.toFen(withoutClock)) << c.move;
    }
}

TEST(ReverseMoves, ListAfterADoubleStepAndRefusedPawnsOnTheLastRank) {
    // After a double step nothing but that step can be taken back.
    Board board = boardFrom("4k3/8/8/8/4P3/8/8/4K3 b - e3 0 1");
    MoveList reverses;
    board.generateReverseMoves(reverses);
    ASSERT_EQ(reverses.size(), 1u);
    EXPECT_EQ(reverses[0],
              Move::make(WhitePawn, E2, E4, NoPiece, NoPiece, Move::DoubleStepBit | Move::ReverseBit));

    // A pawn cannot have been taken on the eighth rank.
    Board corner = boardFrom("R3k3/8/8/8/8/8/8/4K3 b - - 0 1");
    const Move putsBackAPawn = Move::make(WhiteRook, A1, A8, BlackPawn, NoPiece, Move::ReverseBit);
    corner.generateReverseMoves(reverses);
    EXPECT_TRUE(listed(reverses, putsBackAPawn));
    EXPECT_FALSE(corner.isLegalMove(putsBackAPawn));
    corner.generateLegalReverseMoves(reverses);
    EXPECT_FALSE(listed(reverses, putsBackAPawn));
    EXPECT_TRUE(listed(reverses, Move::make(WhiteRook, A1, A8, BlackKnight, NoPiece, Move::ReverseBit)));

    // Castling is taken back to the ordinary homes even where the position
    // came without rights; the right itself cannot be known then.
    Board castled = boardFrom("5rk1/8/8/8/8/8/8/4K3 w - - 0 1");
    const Move uncastle =
        Move::make(BlackKing, E8, G8, NoPiece, NoPiece, Move::ShortCastleBit | Move::ReverseBit);
    castled.generateLegalReverseMoves(reverses);
    EXPECT_TRUE(listed(reverses, uncastle));
    castled.makeMove(uncastle);
    EXPECT_EQ(castled.toFen(), "4k2r/8/8/8/8/8/8/4K3 b - - 0 1");
    castled.unmakeMove();
    EXPECT_EQ(castled.toFen(), "5rk1/8/8/8/8/8/8/4K3 w - - 0 1");

    // Black has all sixteen men, so White took nothing and nothing is put
    // back; pawns on their second rank never move back.
    Board full = boardFrom("rnbqkbnr/pppppppp/8/8/7R/8/1PPPPPPP/1NBQKBN1 b kq - 0 1");
    full.generateLegalReverseMoves(reverses);
    std::vector<std::string> texts;
    for (Move move : reverses) texts.push_back(moveToCoordinates(move));
    EXPECT_EQ(texts, (std::vector<std::string>{"a3b1", "c3b1", "f3g1", "h3g1", "h3h4", "a4h4", "b4h4", "c4h4",
                                               "d4h4", "e4h4", "f4h4", "g4h4", "h5h4", "h6h4"}));
}

}  // namespace
}  // namespace tarnfold
