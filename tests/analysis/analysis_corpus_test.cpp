// No false alarms: a position that a game reached from the start is
// possible, so any finding there is a fault of the analysis. Every position
// of the sample games (main lines and variations, every rule set) and of
// random games played from the start position must pass both forms.

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "analysis/position_analysis.h"
#include "tools/san_replay.h"

namespace tarnfold {
namespace {

// Counts the positions and keeps the first few that fail, with their texts.
struct Judge {
    int positions = 0;
    std::vector<std::string> alarms;
    AnalysisReport report;

    void operator()(const Board& played) {
        ++positions;
        Board board = played;
        for (const bool basicOnly : {true, false}) {
            if (analyzePosition(board, report, basicOnly)) continue;
            if (alarms.size() >= 5) return;
            std::string text = board.toFen() + (basicOnly ? " (legal)\n" : " (reachable)\n");
            renderAnalysisReport(board, report, text, 1);
            alarms.push_back(text);
        }
    }
};

int judgeFile(const std::string& path, Judge& judge) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    std::stringstream content;
    content << file.rdbuf();
    replay::ReplayResult result;
    const int before = judge.positions;
    replay::Replayer(result, [&](const Board& board) { judge(board); }).run(content.str());
    EXPECT_EQ(result.failedGames, 0) << path;
    return judge.positions - before;
}

std::string alarmText(const Judge& judge) {
    std::string text;
    for (const std::string& alarm : judge.alarms) text += alarm;
    return text;
}

TEST(NoFalseAlarms, EveryPositionOfTheSampleGames) {
    Judge judge;
    EXPECT_EQ(judgeFile(ZMFI_TEST_DATA_DIR "/../../examples/games.pgn", judge), 22462);
    EXPECT_EQ(judgeFile(ZMFI_TEST_DATA_DIR "/analysis/promotion_games.pgn", judge), 13888);
    EXPECT_EQ(judgeFile(ZMFI_TEST_DATA_DIR "/corpus_sample/standard.pgn", judge), 4382);
    EXPECT_EQ(alarmText(judge), "");
}

// The other rule sets get only the steps whose reasoning holds there.
TEST(NoFalseAlarms, EveryPositionOfEveryRuleSet) {
    Judge judge;
    int positions = 0;
    for (const char* name : {"chess960", "crazyhouse", "atomic", "horde", "kingofthehill", "threecheck",
                             "giveaway", "suicide", "losers", "racingkings"})
        positions += judgeFile(std::string(ZMFI_TEST_DATA_DIR "/corpus_sample/") + name + ".pgn", judge);
    EXPECT_EQ(positions, 10435);
    EXPECT_EQ(alarmText(judge), "");
}

// Random legal moves from the start reach what careful play does not: many
// promotions, underpromotions, pawns scattered by captures, odd checks.
TEST(NoFalseAlarms, RandomGamesFromTheStart) {
    std::mt19937_64 random(2022);
    Judge judge;
    int promotedPositions = 0;
    MoveList moves;
    for (int game = 0; game < 300; ++game) {
        Board board;
        board.setStartPosition();
        judge(board);
        for (int ply = 0; ply < 300; ++ply) {
            board.generateLegalMoves(moves);
            if (moves.empty()) break;
            board.makeMove(moves[random() % moves.size()]);
            judge(board);
            promotedPositions += board.promoted != 0;
        }
    }
    EXPECT_EQ(judge.positions, 82596);
    EXPECT_EQ(promotedPositions, 25544);
    EXPECT_EQ(alarmText(judge), "");
}

}  // namespace
}  // namespace tarnfold
