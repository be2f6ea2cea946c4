// An engine that was given no table of programs or files (a secure run)
// reaches nothing outside: each filter fails as a refused system call would,
// and the run of the game stops.

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "engine/zmf_engine.h"
#include "query/parser.h"
#include "read_games.h"

namespace tarnfold::zmf {
namespace {

std::string firstFailure(const std::string& text) {
    Parser parser;
    QuerySource source;
    source.add("query", text);
    ParsedQuery query = parser.parseQuery(source);
    EXPECT_TRUE(query.root) << text;
    std::istringstream stream("1. e4 e5 *\n");
    bool clean = true;
    auto games = readGames(stream, 1, clean);
    ZMFEngine engine;
    engine.pipes = nullptr;
    engine.files = nullptr;
    std::vector<PositionMatch> matches;
    engine.runGame(*games.at(0), query, matches);
    EXPECT_TRUE(matches.empty()) << text;
    EXPECT_TRUE(engine.abort) << text;
    return engine.errors.empty() ? "" : engine.errors.front().text;
}

TEST(OutsideContactRefused, NoProgramStartsAndNoFileOpens) {
    const std::string marker = (std::filesystem::temp_directory_path() / "zmfi-refused-marker").string();
    std::filesystem::remove(marker);
    EXPECT_EQ(firstFailure("commandpipe(\"touch\" \"" + marker + "\" \"x\")"),
              "failed to start program 'touch': Permission denied");
    EXPECT_EQ(firstFailure("writefile(\"" + marker + "\" \"x\")"),
              "failed to open file '" + marker + "' for writing while evaluating 'writefile' filter: Permission denied");
    EXPECT_EQ(firstFailure("readfile \"/dev/null\""),
              "failed to open file '/dev/null' for reading while evaluating 'readfile' filter: Permission denied");
    EXPECT_FALSE(std::filesystem::exists(marker));
}

}  // namespace
}  // namespace tarnfold::zmf
