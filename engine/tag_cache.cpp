#include "engine/tag_cache.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <utility>

namespace tarnfold::zmf {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// The rating systems in the order in which a game's ratings are preferred.
constexpr std::array<std::string_view, 7> ratingSystems = {"Elo", "Rating", "Rapid", "ICCF", "USCF", "DWZ", "BCF"};

// Where a tag ranks among the ratings of one side: the index of its system,
// or the number of systems when it names none.
size_t ratingRank(std::string_view rest) {
    size_t rank = 0;
    while (rank < ratingSystems.size() && !rest.starts_with(ratingSystems[rank])) ++rank;
    return rank;
}

// The best rating of one side seen so far in the pass.
struct RatingChoice {
    size_t rank = ratingSystems.size();
    std::optional<uint32_t> value;

    // A better system wins; of one system the later tag does.
    void offer(std::string_view rest, const std::string& text) {
        const size_t offered = ratingRank(rest);
        if (offered > rank || offered == ratingSystems.size()) return;
        if (const std::optional<uint32_t> rating = PGN::ratingOf(text)) {
            rank = offered;
            value = rating;
        }
    }
};

ZmfString cached(const std::string* text) { return text ? makeZmfString(*text) : nullptr; }

}  // namespace

std::optional<uint32_t> yearOfDate(std::string_view date) {
    if (date.size() < 4) return std::nullopt;
    for (size_t i = 0; i < 4; ++i)
        if (!isDigit(date[i])) return std::nullopt;
    if (date.size() > 4 && isDigit(date[4])) return std::nullopt;
    uint32_t year = 0;
    for (size_t i = 0; i < 4; ++i) year = year * 10 + uint32_t(date[i] - '0');
    return year;
}

void TagCache::bind(const std::vector<PGN::GameTag>& tags) {
    tags_ = &tags;
    filled_ = false;
    bothMade_ = false;
}

// The pass only notes which tag gives each value; the strings are made at
// the end, once each, however often a tag is repeated.
void TagCache::fill() {
    filled_ = true;
    const std::string *white = nullptr, *black = nullptr, *site = nullptr, *event = nullptr, *eco = nullptr,
                      *date = nullptr, *utcDate = nullptr, *eventDate = nullptr;
    RatingChoice whiteRating, blackRating;
    if (tags_) {
        for (const PGN::GameTag& tag : *tags_) {
            const std::string_view name = tag.name;
            if (name == "White") {
                white = &tag.value;
            } else if (name == "Black") {
                black = &tag.value;
            } else if (name == "Site") {
                site = &tag.value;
            } else if (name == "Event") {
                event = &tag.value;
            } else if (name == "ECO") {
                eco = &tag.value;
            } else if (name == "EventDate") {
                eventDate = &tag.value;
            } else if (name == "Date") {
                date = &tag.value;
            } else if (name == "UTCDate") {
                // Only in place of a Date, wherever the Date stands.
                if (!utcDate) utcDate = &tag.value;
            } else if (name.starts_with("White")) {
                whiteRating.offer(name.substr(5), tag.value);
            } else if (name.starts_with("Black")) {
                blackRating.offer(name.substr(5), tag.value);
            }
        }
    }
    if (!date) date = utcDate;
    values_.white = cached(white);
    values_.black = cached(black);
    values_.site = cached(site);
    values_.event = cached(event);
    values_.eco = cached(eco);
    values_.date = cached(date);
    values_.eventDate = cached(eventDate);
    values_.whiteElo = whiteRating.value;
    values_.blackElo = blackRating.value;
    values_.year = date ? yearOfDate(*date) : std::nullopt;
}

const ZmfString& TagCache::bothPlayers() {
    if (bothMade_) return bothPlayers_;
    bothMade_ = true;
    const TagValues& names = values();
    bothPlayers_ = nullptr;
    if (!names.white || !names.black) return bothPlayers_;
    icu::UnicodeString text(names.white->text());
    text.append(char16_t(u'\n')).append(names.black->text());
    bothPlayers_ = makeZmfStringFromUnicode(std::move(text));
    return bothPlayers_;
}

}  // namespace tarnfold::zmf
