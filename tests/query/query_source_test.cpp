#include "query/query_source.h"

#include <gtest/gtest.h>

namespace tarnfold::zmf {
namespace {

std::string where(const QuerySource& source, Offset offset) { return locationText(source.locate(offset)); }

TEST(QuerySource, EmptyTextsAddNothingAndPaddingNeedsAPredecessor) {
    QuerySource source;
    source.pad(" ");
    EXPECT_EQ(source.add("a", ""), nullptr);
    EXPECT_TRUE(source.sources().empty());
    EXPECT_EQ(where(source, 0), "???:0:0");
    EXPECT_EQ(source.lineAt(5).first, "");

    source.add("first", "x");
    source.pad(" ");
    ASSERT_EQ(source.sources().size(), 2u);
    EXPECT_EQ(source.sources()[1].name, "<padding>");
    EXPECT_EQ(source.text(), "x ");
}

TEST(QuerySource, LocatesOffsetsRelativeToTheirPieceAcrossSharedLines) {
    QuerySource source;
    source.add("<injected-text>", "flip{");               // 0..4
    source.pad(" ");                                      // 5
    source.add("<injected-text>", "player white \"A\"");  // 6..21
    source.pad("\n");                                     // 22
    source.add("q.zmf", "check\n  mate\nwtm");            // 23..38
    source.add("<injected-text>", "}");                   // 39

    ASSERT_EQ(source.lines().size(), 4u);
    EXPECT_EQ(source.lines()[0].start, 0u);
    EXPECT_EQ(source.lines()[0].length, 23u);
    EXPECT_EQ(source.lines()[3].start, 36u);
    EXPECT_EQ(source.lines()[3].length, 4u);  // "wtm}": a line spanning two pieces

    EXPECT_EQ(where(source, 0), "<injected-text>:1:1");
    EXPECT_EQ(where(source, 6), "<injected-text>:1:1");
    EXPECT_EQ(where(source, 13), "<injected-text>:1:8");
    EXPECT_EQ(where(source, 22), "<padding>:1:1");
    EXPECT_EQ(where(source, 23), "q.zmf:1:1");
    EXPECT_EQ(where(source, 31), "q.zmf:2:3");
    EXPECT_EQ(where(source, 38), "q.zmf:3:3");
    EXPECT_EQ(where(source, 39), "<injected-text>:1:1");
    // Past the end: placed on the last byte.
    EXPECT_EQ(where(source, 1000), "<injected-text>:1:1");

    EXPECT_EQ(source.entryAt(38)->name, "q.zmf");
    EXPECT_EQ(source.entryAt(39)->ordinal, 5u);
    EXPECT_EQ(source.entryAt(999)->ordinal, 5u);

    auto [line, start] = source.lineAt(30);
    EXPECT_EQ(line, "  mate\n");
    EXPECT_EQ(start, 29u);
    EXPECT_EQ(source.lineAt(39).first, "wtm}");
}

TEST(QuerySource, LineEndingPiecesAndLfPositions) {
    QuerySource source;
    source.add("a", "ab\n");
    source.add("b", "\ncd");
    ASSERT_EQ(source.lines().size(), 3u);
    EXPECT_EQ(where(source, 2), "a:1:3");  // the LF itself
    EXPECT_EQ(where(source, 3), "b:1:1");  // an empty line that starts piece b
    EXPECT_EQ(where(source, 5), "b:2:2");
    EXPECT_EQ(source.lineAt(3).first, "\n");
}

}  // namespace
}  // namespace tarnfold::zmf
