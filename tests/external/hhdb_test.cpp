// What hhdb reads of a study's tags and first comment.

#include <gtest/gtest.h>

#include "external/hhdb.h"

namespace tarnfold::zmf {
namespace {

std::optional<std::int64_t> award(std::string_view event, HHDBAwardForm form = {}) { return hhdbAward(event, form); }

TEST(HHDBAward, RanksSpecialAndKindAreReadFromTheEvent) {
    HHDBAwardForm sortable;
    sortable.sortable = true;
    // (special + 2 * kind) * 10^10 + first * 10^5 + last
    EXPECT_EQ(award("2/5.sp.c", sortable), 70000200005);
    EXPECT_EQ(award("2/5.sp.c"), 2);
    HHDBAwardForm max;
    max.max = true;
    EXPECT_EQ(award("2/5.sp.c", max), 5);
    EXPECT_EQ(award("1.p", sortable), 20000100001);
    EXPECT_EQ(award("3sp.hm", sortable), 50000300003);
    EXPECT_EQ(award("12.hm Memorial", max), 12);
    // Without ranks: first to the last there can be.
    EXPECT_EQ(award(".c", sortable), 60000110000);
    EXPECT_EQ(award(".c", max), 10000);
    EXPECT_EQ(award("10000.p"), 10000);
}

TEST(HHDBAward, TextThatIsNoAwardGivesNothing) {
    for (std::string_view event : {"", "Olympiad", "10001.p", "5/3.p", "5/5.p", "2/.p", "2/0.p", "0.p", "2.x",
                                   "2.", "2sp", "2 .p", "2.sp"})
        EXPECT_EQ(award(event), std::nullopt) << event;
}

TEST(HHDBAward, TheFormChoosesWhichAwardsCount) {
    HHDBAwardForm special;
    special.special = true;
    EXPECT_EQ(award("2/5.sp.c", special), 2);
    EXPECT_EQ(award("2/5.c", special), std::nullopt);
    HHDBAwardForm nonspecial;
    nonspecial.nonspecial = true;
    EXPECT_EQ(award("2/5.sp.c", nonspecial), std::nullopt);
    EXPECT_EQ(award("2/5.c", nonspecial), 2);
    for (std::uint32_t kind = 1; kind <= 3; ++kind) {
        HHDBAwardForm form;
        form.kind = kind;
        EXPECT_EQ(award("4.p", form), kind == 1 ? std::optional<std::int64_t>(4) : std::nullopt);
        EXPECT_EQ(award("4.hm", form), kind == 2 ? std::optional<std::int64_t>(4) : std::nullopt);
        EXPECT_EQ(award("4.c", form), kind == 3 ? std::optional<std::int64_t>(4) : std::nullopt);
    }
}

TEST(HHDBStatus, SoundUnsoundAndDualReadTheBlackTag) {
    const std::optional<std::string> none;
    EXPECT_TRUE(hhdbSound(none, true));
    EXPECT_TRUE(hhdbSound(std::string(""), true));
    EXPECT_TRUE(hhdbSound(std::string("U1 (c)"), false));
    EXPECT_FALSE(hhdbSound(std::string("U1 (c)"), true));
    EXPECT_FALSE(hhdbSound(std::string("(v) U4"), false));
    EXPECT_TRUE(hhdbSound(std::string("U6 UX u3"), true));

    EXPECT_TRUE(hhdbUnsound(none, true));
    EXPECT_FALSE(hhdbUnsound(none, false));
    EXPECT_TRUE(hhdbUnsound(std::string("TT U2"), false));
    EXPECT_TRUE(hhdbUnsound(std::string("U5"), false));
    EXPECT_FALSE(hhdbUnsound(std::string("U6 AN"), false));

    EXPECT_TRUE(hhdbHasUnsoundMark("AN U2", "12"));
    EXPECT_FALSE(hhdbHasUnsoundMark("AN U3", "12"));
    EXPECT_FALSE(hhdbHasUnsoundMark("U", "12"));

    EXPECT_EQ(hhdbStatusCode(23), "(c)");
    EXPECT_EQ(hhdbStatusCode(32), "TT");
    EXPECT_EQ(hhdbStatusCode(38), "U5");
    EXPECT_EQ(hhdbStatusCode(22), "");
    EXPECT_EQ(hhdbStatusCode(39), "");
    EXPECT_EQ(hhdbMarker(0), "<cook");
    EXPECT_EQ(hhdbMarker(4), "<minor_dual");
    EXPECT_EQ(hhdbMarker(5), "");
}

TEST(HHDBFirstComment, FieldsAreNamedAtTheStartOrAfterASemicolon) {
    const std::string comment =
        "diagram: 12a; egdiagram: 341;  gbr: 0130.12 g1a8 ;search:KRB; stipulation: + ; note: the stipulation: =";
    EXPECT_EQ(hhdbCommentField(comment, "diagram"), "12a");
    EXPECT_EQ(hhdbCommentField(comment, "egdiagram"), "341");
    EXPECT_EQ(hhdbCommentField(comment, "gbr"), "0130.12 g1a8");
    EXPECT_EQ(hhdbCommentField(comment, "search"), "KRB");
    EXPECT_EQ(hhdbCommentField(comment, "stipulation"), "+");
    EXPECT_EQ(hhdbCommentField(comment, "composer"), std::nullopt);
    EXPECT_EQ(hhdbCommentField("a study without fields", "diagram"), std::nullopt);
    EXPECT_EQ(hhdbCommentField("stipulation:", "stipulation"), "");

    EXPECT_EQ(hhdbNumber("341"), 341);
    EXPECT_EQ(hhdbNumber("34a"), std::nullopt);
    EXPECT_EQ(hhdbNumber(""), std::nullopt);
}

TEST(HHDBFirstComment, TheGbrFieldHasItsSections) {
    EXPECT_EQ(hhdbGbrSection("0130.12 g1a8", 15), "0130.12 g1a8");
    EXPECT_EQ(hhdbGbrSection("0130.12 g1a8", 16), "g1a8");
    EXPECT_EQ(hhdbGbrSection("0130.12 g1a8", 17), "0130");
    EXPECT_EQ(hhdbGbrSection("0130.12 g1a8", 18), "0130.12");
    EXPECT_EQ(hhdbGbrSection("0130.12 g1a8", 19), "12");
    EXPECT_EQ(hhdbGbrSection("0400", 16), std::nullopt);
    EXPECT_EQ(hhdbGbrSection("0400", 17), "0400");
    EXPECT_EQ(hhdbGbrSection("0400", 19), std::nullopt);
    EXPECT_EQ(hhdbGbrSection("0400", 20), std::nullopt);
}

TEST(HHDBFirstComment, ComposersBeyondTheWhiteTagStandInTheComment) {
    const std::optional<std::string> white = "A. Troitzky", none;
    EXPECT_EQ(hhdbComposer(white, none, std::string("composer: A. Troitzky, B. Kasparyan")), white);
    EXPECT_EQ(hhdbComposer(white, std::string("MC"), std::string("composer: A. Troitzky, B. Kasparyan")),
              "A. Troitzky, B. Kasparyan");
    EXPECT_EQ(hhdbComposer(white, std::string("MC"), std::string("diagram: 3")), white);
    EXPECT_EQ(hhdbComposer(none, std::string("MC"), none), none);
}

}  // namespace
}  // namespace tarnfold::zmf
