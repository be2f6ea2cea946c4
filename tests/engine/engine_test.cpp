#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "chess/notation.h"
#include "engine/zmf_engine.h"
#include "query/parser.h"
#include "query/query_source.h"

namespace tarnfold::zmf {
namespace {

using Game = PGN::Game<PGN::AnnotatedGameTreeNode>;
using Node = PGN::AnnotatedGameTreeNode;

ParsedQuery parse(const std::string& text) {
    Parser parser;
    QuerySource source;
    source.add("query", text);
    ParsedQuery query = parser.parseQuery(source);
    EXPECT_TRUE(query.root) << text;
    return query;
}

// Plays SAN moves from the game's current node, adding each as a child, and
// returns the last node; the game stays where it was.
Node* line(Game& game, Node* from, const std::vector<std::string>& moves) {
    std::vector<Node*> path;
    for (Node* node = from; node->parentAnnotated(); node = node->parentAnnotated())
        path.insert(path.begin(), node);
    Board board = game.board;
    for (Node* node : path) board.makeMove(node->move);
    Node* node = from;
    for (const std::string& text : moves) {
        Move move;
        size_t position = 0;
        EXPECT_EQ(parseSan(board, text, move, position), MoveSuccess) << text;
        board.makeMove(move);
        node = node->addChild(move);
    }
    return node;
}

TEST(EngineLayout, PreOrderMainlineFirstAndTheVirtualMainline) {
    Game game;
    Node* root = game.root.get();
    Node* e4 = line(game, root, {"e4", "e5", "Nf3"})->parentAnnotated()->parentAnnotated();
    line(game, e4, {"c5", "Nf3"});
    line(game, root, {"d4", "d5"});

    ParsedQuery query = parse("true");
    ZMFEngine engine;
    engine.variations = true;
    std::vector<PositionMatch> matches;
    engine.runGame(game, query, matches);
    ASSERT_EQ(engine.positionCount(), 8u);
    std::vector<std::string> rows;
    for (const PositionRow& row : engine.positions) {
        const Board& board = engine.boards[row.id];
        rows.push_back(std::to_string(row.id) + ":" + std::to_string(row.depth) +
                       (row.virtualMainline ? "v " : "- ") +
                       board.toFen().substr(0, board.toFen().find(' ')));
    }
    EXPECT_EQ(rows, (std::vector<std::string>{
                        "0:0v rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR",
                        "1:0v rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR",
                        "2:0v rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR",
                        "3:0v rnbqkbnr/pppp1ppp/8/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R",
                        // Black begins this variation: it stays on the virtual main line.
                        "4:1v rnbqkbnr/pp1ppppp/8/2p5/4P3/8/PPPP1PPP/RNBQKBNR",
                        "5:1v rnbqkbnr/pp1ppppp/8/2p5/4P3/5N2/PPPP1PPP/RNBQKB1R",
                        // White begins this one: it and all below it leave it.
                        "6:1- rnbqkbnr/pppppppp/8/8/3P4/8/PPP1PPPP/RNBQKBNR",
                        "7:1- rnbqkbnr/ppp1pppp/8/3p4/3P4/8/PPP1PPPP/RNBQKBNR",
                    }));
    EXPECT_TRUE(engine.hasVariations);
    EXPECT_EQ(matches.size(), 8u);
    EXPECT_EQ(engine.lastPosition, 7u);
    EXPECT_EQ(game.current, root);
    EXPECT_EQ(game.board.toFen(), std::string(startFen));

    // Without variations only the main line is laid out.
    ZMFEngine mainline;
    matches.clear();
    mainline.runGame(game, query, matches);
    EXPECT_EQ(mainline.positionCount(), 4u);
    EXPECT_FALSE(mainline.hasVariations);
    EXPECT_EQ(mainline.positionsTotal, 4u);
    mainline.runGame(game, query, matches);
    EXPECT_EQ(mainline.positionsTotal, 8u);
}

// Mate tests try moves on the row's board; the boards must come back intact.
TEST(EngineValues, MateTestsLeaveTheRowBoardsIntact) {
    Game game;
    line(game, game.root.get(), {"f3", "e5", "g4", "Qh4#"});
    ParsedQuery mate = parse("mate or stalemate");
    ZMFEngine engine;
    std::vector<PositionMatch> matches;
    engine.runGame(game, mate, matches);
    ASSERT_EQ(matches.size(), 1u);
    EXPECT_EQ(matches[0].node->mark, 4u);
    EXPECT_EQ(engine.boards[4].toFen(), "rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3");
    EXPECT_EQ(engine.boards[3].toFen(), "rnbqkbnr/pppp1ppp/8/4p3/6P1/5P2/PPPPP2P/RNBQKBNR b KQkq g3 0 2");
}

// A line being matched restricts the game moves at its position to one
// child; elsewhere, or unrestricted, every continuation counts.
TEST(EngineValues, LineBranchRestrictsTheGameMovesToOneChild) {
    Game game;
    Node* root = game.root.get();
    line(game, root, {"e4", "e5"});
    line(game, root, {"d4"});
    line(game, root, {"c4"});
    ParsedQuery targets = parse("move to .");
    ZMFEngine engine;
    engine.variations = true;
    std::vector<PositionMatch> matches;
    engine.runGame(game, targets, matches);
    engine.current = 0;
    const auto squaresNow = [&] { return engine.evaluate(*targets.root).asSet(); };
    EXPECT_EQ(squaresNow(), squareBit(E4) | squareBit(D4) | squareBit(C4));
    engine.lineBranch.push_back({0, 2, true});
    EXPECT_EQ(squaresNow(), squareBit(C4));
    engine.lineBranch.push_back({0, 1, false});
    EXPECT_EQ(squaresNow(), squareBit(E4) | squareBit(D4) | squareBit(C4));
    engine.lineBranch.push_back({1, 0, true});
    EXPECT_EQ(squaresNow(), squareBit(E4) | squareBit(D4) | squareBit(C4));
    // The restriction keeps to the list that primary and secondary make.
    engine.lineBranch.push_back({0, 2, true});
    ParsedQuery primaryOnly = parse("move to . primary");
    EXPECT_EQ(engine.evaluate(*primaryOnly.root).asSet(), 0u);
    ParsedQuery secondaryOnly = parse("move to . secondary");
    EXPECT_EQ(engine.evaluate(*secondaryOnly.root).asSet(), squareBit(C4));
}

TEST(EngineValues, RenderedForms) {
    Board board;
    board.setStartPosition();
    EXPECT_EQ(renderValue(Value(), nullptr), "<None>");
    EXPECT_EQ(renderValue(Value::set(0), nullptr), "[]");
    EXPECT_EQ(renderValue(Value::set(squareBit(E4)), nullptr), "e4");
    EXPECT_EQ(renderValue(Value::position({nullptr, 12, 0, true}), nullptr), "12");
    EXPECT_EQ(renderValue(Value::position({nullptr, 12, 0, true}), &board), "move 1(wtm)");
    EXPECT_EQ(renderValue(Value::pieceId(board.pieceIds[G1]), &board), "Ng1");
    EXPECT_EQ(renderValue(Value::pieceId(999), &board), "[absent]");
    EXPECT_EQ(renderValue(Value::pieceId(7), nullptr), "7");
    auto entries = std::make_shared<ZmfDictionary>(ZmfDictionary{{"a", "1"}, {"b", "x y"}});
    EXPECT_EQ(renderValue(Value::dictionary(entries), nullptr), "Dictionary with 2 entries:\na: 1\nb: x y");
    EXPECT_EQ(renderValue(Value::dictionary(std::make_shared<ZmfDictionary>()), nullptr),
              "Dictionary with 0 entries");
}

}  // namespace
}  // namespace tarnfold::zmf
