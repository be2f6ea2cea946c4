#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "chess/board.h"
#include "chess/perft.h"

namespace tarnfold {
namespace {

struct PerftRow {
    Variant variant;
    std::string fen;
    int depth;
    uint64_t nodes;
};

// Rows above this many nodes run in the slower label only.
constexpr uint64_t quickRowLimit = 1'000'000;

std::vector<PerftRow> readPerftTable() {
    std::ifstream file(ZMFI_TEST_DATA_DIR "/perft.tsv");
    std::vector<PerftRow> rows;
    std::string line;
    while (std::getline(file, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        std::string variant, fen, depth, nodes;
        std::getline(fields, variant, '\t');
        std::getline(fields, fen, '\t');
        std::getline(fields, depth, '\t');
        std::getline(fields, nodes, '\t');
        rows.push_back({variantFromName(variant), fen, std::stoi(depth), std::stoull(nodes)});
    }
    return rows;
}

void checkRows(bool deep) {
    const std::vector<PerftRow> rows = readPerftTable();
    // A table cut short or a rule set dropped from it would otherwise pass
    // by checking less: every rule set keeps quick rows of its own, and the
    // slow run has rows at all.
    std::set<Variant> covered;
    for (const PerftRow& row : rows) {
        if ((row.nodes > quickRowLimit) != deep) continue;
        ASSERT_NE(row.variant, Unknown) << row.fen;
        Board board(row.variant);
        ASSERT_TRUE(board.setFen(row.fen)) << row.fen;
        EXPECT_EQ(perft(board, row.depth), row.nodes)
            << variantName(row.variant) << " " << row.fen << " depth " << row.depth;
        covered.insert(row.variant);
    }
    if (deep) {
        EXPECT_FALSE(covered.empty());
        return;
    }
    for (uint32_t v = Standard; v < Unknown; ++v)
        EXPECT_TRUE(covered.count(Variant(v))) << "no perft rows for " << variantName(Variant(v));
}

TEST(Perft, TableRowsUpToAMillionNodes) { checkRows(false); }

// Run by the slower label (see tests/CMakeLists.txt).
TEST(Perft, DISABLED_DeepTableRows) { checkRows(true); }

TEST(Perft, MakingEveryMoveCountsTheSame) {
    Board board;
    ASSERT_TRUE(board.setFen("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1"));
    EXPECT_EQ(perftMakingEveryMove(board, 3), 97862u);
    EXPECT_EQ(perft(board, 0), 1u);
}

// Walks every path and checks at each node that the incremental key is the
// key computed from scratch and that unmaking gives back the board exactly:
// identities, promoted marks, pockets, explosions and counts included.
void walk(Board& board, int depth, uint64_t& nodes) {
    ASSERT_EQ(board.key, board.fullKey()) << board.toFen();
    if (depth == 0) return;
    MoveList moves;
    board.generateLegalMoves(moves);
    for (Move move : moves) {
        const Board before = board;
        board.makeMove(move);
        ++nodes;
        walk(board, depth - 1, nodes);
        board.unmakeMove();
        ASSERT_TRUE(board == before) << before.toFen() << " move " << std::hex << move.value;
        if (::testing::Test::HasFatalFailure()) return;
    }
}

TEST(MakeUnmake, RestoresTheBoardBitForBitAlongEveryPath) {
    const struct {
        Variant variant;
        const char* fen;
        uint64_t nodes;  // moves made on the walk to depth 3, 0 if no reference
    } cases[] = {
        {Standard, "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 9322},
        {Standard, "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", 99949},
        {Standard, "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", 3017},
        {Standard, "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1", 9737},
        {Chess960, "bqnb1rkr/pp3ppp/3ppn2/2p5/5P2/P2P4/NPP1P1PP/BQ1BNRKR w HFhf - 2 9", 12738},
        {Chess960, "r5kr/8/8/8/8/8/8/RK5R w HAha - 0 1", 10891},
        {Crazyhouse, "r1bq2r1/p1ppkp1p/2nbp2n/1p4p1/3P3P/PPN5/1RPKPPP1/2B1QBNR[] b - - 4 9", 35022},
        {Crazyhouse, "rnb1k2r/1pppnppp/8/p1b1pq2/1P1P4/N4NP1/P1P1PP1P/R1BQKB1R[] w KQkq - 0 8", 57315},
        {ThreeCheck, "r1bqkbnr/pppp1ppp/2n5/4p3/2B1P3/5Q2/PPPP1PPP/RNB1K1NR w KQkq - 1+1 4 4", 50359},
        {Horde, "rnbqkbnr/pppppppp/8/1PP2PP1/PPPPPPPP/PPPPPPPP/PPPPPPPP/PPPPPPPP w kq - 0 1", 1410},
        {Giveaway, "8/1P6/8/8/8/8/6p1/8 w - - 0 1", 280},
        {RacingKings, "8/8/8/8/8/8/krbnNBRK/qrbnNBRQ w - - 0 1", 11706},
        {KingOfTheHill, "r2r4/p1Q1n3/1pBpk1p1/4p3/4Ppbp/R1P2P1N/1P1P1KPP/1NBR4 w - - 6 29", 35305},
        // No reference counts: promoted pieces captured back into a pocket,
        // and explosions from the first capture on.
        {Crazyhouse, "4k3/1P6/8/8/8/8/6p1/4K2R/QNq w K - 0 1", 0},
        {Atomic, "rn2k1nr/1p2pp1p/2p2bp1/p2p4/8/1PNP2PB/PBP4P/R2QK2R b KQkq - 2 15", 0},
    };
    for (const auto& c : cases) {
        Board board(c.variant);
        ASSERT_TRUE(board.setFen(c.fen)) << c.fen;
        uint64_t nodes = 0;
        walk(board, 3, nodes);
        if (c.nodes) {
            EXPECT_EQ(nodes, c.nodes) << c.fen;
        }
        if (HasFatalFailure()) return;
    }
}

}  // namespace
}  // namespace tarnfold
