#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "pgn/pgn_reader.h"
#include "pgn/pgn_writer.h"

namespace tarnfold::PGN {
namespace {

using AnnotatedGame = Game<AnnotatedGameTreeNode>;

// Appends the parts in order (built up by appending, which also keeps
// GCC 12's false -Wrestrict alarm on "literal" + string quiet).
template <typename... Parts>
void append(std::string& out, const Parts&... parts) {
    ((out += parts), ...);
}

// The tree as text: each node's move in coordinates, its NAGs and comments,
// variations in parentheses; enough to tell any two trees apart.
void describe(const AnnotatedGameTreeNode* node, std::string& out) {
    for (const GameComment& comment : node->commentsBefore)
        append(out, "<", std::to_string(comment.kind), comment.text, ">");
    if (node->parentNode) out += moveToCoordinates(node->move);
    for (uint8_t nag : node->nags) append(out, " $", std::to_string(nag));
    for (const GameComment& comment : node->commentsAfter)
        append(out, " {", std::to_string(comment.kind), comment.text, "}");
    for (size_t i = 0; i < node->children.size(); ++i) {
        out += i == 0 ? " " : " (";
        describe(node->childAnnotated(i), out);
        if (i > 0) out += ")";
    }
}

struct ReadGame {
    int status = 0;
    std::string tags;
    std::string tree;
    uint32_t result = 0;
    Variant variant = Standard;
    std::vector<std::string> errors;  // "line:col message"

