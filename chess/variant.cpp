#include "chess/variant.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarnfold {

namespace {

constexpr std::array<std::string_view, 12> variantNames = {
    "Standard", "Crazyhouse", "Chess960", "Horde",  "King of the Hill", "Three-Check",
    "Suicide",  "Giveaway",   "Losers",   "Atomic", "Racing Kings",     "unknown",
};

// "illegal" and "from position" turn up in the Variant tag of files written by
// other programs and mean standard rules.
constexpr std::pair<std::string_view, Variant> acceptedNames[] = {
    {"standard", Standard},
    {"chess", Standard},
    {"classical", Standard},
    {"normal", Standard},
    {"illegal", Standard},
    {"from position", Standard},
    {"crazyhouse", Crazyhouse},
    {"crazy house", Crazyhouse},
    {"house", Crazyhouse},
    {"zh", Crazyhouse},
    {"chess960", Chess960},
    {"fischerandom", Chess960},
    {"horde", Horde},
    {"horde chess", Horde},
    {"king of the hill", KingOfTheHill},
    {"kingofthehill", KingOfTheHill},
    {"koth", KingOfTheHill},
    {"three-check", ThreeCheck},
    {"three check", ThreeCheck},
    {"threecheck", ThreeCheck},
    {"three check chess", ThreeCheck},
    {"3-check", ThreeCheck},
    {"3check", ThreeCheck},
    {"suicide", Suicide},
    {"suicide chess", Suicide},
    {"giveaway", Giveaway},
    {"giveaway chess", Giveaway},
    {"give away", Giveaway},
    {"give away chess", Giveaway},
    {"antichess", Giveaway},
    {"losers", Losers},
    {"atomic", Atomic},
    {"atomic chess", Atomic},
    {"atom", Atomic},
    {"racing kings", RacingKings},
    {"racing", RacingKings},
    {"race", RacingKings},
    {"racingkings", RacingKings},
};

}  // namespace

std::string_view variantName(Variant variant) {
    return variant < variantNames.size() ? variantNames[variant] : "???";
}

Variant variantFromName(std::string text) {
    // ASCII only: the accepted names are, and a locale must not change the answer.
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; });
    for (const auto& [name, variant] : acceptedNames)
        if (name == text) return variant;
    return Unknown;
}

}  // namespace tarnfold
