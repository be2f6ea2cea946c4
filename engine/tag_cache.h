#pragma once

// What the tag filters read of a game's tags: the players, the places, the
// dates and the ratings, found by one pass over the tags the first time a
// filter asks in a game, and kept as the strings the filters give, so that
// a filter evaluated at every position reads them without converting again.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pgn/game.h"
#include "query/zmf_string.h"

namespace tarnfold::zmf {

struct TagValues {
    // Null when the game has no such tag.
    ZmfString white, black, site, event, eco, date, eventDate;
    std::optional<uint32_t> whiteElo, blackElo;
    // From the date, when it begins with a four-digit year.
    std::optional<uint32_t> year;
};

class TagCache {
public:
    // A new game: nothing is read until a filter asks.
    void bind(const std::vector<PGN::GameTag>& tags);

    // Filled on the first call in a game.
    const TagValues& values() {
        if (!filled_) fill();
        return values_;
    }

    // The White name, a newline and the Black name; null unless both are
    // there. Made on the first call in a game.
    const ZmfString& bothPlayers();

private:
    void fill();

    const std::vector<PGN::GameTag>* tags_ = nullptr;
    bool filled_ = false;
    bool bothMade_ = false;
    TagValues values_;
    ZmfString bothPlayers_;
};

// The year of a date: four decimal digits at its start, not followed by a
// fifth.
std::optional<uint32_t> yearOfDate(std::string_view date);


}  // namespace tarnfold::zmf