    bool operator==(const ReadGame&) const = default;
};

ReadGame capture(PGNReader& reader, AnnotatedGame& game, int status, bool withPositions = true) {
    ReadGame read;
    read.status = status;
    for (const GameTag& tag : game.tags) append(read.tags, "[", tag.name, "=", tag.value, "]");
    describe(game.root.get(), read.tree);
    read.result = game.result;
    read.variant = game.board.variant;
    for (const PGNError& error : reader.errors) {
        std::string text;
        if (withPositions)
            append(text, std::to_string(error.position.line + 1), ":", std::to_string(error.position.column),
                   " ");
        append(text, error.message);
        read.errors.push_back(text);
    }
    return read;
}

std::vector<ReadGame> readAll(const std::string& text, bool withPositions = true) {
    std::istringstream stream(text);
    PGNReader reader(stream, false);
    reader.skipByteOrderMark();
    AnnotatedGame game;
    reader.game = &game;
    std::vector<ReadGame> games;
    for (;;) {
        game.reset();
        reader.clearGameState();
        const int status = reader.read();
        if (status == 2) break;
        games.push_back(capture(reader, game, status, withPositions));
    }
    return games;
}

ReadGame readOne(const std::string& text) {
    const std::vector<ReadGame> games = readAll(text);
    EXPECT_EQ(games.size(), 1u) << text;
    return games.empty() ? ReadGame{} : games[0];
}

TEST(PGNReader, TreeCommentsAndErrors) {
    const struct {
        const char* pgn;
        const char* tree;
        std::vector<std::string> errors;
        uint32_t result;
    } cases[] = {
        {"1. e4 (1. d4) e5 *", " e2e4 e7e5 (d2d4)", {}, UnknownResult},
        {"1. e4 ( {note} 1. d4) e5 1-0", " e2e4 e7e5 (<1note>d2d4)", {}, WhiteWins},
        {"(1. e4) 1. d4 0-1", " d2d4", {}, BlackWins},
        {"1. e4 ) e5 1/2-1/2", " e2e4 e7e5", {}, Draw},
        {"1. e4 ( {note} ) e5 *", " e2e4 e7e5", {}, UnknownResult},
        {"1. e9 e5 2. Nf3 1-0", "", {"1:4 failed to parse move 'e9': malformed move"}, WhiteWins},
        {"1. e4 e5 (1... c5 2. Nf3 Nc3) 2. Nf3 *",
         " e2e4 e7e5 g1f3 (c7c5 g1f3)",
         {"1:26 failed to parse move 'Nc3': illegal move"},
         UnknownResult},
        {"{start} 1. e4 $1 e5!? {after e5} ; line\n 2. Nf3 !! *",
         " {1start} e2e4 $1 e7e5 $5 {1after e5} {0line} g1f3 $3",
         {},
         UnknownResult},
        {"1. e4!! e5!!? *", " e2e4 $3 e7e5", {}, UnknownResult},
        {"1. e4 e5", " e2e4 e7e5", {"1:9 missing game termination token"}, UnknownResult},
        {"1. e4 ] e5 *", " e2e4 e7e5", {"1:7 invalid token ']' encountered in PGN stream"}, UnknownResult},
        {"1. e4 e5 2. Qh5 Nc6 3. Bc4 Nf6 4. Qxf7# 1-0", " e2e4 e7e5 d1h5 b8c6 f1c4 g8f6 h5f7", {}, WhiteWins},
    };
    for (const auto& c : cases) {
        const ReadGame read = readOne(c.pgn);
        EXPECT_EQ(read.tree, c.tree) << c.pgn;
        EXPECT_EQ(read.errors, c.errors) << c.pgn;
        EXPECT_EQ(read.result, c.result) << c.pgn;
    }
}

TEST(PGNReader, VariantsSetUpAndAliases) {
    // SetUp "0" makes the FEN count for nothing.
    ReadGame ignored = readOne("[SetUp \"0\"]\n[FEN \"4k3/8/8/8/8/8/8/4K2R w K - 0 1\"]\n\n1. e4 *");
    EXPECT_EQ(ignored.tree, " e2e4");
    ReadGame fen = readOne("[SetUp \"1\"]\n[FEN \"4k3/8/8/8/8/8/8/4K2R w K - 0 1\"]\n\n1. O-O *");
    EXPECT_EQ(fen.tree, " e1g1");
    ReadGame crazyhouse = readOne("[Variant \"Crazy House\"]\n\n1. e4 d5 2. exd5 Qxd5 3. P@e4 *");
    EXPECT_EQ(crazyhouse.variant, Crazyhouse);
    EXPECT_EQ(crazyhouse.tree, " e2e4 d7d5 e4d5 d8d5 e4e4");
    // An unknown variant is read by the ordinary rules under its own code.
    ReadGame unknown = readOne("[Variant \"wild/17\"]\n\n1. e4 *");
    EXPECT_EQ(unknown.variant, Unknown);
    EXPECT_EQ(unknown.tree, " e2e4");

    std::istringstream stream("[Variant \"Blitzhouse\"]\n\n1. e4 d5 2. exd5 Qxd5 3. P@e4 *");
    PGNReader reader(stream, false, {{"BlitzHouse", Crazyhouse}});
    AnnotatedGame game;
    reader.game = &game;
    reader.clearGameState();
    EXPECT_EQ(reader.read(), 0);
    EXPECT_EQ(game.board.variant, Crazyhouse);
}

std::string withoutKinds(std::string tree) {
    for (size_t at = 0; (at = tree.find(" {0", at)) != std::string::npos;) tree[at + 2] = '1';
    for (size_t at = 0; (at = tree.find("<0", at)) != std::string::npos;) tree[at + 1] = '1';
    return tree;
}

std::string fileText(const std::string& name) {
    std::ifstream file(std::string(ZMFI_TEST_DATA_DIR "/corpus_sample/") + name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    std::stringstream content;
    content << file.rdbuf();
    return content.str();
}

const char* const corpusFiles[] = {"standard.pgn",      "chess960.pgn",   "crazyhouse.pgn", "atomic.pgn",
                                   "horde.pgn",         "losers.pgn",     "suicide.pgn",    "giveaway.pgn",
                                   "kingofthehill.pgn", "threecheck.pgn", "racingkings.pgn"};

// Cutting a file into game texts first, as the worker threads do, gives the
// same games as reading it in one stream, error positions included.
TEST(PGNReader, GameTextsReadLikeTheWholeStream) {
    for (const char* name : corpusFiles) {
        const std::string text = fileText(name);
        const std::vector<ReadGame> whole = readAll(text);
        std::istringstream stream(text);
        PGNParser scanner(stream);
        scanner.skipByteOrderMark();
        std::vector<ReadGame> cut;
        std::string gameText;
        for (;;) {
            const PGNPosition start = scanner.position();
            if (!scanner.readGameText(gameText)) break;
            std::istringstream gameStream(gameText);
            PGNReader reader(gameStream, false);
            reader.setPosition(start);
            AnnotatedGame game;
            reader.game = &game;
            reader.clearGameState();
            cut.push_back(capture(reader, game, reader.read()));
        }
        EXPECT_EQ(cut.size(), whole.size()) << name;
        EXPECT_TRUE(cut == whole) << name;
    }
}

// Reads every game of the corpus sample, one reader per file, and hands each
// to check with its file's name, the reader and what read() returned.
template <typename Check>
int forEachCorpusGame(Check check) {
    int games = 0;
    for (const char* name : corpusFiles) {
        std::istringstream stream(fileText(name));
        PGNReader reader(stream, false);
        AnnotatedGame game;
        reader.game = &game;
        for (;;) {
            game.reset();
            reader.clearGameState();
            const int status = reader.read();
            if (status == 2) break;
            check(name, reader, status, game);
            ++games;
        }
    }
    return games;
}

// Writing a game read from the corpus and reading it again gives the same
// tree, comments, NAGs and tags; a second writing gives the same text.
TEST(PGNReader, CorpusRoundTripsThroughTheWriter) {
    const PGNWriteOptions options;
    const int games = forEachCorpusGame([&](const char* name, PGNReader& reader, int status, AnnotatedGame& game) {
        ASSERT_EQ(status, 0) << name;
        const ReadGame first = capture(reader, game, status);
        game.rewind();
        const std::string written = gameToPgn(options, game);
        const std::vector<ReadGame> again = readAll(written);
        ASSERT_EQ(again.size(), 1u) << written;
        // The writer writes every comment in braces, so only the texts of
        // ';' comments come back, not their kind.
        EXPECT_EQ(withoutKinds(again[0].tree), withoutKinds(first.tree)) << name << "\n" << written;
        EXPECT_EQ(again[0].tags, first.tags) << name;
        EXPECT_EQ(again[0].result, first.result) << name;

        std::istringstream rereadStream(written);
        PGNReader rereader(rereadStream, false);
        AnnotatedGame reread;
        rereader.game = &reread;
        rereader.clearGameState();
        ASSERT_EQ(rereader.read(), 0);
        reread.rewind();
        EXPECT_EQ(gameToPgn(options, reread), written) << name;
    });
    EXPECT_EQ(games, 190);
}

// Rewinding copies the board kept at root; it must be the board that taking
// every move back gives, for each game of a stream read one after the
// other (a board kept from the game before would differ), and so must the
// board the writer leaves at root after playing the whole game.
TEST(PGNReader, RewindGivesTheBoardOfTakingEveryMoveBack) {
    const int games = forEachCorpusGame([](const char* name, PGNReader&, int, AnnotatedGame& game) {
        std::vector<AnnotatedGameTreeNode*> line;
        for (auto* node = game.current; node->parentNode; node = node->parentAnnotated()) line.push_back(node);
        game.rewind();
        const Board kept = game.board;
        for (auto at = line.rbegin(); at != line.rend(); ++at) game.forward(*at);
        while (game.current->parentNode) game.back();
        ASSERT_EQ(game.board, kept) << name;
        ASSERT_EQ(game.board.toFen(), kept.toFen());
        (void)gameToPgn(PGNWriteOptions{}, game);
        EXPECT_EQ(game.current, game.root.get());
        EXPECT_EQ(game.board, kept) << name;
    });
    EXPECT_EQ(games, 190);
}

// Handed the boards of main-line positions, as the engine's rows hand them,
// the writer plays fewer moves and writes the same text, also where some
// boards are missing and where variations make it follow the line itself;
// the game's board comes back to root.
TEST(PGNWriter, BoardsHandedInWriteTheSameText) {
    int withVariations = 0;
    const int games = forEachCorpusGame([&withVariations](const char* name, PGNReader&, int, AnnotatedGame& game) {
        game.rewind();
        const Board atRoot = game.board;
        std::map<const AnnotatedGameTreeNode*, Board> boards;
        boards[game.current] = game.board;
        while (!game.current->children.empty()) {
            game.forward(game.current->childAnnotated(0));
            boards[game.current] = game.board;
        }
        game.rewind();
        size_t asked = 0;
        const BoardLookup everyOther = [&](const AnnotatedGameTreeNode& node) -> Board* {
            const auto found = boards.find(&node);
            return found == boards.end() || ++asked % 5 == 0 ? nullptr : &found->second;
        };
        const BoardLookup all = [&](const AnnotatedGameTreeNode& node) -> Board* {
            const auto found = boards.find(&node);
            return found == boards.end() ? nullptr : &found->second;
        };
        for (const bool variations : {true, false}) {
            PGNWriteOptions options;
            options.variations = variations;
            const std::string played = gameToPgn(options, game);
            EXPECT_EQ(gameToPgn(options, game, &all), played) << name;
            EXPECT_EQ(gameToPgn(options, game, &everyOther), played) << name;
            EXPECT_EQ(game.current, game.root.get());
            EXPECT_EQ(game.board, atRoot);
        }
        const auto branches = [](const auto& entry) { return entry.first->children.size() > 1; };
        withVariations += std::any_of(boards.begin(), boards.end(), branches) ? 1 : 0;
    });
    EXPECT_EQ(games, 190);
    EXPECT_GT(withVariations, 20);
}

}  // namespace
}  // namespace tarnfold::PGN
