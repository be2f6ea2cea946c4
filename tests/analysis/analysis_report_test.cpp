#include "analysis/analysis_report.h"

#include <gtest/gtest.h>

#include <string>

#include "chess/notation.h"

namespace tarnfold {
namespace {

Move sanMove(Board& board, std::string_view text) {
    Move move;
    size_t position = 0;
    EXPECT_EQ(parseSan(board, text, move, position), MoveSuccess) << text;
    return move;
}

// A two-level tree over a position where the moves that lead on check and
// mate, so the move texts carry the default style's suffixes.
TEST(AnalysisReport, RendersTheTreeAndLeavesTheBoardAsItWas) {
    Board board;
    ASSERT_TRUE(board.setFen("r1bqkb1r/pppp1ppp/2n2n2/4p2Q/2B1P3/8/PPPP1PPP/RNB1K1NR w KQkq - 4 4"));
    const Board before = board;

    const Move bishopTakes = sanMove(board, "Bxf7");
    board.makeMove(bishopTakes);
    const Move kingSteps = sanMove(board, "Ke7");
    board.unmakeMove();
    const Move queenTakes = sanMove(board, "Qxf7");

    AnalysisReport afterKing;
    afterKing.findings = {{14, {arg(Black)}}, {5, {arg(Black)}, true}};
    AnalysisReport afterBishop;
    afterBishop.afterMoves = {{kingSteps, afterKing}};
    AnalysisReport afterQueen;
    afterQueen.findings = {{6, {}}};
    AnalysisReport report;
    report.afterMoves = {{bishopTakes, afterBishop}, {queenTakes, afterQueen}};

    std::string output = "Illegal position\n";
    renderAnalysisReport(board, report, output, 1);
    EXPECT_EQ(output,
              "Illegal position\n"
              "    After move Bxf7+\n"
              "        After move Ke7\n"
              "            Impossible check of Black King\n"
              "            Opposite side (Black) is in check\n"
              "    After move Qxf7#\n"
              "        Both sides are in check\n");
    EXPECT_EQ(board.toFen(), before.toFen());
    EXPECT_TRUE(board == before);

    // Findings stand for the position itself: moves beside them are not shown.
    AnalysisReport here;
    here.findings = {{12, {}}};
    here.afterMoves = {{queenTakes, afterQueen}};
    output.clear();
    renderAnalysisReport(board, here, output);
    EXPECT_EQ(output, "Black to move in starting position\n");
}

}  // namespace
}  // namespace tarnfold
