#include <gtest/gtest.h>

#include "chess/board.h"

namespace tarnfold {
namespace {

TEST(Diagram, PlainLettersAndGlyphs) {
    Board board;
    board.setStartPosition();
    EXPECT_EQ(board.boardDiagram(),
              "8 r n b q k b n r \n"
              "7 p p p p p p p p \n"
              "6 . . . . . . . . \n"
              "5 . . . . . . . . \n"
              "4 . . . . . . . . \n"
              "3 . . . . . . . . \n"
              "2 P P P P P P P P \n"
              "1 R N B Q K B N R \n"
              "  a b c d e f g h\n");
    ASSERT_TRUE(board.setFen("7k/8/8/8/8/8/8/K7 w - - 0 1"));
    const std::string glyphs = board.boardDiagram(true);
    EXPECT_EQ(glyphs.substr(0, 21), "8 . . . . . . . \u265A \n");
    EXPECT_EQ(glyphs.substr(glyphs.size() - 39), "1 \u2654 . . . . . . . \n  a b c d e f g h\n");
}

ColoredDiagramOptions colors() {
    ColoredDiagramOptions options;
    options.fileLetters = false;
    options.rankLeft = false;
    for (int bits = 0; bits < 8; ++bits) {
        options.background[0][bits] = std::to_string(200 + bits);  // light
        options.background[1][bits] = std::to_string(100 + bits);  // dark
    }
    return options;
}

std::string cell(const std::string& background, const std::string& foreground, const std::string& text) {
    std::string out;
    if (!background.empty()) out += "\033[48;5;" + background + "m";
    return out + "\033[38;5;" + foreground + "m" + text + "\033[m";
}

TEST(Diagram, ColoredRankLine) {
    Board board;
    ASSERT_TRUE(board.setFen("r6k/8/8/8/8/8/8/K7 w - - 0 1"));
    ColoredDiagramOptions options = colors();
    options.highlights[0] = squareBit(B8);
    options.highlights[2] = squareBit(B8) | squareBit(H8);
    const std::string out = board.boardDiagramColored(options);
    // a8 light, b8 dark in sets 0 and 2, c8 light, ..., h8 dark in set 2.
    const std::string bg[8] = {"200", "105", "200", "100", "200", "100", "200", "104"};
    std::string rank8 = cell("", bg[0], "\u2590");
    for (int file = 0; file < 8; ++file) {
        const std::string text = file == 0 ? "r " : file == 7 ? "k " : "  ";
        rank8 += cell(bg[file], file == 0 || file == 7 ? "232" : "255", text);
        rank8 += cell(file < 7 ? bg[file + 1] : "", bg[file], "\u258C");
    }
    rank8 += "\n";
    ASSERT_GE(out.size(), rank8.size());
    EXPECT_EQ(out.substr(0, rank8.size()), rank8);
    size_t lines = 0;
    for (char c : out) lines += c == '\n';
    EXPECT_EQ(lines, 8u);
}

TEST(Diagram, ColoredFrame) {
    Board board;
    ASSERT_TRUE(board.setFen("8/8/8/8/8/8/8/K7 w - - 0 1"));
    ColoredDiagramOptions options = colors();
    options.fileLetters = options.rankLeft = options.rankRight = true;
    options.glyphs = true;
    const std::string out = board.boardDiagramColored(options);
    const std::string letters = "   a  b  c  d  e  f  g  h \n";
    EXPECT_EQ(out.substr(0, letters.size()), letters);
    EXPECT_EQ(out.substr(out.size() - letters.size()), letters);
    EXPECT_EQ(out.substr(letters.size(), 2), "8 ");
    // Rank 1 begins with a dark a1 holding the white king glyph.
    const std::string rank1 = "1 " + cell("", "100", "\u2590") + cell("100", "255", "\u2654 ");
    EXPECT_NE(out.find(rank1), std::string::npos);
    EXPECT_NE(out.find(cell("", "200", "\u258C") + " 1\n"), std::string::npos);
}

}  // namespace
}  // namespace tarnfold
