#include <gtest/gtest.h>

#include <set>

#include "chess/board.h"

namespace tarnfold {
namespace {

TEST(Chess960, KnownNumbers) {
    EXPECT_EQ(chess960Position(518), "RNBQKBNR");
    EXPECT_EQ(chess960Position(0), "BBQNNRKR");
    EXPECT_EQ(chess960Position(959), "RKRNNQBB");
    EXPECT_EQ(chess960Position(1), "BQNBNRKR");
    EXPECT_EQ(chess960Position(960), "");
    EXPECT_EQ(chess960Position(-1), "");
}

TEST(Chess960, NumberingIsABijection) {
    std::set<std::string> seen;
    for (int number = 0; number < 960; ++number) {
        const std::string rank = chess960Position(number);
        ASSERT_EQ(validateChess960(rank), number) << rank;
        seen.insert(rank);
    }
    EXPECT_EQ(seen.size(), 960u);
}

// A back rank with several faults is told the first of them.
TEST(Chess960, EachWrongRankGetsItsMessage) {
    const std::pair<const char*, const char*> cases[] = {
        {"RNBQKBN", "bad string size, expected 8 characters"},
        {"RNBQKBNRR", "bad string size, expected 8 characters"},
        {"RNBQKBNx", "unrecognized piece character"},
        {"rnbqkbnr", "unrecognized piece character"},
        {"RNBQKBNP", "bad pawn count, expected 0 pawns"},
        {"RBBQKBNR", "bad knight count, expected 2 knights"},
        {"RNBQKRNR", "bad bishop count, expected 2 bishops"},
        {"RNBQKBNQ", "bad rook count, expected 2 rooks"},
        {"RNBKKBNR", "bad queen count, expected 1 queen"},
        {"RBNBKQNR", "bishops must be on opposite color squares"},
        {"KRBQNBNR", "king must be located between the two rooks"},
        {"RNBQRBNK", "king must be located between the two rooks"},
    };
    for (const auto& [letters, message] : cases) {
        const int code = validateChess960(letters);
        EXPECT_LT(code, 0) << letters;
        EXPECT_EQ(chess960ErrorText(code), message) << letters;
    }
}

TEST(Chess960, StartPositionReadsWithItsHomes) {
    // Number 0: BBQNNRKR, rooks f1 and h1 around the king on g1.
    Board board(Chess960);
    const std::string rank = chess960Position(0);
    std::string lower = rank;
    for (char& c : lower) c = char(c - 'A' + 'a');
    ASSERT_TRUE(board.setFen(lower + "/pppppppp/8/8/8/8/PPPPPPPP/" + rank + " w HFhf - 0 1"));
    EXPECT_EQ(board.castlingRookSquare, (std::array<Square, 4>{H1, H8, F1, F8}));
    EXPECT_EQ(board.kingHomeSquare, (std::array<Square, 2>{G1, G8}));
    EXPECT_EQ(board.toFen(), lower + "/pppppppp/8/8/8/8/PPPPPPPP/" + rank + " w KQkq - 0 1");
}

}  // namespace
}  // namespace tarnfold
