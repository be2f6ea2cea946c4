// The legality analysis on positions made by hand: the table of
// tests/data/analysis/positions.tsv (each row with the chess reason for its
// verdict), the exact texts of some findings, and the counting helpers
// against brute force.

#include "analysis/position_analysis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "chess/bitboard.h"

namespace tarnfold {
namespace {

struct TableRow {
    int line = 0;
    std::string fen, legal, legalIds, reachable, reachableIds, reason;
};

std::vector<TableRow> readTable() {
    std::ifstream in(ZMFI_TEST_DATA_DIR "/analysis/positions.tsv");
    EXPECT_TRUE(in.is_open());
    std::vector<TableRow> rows;
    std::string text;
    for (int line = 1; std::getline(in, text); ++line) {
        if (text.empty() || (text[0] == '#' && text.find('\t') == std::string::npos)) continue;
        std::vector<std::string> fields;
        std::stringstream row(text);
        for (std::string field; std::getline(row, field, '\t');) fields.push_back(field);
        EXPECT_EQ(fields.size(), 6u) << "positions.tsv line " << line;
        if (fields.size() != 6) continue;
        rows.push_back({line, fields[0], fields[1], fields[2], fields[3], fields[4], fields[5]});
    }
    return rows;
}

std::string idsOf(const AnalysisReport& report) {
    std::string ids;
    for (const AnalysisFinding& finding : report.findings) {
        if (!ids.empty()) ids += ',';
        ids += std::to_string(finding.id);
    }
    return ids.empty() ? "-" : ids;
}

// The report's lines, as the renderer writes them.
std::string reportText(Board& board, const AnalysisReport& report) {
    std::string text;
    renderAnalysisReport(board, report, text);
    return text;
}

Board boardOf(const std::string& fen) {
    Board board;
    EXPECT_TRUE(board.setFen(fen)) << fen;
    return board;
}

TEST(PositionTable, EveryRowGivesItsVerdictsAndFindings) {
    const std::vector<TableRow> rows = readTable();
    ASSERT_EQ(rows.size(), 49u);
    std::set<uint32_t> seen;
    AnalysisReport report;
    for (const TableRow& row : rows) {
        SCOPED_TRACE("positions.tsv line " + std::to_string(row.line) + ": " + row.fen);
        EXPECT_FALSE(row.reason.empty());
        Board board = boardOf(row.fen);
        const Board before = board;

        const bool legal = analyzePosition(board, report, true);
        EXPECT_EQ(legal ? "legal" : "illegal", row.legal);
        EXPECT_EQ(idsOf(report), row.legalIds);
        EXPECT_TRUE(board == before);

        const bool reachable = analyzePosition(board, report, false);
        EXPECT_EQ(reachable ? "reachable" : "unreachable", row.reachable);
        EXPECT_EQ(idsOf(report), row.reachableIds);
        EXPECT_TRUE(board == before);
        for (const AnalysisFinding& finding : report.findings) seen.insert(finding.id);
    }
    // Every message but "Valid board" is reached by some row.
    for (uint32_t id = 1; id < 38; ++id) EXPECT_TRUE(seen.count(id)) << "no row gives id " << id;
}

// The arguments of the findings, seen through their texts.
TEST(PositionAnalysis, FindingsCarryTheirSquaresCountsAndColours) {
    struct Case {
        const char* fen;
        const char* text;
    };
    const Case cases[] = {
        {"4k3/8/5N2/1B6/8/8/8/4R1K1 b - - 0 1",
         "Black King on square e8 is attacked by 3 pieces (squares e1, b5, f6)\n"},
        {"4k3/8/8/8/8/P7/PP6/4K3 w - - 0 1", "Impossible White Pawn structure (squares a2, b2, a3)\n"},
        {"4k3/pppppppp/8/8/8/8/PPPPPPPP/RrBQKBNR w - - 0 1",
         "Impossible escaped/entrenched Black Rook (square b1)\n"
         "Impossible escaped/entrenched Black Rook (square b1)\n"},
        {"rnb1kbnr/ppppppp1/8/7p/8/2PQ4/2PPPPPP/RNBQKBNR w KQkq - 0 1",
         "Position implies 1 White promotion but promoting this many pawns would require too many captures\n"
         "Presence of 2 White Queens (squares d1, d3) implies at least 1 promotion\n"
         "Existing White pawn structure already implies 1 capture\n"
         "Black is only missing 1 piece\n"
         "Promotion of 1 White pawn requires at least 7 additional captures\n"
         "Promotion cost calculated using pawn start squares a2, b2 and promotion file h\n"
         "Black is not missing any Pawns\n"},
        {"rnbqkbnr/pppp1ppp/8/4p3/3R3P/8/PPPPPPP1/1NBQKBNR w Kkq - 0 1",
         "Position implies 1 White Pawn promotion but no promotions are possible\n"
         "Presence of 2 White Rooks (squares h1, d4) implies at least 1 promotion\n"
         "Missing Queenside White Rook could not have escaped confined area (squares a1, b1)\n"},
        {"rn1qkbnr/ppp1pppp/8/3p4/8/P7/P1PPPPPP/RNBQKBNR b KQkq - 0 1",
         "Black is missing light-square Bishop but all White captures occurred on dark squares (square "
         "a3)\n"},
        {"rnbqkbnr/1ppppppp/1p6/8/8/8/PPPPPPPP/RN1QKBNR w KQkq - 0 1",
         "All of White's missing pieces were captured by Black Pawns currently on the board but missing "
         "trapped "
         "c1 Bishop could not have been captured by one of these Pawns\n"},
        {"rBbqkbnr/p1pppppp/2n5/1p6/8/8/PPPPPPP1/RN1QKBNR w KQkq - 0 1",
         "Position implies 1 White promotion but promoting this many pawns would require too many captures\n"
         "Presence of 1 dark-square White Bishop on trapped promotion square (square b8) implies at least 1 "
         "promotion\n"
         "Missing dark-square White Bishop could not have escaped starting square (c1)\n"
         "Black is not missing any pieces\n"
         "Promotion of 1 White pawn requires at least 6 additional captures\n"
         "Promotion cost calculated using pawn start square h2 and promotion file b\n"
         "Black is not missing any Pawns\n"},
        // Mirrored: Black's king behind White's pawns, Black's bishop at home.
        {"K7/8/8/8/8/8/1PP2PP1/4k3 b - - 0 1",
         "Impossible position for Black King on square e1 who has no legal path to this square\n"},
    };
    AnalysisReport report;
    for (const Case& c : cases) {
        Board board = boardOf(c.fen);
        EXPECT_FALSE(analyzePosition(board, report, false)) << c.fen;
        EXPECT_EQ(reportText(board, report), c.text) << c.fen;
    }
}

// The exact least sum of file moves that spreads the pawns to one a file,
// for every placement of up to eight pawns on the files.
unsigned spreadCostByBruteForce(const std::vector<int>& files) {
    unsigned best = ~0u;
    const size_t count = files.size();
    for (unsigned targets = 0; targets < 256; ++targets) {
        if (size_t(std::popcount(targets)) != count) continue;
        std::vector<int> chosen;
        for (int file = 0; file < 8; ++file)
            if (targets >> file & 1) chosen.push_back(file);
        // Sorted pawns to sorted targets is the cheapest matching on a line.
        unsigned cost = 0;
        for (size_t i = 0; i < count; ++i) cost += unsigned(std::abs(files[i] - chosen[i]));
        best = std::min(best, cost);
    }
    return best;
}

TEST(PawnStructure, MinimalCapturesIsTheLeastSpreadOfEveryPlacement) {
    EXPECT_EQ(minimalPawnCaptures(0), 0u);
    EXPECT_EQ(minimalPawnCaptures(squareBit(A2) | squareBit(A3) | squareBit(A4)), 3u);
    EXPECT_EQ(minimalPawnCaptures(squareBit(B2) | squareBit(B3) | squareBit(C2) | squareBit(C3)), 2u);
    // Every vector of file counts with at most eight pawns, as pawns on
    // ranks 2 to 7 of those files.
    int placements = 0;
    std::vector<int> counts(8, 0);
    auto visit = [&](auto& self, int file, int left) -> void {
        if (file == 8) {
            Bitboard pawns = 0;
            std::vector<int> files;
            for (int f = 0; f < 8; ++f)
                for (int i = 0; i < counts[f]; ++i) {
                    pawns |= squareBit(makeSquare(f, 1 + i));
                    files.push_back(f);
                }
            ++placements;
            EXPECT_EQ(minimalPawnCaptures(pawns), spreadCostByBruteForce(files)) << std::hex << pawns;
            return;
        }
        for (int n = 0; n <= std::min(left, 6); ++n) {
            counts[file] = n;
            self(self, file + 1, left - n);
        }
        counts[file] = 0;
    };
    visit(visit, 0, 8);
    EXPECT_EQ(placements, 12798);  // sums up to 8 with at most 6 pawns a file
}

// Whether distinct start files can be found, by trying every assignment.
bool feasibleByBruteForce(Bitboard pawns, Color color) {
    std::vector<std::pair<int, int>> reach;
    for (Bitboard rest = pawns; rest;) {
        const Square square = popLowest(rest);
        const int advanced = color == White ? rankOf(square) - 1 : 6 - rankOf(square);
        reach.push_back({std::max(0, fileOf(square) - advanced), std::min(7, fileOf(square) + advanced)});
    }
    std::vector<int> files = {0, 1, 2, 3, 4, 5, 6, 7};
    do {
        bool fits = true;
        for (size_t i = 0; i < reach.size() && fits; ++i)
            fits = files[i] >= reach[i].first && files[i] <= reach[i].second;
        if (fits) return true;
    } while (std::next_permutation(files.begin(), files.end()));
    return false;
}

TEST(PawnStructure, FeasibilityAgreesWithEveryAssignmentTried) {
    Bitboard offenders = 1;
    EXPECT_TRUE(pawnStructureFeasible(squareBit(A2) | squareBit(A3) | squareBit(A4), White, offenders));
    EXPECT_EQ(offenders, 0u);
    EXPECT_FALSE(pawnStructureFeasible(squareBit(A2) | squareBit(B2) | squareBit(A3) | squareBit(H5), White,
                                       offenders));
    EXPECT_EQ(offenders, squareBit(A2) | squareBit(B2) | squareBit(A3));
    // Black's pawns come down from rank 7: a6 is taken before b7.
    EXPECT_FALSE(pawnStructureFeasible(squareBit(A7) | squareBit(B7) | squareBit(A6), Black, offenders));
    EXPECT_EQ(offenders, squareBit(A7) | squareBit(A6) | squareBit(B7));

    // Pawns crowded near their start rank, where structures fail often.
    std::mt19937_64 random(22);
    int infeasible = 0;
    for (int trial = 0; trial < 3000; ++trial) {
        const Color color = trial % 2 ? Black : White;
        const int count = 2 + int(random() % 7);
        const int ranks = 1 + int(random() % 3);
        Bitboard pawns = 0;
        while (popCount(pawns) < count) {
            const int advanced = int(random() % ranks);
            pawns |= squareBit(makeSquare(int(random() % 8), color == White ? 1 + advanced : 6 - advanced));
        }
        const bool expected = feasibleByBruteForce(pawns, color);
        EXPECT_EQ(pawnStructureFeasible(pawns, color, offenders), expected) << std::hex << pawns;
        infeasible += !expected;
    }
    EXPECT_EQ(infeasible, 291);  // both answers well represented
}

TEST(PawnStructure, PromotionDistanceAndCost) {
    EXPECT_EQ(promotionDistance(0, 0, 0), 10u);
    EXPECT_EQ(promotionDistance(0, FileSet(1 << 7), 0), 7u);
    EXPECT_EQ(promotionDistance(3, FileSet(1 << 1 | 1 << 6), 0), 2u);
    EXPECT_EQ(promotionDistance(3, FileSet(1 << 1 | 1 << 4), FileSet(1 << 4)), 2u);
    EXPECT_EQ(promotionDistance(4, FileSet(1 << 4), FileSet(1 << 4)), 1u);

    // Black's c-pawn is gone, but the c8 bishop sits between b7 and d7: a
    // white pawn through the c-file must capture beside it.
    Board board = boardOf("rnbqkbnr/pp1ppppp/8/8/8/8/PP1PPPPP/RNBQKBNR w KQkq - 0 1");
    unsigned cost = 99;
    FileSet open = 0;
    Bitboard starts = 0;
    EXPECT_TRUE(promotionCaptureCost(board, White, 1, cost, open, starts));
    EXPECT_EQ(cost, 1u);
    EXPECT_EQ(open, FileSet(1 << 2));
    EXPECT_EQ(starts, squareBit(C2));
    // Two promotions with one start square free: no way.
    EXPECT_TRUE(promotionCaptureCost(board, White, 2, cost, open, starts));
    EXPECT_EQ(cost, 99u);
    // Black's pawns all at home: no open file, nothing to compute.
    board = boardOf("rnbqkbnr/pppppppp/8/8/8/8/PP1PPPPP/RNBQKBNR w KQkq - 0 1");
    EXPECT_FALSE(promotionCaptureCost(board, White, 1, cost, open, starts));
    EXPECT_EQ(cost, 0u);
    EXPECT_EQ(open, 0);
}

TEST(Retrograde, ChecksThatNoMoveCanHaveGiven) {
    // Rank and file at once from two rooks: no predecessor.
    Board board = boardOf("4r1k1/8/8/8/8/8/8/r3K3 w - - 0 1");
    Board before = board;
    EXPECT_TRUE(checkIsImpossible(board, White));
    EXPECT_FALSE(checkIsImpossible(board, Black));  // not in check
    EXPECT_TRUE(board == before);
    // With Black to move the check is tested all the same, and the side to
    // move comes back.
    board = boardOf("4r1k1/8/8/8/8/8/8/r3K3 b - - 0 1");
    before = board;
    EXPECT_TRUE(checkIsImpossible(board, White));
    EXPECT_TRUE(board == before);
    // A double check by a knight that uncovered a rook.
    board = boardOf("4r1k1/8/8/8/8/3n4/8/4K3 w - - 0 1");
    EXPECT_FALSE(checkIsImpossible(board, White));
    // A pawn's check: g3-g2 gave it.
    board = boardOf("8/8/8/8/8/8/6p1/5K1k w - - 0 1");
    EXPECT_FALSE(checkIsImpossible(board, White));
}

// After 1.e4 the only move back is e2-e4, and before the start position
// only a black knight can have moved (1.Nf3 Na6 2.Ng1 and so on).
TEST(Retrograde, TreeOfReverseMovesRendersItsFindings) {
    Board board = boardOf("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1");
    const Board opening = board;
    AnalysisReport tree;
    EXPECT_TRUE(analyzeRetrograde(board, tree, 0));
    EXPECT_TRUE(tree.findings.empty());
    EXPECT_TRUE(tree.afterMoves.empty());
    EXPECT_TRUE(analyzeRetrograde(board, tree, 2));
    EXPECT_TRUE(board == opening);
    EXPECT_EQ(reportText(board, tree),
              "After move ~e4\n"
              "    After move ~Nab8\n"
              "    After move ~Ncb8\n"
              "    After move ~Nfg8\n"
              "    After move ~Nhg8\n");
    EXPECT_TRUE(board == opening);

    // White's king has just come to a1. Had it taken a rook or queen there
    // from b1, it would have stood in check from a1 and from the a2 pawn at
    // once, which no black move can have brought about.
    board = boardOf("8/8/8/8/5b2/1k6/p7/K7 b - - 1 104");
    const Board ending = board;
    EXPECT_TRUE(analyzeRetrograde(board, tree, 1));
    EXPECT_EQ(reportText(board, tree),
              "After move ~Ka1\n"
              "After move ~Kx(N)a1\n"
              "After move ~Kx(B)a1\n"
              "After move ~Kx(R)a1\n"
              "    Impossible check of White King\n"
              "After move ~Kx(Q)a1\n"
              "    Impossible check of White King\n");
    EXPECT_TRUE(board == ending);

    // A position that fails keeps its findings and looks no further back.
    board = boardOf("4k3/8/8/8/8/8/8/4R1K1 w - - 0 1");
    EXPECT_FALSE(analyzeRetrograde(board, tree, 3));
    EXPECT_TRUE(tree.afterMoves.empty());
    EXPECT_EQ(reportText(board, tree), "Opposite side (Black) is in check\n");
    // One with no move back at all fails too: White's king has no square to
    // have come from and its pawns never moved, yet Black is to move.
    board = boardOf("7k/8/8/8/8/8/PP6/Kb6 b - - 0 1");
    EXPECT_FALSE(analyzeRetrograde(board, tree, 1));
    EXPECT_TRUE(tree.findings.empty());
    EXPECT_TRUE(tree.afterMoves.empty());
}

// Rule sets where the reasoning breaks: nothing is found, even in a
// placement that ordinary chess cannot have.
TEST(PositionAnalysis, OtherRuleSetsOnlyGetTheStepsThatHoldThere) {
    struct Case {
        Variant variant;
        const char* fen;
        const char* basicIds;
        const char* fullIds;
    };
    const Case cases[] = {
        // Nine pawns and a pawn structure with captures: drops in crazyhouse.
        {Crazyhouse, "4k3/8/8/8/8/P7/PPPPPPPP/4K3 w - - 0 1", "-", "-"},
        // But a king left in check is as illegal there as anywhere.
        {Crazyhouse, "4k3/8/8/8/8/8/8/4R1K1 w - - 0 1", "5", "5"},
        // A bishop between unmoved pawns on b1 is a Chess960 start square.
        {Chess960, "1b2k3/pppppppp/8/8/8/8/PPPPPPPP/1B2K3 w - - 0 1", "-", "-"},
        {Chess960, "4k3/8/8/8/8/P7/PPPPPPPP/4K3 w - - 0 1", "10", "10"},
        // Same in ordinary chess: both bishops are shut in.
        // and each is a second light-squared bishop beside a lost one that
        // never left home.
        {Standard, "1b2k3/pppppppp/8/8/8/8/PPPPPPPP/1B2K3 w - - 0 1", "-", "18,18,20,23,28,29,20,23,28,29"},
        {Horde, "4k3/8/8/8/8/8/8/4R1K1 w - - 0 1", "-", "-"},
        {Atomic, "8/8/8/8/8/8/8/4Kk2 w - - 0 1", "-", "-"},
        {RacingKings, "8/8/8/8/8/8/krbnNBRK/qrbnNBRQ w - - 0 1", "-", "-"},
        {ThreeCheck, "4k3/8/8/8/8/8/8/4R1K1 w - - 0 1", "5", "5"},
        {KingOfTheHill, "4k3/8/8/3R4/8/8/PPPPPPPP/4K3 w - - 0 1", "-", "19"},
    };
    AnalysisReport report;
    for (const Case& c : cases) {
        Board board(c.variant);
        ASSERT_TRUE(board.setFen(c.fen)) << c.fen;
        EXPECT_EQ(analyzePosition(board, report, true), std::string(c.basicIds) == "-") << c.fen;
        EXPECT_EQ(idsOf(report), c.basicIds) << variantName(c.variant) << " " << c.fen;
        EXPECT_EQ(analyzePosition(board, report, false), std::string(c.fullIds) == "-") << c.fen;
        EXPECT_EQ(idsOf(report), c.fullIds) << variantName(c.variant) << " " << c.fen;
    }
}

}  // namespace
}  // namespace tarnfold
