#include "chess/variant.h"

#include <gtest/gtest.h>

namespace tarnfold {
namespace {

// Every printed name, in any case, reads back as its own rule set, so that a
// name zmfi writes is one it accepts.
TEST(Variant, PrintedNamesReadBack) {
    for (uint32_t v = Standard; v < Unknown; ++v) {
        const std::string name(variantName(Variant(v)));
        std::string upper = name;
        for (char& c : upper) c = c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c;
        EXPECT_EQ(variantFromName(name), Variant(v)) << name;
        EXPECT_EQ(variantFromName(upper), Variant(v)) << upper;
    }
    EXPECT_EQ(variantName(Unknown), "unknown");
    EXPECT_EQ(variantName(Variant(12)), "???");
}

TEST(Variant, TagsOfOtherProgramsAndNearMisses) {
    // Written into the Variant tag by programs that mean standard rules.
    EXPECT_EQ(variantFromName("illegal"), Standard);
    EXPECT_EQ(variantFromName("From Position"), Standard);
    EXPECT_EQ(variantFromName("3check"), ThreeCheck);
    EXPECT_EQ(variantFromName("antichess"), Giveaway);
    EXPECT_EQ(variantFromName("fischerandom"), Chess960);
    EXPECT_EQ(variantFromName("fischerrandom"), Unknown);
    EXPECT_EQ(variantFromName("wild"), Unknown);
    EXPECT_EQ(variantFromName(""), Unknown);
    EXPECT_EQ(variantFromName("chess "), Unknown);
}

}  // namespace
}  // namespace tarnfold
