#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "chess/board_from.h"
#include "chess/notation.h"
#include "tools/san_replay.h"

namespace tarnfold {
namespace {

// Coordinates of the move read, or the error's text; and where reading
// stopped.
std::pair<std::string, size_t> readSan(Board& board, std::string_view text) {
    const std::string fenBefore = board.toFen();
    const uint64_t keyBefore = board.key;
    Move move;
    size_t position = 0;
    const MoveError error = parseSan(board, text, move, position);
    EXPECT_EQ(board.toFen(), fenBefore) << text;
    EXPECT_EQ(board.key, keyBefore) << text;
    std::string result = error == MoveSuccess ? moveToCoordinates(move) : std::string(moveErrorText(error));
    if (error == MoveSuccess && move.isNull()) result = "null";
    if (error == MoveSuccess && move.isDrop()) result = "drop " + result.substr(2);
    if (error == MoveSuccess && move.isReverse()) result = "~" + result;
    return {result, position};
}

constexpr const char* castlingFen = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
constexpr const char* twoKnights = "4k3/8/8/8/8/2N3N1/8/4K3 w - - 0 1";
constexpr const char* pinnedKnight = "4k3/8/8/b7/8/2N3N1/8/4K3 w - - 0 1";
constexpr const char* promotion = "3k4/4P3/8/8/8/8/8/4K3 w - - 0 1";
constexpr const char* enPassant = "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 2";
constexpr const char* afterKnight = "rnbqkbnr/pppppppp/8/8/8/5N2/PPPPPPPP/RNBQKB1R b KQkq - 1 1";

TEST(SanRead, ToleratedFormsAndErrors) {
    const struct {
        const char* fen;
        Variant variant;
        const char* text;
        const char* expected;
        size_t position;
    } cases[] = {
        {castlingFen, Standard, "0-0", "e1g1", 3},
        {castlingFen, Standard, "O-O", "e1g1", 3},
        {castlingFen, Standard, "o-o", "e1g1", 3},
        {castlingFen, Standard, "OO", "e1g1", 2},
        {castlingFen, Standard, "00+", "e1g1", 3},
        {castlingFen, Standard, " O-O-O", "e1c1", 6},
        {castlingFen, Standard, "O-O-O-O", "malformed move", 7},
        {"r3k2r/8/8/8/8/8/8/R3K2R w Qkq - 0 1", Standard, "O-O", "bad castling permission", 3},
        {"r3k2r/8/8/8/8/8/8/R3K2R w Qkq - 0 1", Standard, "O-O-O", "e1c1", 5},
        {"r3k1r1/8/8/8/8/8/8/R3K2R w KQq - 0 1", Standard, "O-O", "illegal move", 3},
        {startFen.data(), Standard, "Nf3", "g1f3", 3},
        {startFen.data(), Standard, "Ngf3", "g1f3", 4},
        {startFen.data(), Standard, "N1f3", "g1f3", 4},
        {startFen.data(), Standard, "Ng1f3", "g1f3", 5},
        {startFen.data(), Standard, "Nxf3!", "g1f3", 4},
        {startFen.data(), Standard, "Ng1-f3", "illegal move", 3},
        {startFen.data(), Standard, "N-f3", "malformed move", 1},
        {startFen.data(), Standard, "N1f23", "malformed move", 4},
        {startFen.data(), Standard, "Pe4", "e2e4", 3},
        {startFen.data(), Standard, "e5", "illegal move", 2},
        {twoKnights, Standard, "Ne4", "ambiguous move", 3},
        {twoKnights, Standard, "Nce4", "c3e4", 4},
        {pinnedKnight, Standard, "Ne4", "g3e4", 3},
        {promotion, Standard, "e8Q", "e7e8q", 3},
        {promotion, Standard, "e8=Q", "e7e8q", 4},
        {promotion, Standard, "e8/N", "e7e8n", 4},
        {promotion, Standard, "e8=Q+", "e7e8q", 5},
        {promotion, Standard, "e8", "illegal move", 2},
        {promotion, Standard, "e8=K", "illegal move", 4},
        {"3k4/8/4P3/8/8/8/8/4K3 w - - 0 1", Standard, "e7=Q", "e6e7", 2},
        {"3k4/8/4P3/8/8/8/8/4K3 w - - 0 1", Standard, "e7Q", "malformed move", 2},
        {enPassant, Standard, "exd6ep", "e5d6", 6},
        {enPassant, Standard, "exd6 e.p.", "e5d6", 4},
        {enPassant, Standard, "exd6e.p.", "malformed move", 4},
        {"4k3/8/8/8/1p6/2N5/8/4K3 b - - 0 1", Standard, "bxc3", "b4c3", 4},
        {castlingFen, Standard, "--", "null", 2},
        {castlingFen, Standard, "Z0", "null", 2},
        {castlingFen, Standard, "null ", "null", 4},
        {castlingFen, Standard, "pass", "null", 4},
        {castlingFen, Standard, "passed", "malformed move", 0},
        {castlingFen, Standard, "Zebra", "malformed move", 0},
        {castlingFen, Standard, "-x", "malformed move", 0},
        {"8/8/8/8/8/8/8/Q7 w - - 0 1", Standard, "--", "illegal move", 2},
        {"4k3/8/8/8/8/8/8/4K3[NP] w - - 0 1", Crazyhouse, "N@f3", "drop f3", 4},
        {"4k3/8/8/8/8/8/8/4K3[NP] w - - 0 1", Crazyhouse, "P@e4", "drop e4", 4},
        {"4k3/8/8/8/8/8/8/4K3[NP] w - - 0 1", Crazyhouse, "@e4", "drop e4", 3},
        {"4k3/8/8/8/8/8/8/4K3[NP] w - - 0 1", Crazyhouse, "B@e4", "illegal move", 4},
        {"4k3/8/8/8/8/8/8/4K3[NP] w - - 0 1", Crazyhouse, "@e8", "illegal move", 3},
        // A capture is compulsory, and a king may be promoted to.
        {"8/8/8/8/8/1p6/P7/8 w - - 0 1", Giveaway, "a3", "illegal move", 2},
        {"8/8/8/8/8/1p6/P7/8 w - - 0 1", Giveaway, "axb3", "a2b3", 4},
        {"8/4P3/8/8/8/8/8/7k w - - 0 1", Giveaway, "e8=K", "e7e8k", 4},
        // Pawns named by their target alone: pinned along the line or off
        // it, blocked, or facing a check they must answer.
        {"4r2k/8/8/8/8/8/4P3/4K3 w - - 0 1", Standard, "e4", "e2e4", 2},
        {"7k/8/8/8/1b6/8/3P4/4K3 w - - 0 1", Standard, "d3", "illegal move", 2},
        {"7k/8/8/8/1b6/8/3P4/4K3 w - - 0 1", Standard, "d4", "illegal move", 2},
        {"7k/8/8/8/1b6/2n5/3P4/4K3 w - - 0 1", Standard, "dxc3", "d2c3", 4},
        {"7k/8/8/8/8/3n4/4P3/4K3 w - - 0 1", Standard, "e4", "illegal move", 2},
        {"7k/8/8/8/8/3n4/4P3/4K3 w - - 0 1", Standard, "exd3", "e2d3", 4},
        {"7k/8/8/8/8/3n4/4P3/4K3 w - - 0 1", Standard, "ed3", "e2d3", 3},
        {"7k/8/8/8/8/4n3/4P3/4K3 w - - 0 1", Standard, "e4", "illegal move", 2},
        {"7k/8/8/8/8/3p4/4P3/4K3 w - - 0 1", Standard, "d3", "e2d3", 2},
        {"7k/8/8/8/8/8/4P3/4K3 w - - 0 1", Standard, "e5", "illegal move", 2},
        // Once the game is over no move is legal, even one that only one
        // piece could make: a king blown up, a king on the hill, three checks.
        {"rnbqk2r/p1pp1ppp/1p2pn2/8/2PP4/P4N2/1P2PPPP/RN3B1R w kq - 0 7", Atomic, "Nfd2", "illegal move", 4},
        {"rnbqk2r/p1pp1ppp/1p2pn2/8/2PP4/P4N2/1P2PPPP/RN3B1R w kq - 0 7", Atomic, "Nc3", "illegal move", 3},
        {"4k3/8/8/3K4/8/8/8/1N6 b - - 0 1", KingOfTheHill, "Ke7", "illegal move", 3},
        {"4k3/8/8/8/8/8/8/1N2K3 w - - 0 1 +3+0", ThreeCheck, "Nc3", "illegal move", 3},
        {"4k3/8/8/8/8/8/8/1N2K3 w - - 0 1 +2+1", ThreeCheck, "Nc3", "b1c3", 3},
        // Reverse moves name the move taken back.
        {afterKnight, Standard, "~Nf3", "ambiguous move", 4},
        {afterKnight, Standard, "~Ng1f3", "~g1f3", 6},
        {afterKnight, Standard, "~Nx(B)f3", "illegal move", 8},
        {"rnbqkbnr/pppp1ppp/8/8/8/5N2/PPPPPPPP/RNBQKB1R b KQkq - 0 1", Standard, "~Ng1x(P)f3", "~g1f3", 10},
        {"rnbqkbnr/pppp1ppp/8/8/8/5N2/PPPPPPPP/RNBQKB1R b KQkq - 0 1", Standard, "~Ng1xf3", "malformed move",
         5},
    };
    for (const auto& c : cases) {
        Board board = boardFrom(c.fen, c.variant);
        const auto [result, position] = readSan(board, c.text);
        EXPECT_EQ(result, c.expected) << c.fen << " " << c.text;
        EXPECT_EQ(position, c.position) << c.fen << " " << c.text;
    }
}

TEST(SanRead, ParseMoveDispatchesAndErrorMessagesPointAtTheColumn) {
    Board board = boardFrom(startFen.data());
    Move move;
    size_t position = 0;
    EXPECT_EQ(parseMove(board, Notation::SAN, "e4", move, position), MoveSuccess);
    EXPECT_EQ(moveToCoordinates(move), "e2e4");
    position = 0;
    EXPECT_EQ(parseMove(board, Notation(7), "e4", move, position), MoveMalformed);
    EXPECT_EQ(notationName(Notation::EDN), "EDN");
    EXPECT_EQ(notationName(Notation(2)), "");
    EXPECT_EQ(moveErrorMessage("Nf9", MoveMalformed, 3), "Error parsing move: malformed move\nNf9\n  ^\n");
    EXPECT_EQ(moveErrorMessage("x", MoveIllegal, 0), "Error parsing move: illegal move\nx\n^\n");
}

std::string writeMove(const char* fen, const char* coordinates, const MoveTextStyle& style = {},
                      Variant variant = Standard) {
    Board board = boardFrom(fen, variant);
    const std::string fenBefore = board.toFen();
    MoveList moves;
    board.generateLegalMoves(moves);
    for (Move move : moves) {
        if (moveToCoordinates(move) != coordinates) continue;
        const std::string text = moveToText(board, move, style);
        EXPECT_EQ(board.toFen(), fenBefore);
        return text;
    }
    ADD_FAILURE() << "no move " << coordinates << " in " << fen;
    return "";
}

TEST(SanWrite, DisambiguationSuffixesAndStyles) {
    EXPECT_EQ(writeMove(startFen.data(), "g1f3"), "Nf3");
    EXPECT_EQ(writeMove(startFen.data(), "e2e4"), "e4");
    EXPECT_EQ(writeMove(twoKnights, "c3e4"), "Nce4");
    EXPECT_EQ(writeMove("4k3/8/8/R7/8/8/8/R3K3 w - - 0 1", "a1a3"), "R1a3");
    EXPECT_EQ(writeMove("4k3/8/8/8/8/Q7/8/Q1Q1K3 w - - 0 1", "a1b2"), "Qa1b2");

    MoveTextStyle style;
    EXPECT_EQ(writeMove(pinnedKnight, "g3e4", style), "Ne4");
    style.disambiguation = 2;
    EXPECT_EQ(writeMove(pinnedKnight, "g3e4", style), "Nge4");
    style.disambiguation = 3;
    EXPECT_EQ(writeMove(pinnedKnight, "g3e4", style), "Ng3e4");
    style.disambiguation = 0;
    EXPECT_EQ(writeMove(twoKnights, "c3e4", style), "Ne4");
    EXPECT_EQ(writeMove("rnbqkbnr/pppp1ppp/8/4p3/6P1/5P2/PPPPP2P/RNBQKBNR b KQkq - 0 2", "d8h4", style),
              "Qh4#");

    // The knight checks and uncovers the rook: a double check.
    const char* discovered = "4k3/8/8/8/4N3/8/8/K3R3 w - - 0 1";
    EXPECT_EQ(writeMove(discovered, "e4f6"), "Nf6+");
    style = {};
    style.doubleCheckSuffix = "++";
    EXPECT_EQ(writeMove(discovered, "e4f6", style), "Nf6++");
    EXPECT_EQ(writeMove(discovered, "e4c3", style), "Nc3+");

    EXPECT_EQ(writeMove(castlingFen, "e1g1"), "O-O");
    EXPECT_EQ(writeMove(castlingFen, "e1c1"), "O-O-O");
    EXPECT_EQ(writeMove("3qk3/4P3/8/8/8/8/8/4K3 w - - 0 1", "e7d8q"), "exd8=Q+");
    style = {};
    style.promotionMark = "()";
    EXPECT_EQ(writeMove(promotion, "e7e8n", style), "e8(N)");
    style.promotionMark = "[]";
    EXPECT_EQ(writeMove(promotion, "e7e8r", style), "e8[R]+");
    style.useGlyphs = true;
    EXPECT_EQ(writeMove(startFen.data(), "g1f3", style), "\u2658f3");
    EXPECT_EQ(writeMove(enPassant, "e5d6"), "exd6");
    style = {};
    style.enPassantSuffix = " e.p.";
    EXPECT_EQ(writeMove(enPassant, "e5d6", style), "exd6 e.p.");
    EXPECT_EQ(writeMove("4k3/8/8/8/8/8/8/4K3[NP] w - - 0 1", "f3f3", {}, Crazyhouse), "N@f3");

    Board board = boardFrom(castlingFen);
    EXPECT_EQ(moveToText(board, Move::null(WhiteKing, E1)), "--");
    // A reverse move: the knight may also have come from g5, on the same file.
    Board after = boardFrom(afterKnight);
    const Move back = reversed(Move::make(WhiteKnight, G1, F3));
    EXPECT_EQ(moveToText(after, back), "~N1f3");
    Move read;
    size_t position = 0;
    EXPECT_EQ(parseSan(after, "~N1f3", read, position), MoveSuccess);
    EXPECT_EQ(read, back);
}

// Every retraction written reads back as itself: a pawn on its fourth rank
// may have come from two squares, and its text must say which.
TEST(SanRoundTrip, EveryReverseMoveReadsBack) {
    const struct {
        Variant variant;
        const char* fen;
    } positions[] = {
        {Standard, "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 b kq - 0 1"},
        {Standard, "rnbqkbnr/pp2pppp/8/2pp4/3PP3/8/PPP2PPP/RNBQKBNR w KQkq - 0 3"},
        {Crazyhouse, "r1bqk2r/pppp1ppp/2n2n2/2b1p3/2B1P3/5N2/PPPP1PPP/RNBQK2R[NPbp] w KQkq - 0 5"},
        {Horde, "rnbqkbnr/pppppppp/8/1PP2PP1/PPPPPPPP/PPPPPPPP/PPPPPPPP/PPPPPPPP w kq - 0 1"},
    };
    for (const auto& p : positions) {
        Board board(p.variant);
        ASSERT_TRUE(board.setFen(p.fen)) << p.fen;
        MoveList reverses;
        board.generateLegalReverseMoves(reverses);
        EXPECT_FALSE(reverses.empty()) << p.fen;
        for (Move move : reverses) {
            const std::string text = moveToText(board, move);
            Move read;
            size_t position = 0;
            EXPECT_EQ(parseSan(board, text, read, position), MoveSuccess) << p.fen << " " << text;
            EXPECT_EQ(read, move) << p.fen << " " << text;
        }
    }
    // The pawn on e4 came from e2 or from e3.
    Board board = boardFrom("rnbqkbnr/pp2pppp/8/2pp4/3PP3/8/PPP2PPP/RNBQKBNR b KQkq - 0 3");
    EXPECT_EQ(moveToText(board, reversed(Move::make(WhitePawn, E2, E4))), "~e2e4");
    EXPECT_EQ(moveToText(board, reversed(Move::make(WhitePawn, E3, E4))), "~e3e4");
}

// Every move of real games, main lines and variations, in every rule set:
// read, written back, read again to the same move.
TEST(SanRoundTrip, CorpusSampleReplays) {
    const struct {
        const char* file;
        int games;
        uint64_t moves;
    } files[] = {
        {"atomic.pgn", 15, 901},   {"chess960.pgn", 15, 1448},   {"crazyhouse.pgn", 15, 965},
        {"giveaway.pgn", 15, 682}, {"horde.pgn", 15, 1892},      {"kingofthehill.pgn", 15, 979},
        {"losers.pgn", 15, 1141},  {"racingkings.pgn", 15, 934}, {"standard.pgn", 40, 4342},
        {"suicide.pgn", 15, 611},  {"threecheck.pgn", 15, 732},
    };
    for (const auto& f : files) {
        std::ifstream file(std::string(ZMFI_TEST_DATA_DIR "/corpus_sample/") + f.file, std::ios::binary);
        ASSERT_TRUE(file) << f.file;
        std::stringstream content;
        content << file.rdbuf();
        const replay::ReplayResult result = replay::replayPgn(content.str());
        EXPECT_EQ(result.games, f.games) << f.file;
        EXPECT_EQ(result.moves, f.moves) << f.file;
        EXPECT_EQ(result.failedGames, 0) << f.file;
        for (const std::string& failure : result.failures) ADD_FAILURE() << f.file << ": " << failure;
    }
}

}  // namespace
}  // namespace tarnfold
