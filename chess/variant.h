#pragma once

// The rule sets a Board can play by, and their names as they appear in PGN
// Variant tags and on the command line.

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnfold {

enum Variant : uint32_t {
    Standard = 0,
    Crazyhouse = 1,
    Chess960 = 2,
    Horde = 3,
    KingOfTheHill = 4,
    ThreeCheck = 5,
    Suicide = 6,
    Giveaway = 7,
    Losers = 8,
    Atomic = 9,
    RacingKings = 10,
    Unknown = 11
};

// The printed name; "???" for a value above Unknown.
std::string_view variantName(Variant variant);

// Looks the lower-cased text up among the accepted names; Unknown if absent.
// Aliases from the command line are the caller's business and come first.
Variant variantFromName(std::string text);

}  // namespace tarnfold
