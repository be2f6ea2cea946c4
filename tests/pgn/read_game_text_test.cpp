#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "pgn/pgn_parser.h"
#include "pgn/recording_parser.h"

namespace tarnfold::PGN {
namespace {

using testing::Event;
using testing::RecordingParser;

// Hands out its text a few characters at a time, or with chunk 0 without any
// get area at all, so that the cutter meets the end of a run in each of its
// states; runs of 19 mix its sixteen-byte blocks with such ends.
class ChunkedBuffer : public std::streambuf {
public:
    ChunkedBuffer(std::string text, size_t chunk) : text_(std::move(text)), chunk_(chunk) {}

protected:
    int_type underflow() override {
        if (next_ >= text_.size()) return traits_type::eof();
        if (chunk_ == 0) return traits_type::to_int_type(text_[next_]);
        char* start = text_.data() + next_;
        next_ += std::min(chunk_, text_.size() - next_);
        setg(start, start, text_.data() + next_);
        return traits_type::to_int_type(*start);
    }
    int_type uflow() override {
        if (chunk_ != 0) return std::streambuf::uflow();
        if (next_ >= text_.size()) return traits_type::eof();
        return traits_type::to_int_type(text_[next_++]);
    }
    // One character back across the start of the get area.
    int_type pbackfail(int_type c) override {
        const size_t at = chunk_ == 0 ? next_ : static_cast<size_t>(eback() - text_.data());
        if (at == 0) return traits_type::eof();
        if (chunk_ == 0) {
            --next_;
        } else {
            setg(text_.data() + at - 1, text_.data() + at - 1, text_.data() + at);
            next_ = at;
        }
        return c;
    }

private:
    std::string text_;
    size_t chunk_;
    size_t next_ = 0;
};

// The game texts, each with the cutter's position after it.
std::vector<std::string> cutWith(std::streambuf& buffer, bool nested) {
    std::istream stream(&buffer);
    PGNParser parser(stream);
    parser.setNestedComments(nested);
    parser.skipByteOrderMark();
    std::vector<std::string> texts;
    std::string text;
    for (int guard = 0; guard < 1000 && parser.readGameText(text); ++guard)
        texts.push_back(text + " @" + testing::positionText(parser.position()));
    // The call that found nothing left keeps only white space.
    EXPECT_TRUE(std::all_of(text.begin(), text.end(),
                            [](char c) { return std::isspace(static_cast<unsigned char>(c)); }))
        << "last text: " << text;
    return texts;
}

std::vector<std::string> gameTexts(const std::string& input, bool nested = false) {
    std::stringbuf whole(input);
    const std::vector<std::string> placed = cutWith(whole, nested);
    for (size_t chunk : {0, 1, 2, 3, 7, 19}) {
        ChunkedBuffer pieces(input, chunk);
        EXPECT_EQ(cutWith(pieces, nested), placed) << "in runs of " << chunk << ": " << input;
    }
    std::vector<std::string> texts;
    for (const std::string& text : placed) texts.push_back(text.substr(0, text.rfind(" @")));
    return texts;
}

struct CutCase {
    std::string input;
    std::vector<std::string> texts;
    bool nested = false;
};

TEST(ReadGameText, CutsGamesWhereTheParserEndsThem) {
    const CutCase cases[] = {
        {"", {}},
        {" \n\t\r\n ", {}},
        {"e4 1-0 e5 1/2 d4 1/2-1/2\n0-1", {"e4 1-0 ", "e5 1/2 ", "d4 1/2-1/2\n", "0-1"}},
        {"e4 *\n\n[A \"b\"]\n", {"e4 *\n", "\n[A \"b\"]\n"}},
        // The bracket of the next game goes back to the stream.
        {"e4 e5 [A \"b\"] d4", {"e4 e5 ", "[A \"b\"] d4"}},
        {"{c}\n;d\n[A \"b\"] e4", {"{c}\n;d\n[A \"b\"] e4"}},
        {"[A \"1-0 \"] [B \"x\"y\" ] e4 1-0 ", {"[A \"1-0 \"] [B \"x\"y\" ] e4 1-0 "}},
        {"[A \"x\n1-0 e4", {"[A \"x\n1-0 ", "e4"}},
        {"e4 \"a\\\"b 1-0 \" *", {"e4 \"a\\\"b 1-0 \" *"}},
        {"e4 {1-0 } ; 0-1 \n% 1/2 \n e5 *", {"e4 {1-0 } ; 0-1 \n% 1/2 \n e5 *"}},
        // What follows '<' up to the '>' is not copied.
        {"e4 <1-0 [A \"b\"]> e5 * d4", {"e4 < e5 * ", "d4"}},
        {"e4 {a {b} 1-0 } c} *", {"e4 {a {b} 1-0 ", "} c} *"}},
        {"e4 {a {b} 1-0 } c} *", {"e4 {a {b} 1-0 } c} *"}, true},
        // No notion of a word start: a symbol ending in a result ends a game.
        {"e41-0 e5 *", {"e41-0 ", "e5 *"}},
        {"1-01-0 e4 *", {"1-01-0 e4 *"}},
        {"\xEF\xBB\xBF[A \"b\"]\r\n1. e4 1-0\r\n", {"[A \"b\"]\r\n1. e4 1-0\r"}},
    };
    for (const CutCase& c : cases) EXPECT_EQ(gameTexts(c.input, c.nested), c.texts) << "input: " << c.input;
}

// One game's callbacks, ending with the parseGame result.
using Game = std::vector<Event>;

std::vector<Game> splitGames(const std::vector<Event>& events) {
    std::vector<Game> games(1);
    for (const Event& event : events) {
        games.back().push_back(event);
        if (event.what.starts_with("=>")) games.emplace_back();
    }
    games.pop_back();
    // The end of the stream is no game.
    if (!games.empty() && games.back().back().what == "=> 2") games.pop_back();
    return games;
}

std::vector<std::string> whats(const Game& game) {
    std::vector<std::string> out;
    for (const Event& event : game) out.push_back(event.what);
    return out;
}

// The callbacks with the positions they were given. The parseGame result is
// left out: a parser at the end of a game's text has read less white space
// than one that goes on into the next game.
std::vector<std::string> placedWhats(const Game& game) {
    std::vector<std::string> out;
    for (const Event& event : game) {
        if (!event.what.starts_with("=>"))
            out.push_back(event.what + " @" + testing::positionText(event.where));
    }
    return out;
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream out;
    out << file.rdbuf();
    return out.str();
}

void configure(PGNParser& parser, bool nested) {
    parser.setNestedComments(nested);
    // The cutter knows '%' lines at any column, as the game reader does.
    parser.setEscapeAnywhere(true);
}

// Cuts the file into game texts, parses each with a parser of its own, and
// parses the whole file with one parser: the games must be the same. Returns
// the number of games.
size_t expectSameGames(const std::string& content, const std::string& name, bool nested) {
    SCOPED_TRACE(name + (nested ? " (nested comments)" : ""));
    std::istringstream whole(content);
    RecordingParser wholeParser(whole);
    configure(wholeParser, nested);
    wholeParser.skipByteOrderMark();
    wholeParser.parseAll();
    const std::vector<Game> expected = splitGames(wholeParser.events);

    std::istringstream stream(content);
    PGNParser cutter(stream);
    cutter.setNestedComments(nested);
    cutter.skipByteOrderMark();
    std::vector<Game> games;
    // Where in the file each game's '<' is, when it has one.
    std::vector<int64_t> anglesAt;
    std::string text;
    std::string joined;
    for (int64_t start = stream.tellg();; start = stream.tellg()) {
        // A worker's parser counts lines and columns from where the cutter was.
        const PGNPosition from = cutter.position();
        EXPECT_EQ(from.offset, static_cast<uint64_t>(start));
        if (!cutter.readGameText(text)) break;
        joined += text;
        std::istringstream textStream(text);
        RecordingParser parser(textStream);
        configure(parser, nested);
        parser.setPosition(from);
        parser.parseAll();
        for (Game& game : splitGames(parser.events)) {
            games.push_back(std::move(game));
            const size_t angle = text.find('<');
            anglesAt.push_back(angle == std::string::npos ? -1 : start + static_cast<int64_t>(angle));
        }
    }
    joined += text;

    // Every character but a byte order mark and what follows a '<' up to its
    // '>' is copied once.
    std::string copied = content.starts_with("\xEF\xBB\xBF") ? content.substr(3) : content;
    for (size_t angle = copied.find('<'); angle != std::string::npos; angle = copied.find('<', angle + 1)) {
        const size_t close = copied.find('>', angle);
        copied.erase(angle + 1, close == std::string::npos ? std::string::npos : close - angle);
    }
    EXPECT_EQ(joined, copied);

    EXPECT_EQ(games.size(), expected.size());
    for (size_t i = 0; i < std::min(games.size(), expected.size()); ++i) {
        if (anglesAt[i] < 0) {
            EXPECT_EQ(whats(games[i]), whats(expected[i])) << "game " << i;
            EXPECT_EQ(placedWhats(games[i]), placedWhats(expected[i])) << "game " << i;
            continue;
        }
        // The text of a game lacks what followed its '<', so the worker's
        // parser sees the LANGLE without its RANGLE and skips to the end of
        // the text: it reports what came before the '<' and then a game
        // without a terminator. Those are the whole file's callbacks that came
        // before the parser had read the '<'.
        std::vector<std::string> before;
        for (const Event& event : expected[i]) {
            if (event.offset <= static_cast<uint64_t>(anglesAt[i])) before.push_back(event.what);
        }
        before.push_back("end 4 missing");
        before.push_back("=> 1");
        EXPECT_EQ(whats(games[i]), before) << "game " << i << " with '<'";
    }
    return games.size();
}

TEST(ReadGameText, AgreesWithTheParserOnEveryGame) {
    const std::filesystem::path data = ZMFI_TEST_DATA_DIR;
    size_t files = 0;
    for (const char* folder : {"corpus_sample", "pgn"}) {
        std::vector<std::filesystem::path> paths;
        for (const auto& entry : std::filesystem::directory_iterator(data / folder)) {
            if (entry.path().extension() == ".pgn") paths.push_back(entry.path());
        }
        std::sort(paths.begin(), paths.end());
        for (const auto& path : paths) {
            const std::string content = readFile(path);
            const size_t games = expectSameGames(content, path.filename().string(), false);
            expectSameGames(content, path.filename().string(), true);
            ++files;
            const bool blank = path.filename() == "empty.pgn" || path.filename() == "whitespace.pgn";
            EXPECT_EQ(games == 0, blank) << path.filename();
        }
    }
    EXPECT_GE(files, 11u + 13u);
}

}  // namespace
}  // namespace tarnfold::PGN
