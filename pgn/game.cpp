#include "pgn/game.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <limits>
#include <string_view>

namespace tarnfold::PGN {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// "1999.??.??" has a year, "19995" and "199" have none.
std::optional<uint32_t> yearOf(std::string_view date) {
    if (date.size() < 4) return std::nullopt;
    for (size_t i = 0; i < 4; ++i)
        if (!isDigit(date[i])) return std::nullopt;
    if (date.size() > 4 && isDigit(date[4])) return std::nullopt;
    uint32_t year = 0;
    for (size_t i = 0; i < 4; ++i) year = year * 10 + uint32_t(date[i] - '0');
    return year;
}

void setDate(const std::string& value, GameInfo& info) {
    info.date = value;
    if (auto year = yearOf(value)) info.year = year;
}

// Rating tags come in families: WhiteElo, BlackRating, WhiteUSCF and so on.
std::optional<uint32_t>* ratingField(std::string_view name, GameInfo& info) {
    static constexpr std::array<std::string_view, 7> systems = {"Elo",  "Rating", "Rapid", "ICCF",
                                                                "USCF", "DWZ",    "BCF"};
    std::optional<uint32_t>* field = nullptr;
    if (name.starts_with("White")) {
        field = &info.whiteElo;
    } else if (name.starts_with("Black")) {
        field = &info.blackElo;
    } else {
        return nullptr;
    }
    name.remove_prefix(5);
    for (std::string_view system : systems)
        if (name.starts_with(system)) return field;
    return nullptr;
}

}  // namespace

std::optional<uint32_t> ratingOf(const std::string& value) {
    if (value.empty()) return std::nullopt;
    char* end = nullptr;
    errno = 0;
    const long number = std::strtol(value.c_str(), &end, 10);
    if (errno != 0 || *end != '\0' || number <= 0) return std::nullopt;
    if (static_cast<unsigned long>(number) > std::numeric_limits<uint32_t>::max()) return std::nullopt;
    return static_cast<uint32_t>(number);
}

void extractGameInfo(const std::vector<GameTag>& tags, GameInfo& info) {
    // The record is reused from game to game: nothing of the last game stays.
    info = GameInfo{};
    for (const GameTag& tag : tags) {
        const std::string_view name = tag.name;
        if (name == "White") {
            info.white = tag.value;
        } else if (name == "Black") {
            info.black = tag.value;
        } else if (name == "Site") {
            info.site = tag.value;
        } else if (name == "ECO") {
            info.eco = tag.value;
        } else if (name == "Event") {
            info.event = tag.value;
        } else if (name == "EventDate") {
            info.eventDate = tag.value;
        } else if (name == "Date") {
            setDate(tag.value, info);
        } else if (name == "UTCDate") {
            // A Date wins whichever side of it the UTCDate stands.
            if (!info.date) setDate(tag.value, info);
        } else if (auto* field = ratingField(name, info)) {
            if (auto rating = ratingOf(tag.value)) *field = rating;
        }
    }
}

}  // namespace tarnfold::PGN
