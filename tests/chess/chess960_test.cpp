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

TEST(Chess960, ValidationFailuresInOrder) {
    const std::pair<const char*, int> cases[] = {
        {"RNBQKBN", -1},  {"RNBQKBNRR", -1}, {"RNBQKBNx", -2},  {"rnbqkbnr", -2},
        {"RNBQKBNP", -3}, {"RBBQKBNR", -4},  {"RNBQKRNR", -5},  {"RNBQKBNQ", -6},
        {"RNBKKBNR", -7}, {"RBNBKQNR", -9},  {"KRBQNBNR", -10}, {"RNBQRBNK", -10},
    };
    for (const auto& [letters, code] : cases) EXPECT_EQ(validateChess960(letters), code) << letters;
}

TEST(Chess960, ErrorTexts) {
    EXPECT_EQ(chess960ErrorText(0), "success");
    EXPECT_EQ(chess960ErrorText(-1), "bad string size, expected 8 characters");
    EXPECT_EQ(chess960ErrorText(-2), "unrecognized piece character");
    EXPECT_EQ(chess960ErrorText(3), "bad pawn count, expected 0 pawns");
    EXPECT_EQ(chess960ErrorText(-4), "bad knight count, expected 2 knights");
    EXPECT_EQ(chess960ErrorText(-5), "bad bishop count, expected 2 bishops");
    EXPECT_EQ(chess960ErrorText(-6), "bad rook count, expected 2 rooks");
    EXPECT_EQ(chess960ErrorText(-7), "bad queen count, expected 1 queen");
    EXPECT_EQ(chess960ErrorText(-8), "bad king count, expected 1 king");
    EXPECT_EQ(chess960ErrorText(-9), "bishops must be on opposite color squares");
    EXPECT_EQ(chess960ErrorText(-10), "king must be located between the two rooks");
    EXPECT_EQ(chess960ErrorText(-11), "invalid error");
    EXPECT_EQ(chess960ErrorText(500), "invalid error");
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
