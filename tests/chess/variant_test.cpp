#include "chess/variant.h"

#include <gtest/gtest.h>

#include <utility>

namespace tarnfold {
namespace {

TEST(Variant, PrintedNames) {
    EXPECT_EQ(variantName(Standard), "Standard");
    EXPECT_EQ(variantName(KingOfTheHill), "King of the Hill");
    EXPECT_EQ(variantName(ThreeCheck), "Three-Check");
    EXPECT_EQ(variantName(RacingKings), "Racing Kings");
    EXPECT_EQ(variantName(Unknown), "unknown");
    EXPECT_EQ(variantName(Variant(12)), "???");
}

TEST(Variant, AcceptedNamesInAnyCase) {
    const std::pair<const char*, int> names[] = {
        {"standard", 0},
        {"chess", 0},
        {"classical", 0},
        {"normal", 0},
        {"illegal", 0},
        {"from position", 0},
        {"crazyhouse", 1},
        {"crazy house", 1},
        {"house", 1},
        {"zh", 1},
        {"chess960", 2},
        {"fischerandom", 2},
        {"horde", 3},
        {"horde chess", 3},
        {"king of the hill", 4},
        {"kingofthehill", 4},
        {"koth", 4},
        {"three-check", 5},
        {"three check", 5},
        {"threecheck", 5},
        {"three check chess", 5},
        {"3-check", 5},
        {"3check", 5},
        {"suicide", 6},
        {"suicide chess", 6},
        {"giveaway", 7},
        {"giveaway chess", 7},
        {"give away", 7},
        {"give away chess", 7},
        {"antichess", 7},
        {"losers", 8},
        {"atomic", 9},
        {"atomic chess", 9},
        {"atom", 9},
        {"racing kings", 10},
        {"racing", 10},
        {"race", 10},
        {"racingkings", 10},
    };
    for (const auto& [name, value] : names) EXPECT_EQ(variantFromName(name), value) << name;
    EXPECT_EQ(variantFromName("Crazy House"), Crazyhouse);
    EXPECT_EQ(variantFromName("ATOMIC"), Atomic);
    EXPECT_EQ(variantFromName("wild"), Unknown);
    EXPECT_EQ(variantFromName(""), Unknown);
    EXPECT_EQ(variantFromName("chess "), Unknown);
    EXPECT_EQ(variantFromName("fischerrandom"), Unknown);
}

}  // namespace
}  // namespace tarnfold
