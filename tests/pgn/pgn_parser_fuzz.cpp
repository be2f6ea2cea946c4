// libFuzzer target: any bytes, read with and without nested comments, are
// parsed game by game until parseGame reports the end, and that end is the end
// of the stream; positions never run backwards; and cutting the input into game
// texts with readGameText and parsing each text on its own finds as many games
// as parsing the whole input, unless the input holds one of the known points
// where the cutter and the parser part ways (see below).
#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>

#include "pgn/game_result.h"
#include "pgn/pgn_parser.h"

namespace {

using namespace tarnfold::PGN;

void check(bool condition) {
    if (!condition) std::abort();
}

bool blank(const std::string& text) {
    for (char c : text) {
        if (c != ' ' && (c < '\t' || c > '\r')) return false;
    }
    return true;
}

// Whether the text was cut by a result followed by white space, with the
// cutter's own rules: after any character but "*012-/" it looks for a result
// afresh.
bool cutByResult(const std::string& text) {
    if (text.empty() || !std::isspace(static_cast<unsigned char>(text.back()))) return false;
    const std::string_view body(text.data(), text.size() - 1);
    const size_t from = body.find_last_not_of("*012-/");
    int state = 0;
    for (size_t i = from == std::string_view::npos ? 0 : from + 1; i < body.size(); ++i) {
        const char c = body[i];
        state = nextResultState(state, c);
    }
    return state == 6;
}

// Whether the result that ended a text continues a symbol or a NAG before it,
// as in "e41-0" or "$11-0".
bool gluedResult(const std::string& text) {
    const std::string_view body(text.data(), text.size() - 1);
    for (std::string_view result : {"1-0", "0-1", "1/2", "*"}) {
        if (!body.ends_with(result)) continue;
        if (body.size() == result.size()) return false;
        const char c = body[body.size() - result.size() - 1];
        return std::isalnum(static_cast<unsigned char>(c)) ||
               std::string_view("!#+-/:=?@_$").find(c) != std::string_view::npos;
    }
    return false;
}

class CheckingParser : public PGNParser {
public:
    CheckingParser(std::istream& stream, bool nested) : PGNParser(stream) {
        setNestedComments(nested);
        // The cutter knows '%' lines at any column, as the game reader does.
        setEscapeAnywhere(true);
    }

    bool started = false;
    bool missingTerminator = false;
    // What the last game looked like when it ended.
    bool lastStarted = false;
    bool lastMissing = false;
    // Maybe a malformed tag.
    bool misplaced = false;

    // Runs parseGame until it reports the end; returns the number of games.
    size_t parseAll(std::istream& stream, size_t size) {
        size_t games = 0;
        for (;;) {
            started = false;
            const int result = parseGame();
            check(result >= 0 && result <= 2);
            step();
            if (result == 2) break;
            lastStarted = started;
            lastMissing = missingTerminator;
            ++games;
            check(games <= size + 1);
        }
        check(stream.rdbuf()->sgetc() == std::char_traits<char>::eof());
        check(parseGame() == 2);
        return games;
    }

