#include <gtest/gtest.h>

#include <string>

#include "chess/board.h"
#include "chess/board_from.h"
#include "chess/notation.h"

namespace tarnfold {
namespace {

void play(Board& board, std::string_view san) {
    Move move;
    size_t position = 0;
    ASSERT_EQ(parseSan(board, san, move, position), MoveSuccess) << san << " in " << board.toFen();
    board.makeMove(move);
}

// End, win, loss, draw from the side to move, as one string: "ewld" with a
// '-' for each that does not hold.
std::string outcome(Board& board) {
    std::string text = "----";
    if (board.isVariantEnd()) text[0] = 'e';
    if (board.isVariantWin()) text[1] = 'w';
    if (board.isVariantLoss()) text[2] = 'l';
    if (board.isVariantDraw()) text[3] = 'd';
    return text;
}

TEST(VariantEnd, EachRuleSetEndsItsWay) {
    // The third check ends the game: the checker has won.
    Board threeCheck = boardFrom("4k3/8/8/8/8/8/8/4K2R w - - 1+3 0 1", ThreeCheck);
    EXPECT_EQ(outcome(threeCheck), "----");
    play(threeCheck, "Rh8+");
    EXPECT_EQ(threeCheck.checksRemaining[White], 0);
    EXPECT_EQ(outcome(threeCheck), "e-l-");
    MoveList moves;
    threeCheck.generateLegalMoves(moves);
    EXPECT_TRUE(moves.empty());
    threeCheck.unmakeMove();
    EXPECT_EQ(threeCheck.checksRemaining[White], 1);

    // White's king has arrived; Black still has one move to draw level.
    Board racing = boardFrom("6K1/k7/8/8/8/8/8/8 b - - 0 1", RacingKings);
    EXPECT_EQ(outcome(racing), "----");
    racing.generateLegalMoves(moves);
    EXPECT_EQ(moves.size(), 5u);
    play(racing, "Ka8");
    EXPECT_EQ(outcome(racing), "e--d");
    Board racingLost = boardFrom("6K1/8/k7/8/8/8/8/8 b - - 0 1", RacingKings);
    play(racingLost, "Kb6");
    EXPECT_EQ(outcome(racingLost), "ew--");

    // Suicide: a blocked side wins with fewer pieces, draws with as many.
    Board suicideDraw = boardFrom("8/8/8/p7/P7/8/8/8 b - - 0 1", Suicide);
    EXPECT_EQ(outcome(suicideDraw), "---d");
    Board suicideWin = boardFrom("8/8/8/p7/P7/8/7P/8 b - - 0 1", Suicide);
    EXPECT_EQ(outcome(suicideWin), "-w--");
    Board suicideMoving = boardFrom("8/8/8/p7/P7/8/7P/8 w - - 0 1", Suicide);
    EXPECT_EQ(outcome(suicideMoving), "----");

    // Losers: the side down to its bare king has won.
    Board losers = boardFrom("8/8/8/8/8/8/p7/K6k w - - 0 1", Losers);
    EXPECT_EQ(outcome(losers), "ew--");
    losers.setSideToMove(Black);
    EXPECT_EQ(outcome(losers), "e-l-");

    // Giveaway: having nothing left wins.
    Board giveaway = boardFrom("8/8/8/8/8/8/8/6k1 w - - 0 1", Giveaway);
    EXPECT_EQ(outcome(giveaway), "ew--");

    Board hill = boardFrom("8/8/8/8/3K4/8/8/k7 b - - 0 1", KingOfTheHill);
    EXPECT_EQ(outcome(hill), "e-l-");

    // Horde: a side without pieces has lost, and a side without a king is
    // never in check.
    Board horde = boardFrom("4k3/8/8/8/8/8/8/8 w - - 0 1", Horde);
    EXPECT_EQ(outcome(horde), "e-l-");
    Board kinglessHorde = boardFrom("4k3/8/8/8/8/8/8/4r2P w - - 0 1", Horde);
    EXPECT_FALSE(kinglessHorde.isInCheck(White));
    EXPECT_EQ(outcome(kinglessHorde), "----");
}

TEST(VariantRules, AtomicKingsAndExplosions) {
    // Touching kings cancel check.
    Board touching = boardFrom("4r3/8/8/3kK3/8/8/8/8 w - - 0 1", Atomic);
    EXPECT_FALSE(touching.isInCheck(White));
    EXPECT_FALSE(touching.isInCheck(Black));

    // The capture blows up the taker, the victim and the pieces around, but
    // not the pawn.
    Board board = boardFrom("4k3/8/3p4/3nrb2/8/8/8/K3R3 w - - 0 1", Atomic);
    const Board before = board;
    play(board, "Rxe5");
    EXPECT_EQ(board.toFen(), "4k3/8/3p4/8/8/8/8/K7 b - - 0 1");
    ASSERT_EQ(board.explosions.size(), 3u);
    EXPECT_EQ(board.explosions[0].piece, BlackKnight);
    EXPECT_EQ(board.explosions[1].piece, WhiteRook);
    EXPECT_EQ(board.explosions[2].piece, BlackBishop);
    EXPECT_EQ(board.key, board.fullKey());
    board.unmakeMove();
    EXPECT_TRUE(board == before);

    // Blowing up the enemy king beats a check on one's own.
    Board inCheck = boardFrom("4k3/3p4/8/8/8/8/8/3RK2r w - - 0 1", Atomic);
    EXPECT_TRUE(inCheck.isInCheck(White));
    Move move;
    size_t position = 0;
    EXPECT_EQ(parseSan(inCheck, "Rxd7", move, position), MoveSuccess);
    inCheck.makeMove(move);
    EXPECT_EQ(outcome(inCheck), "e-l-");
}

TEST(VariantRules, CrazyhouseDropsUnderCheck) {
    // Only a drop between the rook and the king answers the check.
    Board board = boardFrom("4k3/8/8/8/8/8/8/r3K3[N] w - - 0 1", Crazyhouse);
    MoveList moves;
    board.generateLegalMoves(moves);
    std::vector<std::string> drops;
    for (Move move : moves)
        if (move.isDrop()) drops.push_back(moveToText(board, move));
    EXPECT_EQ(drops, (std::vector<std::string>{"N@b1", "N@c1", "N@d1"}));
}

}  // namespace
}  // namespace tarnfold
