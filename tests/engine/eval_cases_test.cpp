// The engine test table: every row is a query, a game and what the query
// gives at each position of it. Every kind the kind list marks evaluated
// must be reached by some row, so a filter is not done without its rows.

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "engine/zmf_engine.h"
#include "query/dump_target.h"
#include "query/parser.h"
#include "read_games.h"

namespace tarnfold::zmf {
namespace {

struct EvalCase {
    int line = 0;
    std::string query;
    std::string game;      // PGN text, or "fen:" and a FEN
    std::string expected;  // "id=value;..." over the matching positions, "-" for none
};

std::string unescape(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        const char next = i + 1 < text.size() ? text[i + 1] : 0;
        if (text[i] == '\\' && (next == 'n' || next == '\\')) {
            out += next == 'n' ? '\n' : '\\';
            ++i;
        } else {
            out += text[i];
        }
    }
    return out;
}

std::vector<EvalCase> readCases() {
    std::ifstream in(ZMFI_TEST_DATA_DIR "/engine/eval_cases.tsv");
    EXPECT_TRUE(in.is_open());
    std::vector<EvalCase> cases;
    std::string text;
    for (int number = 1; std::getline(in, text); ++number) {
        // A comment is a line of text without the row's tabs.
        if (text.empty() || (text[0] == '#' && text.find('\t') == std::string::npos)) continue;
        std::vector<std::string> fields;
        std::stringstream row(text);
        for (std::string field; std::getline(row, field, '\t');) fields.push_back(field);
        EXPECT_EQ(fields.size(), 3u) << "eval_cases.tsv line " << number;
        if (fields.size() != 3) continue;
        cases.push_back({number, unescape(fields[0]), unescape(fields[1]), fields[2]});
    }
    return cases;
}

std::string gameText(const std::string& game) {
    if (game.rfind("fen:", 0) != 0) return game + "\n";
    return "[SetUp \"1\"]\n[FEN \"" + game.substr(4) + "\"]\n\n*\n";
}

// What the query gives at each matching position, in table order.
std::string runCase(const EvalCase& c, const ParsedQuery& query, std::string& failure) {
    std::istringstream stream(gameText(c.game));
    bool clean = true;
    auto games = readGames(stream, 1, clean);
    if (!clean || games.size() != 1) {
        failure = "the game does not read cleanly";
        return {};
    }
    TestGame& game = *games[0];
    ZMFEngine engine;
    engine.variations = true;
    engine.gameNumber = 7;
    std::vector<PositionMatch> matches;
    engine.runGame(game, const_cast<ParsedQuery&>(query), matches);
    std::string result;
    for (const PositionMatch& match : matches) {
        if (!result.empty()) result += ';';
        // A position is shown by its own board, anything else by the row's.
        const uint32_t shownBy =
            match.value.is(ValueType::Position) ? match.value.asPosition().id : match.node->mark;
        result += std::to_string(match.node->mark) + "=" + renderValue(match.value, &engine.boards[shownBy]);
    }
    return result.empty() ? "-" : result;
}

TEST(EvalCases, EveryRowGivesItsValues) {
    const std::vector<EvalCase> cases = readCases();
    ASSERT_FALSE(cases.empty());
    std::set<NodeKind> reached;
    for (const EvalCase& c : cases) {
        Parser parser;
        // Parentheses and one-filter braces stay, so that they are evaluated too.
        parser.keepParens = true;
        parser.keepCompounds = true;
        QuerySource source;
        source.add("query", c.query);
        ParsedQuery query = parser.parseQuery(source);
        if (!query.root) {
            ADD_FAILURE() << "line " << c.line << ": " << c.query << " does not parse";
            continue;
        }
        DumpTarget walk(&source);
        walk.expandFunctions = true;
        walk.visit = [&](const ZMFNode& node) { reached.insert(node.kind); };
        query.root->dump(walk, true);
        std::string failure;
        const std::string got = runCase(c, query, failure);
        EXPECT_EQ(failure, "") << "line " << c.line;
        EXPECT_EQ(got, c.expected) << "line " << c.line << ": " << c.query;
    }
    for (size_t index = 0; index < nodeKindCount; ++index) {
        const auto kind = NodeKind(index);
        if (nodeKindState(kind) != NodeKindState::Evaluated) continue;
        EXPECT_TRUE(reached.count(kind)) << nodeKindName(kind) << " has no row in eval_cases.tsv";
    }
}

}  // namespace
}  // namespace tarnfold::zmf
