// line --> F{k} against a direct walk: on the main line, it holds exactly
// where F holds at the position and at the k-1 positions that follow, for
// filters without side effects, over games of every rule set.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/zmf_engine.h"
#include "query/parser.h"
#include "read_games.h"

namespace tarnfold::zmf {
namespace {

ParsedQuery parse(Parser& parser, const std::string& text) {
    QuerySource source;
    source.add("query", text);
    ParsedQuery query = parser.parseQuery(source);
    EXPECT_TRUE(query.root) << text;
    return query;
}

// Which rows the query matches, by id.
std::vector<bool> matchedRows(ZMFEngine& engine, TestGame& game, ParsedQuery& query) {
    std::vector<PositionMatch> matches;
    engine.runGame(game, query, matches);
    std::vector<bool> rows(engine.positionCount(), false);
    for (const PositionMatch& match : matches) rows[match.node->mark] = true;
    return rows;
}

TEST(LineProperty, CountedRepetitionHoldsWhereTheFilterHoldsKTimesInARow) {
    const auto games = sampleGames(2);
    ASSERT_GE(games.size(), 20u);
    const std::vector<std::string> filters = {"check", "move capture .", "wtm", "#A > #a",
                                              "move legal count > 25", "[Aa] attacks k"};
    Parser parser;
    ZMFEngine engine;  // the main line only: row i+1 follows row i
    size_t compared = 0, held = 0;
    for (const std::string& filter : filters) {
        ParsedQuery direct = parse(parser, filter);
        for (int k = 1; k <= 4; ++k) {
            ParsedQuery line = parse(parser, "line --> {" + filter + "}{" + std::to_string(k) + "}");
            for (const auto& game : games) {
                const std::vector<bool> holds = matchedRows(engine, *game, direct);
                const std::vector<bool> got = matchedRows(engine, *game, line);
                ASSERT_EQ(got.size(), holds.size());
                for (size_t start = 0; start < holds.size(); ++start) {
                    bool expected = start + k <= holds.size();
                    for (size_t at = start; expected && at < start + k; ++at) expected = holds[at];
                    ASSERT_EQ(got[start], expected) << filter << " k=" << k << " at row " << start;
                    held += expected;
                    ++compared;
                }
            }
        }
    }
    EXPECT_GT(compared, 10000u);
    EXPECT_GT(held, 1000u);
}

}  // namespace
}  // namespace tarnfold::zmf
