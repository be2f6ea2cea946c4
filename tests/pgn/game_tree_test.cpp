#include "pgn/game_tree.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "chess/notation.h"
#include "pgn/game.h"
#include "pgn/game_builder.h"

namespace tarnfold::PGN {
namespace {

using Node = AnnotatedGameTreeNode;

// The SAN of each child, in order.
std::string childrenText(AnnotatedGame& game, Node* node) {
    std::vector<uint32_t> path;
    node->pathFromRoot(path);
    for (uint32_t index : path) game.forward(game.current->childAnnotated(index));
    std::string text;
    for (auto& child : node->children) {
        if (!text.empty()) text += ' ';
        text += moveToText(game.board, child->move);
    }
    game.rewind();
    return text;
}

TEST(GameTree, ResetLeavesOnlyTheRootAtTheStartPosition) {
    AnnotatedGame game;
    addLine(game, game.root.get(), {"e4", "e5"});
    game.tags.push_back({"White", "Someone"});
    game.result = WhiteWins;
    game.forward(game.root->childAnnotated(0));
    game.reset();
    EXPECT_TRUE(game.root->children.empty());
    EXPECT_EQ(game.current, game.root.get());
    EXPECT_EQ(game.root->move, Move{0xC0C000});
    EXPECT_EQ(game.root->parent(), nullptr);
    EXPECT_EQ(game.root->ply, 0u);
    EXPECT_EQ(game.result, 3u);
    EXPECT_TRUE(game.tags.empty());
    EXPECT_EQ(game.board.toFen(), startFen);
    EXPECT_TRUE(game.board.moveStack.empty());
}

TEST(GameTree, ChildrenKnowTheirPlaceAndPath) {
    AnnotatedGame game;
    Node* root = game.root.get();
    Node* e5 = addLine(game, root, {"e4", "e5"});
    Node* e4 = e5->parentAnnotated();
    Node* c5 = addLine(game, e4, {"c5"});
    Node* nf3 = addLine(game, c5, {"Nf3"});
    Node* d4 = addLine(game, root, {"d4"});

    EXPECT_EQ(e4->ply, 1u);
    EXPECT_EQ(nf3->ply, 3u);
    EXPECT_EQ(c5->childIndex, 1u);
    EXPECT_EQ(d4->childIndex, 1u);
    EXPECT_EQ(nf3->parent(), c5);
    EXPECT_EQ(e4->child(1), c5);
    EXPECT_EQ(e4->child(2), nullptr);
    EXPECT_EQ(c5->mark, 0u);

    std::vector<uint32_t> path = {7, 7};
    nf3->pathFromRoot(path);
    EXPECT_EQ(path, (std::vector<uint32_t>{0, 1, 0}));
    root->pathFromRoot(path);
    EXPECT_TRUE(path.empty());

    // The path follows reordering; the place at birth stays.
    EXPECT_EQ(promoteVariation(c5), 1u);
    nf3->pathFromRoot(path);
    EXPECT_EQ(path, (std::vector<uint32_t>{0, 0, 0}));
    EXPECT_EQ(c5->childIndex, 1u);
    EXPECT_EQ(childrenText(game, e4), "c5 e5");
}

TEST(GameTree, LinesAndAncestors) {
    AnnotatedGame game;
    Node* root = game.root.get();
    Node* nf3 = addLine(game, root, {"e4", "e5", "Nf3"});
    Node* e5 = nf3->parentAnnotated();
    Node* e4 = e5->parentAnnotated();
    Node* nc3 = addLine(game, e5, {"Nc3", "Nf6"})->parentAnnotated();
    Node* c5 = addLine(game, e4, {"c5"});
    Node* nf6 = nc3->childAnnotated(0);

    EXPECT_FALSE(isVariationStart(root));
    EXPECT_TRUE(isOnMainLine(root));
    EXPECT_TRUE(isOnMainLine(nullptr));
    EXPECT_TRUE(isOnMainLine(nf3));
    EXPECT_TRUE(isVariationStart(nc3));
    EXPECT_FALSE(isOnMainLine(nc3));
    EXPECT_FALSE(isVariationStart(nf6));
    EXPECT_FALSE(isOnMainLine(nf6));
    EXPECT_TRUE(isLeaf(nf6));
    EXPECT_FALSE(isLeaf(e5));

    EXPECT_EQ(rootOf(nf6), root);
    EXPECT_EQ(rootOf(root), root);
    EXPECT_EQ(deepestFirstChild(root), nf3);
    EXPECT_EQ(deepestFirstChild(nc3), nf6);

    EXPECT_EQ(lowestCommonAncestor(nf3, nf3), nf3);
    EXPECT_EQ(lowestCommonAncestor(e4, nf6), e4);
    EXPECT_EQ(lowestCommonAncestor(nf6, e4), e4);
    EXPECT_EQ(lowestCommonAncestor(nf6, nf3), e5);
    EXPECT_EQ(lowestCommonAncestor(c5, nf6), e4);
    AnnotatedGame other;
    EXPECT_EQ(lowestCommonAncestor(other.root.get(), nf6), nullptr);
}

TEST(GameTree, ReorderingVariations) {
    struct Case {
        const char* what;
        std::function<uint32_t(Node* root, Node* nf6)> reorder;
        uint32_t moved;
        const char* rootOrder;
        const char* knightOrder;  // the children after 1.e4 e5 2.Nf3
    };
    // The root has e4 d4 c4 Nf3; after 1.e4 e5 2.Nf3 come Nc6 and Nf6.
    const std::vector<Case> cases = {
        {"promote third", [](Node* r, Node*) { return promoteVariation(r->childAnnotated(2)); }, 2,
         "c4 d4 e4 Nf3", "Nc6 Nf6"},
        {"promote from inside a line",
         [](Node* r, Node*) { return promoteVariation(deepestFirstChild(r->childAnnotated(1))); }, 1,
         "d4 e4 c4 Nf3", "Nc6 Nf6"},
        {"promote the closest", [](Node*, Node* nf6) { return promoteVariation(nf6->childAnnotated(0)); }, 1,
         "e4 d4 c4 Nf3", "Nf6 Nc6"},
        {"promote a first child", [](Node* r, Node*) { return promoteVariation(r->childAnnotated(0)); }, 0,
         "e4 d4 c4 Nf3", "Nc6 Nf6"},
        {"first child up", [](Node* r, Node*) { return moveVariationUp(r->childAnnotated(0), 1); }, 0,
         "e4 d4 c4 Nf3", "Nc6 Nf6"},
        {"up two", [](Node* r, Node*) { return moveVariationUp(r->childAnnotated(3), 2); }, 2, "e4 Nf3 c4 d4",
         "Nc6 Nf6"},
        {"up too far", [](Node* r, Node*) { return moveVariationUp(r->childAnnotated(2), 3); }, 0,
         "e4 d4 c4 Nf3", "Nc6 Nf6"},
        {"up to the front", [](Node* r, Node*) { return moveVariationUp(r->childAnnotated(2), -1); }, 2,
         "c4 d4 e4 Nf3", "Nc6 Nf6"},
        {"up by zero", [](Node* r, Node*) { return moveVariationUp(r->childAnnotated(2), 0); }, 0,
         "e4 d4 c4 Nf3", "Nc6 Nf6"},
        {"down one", [](Node* r, Node*) { return moveVariationDown(r->childAnnotated(0), 1); }, 1,
         "d4 e4 c4 Nf3", "Nc6 Nf6"},
        {"down two", [](Node* r, Node*) { return moveVariationDown(r->childAnnotated(1), 2); }, 2,
         "e4 Nf3 c4 d4", "Nc6 Nf6"},
        {"down too far", [](Node* r, Node*) { return moveVariationDown(r->childAnnotated(1), 3); }, 0,
         "e4 d4 c4 Nf3", "Nc6 Nf6"},
        {"down to the back", [](Node* r, Node*) { return moveVariationDown(r->childAnnotated(1), -5); }, 2,
         "e4 Nf3 c4 d4", "Nc6 Nf6"},
        {"last down to the back", [](Node* r, Node*) { return moveVariationDown(r->childAnnotated(3), -1); },
         0, "e4 d4 c4 Nf3", "Nc6 Nf6"},
        {"down by zero", [](Node* r, Node*) { return moveVariationDown(r->childAnnotated(0), 0); }, 0,
         "e4 d4 c4 Nf3", "Nc6 Nf6"},
        {"down from inside a line",
         [](Node*, Node* nf6) { return moveVariationDown(nf6->childAnnotated(0), 1); }, 0, "e4 d4 c4 Nf3",
         "Nc6 Nf6"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        AnnotatedGame game;
        Node* root = game.root.get();
        Node* nc6 = addLine(game, root, {"e4", "e5", "Nf3", "Nc6"});
        Node* knight = nc6->parentAnnotated();
        for (const char* first : {"d4", "c4", "Nf3"}) addLine(game, root, {first, "d5"});
        Node* nf6 = addLine(game, knight, {"Nf6", "Nc3"})->parentAnnotated();
        const Node* before = root->childAnnotated(2);

        EXPECT_EQ(c.reorder(root, nf6), c.moved);
        EXPECT_EQ(childrenText(game, root), c.rootOrder);
        EXPECT_EQ(childrenText(game, knight), c.knightOrder);
        // The node itself never moves, only its place among its siblings.
        EXPECT_EQ(moveToCoordinates(before->move), "c2c4");
    }
    AnnotatedGame lone;
    Node* end = addLine(lone, lone.root.get(), {"e4", "e5"});
    EXPECT_EQ(promoteVariation(end), 0u);
    EXPECT_EQ(moveVariationDown(end, -1), 0u);
}

// Counts its living instances, to see what is destroyed.
class CountedNode : public GameTreeNode {
public:
    inline static int alive = 0;
    CountedNode() { ++alive; }
    ~CountedNode() override { --alive; }
    CountedNode* addChild(Move childMove) override {
        return static_cast<CountedNode*>(adopt(std::make_unique<CountedNode>(), childMove));
    }
};

TEST(GameTree, RemovingDestroysTheWholeSubtree) {
    {
        CountedNode root;
        for (uint32_t i = 1; i <= 4; ++i) {
            GameTreeNode* line = root.addChild(Move{i});
            for (int depth = 0; depth < 3; ++depth) line = line->addChild(Move{i});
        }
        EXPECT_EQ(CountedNode::alive, 17);
        removeVariation(&root, 1);
        EXPECT_EQ(CountedNode::alive, 13);
        ASSERT_EQ(root.children.size(), 3u);
        EXPECT_EQ(root.child(0)->move, Move{1});
        EXPECT_EQ(root.child(1)->move, Move{3});
        EXPECT_EQ(root.child(2)->move, Move{4});
        removeVariation(&root, 3);
        EXPECT_EQ(CountedNode::alive, 13);
        removeLastChild(&root);
        EXPECT_EQ(CountedNode::alive, 9);
        ASSERT_EQ(root.children.size(), 2u);
        EXPECT_EQ(root.child(1)->move, Move{3});
        EXPECT_EQ(root.child(1)->childIndex, 2u);
        // Down to one child, to none, and up again.
        removeVariation(&root, 0);
        EXPECT_EQ(CountedNode::alive, 5);
        ASSERT_EQ(root.children.size(), 1u);
        EXPECT_EQ(root.child(0)->move, Move{3});
        removeLastChild(&root);
        EXPECT_EQ(CountedNode::alive, 1);
        EXPECT_TRUE(root.children.empty());
        EXPECT_EQ(root.child(0), nullptr);
        root.addChild(Move{5});
        root.addChild(Move{6});
        root.addChild(Move{7});
        removeVariation(&root, 1);
        EXPECT_EQ(CountedNode::alive, 3);
        ASSERT_EQ(root.children.size(), 2u);
        EXPECT_EQ(root.child(0)->move, Move{5});
        EXPECT_EQ(root.child(1)->move, Move{7});
        removeVariation(&root, 0);
        ASSERT_EQ(root.children.size(), 1u);
        EXPECT_EQ(root.child(0)->move, Move{7});
        EXPECT_EQ(root.child(0)->parent(), &root);
    }
    EXPECT_EQ(CountedNode::alive, 0);
    {
        // Far deeper than any stack would take one frame per node.
        CountedNode root;
        GameTreeNode* line = &root;
        for (int depth = 0; depth < 300000; ++depth) line = line->addChild(Move{1});
        EXPECT_EQ(line->ply, 300000u);
    }
    EXPECT_EQ(CountedNode::alive, 0);
}

TEST(GameTree, CopyAnnotationsFollowsBothTreesAsFarAsTheyGo) {
    AnnotatedGame source, target;
    Node* sourceE5 = addLine(source, source.root.get(), {"e4", "e5"});
    addLine(source, sourceE5->parentAnnotated(), {"c5"});
    source.root->commentsAfter = {{BraceComment, "start"}};
    Node* sourceE4 = source.root->childAnnotated(0);
    sourceE4->mark = 5;
    sourceE4->nags = {1, 14};
    sourceE4->commentsAfter = {{LineComment, "best"}};
    sourceE5->commentsBefore = {{BraceComment, "main"}};
    sourceE4->childAnnotated(1)->commentsAfter = {{BraceComment, "sicilian"}};

    Node* targetE5 = addLine(target, target.root.get(), {"e4", "e5"});
    targetE5->nags = {2};
    Node* targetD4 = addLine(target, target.root.get(), {"d4"});
    targetD4->mark = 9;

    copyAnnotations(source.root.get(), target.root.get());
    EXPECT_EQ(target.root->commentsAfter, source.root->commentsAfter);
    Node* targetE4 = target.root->childAnnotated(0);
    EXPECT_EQ(targetE4->mark, 5u);
    EXPECT_EQ(targetE4->nags, (std::vector<uint8_t>{1, 14}));
    EXPECT_EQ(targetE4->commentsAfter, (std::vector<GameComment>{{LineComment, "best"}}));
    EXPECT_EQ(targetE5->commentsBefore, (std::vector<GameComment>{{BraceComment, "main"}}));
    EXPECT_TRUE(targetE5->nags.empty());
    EXPECT_EQ(targetD4->mark, 9u);
    EXPECT_EQ(targetE4->children.size(), 1u);
}

TEST(GameTree, RewindReturnsBoardAndCursorToTheStart) {
    AnnotatedGame game;
    Board start;
    start.setStartPosition();
    Node* root = game.root.get();
    Node* e5 = addLine(game, root, {"e4", "e5", "Nf3"})->parentAnnotated();
    Node* qh5 = addLine(game, e5, {"Qh5", "Nc6", "Bc4", "Nf6", "Qxf7#"});
    std::vector<uint32_t> path;
    qh5->pathFromRoot(path);
    for (uint32_t index : path) game.forward(game.current->childAnnotated(index));
    EXPECT_EQ(game.board.toFen(), "r1bqkb1r/pppp1Qpp/2n2n2/4p3/2B1P3/8/PPPP1PPP/RNB1K1NR b KQkq - 0 4");

    game.rewind();
    EXPECT_EQ(game.current, root);
    EXPECT_EQ(game.board.toFen(), startFen);
    EXPECT_EQ(game.board.key, start.key);
    EXPECT_TRUE(game.board.moveStack.empty());
}

TEST(GameTree, GameInfoFromTags) {
    struct Case {
        std::vector<GameTag> tags;
        GameInfo expected;
    };
    auto info = [](auto fill) {
        GameInfo result;
        fill(result);
        return result;
    };
    const std::vector<Case> cases = {
        {{{"White", "Carlsen"},
          {"Black", "Caruana"},
          {"Site", "London"},
          {"Event", "WCh"},
          {"ECO", "C42"},
          {"EventDate", "2018.11.09"},
          {"Round", "1"}},
         info([](GameInfo& g) {
             g.white = "Carlsen";
             g.black = "Caruana";
             g.site = "London";
             g.event = "WCh";
             g.eco = "C42";
             g.eventDate = "2018.11.09";
         })},
        {{{"Date", "1999.??.??"}}, info([](GameInfo& g) { g.date = "1999.??.??", g.year = 1999; })},
        {{{"Date", "1999"}}, info([](GameInfo& g) { g.date = "1999", g.year = 1999; })},
        {{{"Date", "19995"}}, info([](GameInfo& g) { g.date = "19995"; })},
        {{{"Date", "199"}}, info([](GameInfo& g) { g.date = "199"; })},
        {{{"Date", "????.??.??"}}, info([](GameInfo& g) { g.date = "????.??.??"; })},
        {{{"UTCDate", "2001.02.03"}, {"Date", "2000.12.31"}},
         info([](GameInfo& g) { g.date = "2000.12.31", g.year = 2000; })},
        {{{"Date", "2000.12.31"}, {"UTCDate", "2001.02.03"}},
         info([](GameInfo& g) { g.date = "2000.12.31", g.year = 2000; })},
        {{{"UTCDate", "2001.02.03"}}, info([](GameInfo& g) { g.date = "2001.02.03", g.year = 2001; })},
        {{{"WhiteElo", "2700"}, {"BlackRating", "2650"}},
         info([](GameInfo& g) { g.whiteElo = 2700, g.blackElo = 2650; })},
        {{{"WhiteElo", "2100"}, {"WhiteUSCF", "2200"}, {"BlackDWZ", "1900"}, {"BlackBCF", "180"}},
         info([](GameInfo& g) { g.whiteElo = 2200, g.blackElo = 180; })},
        {{{"WhiteICCF", "2400"}, {"BlackRapid", "2300"}},
         info([](GameInfo& g) { g.whiteElo = 2400, g.blackElo = 2300; })},
        {{{"WhiteElo", "2500"},
          {"WhiteElo", ""},
          {"BlackElo", "-2500"},
          {"BlackElo", "2700x"},
          {"BlackElo", "0"}},
         info([](GameInfo& g) { g.whiteElo = 2500; })},
        {{{"WhiteFide", "2500"}, {"Elo", "2500"}, {"whiteelo", "2500"}}, GameInfo{}},
    };
    GameInfo reused;
    reused.white = "left over";
    reused.year = 1850;
    for (const Case& c : cases) {
        extractGameInfo(c.tags, reused);
        EXPECT_EQ(reused, c.expected) << c.tags.front().name << " " << c.tags.front().value;
    }
}

}  // namespace
}  // namespace tarnfold::PGN
