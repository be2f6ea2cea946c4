#include "query/render_message.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarnfold::zmf {
namespace {

QuerySource oneSource(const std::string& text) {
    QuerySource source;
    source.add("q.zmf", text);
    return source;
}

std::string render(const QuerySource& source, MessageLevel level, OptionalOffset location,
                   std::vector<SourceSpan> spans = {}) {
    return renderMessage(source, makeMessage(level, "bad thing", location, std::move(spans)));
}

// Column i of the line is letter 'a' + i % 26, so a cut shows where it fell.
std::string letters(std::size_t count) {
    std::string line;
    for (std::size_t i = 0; i < count; ++i) line += static_cast<char>('a' + i % 26);
    return line;
}

std::string blanks(std::size_t count) { return std::string(count, ' '); }

TEST(RenderMessage, CaretOnShortLines) {
    QuerySource source = oneSource("check\nmate\nab");
    EXPECT_EQ(render(source, MessageLevel::Error, 0), "q.zmf:1:1 error: bad thing\ncheck\n^     ");
    // The line's own LF is a column, so a location on it is the last one.
    EXPECT_EQ(render(source, MessageLevel::Warning, 5), "q.zmf:1:6 warning: bad thing\ncheck\n     ^");
    EXPECT_EQ(render(source, MessageLevel::Info, 8), "q.zmf:2:3 info: bad thing\nmate\n  ^  ");
    // A last line without LF gets one, and a location past the end sits on the last byte.
    EXPECT_EQ(render(source, MessageLevel::Note, 500), "q.zmf:3:2 note: bad thing\nab\n ^");
    EXPECT_EQ(render(source, static_cast<MessageLevel>(4), 11), "q.zmf:3:1 ???: bad thing\nab\n^ ");
}

TEST(RenderMessage, WithoutLocationShowsFirstLine) {
    QuerySource source = oneSource("find check\nmate\n");
    EXPECT_EQ(render(source, MessageLevel::Error, std::nullopt),
              "???:0:0 error: bad thing\nfind check\n^          ");
}

TEST(RenderMessage, EmptySourceGivesHeadLineOnly) {
    QuerySource source;
    EXPECT_EQ(render(source, MessageLevel::Error, 3), "???:0:0 error: bad thing\n");
    EXPECT_EQ(render(source, MessageLevel::Warning, std::nullopt), "???:0:0 warning: bad thing\n");
}

TEST(RenderMessage, LocationInLaterSourceIsRelativeToIt) {
    QuerySource source;
    source.add("<option>", "a = 1;");
    source.add("q.zmf", " check\nmate x\n");
    // The joined line is shown whole, the head line counts from the source's start.
    EXPECT_EQ(render(source, MessageLevel::Error, 7),
              "q.zmf:1:2 error: bad thing\na = 1; check\n       ^     ");
    EXPECT_EQ(render(source, MessageLevel::Error, 18), "q.zmf:2:6 error: bad thing\nmate x\n     ^ ");
    EXPECT_EQ(render(source, MessageLevel::Error, 2),
              "<option>:1:3 error: bad thing\na = 1; check\n  ^          ");
}

TEST(RenderMessage, SpansUnderlineOnlyFromTheirFirstLine) {
    // "let b = a + 2" starts at offset 10; "a + 2" is 18..22, "+" is 20.
    QuerySource source = oneSource("let a = 1\nlet b = a + 2\n");
    EXPECT_EQ(render(source, MessageLevel::Error, 20, {{18, 22}}),
              "q.zmf:2:11 error: bad thing\nlet b = a + 2\n        ~~^~~ ");
    // Begun on the line before, behind its end, or without an end: no tilde.
    EXPECT_EQ(
        render(source, MessageLevel::Error, 20, {{4, 22}, {22, 18}, {18, std::nullopt}, {std::nullopt, 22}}),
        "q.zmf:2:11 error: bad thing\nlet b = a + 2\n          ^   ");
    // A span running past the line stops at the end of the marker line.
    EXPECT_EQ(render(source, MessageLevel::Error, 10, {{14, 1000}}),
              "q.zmf:2:1 error: bad thing\nlet b = a + 2\n^   ~~~~~~~~~~");
}

TEST(RenderMessage, MultibyteCharactersTakeOneColumn) {
    // s ' ' = ' ' " é(5,6) €(7,8,9) x(10) " LF
    QuerySource source = oneSource("s = \"\xC3\xA9\xE2\x82\xACx\"\n");
    EXPECT_EQ(render(source, MessageLevel::Error, 10),
              "q.zmf:1:11 error: bad thing\ns = \"\xC3\xA9\xE2\x82\xACx\"\n       ^  ");
    // An offset inside a character marks that character.
    EXPECT_EQ(render(source, MessageLevel::Error, 8, {{5, 9}}),
              "q.zmf:1:9 error: bad thing\ns = \"\xC3\xA9\xE2\x82\xACx\"\n     ~^   ");
}

TEST(RenderMessage, LongLinesAreCutAroundTheCaret) {
    const std::string head = "q.zmf:1:";
    {
        // 80 columns with the LF: shown whole.
        std::string line = letters(79);
        EXPECT_EQ(render(oneSource(line + "\n"), MessageLevel::Error, 78),
                  head + "79 error: bad thing\n" + line + "\n" + blanks(78) + "^ ");
    }
    {
        // 81 columns: cut to the first 70 with a tail mark.
        std::string line = letters(80);
        EXPECT_EQ(render(oneSource(line + "\n"), MessageLevel::Error, 0),
                  head + "1 error: bad thing\n" + line.substr(0, 70) + " ...\n^" + blanks(69));
    }
    std::string line = letters(199);
    QuerySource source = oneSource(line + "\n");
    // Caret in the tenth column: window from the start.
    EXPECT_EQ(render(source, MessageLevel::Error, 9),
              head + "10 error: bad thing\n" + line.substr(0, 70) + " ...\n" + blanks(9) + "^" + blanks(60));
    // Caret near the end: the last 70 columns, LF included, and a head mark.
    EXPECT_EQ(
        render(source, MessageLevel::Error, 190),
        head + "191 error: bad thing\n... " + line.substr(130) + "\n" + blanks(4 + 60) + "^" + blanks(9));
    // The head mark starts with the first hidden column: caret on column
    // index 35 keeps the window at 0, index 36 moves it by one.
    EXPECT_EQ(render(source, MessageLevel::Error, 35),
              head + "36 error: bad thing\n" + line.substr(0, 70) + " ...\n" + blanks(35) + "^" + blanks(34));
    EXPECT_EQ(render(source, MessageLevel::Error, 36), head + "37 error: bad thing\n... " +
                                                           line.substr(1, 70) + " ...\n" + blanks(4 + 35) +
                                                           "^" + blanks(34));
    // Tildes are cut with the marker line.
    EXPECT_EQ(render(source, MessageLevel::Error, 100, {{60, 140}}),
              head + "101 error: bad thing\n... " + line.substr(65, 70) + " ...\n" + blanks(4) +
                  std::string(35, '~') + "^" + std::string(34, '~'));
}

TEST(RenderMessage, LongLineIsCutAtCharacterBoundaries) {
    // Columns cycle through one-, two- and three-byte characters.
    const std::vector<std::string> cycle = {"a", "\xC3\xA9", "\xE2\x82\xAC"};
    std::string line;
    std::vector<std::size_t> byteOfColumn;
    for (std::size_t i = 0; i < 150; ++i) {
        byteOfColumn.push_back(line.size());
        line += cycle[i % 3];
    }
    std::string window;
    for (std::size_t i = 65; i < 135; ++i) window += cycle[i % 3];
    // Column 101 of 151 (LF included), a two-byte character.
    Offset caret = byteOfColumn[100] + 1;
    EXPECT_EQ(render(oneSource(line + "\n"), MessageLevel::Error, caret),
              "q.zmf:1:" + std::to_string(caret + 1) + " error: bad thing\n... " + window + " ...\n" +
                  blanks(4 + 35) + "^" + blanks(34));
}

}  // namespace
}  // namespace tarnfold::zmf
