#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "chess/board.h"
#include "tools/san_replay.h"

namespace tarnfold {
namespace {

struct ErrorCase {
    const char* fen;
    Variant variant;
    std::vector<std::string> errors;  // what the reader says, and where
};

std::vector<std::string> readErrors(const char* fen, Variant variant, bool& ok) {
    Board board(variant);
    std::vector<FenError> errors;
    ok = board.setFen(fen, &errors);
    std::vector<std::string> said;
    for (FenError error : errors)
        said.push_back(std::string(fenErrorText(fenErrorCode(error))) + " at " +
                       std::to_string(fenErrorPosition(error)));
    return said;
}

TEST(FenRead, EachWrongInputGetsItsErrorAtItsPlace) {
    const ErrorCase cases[] = {
        {"", Standard, {"incomplete FEN at 0"}},
        {"   ", Standard, {"incomplete FEN at 3"}},
        {"8/8/8/8/8/8/8/8", Standard, {"incomplete FEN at 15"}},
        {"8/8/8/8/8/8/8/8 w", Standard, {"incomplete FEN at 17"}},
        {"8/8/8/8/8/8/8/8 w - ", Standard, {"incomplete FEN at 20"}},
        {"8/8/8/8/8/8/8/8 w - -", Standard, {"incomplete FEN at 21"}},
        {"8/8/8/8/8/8/8/8 w - - 0", Standard, {"incomplete FEN at 23"}},
        {"rnbqkbnr/pppppppp/44/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
         Standard,
         {"consecutive numbers at 19", "too few squares for rank at 20"}},
        {"rnbqkbnr/pppppppp/9/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
         Standard,
         {"invalid number at 18", "too few squares for rank at 19"}},
        {"rnbqkbnr/ppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
         Standard,
         {"too few squares for rank at 16"}},
        {"rnbqkbnr/ppppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
         Standard,
         {"too many squares for rank at 17"}},
        {"rnbqkbnr/ppppppp2/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
         Standard,
         {"too many squares for rank at 16"}},
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP w KQkq - 0 1", Standard, {"too few ranks at 33"}},
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR/ w KQkq - 0 1", Standard, {"too many ranks at 43"}},
        {"8/8/8/8/8/8/8/7 w - - 0 1", Standard, {"too few squares for rank at 14"}},
        {"8/8/8/8/8/8/8/7x w - - 0 1",
         Standard,
         {"invalid character at 15", "too few squares for rank at 15"}},
        {"8/8/8/8/8/8/8/8[] w - - 0 1", Standard, {"invalid character at 15", "invalid character at 16"}},
        {"8/8/8/8/8/8/8/8 x - - 0 1", Standard, {"invalid side descriptor at 16"}},
        {"8/8/8/8/8/8/8/8 w KX - 0 1", Standard, {"invalid castling descriptor at 19"}},
        {"8/8/8/8/8/8/8/8 w - e9 0 1", Standard, {"invalid en passant square at 20"}},
        {"8/8/8/8/8/8/8/8 w - e3x 0 1", Standard, {"invalid en passant square at 20"}},
        {"8/8/8/8/8/8/8/8 w - - x 1", Standard, {"invalid half-move clock at 22"}},
        {"8/8/8/8/8/8/8/8 w - - 1x 1", Standard, {"invalid half-move clock at 23"}},
        {"8/8/8/8/8/8/8/8 w - - 0 1a", Standard, {"invalid fullmove counter at 25"}},
        // Reading goes on after each error and collects them all.
        {"8/8/8/8/8/8/8/8 x KX e9 a b",
         Standard,
         {"invalid side descriptor at 16", "invalid castling descriptor at 19",
          "invalid en passant square at 21", "invalid half-move clock at 24",
          "invalid fullmove counter at 26"}},
        {"8/8/8/8/8/8/8/8 x", Standard, {"invalid side descriptor at 16", "incomplete FEN at 17"}},
        // The pocket bracket needs crazyhouse and a complete board.
        {"8/8/8/8/8/8/8/7[P] w - - 0 1", Crazyhouse, {"invalid character at 15", "invalid character at 17"}},
        // A ninth rank is the pocket in crazyhouse only.
        {"8/8/8/8/8/8/8/8/P w - - 0 1", Standard, {"too many ranks at 15"}},
    };
    for (const ErrorCase& c : cases) {
        bool ok = true;
        EXPECT_EQ(readErrors(c.fen, c.variant, ok), c.errors) << c.fen;
        EXPECT_FALSE(ok) << c.fen;
        // Without an error vector the result is the same bool.
        Board quiet(c.variant);
        EXPECT_FALSE(quiet.setFen(c.fen)) << c.fen;
    }
}

TEST(FenRead, StopsAtTheFirstErrorWithoutAVector) {
    Board board;
    EXPECT_FALSE(board.setFen("8/8/8/8/8/8/8/8 x - - 7 9"));
    EXPECT_EQ(board.halfmoveClock, 0u);
    EXPECT_EQ(board.fullmoveNumber, 1u);
    std::vector<FenError> errors;
    EXPECT_FALSE(board.setFen("8/8/8/8/8/8/8/8 x - - 7 9", &errors));
    EXPECT_EQ(board.halfmoveClock, 7u);
    EXPECT_EQ(board.fullmoveNumber, 9u);
}

// The message a user sees: the text read, and a caret under the place.
TEST(FenRead, ErrorMessagePointsIntoTheText) {
    const std::string text = "rnbqkbnr/pppppppp/44/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
    std::vector<FenError> errors;
    ASSERT_FALSE(Board().setFen(text, &errors));
    ASSERT_FALSE(errors.empty());
    EXPECT_EQ(fenErrorMessage(text, errors[0]),
              "Error parsing FEN string: consecutive numbers\n" + text + "\n" + std::string(19, ' ') + "^\n");
    errors.clear();
    ASSERT_FALSE(Board().setFen("", &errors));
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_EQ(fenErrorMessage("", errors[0]), "Error parsing FEN string: incomplete FEN\n\n^\n");
}

struct RoundTrip {
    Variant variant;
    const char* in;
    FenOptions options;
    const char* out;
};

FenOptions style(int pocketStyle, int checkStyle = 0) {
    FenOptions options;
    options.pocketStyle = pocketStyle;
    options.checkStyle = checkStyle;
    return options;
}

TEST(FenWrite, ReadAndWriteBack) {
    FenOptions marked;
    marked.markPromoted = true;
    FenOptions files;
    files.alwaysFileLetters = true;
    FenOptions clocks;
    clocks.zeroHalfmoveClock = clocks.unitFullmoveNumber = true;
    const RoundTrip cases[] = {
        {Standard,
         "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
         {},
         "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"},
        {Standard, "  8/8/8/8/8/8/8/8 w - - 0 1", {}, "8/8/8/8/8/8/8/8 w - - 0 1"},
        {Standard, "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 3 10", {}, "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 3 10"},
        {Standard, "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 3 10", clocks, "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1"},
        {Standard, "r3k2r/8/8/8/8/8/8/R3K2R w Qk - 0 1", {}, "r3k2r/8/8/8/8/8/8/R3K2R w Qk - 0 1"},
        // En passant on a wrong rank is dropped; on rank 3 it is kept even
        // when no pawn can capture.
        {Standard,
         "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e4 0 1",
         {},
         "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1"},
        {Standard,
         "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1",
         {},
         "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1"},
        {Standard, "4k3/8/8/8/8/8/8/4K3 w KQkq - 0 0", {}, "4k3/8/8/8/8/8/8/4K3 w - - 0 1"},
        {Standard, "4k3/8/8/8/8/8/8/4KR1R w K - 0 1", {}, "4k3/8/8/8/8/8/8/4KR1R w K - 0 1"},
        {Standard, "4k3/8/8/8/8/8/8/4KR1R w F - 0 1", {}, "4k3/8/8/8/8/8/8/4KR1R w F - 0 1"},
        {Standard, "r1r1k3/8/8/8/8/8/8/4K3 b q - 0 1", {}, "r1r1k3/8/8/8/8/8/8/4K3 b q - 0 1"},
        {Standard, "r1r1k3/8/8/8/8/8/8/4K3 b c - 0 1", {}, "r1r1k3/8/8/8/8/8/8/4K3 b c - 0 1"},
        {Standard, "r1r1k3/8/8/8/8/8/8/4K3 b q - 0 1", files, "r1r1k3/8/8/8/8/8/8/4K3 b a - 0 1"},
        {Chess960,
         "bqnbrkrn/pppppppp/8/8/8/8/PPPPPPPP/BQNBRKRN w GEge - 0 1",
         {},
         "bqnbrkrn/pppppppp/8/8/8/8/PPPPPPPP/BQNBRKRN w KQkq - 0 1"},
        {Chess960, "bqnbrkrn/pppppppp/8/8/8/8/PPPPPPPP/BQNBRKRN w KQkq - 0 1", files,
         "bqnbrkrn/pppppppp/8/8/8/8/PPPPPPPP/BQNBRKRN w GEge - 0 1"},
        // Rights whose rook or king is missing, promoted or off the back rank go.
        {Standard, "4k3/8/8/8/8/8/8/R~3K3 w Q - 0 1", {}, "4k3/8/8/8/8/8/8/R3K3 w - - 0 1"},
        {Standard, "4k3/8/8/8/8/8/8/R~3K3 w Q - 0 1", marked, "4k3/8/8/8/8/8/8/R~3K3 w - - 0 1"},
        {Standard, "4k3/8/8/8/8/8/4K3/R7 w Q - 0 1", {}, "4k3/8/8/8/8/8/4K3/R7 w - - 0 1"},
        {Standard, "4k3/8/8/8/8/8/8/R3K1K1 w Q - 0 1", {}, "4k3/8/8/8/8/8/8/R3K1K1 w - - 0 1"},
        {Standard, "4k3/8/8/8/8/8/8/R3K3 w K - 0 1", {}, "4k3/8/8/8/8/8/8/R3K3 w - - 0 1"},
        {Suicide, "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", {}, "r3k2r/8/8/8/8/8/8/R3K2R w - - 0 1"},
        // A pawn takes no promotion mark.
        {Standard, "4k3/8/8/8/8/8/P~7/4K3 w - - 0 1", marked, "4k3/8/8/8/8/8/P7/4K3 w - - 0 1"},
        // Crazyhouse: the pocket in its three places, promoted pieces marked.
        {Crazyhouse, "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR[Pn] w KQkq - 0 1", style(0),
         "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR/Pn w KQkq - 0 1"},
        {Crazyhouse, "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR/nP w KQkq - 0 1", style(1),
         "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR[Pn] w KQkq - 0 1"},
        {Crazyhouse, "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR/PPqn w KQkq - 0 1", style(2),
         "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1 PPnq -"},
        {Crazyhouse, "4k3/8/8/8/8/8/8/Q~3K3/- w - - 0 1", style(0), "4k3/8/8/8/8/8/8/Q~3K3/ w - - 0 1"},
        {Crazyhouse, "4k3/8/8/8/8/8/8/Q~3K3[] w - - 0 1", style(2), "4k3/8/8/8/8/8/8/Q3K3 w - - 0 1 - a1"},
        {Crazyhouse, "4k3/8/8/8/8/8/8/Q3K3 w - - 0 1 Pp a1e1h8zz", style(2),
         "4k3/8/8/8/8/8/8/Q3K3 w - - 0 1 Pp a1e1"},
        {Crazyhouse, "4k3/8/8/8/8/8/8/Q3K3 w - - 0 1 - -", style(1), "4k3/8/8/8/8/8/8/Q3K3[] w - - 0 1"},
        {Crazyhouse, "4k3/8/8/8/8/8/8/Q3K3 w - - 0 1", style(0), "4k3/8/8/8/8/8/8/Q3K3/ w - - 0 1"},
        // Three-check: remaining checks before the clocks, given checks after.
        {ThreeCheck, "4k3/8/8/8/8/8/8/4K3 w - - 2+1 0 1", style(0, 0), "4k3/8/8/8/8/8/8/4K3 w - - 2+1 0 1"},
        {ThreeCheck, "4k3/8/8/8/8/8/8/4K3 w - - 0 1 +1+2", style(0, 0), "4k3/8/8/8/8/8/8/4K3 w - - 2+1 0 1"},
        {ThreeCheck, "4k3/8/8/8/8/8/8/4K3 w - - 0 1 +1+2", style(0, 1), "4k3/8/8/8/8/8/8/4K3 w - - 0 1+1+2"},
        {ThreeCheck, "4k3/8/8/8/8/8/8/4K3 w - - 0 1+1+2", style(0, 1), "4k3/8/8/8/8/8/8/4K3 w - - 0 1+1+2"},
        {ThreeCheck, "4k3/8/8/8/8/8/8/4K3 w - - 2+1 0 1 +2+5", style(0, 0),
         "4k3/8/8/8/8/8/8/4K3 w - - 0+0 0 1"},
        {ThreeCheck, "4k3/8/8/8/8/8/8/4K3 w - - 5+3 0 1", style(0, 1), "4k3/8/8/8/8/8/8/4K3 w - - 0 1+0+0"},
        {Standard, "4k3/8/8/8/8/8/8/4K3 w - - 2+1 0 1", {}, ""},
    };
    for (const RoundTrip& c : cases) {
        Board board(c.variant);
        std::vector<FenError> errors;
        const bool ok = board.setFen(c.in, &errors);
        if (*c.out == '\0') {
            EXPECT_FALSE(ok) << c.in;
            continue;
        }
        ASSERT_TRUE(ok) << c.in;
        EXPECT_TRUE(errors.empty()) << c.in;
        EXPECT_EQ(board.toFen(c.options), c.out) << c.in;
        EXPECT_EQ(board.key, board.fullKey()) << c.in;
    }
}

TEST(FenRead, FieldsAndIdentities) {
    Board board;
    ASSERT_TRUE(board.setFen("8/8/8/8/8/8/8/8 w - - 0 1"));
    EXPECT_EQ(board.occupied, 0u);
    EXPECT_EQ(board.nextPieceId, 1);

    board.setStartPosition();
    // Identities go out in reading order, rank 8 first.
    EXPECT_EQ(board.pieceIds[A8], 1);
    EXPECT_EQ(board.pieceIds[H8], 8);
    EXPECT_EQ(board.pieceIds[A7], 9);
    EXPECT_EQ(board.pieceIds[A1], 25);
    EXPECT_EQ(board.pieceIds[H1], 32);
    EXPECT_EQ(board.pieceIds[E4], 0);
    EXPECT_EQ(board.nextPieceId, 33);
    EXPECT_EQ(board.castlingRights, AllCastlingRights);
    EXPECT_EQ(board.plyCount, 0u);

    ASSERT_TRUE(board.setFen("bqnbrkrn/pppppppp/8/8/8/8/PPPPPPPP/BQNBRKRN b GEge - 13 40"));
    EXPECT_EQ(board.sideToMove, Black);
    EXPECT_EQ(board.halfmoveClock, 13u);
    EXPECT_EQ(board.fullmoveNumber, 40u);
    EXPECT_EQ(board.castlingRookSquare, (std::array<Square, 4>{G1, G8, E1, E8}));
    EXPECT_EQ(board.kingHomeSquare, (std::array<Square, 2>{F1, F8}));

    // Board of nine queens and no kings: no semantic test here.
    ASSERT_TRUE(board.setFen("QQQQQQQQ/8/8/8/8/8/8/Q7 w - - 0 1"));
    EXPECT_EQ(board.pieces[White][Queen], rankMask[7] | squareBit(A1));
}

TEST(FenRead, StandardHomesCut) {
    Board board(Chess960);
    ASSERT_TRUE(board.setFen("bqnbrkrn/pppppppp/8/8/8/8/PPPPPPPP/BQNBRKRN w GEge - 0 1"));
    board.cutCastlingRights(true);
    EXPECT_EQ(board.castlingRights, 0);
    EXPECT_EQ(board.key, board.fullKey());
    ASSERT_TRUE(board.setFen("r3k1r1/8/8/8/8/8/8/R3K2R w KQkq - 0 1"));
    board.cutCastlingRights(true);
    EXPECT_EQ(board.toFen(), "r3k1r1/8/8/8/8/8/8/R3K2R w KQq - 0 1");
    EXPECT_EQ(board.key, board.fullKey());
}

// Every position of the sample games, in every rule set, written as FEN and
// read back: the same FEN and the same key.
TEST(FenWrite, CorpusPositionsReadBack) {
    int positions = 0;
    for (const char* name : {"standard", "chess960", "crazyhouse", "atomic", "horde", "kingofthehill",
                             "threecheck", "giveaway", "suicide", "losers", "racingkings"}) {
        std::ifstream file(std::string(ZMFI_TEST_DATA_DIR "/corpus_sample/") + name + ".pgn",
                           std::ios::binary);
        ASSERT_TRUE(file) << name;
        std::stringstream content;
        content << file.rdbuf();
        replay::ReplayResult result;
        replay::Replayer(result, [&](const Board& board) {
            const std::string fen = board.toFen();
            Board again(board.variant);
            ASSERT_TRUE(again.setFen(fen)) << fen;
            EXPECT_EQ(again.toFen(), fen);
            EXPECT_EQ(again.key, board.key) << fen;
            ++positions;
        }).run(content.str());
        EXPECT_EQ(result.failedGames, 0) << name;
    }
    EXPECT_EQ(positions, 14627 + 190);  // every move, and every game's start
}

}  // namespace
}  // namespace tarnfold
