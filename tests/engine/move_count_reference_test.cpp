// `move legal count` against reference counts: the published move-path
// counts of every rule set (depth 2 through the game's variations), and
// over the positions of real games, a count that makes every move.

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "chess/notation.h"
#include "chess/perft.h"
#include "chess/variant.h"
#include "engine/zmf_engine.h"
#include "query/parser.h"
#include "read_games.h"

namespace tarnfold::zmf {
namespace {

struct PerftRow {
    std::string variant;
    std::string fen;
    int depth = 0;
    uint64_t nodes = 0;
};

std::vector<PerftRow> perftRows(int maxDepth) {
    std::vector<PerftRow> rows;
    std::ifstream file(ZMFI_TEST_DATA_DIR "/perft.tsv");
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::stringstream fields(line);
        PerftRow row;
        std::string depth, nodes;
        std::getline(fields, row.variant, '\t');
        std::getline(fields, row.fen, '\t');
        std::getline(fields, depth, '\t');
        std::getline(fields, nodes, '\t');
        row.depth = std::stoi(depth);
        row.nodes = std::stoull(nodes);
        if (row.depth <= maxDepth) rows.push_back(row);
    }
    return rows;
}

ParsedQuery parse(Parser& parser, const std::string& text) {
    QuerySource source;
    source.add("query", text);
    return parser.parseQuery(source);
}

// The position as a game whose root has every legal move as a line of its
// own: the first is the main line, the others are variations.
std::string gameWithEveryMove(const PerftRow& row) {
    Board board(variantFromName(row.variant));
    EXPECT_TRUE(board.setFen(row.fen)) << row.fen;
    MoveList moves;
    board.generateLegalMoves(moves);
    const std::string number = std::to_string(board.fullmoveNumber) + (board.sideToMove == White ? ". " : "... ");
    std::string text = "[Variant \"" + std::string(variantName(board.variant)) + "\"]\n[SetUp \"1\"]\n[FEN \"" +
                       row.fen + "\"]\n\n";
    for (size_t index = 0; index < moves.size(); ++index) {
        const std::string move = number + moveToText(board, moves[index]);
        text += index == 0 ? move + " " : "(" + move + ") ";
    }
    return text + "*\n";
}

// Depth 1 is the count at the root; depth 2 the sum of the counts at the
// positions after each move, each a row of the game's table.
TEST(MoveCountReference, LegalCountsAddUpToThePublishedMovePathCounts) {
    Parser parser;
    ParsedQuery query = parse(parser, "move legal count");
    ASSERT_TRUE(query.root);
    const auto rows = perftRows(2);
    ASSERT_GE(rows.size(), 60u);
    std::set<std::string> variants;
    ZMFEngine engine;
    engine.variations = true;
    for (const PerftRow& row : rows) {
        std::istringstream stream(gameWithEveryMove(row));
        bool clean = true;
        auto games = readGames(stream, 1, clean);
        ASSERT_TRUE(clean && games.size() == 1) << row.fen;
        std::vector<PositionMatch> matches;
        engine.runGame(*games[0], query, matches);
        ASSERT_EQ(matches.size(), engine.positionCount()) << row.fen;
        uint64_t nodes = 0;
        for (const PositionMatch& match : matches)
            if ((row.depth == 1) == (match.node->mark == 0)) nodes += uint64_t(match.value.asNumeric());
        EXPECT_EQ(nodes, row.nodes) << row.variant << " " << row.fen << " depth " << row.depth;
        variants.insert(row.variant);
    }
    EXPECT_EQ(variants.size(), 11u);
}

// At every position of games of every rule set: the generated count, the
// count with each move made and taken back by the speculative form, and a
// count that makes every move agree; the move played is among the legal
// moves; and speculation leaves each board as it found it.
TEST(MoveCountReference, EveryPositionOfRealGames) {
    const auto games = sampleGames(3);
    ASSERT_GE(games.size(), 30u);
    Parser parser;
    ParsedQuery counted = parse(parser, "move legal count");
    ParsedQuery speculated = parse(parser, "move legal count : true");
    ParsedQuery played = parse(parser, "move previous to (move to . legal)");
    ASSERT_TRUE(counted.root && speculated.root && played.root);
    ZMFEngine engine;
    size_t positions = 0;
    for (const auto& game : games) {
        std::vector<PositionMatch> byList, byTrial, byPlayed;
        engine.runGame(*game, counted, byList);
        std::vector<std::string> fens;
        for (uint32_t id = 0; id < engine.positionCount(); ++id) fens.push_back(engine.boards[id].toFen());
        engine.runGame(*game, speculated, byTrial);
        ASSERT_EQ(byList.size(), engine.positionCount());
        ASSERT_EQ(byTrial.size(), engine.positionCount());
        for (uint32_t id = 0; id < engine.positionCount(); ++id) {
            Board board = engine.boards[id];
            const int64_t made = int64_t(perftMakingEveryMove(board, 1));
            ASSERT_EQ(byList[id].value.asNumeric(), made) << fens[id];
            ASSERT_EQ(byTrial[id].value.asNumeric(), made) << fens[id];
            ASSERT_EQ(engine.boards[id].toFen(), fens[id]);
            ASSERT_EQ(engine.boards[id].key, engine.boards[id].fullKey()) << fens[id];
            ++positions;
        }
        engine.runGame(*game, played, byPlayed);
        EXPECT_EQ(byPlayed.size() + 1, engine.positionCount());
    }
    EXPECT_GT(positions, 2000u);
}

}  // namespace
}  // namespace tarnfold::zmf
