#include "pgn/pgn_writer.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include "chess/notation.h"
#include "pgn/game.h"
#include "pgn/game_builder.h"
#include "pgn/pgn_reader.h"

namespace tarnfold::PGN {
namespace {

using Node = AnnotatedGameTreeNode;

using Build = std::function<void(AnnotatedGame&)>;
using Configure = std::function<void(PGNWriteOptions&)>;

struct Case {
    const char* what;
    Build build;
    Configure configure;
    const char* expected;
};

Build line(std::initializer_list<const char*> sans) {
    std::vector<const char*> moves(sans);
    return [moves](AnnotatedGame& game) {
        Node* node = game.root.get();
        for (const char* san : moves) node = addLine(game, node, {san});
    };
}

void defaults(PGNWriteOptions&) {}

// 1.e4 e5 2.Nf3 Nc6 (2...d6 3.d4 (3.Bc4 Be7) 3...exd4) 3.Bb5
void nestedGame(AnnotatedGame& game) {
    Node* nc6 = addLine(game, game.root.get(), {"e4", "e5", "Nf3", "Nc6", "Bb5"})->parentAnnotated();
    Node* d6 =
        addLine(game, nc6->parentAnnotated(), {"d6", "d4", "exd4"})->parentAnnotated()->parentAnnotated();
    addLine(game, d6, {"Bc4", "Be7"});
}

// Eight moves of knights, 81 characters with the result.
const Build knightShuffle = line({"Nf3", "Nf6", "Ng1", "Ng8", "Nf3", "Nf6", "Ng1", "Ng8", "Nf3", "Nf6", "Ng1",
                                  "Ng8", "Nf3", "Nf6", "Ng1", "Ng8"});

Build withCommentsAfterE4(std::vector<GameComment> comments) {
    return [comments](AnnotatedGame& game) {
        Node* e5 = addLine(game, game.root.get(), {"e4", "e5"});
        e5->parentAnnotated()->commentsAfter = comments;
    };
}

std::string runCase(const Case& c) {
    AnnotatedGame game;
    c.build(game);
    game.rewind();
    PGNWriteOptions options;
    c.configure(options);
    const std::string fenBefore = game.board.toFen();
    std::string text = gameToPgn(options, game);
    EXPECT_EQ(game.current, game.root.get());
    EXPECT_EQ(game.board.toFen(), fenBefore);
    EXPECT_TRUE(game.board.moveStack.empty());
    return text;
}

TEST(PgnWriter, TagsAndResult) {
    const std::vector<Case> cases = {
        {"no tags",
         [](AnnotatedGame& g) {
             line({"e4", "e5", "Nf3"})(g), g.result = BlackWins;
         },
         defaults, "1.e4 e5 2.Nf3 0-1\n"},
        {"no moves", [](AnnotatedGame&) {}, defaults, "*\n"},
        {"no moves and no result", [](AnnotatedGame&) {}, [](PGNWriteOptions& o) { o.result = false; }, "\n"},
        {"escaped values, Result tag first",
         [](AnnotatedGame& g) {
             g.tags = {{"Event", "say \"hi\" \\ now\r\nok"}, {"Result", "1-0"}};
             g.result = Draw;
             line({"e4"})(g);
         },
         defaults, "[Event \"say \\\"hi\\\" \\\\ now  ok\"]\n[Result \"1-0\"]\n\n1.e4 1-0\n"},
        {"Result tag that is no result",
         [](AnnotatedGame& g) {
             g.tags = {{"Result", "1-0 (time)"}};
             g.result = Draw;
         },
         defaults, "[Result \"1-0 (time)\"]\n\n1/2-1/2\n"},
        {"tags omitted",
         [](AnnotatedGame& g) {
             g.tags = {{"White", "x"}, {"Result", "0-1"}};
             line({"e4"})(g);
         },
         [](PGNWriteOptions& o) { o.omitTags = true; }, "1.e4 *\n"},
        {"game starting with Black",
         [](AnnotatedGame& g) {
             g.tags = {{"FEN", "rnbqkbnr/pppp1ppp/8/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R b KQkq - 1 2"}};
             g.board.setFen(g.tags[0].value);
             line({"Nc6", "Bb5"})(g);
         },
         defaults,
         "[FEN \"rnbqkbnr/pppp1ppp/8/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R b KQkq - 1 2\"]\n\n2...Nc6 3.Bb5 *\n"},
        {"notation", line({"e4", "f5", "Qh5+"}), [](PGNWriteOptions& o) { o.notation.checkSuffix = ""; },
         "1.e4 f5 2.Qh5 *\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(runCase(c), c.expected) << c.what;
}

TEST(PgnWriter, MoveNumbersAfterNagsAndComments) {
    auto annotated = [](std::vector<uint8_t> nags, std::vector<GameComment> comments) -> Build {
        return [nags, comments](AnnotatedGame& game) {
            Node* e4 = addLine(game, game.root.get(), {"e4", "e5"})->parentAnnotated();
            e4->nags = nags;
            e4->commentsAfter = comments;
        };
    };
    const std::vector<GameComment> a = {{BraceComment, "a"}};
    const std::vector<Case> cases = {
        {"comment", annotated({}, a), defaults, "1.e4 {a} 1...e5 *\n"},
        {"comment, no number", annotated({}, a), [](PGNWriteOptions& o) { o.moveNumberAfterComment = false; },
         "1.e4 {a} e5 *\n"},
        {"nag", annotated({1}, {}), defaults, "1.e4 $1 1...e5 *\n"},
        {"nag, no number", annotated({1}, {}), [](PGNWriteOptions& o) { o.moveNumberAfterNag = false; },
         "1.e4 $1 e5 *\n"},
        {"nags elided", annotated({1, 14}, {}), [](PGNWriteOptions& o) { o.nags = false; }, "1.e4 e5 *\n"},
        {"nag then comment", annotated({1, 14}, a), [](PGNWriteOptions& o) { o.moveNumberAfterNag = false; },
         "1.e4 $1 $14 {a} 1...e5 *\n"},
        {"comments elided", annotated({}, a), [](PGNWriteOptions& o) { o.comments = false; }, "1.e4 e5 *\n"},
        {"comments before a main move",
         [](AnnotatedGame& game) {
             addLine(game, game.root.get(), {"e4", "e5"})->commentsBefore = {{BraceComment, "b"}};
         },
         defaults, "1.e4 {b} e5 *\n"},
        {"root annotations",
         [](AnnotatedGame& game) {
             line({"e4"})(game);
             game.root->commentsBefore = {{BraceComment, "pre"}};
             game.root->commentsAfter = {{LineComment, "intro"}};
             game.root->nags = {3};
         },
         defaults, "{pre} {intro} $3 1.e4 *\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(runCase(c), c.expected) << c.what;
}

TEST(PgnWriter, CommentTexts) {
    const std::vector<GameComment> mixed = {
        {LineComment, "line"}, {BraceComment, "x"}, {BraceComment, "x"}, {BraceComment, "y"}};
    const std::vector<Case> cases = {
        {"brace replaced", withCommentsAfterE4({{BraceComment, "a}b"}}), defaults, "1.e4 {a_b} 1...e5 *\n"},
        {"braces dropped", withCommentsAfterE4({{BraceComment, "{a}b"}}),
         [](PGNWriteOptions& o) { o.braceReplacement = '\0'; }, "1.e4 {ab} 1...e5 *\n"},
        {"blanks only", withCommentsAfterE4({{BraceComment, " \t\n "}}), defaults, "1.e4 e5 *\n"},
        {"blank runs", withCommentsAfterE4({{BraceComment, "  one\n two\t "}}), defaults,
         "1.e4 {one two} 1...e5 *\n"},
        {"not compact", withCommentsAfterE4({{BraceComment, "a b"}}),
         [](PGNWriteOptions& o) { o.compactComments = false; }, "1.e4 { a b } 1...e5 *\n"},
        {"repeats dropped", withCommentsAfterE4(mixed), defaults, "1.e4 {line} {x} {y} 1...e5 *\n"},
        {"repeats kept", withCommentsAfterE4(mixed), [](PGNWriteOptions& o) { o.uniqueComments = false; },
         "1.e4 {line} {x} {x} {y} 1...e5 *\n"},
        {"coalesced", withCommentsAfterE4(mixed), [](PGNWriteOptions& o) { o.coalesceComments = true; },
         "1.e4 {line x y} 1...e5 *\n"},
        {"line comments left out", withCommentsAfterE4(mixed),
         [](PGNWriteOptions& o) { o.keepLineComments = false; }, "1.e4 {x} {y} 1...e5 *\n"},
        {"only a line comment left out", withCommentsAfterE4({{LineComment, "only"}}),
         [](PGNWriteOptions& o) { o.keepLineComments = false; }, "1.e4 e5 *\n"},
        {"empty among others", withCommentsAfterE4({{BraceComment, ""}, {BraceComment, "z"}}), defaults,
         "1.e4 {z} 1...e5 *\n"},
        // Alike as written, so a second pass through the writer changes nothing.
        {"repeats as written",
         withCommentsAfterE4(
             {{BraceComment, "{a "}, {BraceComment, "_a"}, {BraceComment, " x"}, {BraceComment, "x\t"}}),
         defaults, "1.e4 {_a} {x} 1...e5 *\n"},
        {"a blank tells apart",
         withCommentsAfterE4({{BraceComment, "a b"}, {BraceComment, "ab"}, {BraceComment, " a \n b"},
                              {BraceComment, "a b c"}}),
         defaults, "1.e4 {a b} {ab} {a b c} 1...e5 *\n"},
        {"repeats with braces dropped",
         withCommentsAfterE4({{BraceComment, "{a}b"}, {BraceComment, "ab"}, {BraceComment, "a {} b"},
                              {BraceComment, "a b"}}),
         [](PGNWriteOptions& o) { o.braceReplacement = '\0'; }, "1.e4 {ab} {a b} 1...e5 *\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(runCase(c), c.expected) << c.what;
}

// Whatever a comment holds, the written game reads back and is written again
// byte for byte.
TEST(PgnWriter, WrittenCommentsReadBackAndWriteAlike) {
    const std::vector<GameComment> hostile = {{BraceComment, std::string("nul\0byte", 8)},
                                              {BraceComment, "\xff\xfe not utf-8 \xc3"},
                                              {BraceComment, "{a "},
                                              {BraceComment, "_a"},
                                              {BraceComment, "}}{{"},
                                              {BraceComment, "%escape\n%line"},
                                              {BraceComment, ";semi ; colon"},
                                              {BraceComment, "\r\n\r\n"},
                                              {LineComment, "line } {"}};
    AnnotatedGame game;
    withCommentsAfterE4(hostile)(game);
    game.rewind();
    const std::string first = gameToPgn(PGNWriteOptions{}, game);
    std::istringstream stream(first);
    PGNReader reader(stream, false);
    AnnotatedGame again;
    reader.game = &again;
    reader.clearGameState();
    ASSERT_EQ(reader.read(), 0) << first;
    again.rewind();
    EXPECT_EQ(gameToPgn(PGNWriteOptions{}, again), first);
    EXPECT_EQ(first, std::string("1.e4 {nul\0byte} {\xff\xfe not utf-8 \xc3} {_a} {____} {%escape %line} "
                                 "{;semi ; colon} {\nline _ _} 1...e5 *\n",
                                 98));
}

TEST(PgnWriter, LineBreaking) {
    auto width = [](uint32_t w, Configure more = defaults) -> Configure {
        return [w, more](PGNWriteOptions& o) {
            o.lineWidth = w;
            more(o);
        };
    };
    const Build ruy = line({"e4", "e5", "Nf3", "Nc6", "Bb5", "a6"});
    const Build longWord = withCommentsAfterE4({{BraceComment, "abcdefghijkl"}});
    const Build threeWords = [](AnnotatedGame& game) {
        addLine(game, game.root.get(), {"e4"})->commentsAfter = {{BraceComment, "one  two\tthree"}};
    };
    const std::vector<Case> cases = {
        {"number closes the line", ruy, width(10), "1.e4 e5 2.\nNf3 Nc6 3.\nBb5 a6 *\n"},
        {"number stays with its move", ruy, width(10, [](PGNWriteOptions& o) { o.splitMoves = false; }),
         "1.e4 e5\n2.Nf3 Nc6\n3.Bb5 a6 *\n"},
        {"number stays, not compact", ruy,
         width(10, [](PGNWriteOptions& o) { o.splitMoves = false, o.compactMoves = false; }),
         "1. e4 e5\n2. Nf3 Nc6\n3. Bb5 a6\n*\n"},
        {"default width", knightShuffle, defaults,
         "1.Nf3 Nf6 2.Ng1 Ng8 3.Nf3 Nf6 4.Ng1 Ng8 5.Nf3 Nf6 6.Ng1 Ng8 7.Nf3 Nf6 8.Ng1 Ng8\n*\n"},
        {"no breaking", knightShuffle, width(0),
         "1.Nf3 Nf6 2.Ng1 Ng8 3.Nf3 Nf6 4.Ng1 Ng8 5.Nf3 Nf6 6.Ng1 Ng8 7.Nf3 Nf6 8.Ng1 Ng8 *\n"},
        {"word wider than the line", longWord, width(5), "1.e4\n{\nabcdefghijkl\n}\n1...\ne5 *\n"},
        {"comment broken between words", threeWords, width(12), "1.e4 {one\ntwo three} *\n"},
        {"comment kept whole", threeWords, width(12, [](PGNWriteOptions& o) { o.splitCommentWords = false; }),
         "1.e4 {\none two three\n} *\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(runCase(c), c.expected) << c.what;
}

TEST(PgnWriter, Variations) {
    const Build noteOnD4 = [](AnnotatedGame& game) {
        addLine(game, game.root.get(), {"e4", "e5"});
        addLine(game, game.root.get(), {"d4"})->commentsBefore = {{BraceComment, "note"}};
    };
    const std::vector<Case> cases = {
        {"comment opening a variation", noteOnD4, defaults, "1.e4 ({note} 1.d4) 1...e5 *\n"},
        {"not compact", noteOnD4, [](PGNWriteOptions& o) { o.compactVariations = false; },
         "1.e4 ( {note} 1.d4 ) 1...e5 *\n"},
        {"nothing compact", noteOnD4,
         [](PGNWriteOptions& o) { o.compactVariations = false, o.compactComments = false; },
         "1.e4 ( { note } 1.d4 ) 1...e5 *\n"},
        {"nag inside a variation",
         [](AnnotatedGame& game) {
             addLine(game, game.root.get(), {"e4", "e5"});
             addLine(game, game.root.get(), {"d4", "d5"})->parentAnnotated()->nags = {2};
         },
         defaults, "1.e4 (1.d4 $2 1...d5) 1...e5 *\n"},
        {"nested", nestedGame, defaults, "1.e4 e5 2.Nf3 Nc6 (2...d6 3.d4 (3.Bc4 Be7) 3...exd4) 3.Bb5 *\n"},
        {"nested, not compact", nestedGame, [](PGNWriteOptions& o) { o.compactVariations = false; },
         "1.e4 e5 2.Nf3 Nc6 ( 2...d6 3.d4 ( 3.Bc4 Be7 ) 3...exd4 ) 3.Bb5 *\n"},
        {"nested, moves not compact", nestedGame, [](PGNWriteOptions& o) { o.compactMoves = false; },
         "1. e4 e5 2. Nf3 Nc6 (2... d6 3. d4 (3. Bc4 Be7) 3... exd4) 3. Bb5 *\n"},
        {"nested, no numbers", nestedGame, [](PGNWriteOptions& o) { o.moveNumbers = false; },
         "e4 e5 Nf3 Nc6 (d6 d4 (Bc4 Be7) exd4) Bb5 *\n"},
        {"variations elided", nestedGame, [](PGNWriteOptions& o) { o.variations = false; },
         "1.e4 e5 2.Nf3 Nc6 3.Bb5 *\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(runCase(c), c.expected) << c.what;
}

TEST(PgnWriter, EditMovesAreNeverWritten) {
    const Move edit = Move::edit(EditAdd, WhiteQueen, D4, D4);
    auto hiddenEdit = [edit](Node* parent) {
        Node* node = parent->addChild(edit);
        node->commentsBefore = {{BraceComment, "hidden"}};
        node->addChild(Move::edit(EditRemove, NoPiece, A1, A1, WhiteRook))->commentsAfter = {
            {BraceComment, "also hidden"}};
    };
    const std::vector<Case> cases = {
        {"edit as the main move",
         [&](AnnotatedGame& game) {
             Node* e4 = addLine(game, game.root.get(), {"e4"});
             hiddenEdit(e4);
             addLine(game, e4, {"e5", "Nf3"});
         },
         defaults, "1.e4 (1...e5 2.Nf3) *\n"},
        {"edit among the variations",
         [&](AnnotatedGame& game) {
             Node* e4 =
                 addLine(game, game.root.get(), {"e4", "e5", "Nf3"})->parentAnnotated()->parentAnnotated();
             hiddenEdit(e4);
             addLine(game, e4, {"d5"});
         },
         defaults, "1.e4 e5 (1...d5) 2.Nf3 *\n"},
        {"edit at the end",
         [&](AnnotatedGame& game) {
             hiddenEdit(addLine(game, game.root.get(), {"e4", "e5", "Nf3"}));
         },
         defaults, "1.e4 e5 2.Nf3 *\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(runCase(c), c.expected) << c.what;
}

}  // namespace
}  // namespace tarnfold::PGN
