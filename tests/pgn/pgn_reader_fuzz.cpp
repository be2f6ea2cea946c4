// libFuzzer target: arbitrary bytes read as PGN into game trees. Every game
// read, whatever errors it had, is written back and must read again to the
// same moves, NAGs, comment texts, tags and result, and a second writing
// must give the same text.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "pgn/pgn_reader.h"
#include "pgn/pgn_writer.h"

namespace {

using namespace tarnfold;
using namespace tarnfold::PGN;

void check(bool condition) {
    if (!condition) std::abort();
}

// Comments as the default writer leaves them: braces inside become '_',
// blanks between words become one, empty ones vanish, and a repeated one
// (as written) is written once.
void describeComments(const std::vector<GameComment>& comments, char mark, std::string& out) {
    std::vector<std::string> seen;
    for (const GameComment& comment : comments) {
        std::string text;
        std::istringstream words(comment.text);
        for (std::string word; words >> word;) {
            for (char& c : word)
                if (c == '{' || c == '}') c = '_';
            if (!text.empty()) text += ' ';
            text += word;
        }
        if (text.empty()) continue;
        if (std::find(seen.begin(), seen.end(), text) != seen.end()) continue;
        seen.push_back(text);
        (out += mark) += text;
    }
}

void describe(const AnnotatedGameTreeNode* node, std::string& out) {
    describeComments(node->commentsBefore, '<', out);
    if (node->parentNode) out += moveToCoordinates(node->move);
    for (uint8_t nag : node->nags) (out += '$') += std::to_string(nag);
    describeComments(node->commentsAfter, '{', out);
    for (size_t i = 0; i < node->children.size(); ++i) {
        out += i == 0 ? ' ' : '(';
        describe(node->childAnnotated(i), out);
        if (i > 0) out += ')';
    }
}

// The result as written: a Result tag with a result in it goes before the
// game's own.
uint32_t writtenResult(const Game<AnnotatedGameTreeNode>& game) {
    uint32_t result = game.result;
    for (const GameTag& tag : game.tags) {
        if (tag.name != "Result") continue;
        const bool written =
            tag.value == "1-0" || tag.value == "0-1" || tag.value == "1/2-1/2" || tag.value == "*";
        result = written ? resultFromText(tag.value) : game.result;
    }
    return result;
}

std::string summary(const Game<AnnotatedGameTreeNode>& game) {
    std::string text = std::to_string(writtenResult(game));
    // A line break in a tag value is written as a blank.
    for (const GameTag& tag : game.tags) {
        (text += '[') += tag.name;
        for (char c : tag.value) text += c == '\n' || c == '\r' ? ' ' : c;
    }
    describe(game.root.get(), text);
    return text;
}

// Reads the one game of a written text.
std::string reread(const std::string& written, bool nested, std::string& writtenAgain) {
    std::istringstream stream(written);
    PGNReader reader(stream, nested);
    Game<AnnotatedGameTreeNode> game;
    reader.game = &game;
    reader.clearGameState();
    check(reader.read() != 2);
    game.rewind();
    writtenAgain = gameToPgn(PGNWriteOptions{}, game);
    return summary(game);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    for (bool nested : {false, true}) {
        std::istringstream stream(text);
        PGNReader reader(stream, nested);
        reader.skipByteOrderMark();
        Game<AnnotatedGameTreeNode> game;
        reader.game = &game;
        for (int games = 0; games < 1000; ++games) {
            game.reset();
            reader.clearGameState();
            if (reader.read() == 2) break;
            game.rewind();
            const std::string written = gameToPgn(PGNWriteOptions{}, game);
            std::string writtenAgain;
            check(reread(written, nested, writtenAgain) == summary(game));
            check(writtenAgain == written);
        }
    }
    return 0;
}
