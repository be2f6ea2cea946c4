// libFuzzer target: any byte string as a query. Whatever parses is run over a
// few fixed games of several rule sets, with variations, and must come to an
// end without a fault; each game's evaluations are capped so that a query
// that loops for ever ends too. Secure mode keeps the query from the files
// and programs of the machine.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "engine/zmf_engine.h"
#include "query/parser.h"
#include "read_games.h"

namespace {

using namespace tarnfold;
using namespace tarnfold::zmf;
using Game = TestGame;

constexpr const char* gameTexts[] = {
    "[Event \"standard\"]\n\n1. e4 {open} e5 (1... c5 2. Nf3 $1 d6) 2. Nf3 Nc6 3. Bb5 a6 4. Bxc6 dxc6 "
    "5. O-O f6 6. d4 exd4 7. Nxd4 c5 8. Nb3 Qxd1 9. Rxd1 *\n",
    "[Event \"mate\"]\n\n1. f3 e5 2. g4 Qh4# 0-1\n",
    "[Event \"promotion\"]\n[SetUp \"1\"]\n[FEN \"8/P6k/8/8/8/8/6Kp/8 w - - 0 1\"]\n\n1. a8=Q h1=N "
    "2. Kxh1 Kg6 *\n",
    "[Variant \"crazyhouse\"]\n\n1. e4 d5 2. exd5 Qxd5 3. Nc3 Qa5 4. P@b4 Qxb4 5. Rb1 *\n",
    "[Variant \"atomic\"]\n\n1. Nf3 d5 2. Ne5 Nf6 3. Nxf7 1-0\n",
    "[Variant \"horde\"]\n[SetUp \"1\"]\n[FEN "
    "\"rnbqkbnr/pppppppp/8/1PP2PP1/PPPPPPPP/PPPPPPPP/PPPPPPPP/PPPPPPPP w kq - "
    "0 1\"]\n\n1. e5 d6 2. exd6 cxd6 *\n",
    "[Variant \"threecheck\"]\n\n1. e4 d5 2. Bb5+ c6 3. Bxc6+ *\n",
};

// The games are read once; each run lays them out again.
std::vector<std::unique_ptr<Game>>& games() {
    static std::vector<std::unique_ptr<Game>> all = [] {
        std::vector<std::unique_ptr<Game>> read;
        bool clean = true;
        for (const char* text : gameTexts) {
            std::istringstream stream(text);
            auto games = readGames(stream, 1, clean);
            read.push_back(std::move(games.at(0)));
        }
        if (!clean) std::abort();  // a fixture that does not read is a fault here
        return read;
    }();
    return all;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Parser parser;
    parser.secureMode = true;
    parser.finalPass = true;
    // Instrumented, the parser runs some twenty times slower than built for
    // use: a twentieth of its expression budget keeps any one input's parse,
    // nested transforms re-parsing their bodies included, inside the fuzzer's
    // time limit, as evaluationLimit does for the evaluation.
    parser.expressionBudget = 50000;
    QuerySource source;
    source.add("fuzz.zmf", std::string(reinterpret_cast<const char*>(data), size));
    ParsedQuery query = parser.parseQuery(source);
    if (!query.root) return 0;
    ZMFEngine engine;
    engine.variations = true;
    engine.evaluationLimit = 20000;
    uint32_t number = 0;
    for (const auto& game : games()) {
        engine.gameNumber = ++number;
        std::vector<PositionMatch> matches;
        engine.runGame(*game, query, matches);
        if (matches.size() > engine.positionCount()) std::abort();
        game->rewind();
    }
    return 0;
}