    bool onTag(const PGNTag& tag) override { return token(tag.start, tag.end); }
    bool onTagWithoutValue(const PGNTag& tag) override { return token(tag.start, tag.end); }
    bool onComment(const PGNComment& comment) override { return token(comment.start, comment.end); }
    bool onNag(const PGNToken& t) override { return token(t.start, t.end); }
    bool onAnnotation(const PGNToken& t) override { return token(t.start, t.end); }
    bool onEndOfStream(const PGNPosition&) override { return step(); }
    bool onGameEnd(uint32_t result, const PGNPosition&, bool missing) override {
        check(result <= 4 && (missing ? result == 4 : result != 4));
        missingTerminator = missing;
        return step();
    }
    bool onVariationBegin(const PGNPosition&) override { return step(); }
    bool onVariationEnd(const PGNPosition&) override { return step(); }
    bool onMove(const std::string& text, const PGNToken& t, const PGNPosition&) override {
        check(started && !text.empty());
        return token(t.start, t.end);
    }
    bool onEscapeLine(const std::string&, const PGNPosition& start, const PGNPosition& end) override {
        return token(start, end);
    }
    bool onInvalidToken(const PGNToken& t) override {
        // Tags fail only before the game starts, and never at a ']'.
        if (!started && t.type != PGNTokenType::RBracket) misplaced = true;
        return token(t.start, t.end);
    }
    bool onGameStart(const PGNPosition&) override {
        check(!started);
        started = true;
        return step();
    }

private:
    bool step() {
        check(position().offset >= offset_);
        offset_ = position().offset;
        return true;
    }
    bool token(const PGNPosition& start, const PGNPosition& end) {
        check(start.offset <= end.offset && end.offset <= position().offset);
        return step();
    }

    uint64_t offset_ = 0;
};

// Where a parser stands after reading the first offset characters.
PGNPosition positionAfter(const std::string& input, uint64_t offset) {
    PGNPosition position;
    position.offset = offset;
    const std::string_view read(input.data(), offset);
    position.line = static_cast<uint64_t>(std::count(read.begin(), read.end(), '\n'));
    const size_t newline = read.rfind('\n');
    position.column = newline == std::string_view::npos ? offset : offset - newline - 1;
    return position;
}

void run(const std::string& input, bool nested) {
    std::istringstream whole(input);
    CheckingParser parser(whole, nested);
    parser.skipByteOrderMark();
    const size_t games = parser.parseAll(whole, input.size());

    std::istringstream stream(input);
    PGNParser cutter(stream);
    cutter.setNestedComments(nested);
    cutter.skipByteOrderMark();
    std::string text;
    size_t textGames = 0;
    // A '<' hides characters up to a '>' from the cutter, tokens up to a RANGLE
    // from the parser, and all the rest of its text from a worker's parser.
    bool parted = input.find('<') != std::string::npos;
    while (cutter.readGameText(text)) {
        check(!blank(text));
        // The cutter counts lines for the workers' parsers, which go on from
        // where it stopped.
        check(cutter.position() == positionAfter(input, static_cast<uint64_t>(stream.tellg())));
        std::istringstream textStream(text);
        CheckingParser textParser(textStream, nested);
        textGames += textParser.parseAll(textStream, text.size());
        const bool byResult = cutByResult(text);
        const bool atBracket = !byResult && stream.rdbuf()->sgetc() == '[';
        // The known partings, each a consequence of a cutter that does not
        // tokenize: a '[' after any text outside brackets ends a game for the
        // cutter, but only after a move-text item for the parser; and a result
        // followed by white space ends a game for the cutter even when the
        // parser reads it as the end of a longer symbol. In both cases the
        // text's last game is one that the parser would have gone on with.
        // After a malformed tag the parser reads the rest of the brackets as
        // move text, where quotes are closed differently from a tag value,
        // while the cutter keeps to the tag's rules up to the ']'.
        if (textParser.misplaced) parted = true;
        if (atBracket && !textParser.lastStarted) parted = true;
        if (byResult && textParser.lastMissing && gluedResult(text)) parted = true;
    }
    check(blank(text));
    check(stream.rdbuf()->sgetc() == std::char_traits<char>::eof());
    if (!parted) check(textGames == games);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string input(reinterpret_cast<const char*>(data), size);
    run(input, false);
    run(input, true);
    // Most random inputs hold one of the partings above, which leaves the game
    // counts unchecked; the same input with only the characters of plain PGN
    // move text mostly does not.
    for (char& c : input) {
        if (!std::isalnum(static_cast<unsigned char>(c)) &&
            std::string_view(" \n.*/-+!?=$\"{}();%[]\\").find(c) == std::string_view::npos)
            c = ' ';
    }
    run(input, false);
    run(input, true);
    return 0;
}
