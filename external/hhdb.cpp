#include "external/hhdb.h"

#include <charconv>

namespace tarnfold::zmf {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// A rank of an award: digits that begin with 1 to 9, at most 10000.
bool readRank(std::string_view text, std::size_t& at, std::int64_t& rank) {
    if (at >= text.size() || text[at] < '1' || text[at] > '9') return false;
    rank = 0;
    for (; at < text.size() && isDigit(text[at]); ++at) {
        rank = rank * 10 + (text[at] - '0');
        if (rank > 10000) return false;
    }
    return true;
}

}  // namespace

std::string_view hhdbMarker(std::uint32_t code) {
    // A cook or a minor dual may carry more text before its ">".
    static constexpr std::string_view markers[] = {"<cook", "<eg>", "<main>", "<or>", "<minor_dual"};
    return code < std::size(markers) ? markers[code] : std::string_view();
}

std::string_view hhdbStatusCode(std::uint32_t code) {
    static constexpr std::string_view codes[] = {"(c)", "(m)", "(v)", "(s)", "AN", "CR", "MC", "PH",
                                                 "TE",  "TT",  "TW",  "U1",  "U2", "U3", "U4", "U5"};
    return code >= 23 && code - 23 < std::size(codes) ? codes[code - 23] : std::string_view();
}

bool hhdbHasUnsoundMark(std::string_view black, std::string_view digits) {
    for (std::size_t at = 0; at + 1 < black.size(); ++at)
        if (black[at] == 'U' && digits.find(black[at + 1]) != std::string_view::npos) return true;
    return false;
}

bool hhdbSound(const std::optional<std::string>& black, bool cooked) {
    if (!black || black->empty()) return true;
    if (hhdbHasUnsoundMark(*black, "345")) return false;
    return !(cooked && hhdbHasUnsoundMark(*black, "12"));
}

bool hhdbUnsound(const std::optional<std::string>& black, bool cooked) {
    return cooked || (black && hhdbHasUnsoundMark(*black, "12345"));
}

std::optional<std::int64_t> hhdbAward(std::string_view event, const HHDBAwardForm& form) {
    std::size_t at = 0;
    std::int64_t first = 1, last = 10000;
    if (!event.empty() && event[0] >= '1' && event[0] <= '9') {
        if (!readRank(event, at, first)) return std::nullopt;
        last = first;
        if (at < event.size() && event[at] == '/') {
            ++at;
            if (!readRank(event, at, last) || last <= first) return std::nullopt;
        }
    }
    const std::string_view rest = event.substr(at);
    bool special = false;
    if (rest.starts_with("sp")) {
        special = true;
        at += 2;
    } else if (rest.starts_with(".sp")) {
        special = true;
        at += 3;
    }
    if (at >= event.size() || event[at] != '.') return std::nullopt;
    const std::string_view kindText = event.substr(at + 1);
    std::uint32_t kind = 0;
    if (kindText.starts_with("p"))
        kind = 1;
    else if (kindText.starts_with("hm"))
        kind = 2;
    else if (kindText.starts_with("c"))
        kind = 3;
    else
        return std::nullopt;
    if ((form.special && !special) || (form.nonspecial && special) || (form.kind != 0 && form.kind != kind))
        return std::nullopt;
    if (form.sortable) return (std::int64_t(special) + 2 * std::int64_t(kind)) * 10000000000 + first * 100000 + last;
    return form.max ? last : first;
}

std::optional<std::string> hhdbCommentField(std::string_view comment, std::string_view name) {
    std::size_t start = 0;
    for (;;) {
        std::size_t end = comment.find(';', start);
        if (end == std::string_view::npos) end = comment.size();
        const std::string_view field = trimmed(comment.substr(start, end - start));
        if (field.size() > name.size() && field.starts_with(name) && field[name.size()] == ':')
            return std::string(trimmed(field.substr(name.size() + 1)));
        if (end == comment.size()) return std::nullopt;
        start = end + 1;
    }
}

std::optional<std::string> hhdbGbrSection(std::string_view gbr, std::uint32_t code) {
    gbr = trimmed(gbr);
    const std::size_t blank = gbr.find_first_of(" \t");
    const std::string_view material = gbr.substr(0, blank);
    const std::string_view kings = blank == std::string_view::npos ? std::string_view() : trimmed(gbr.substr(blank));
    const std::size_t dot = material.find('.');
    std::string_view section;
    switch (code) {
        case 15: section = gbr; break;
        case 16: section = kings; break;
        case 17: section = material.substr(0, dot); break;
        case 18: section = material; break;
        case 19: section = dot == std::string_view::npos ? std::string_view() : material.substr(dot + 1); break;
        default: return std::nullopt;
    }
    if (section.empty()) return std::nullopt;
    return std::string(section);
}

std::optional<std::string> hhdbComposer(const std::optional<std::string>& white,
                                        const std::optional<std::string>& black,
                                        const std::optional<std::string>& firstComment) {
    if (black && firstComment && black->find("MC") != std::string::npos)
        if (std::optional<std::string> all = hhdbCommentField(*firstComment, "composer")) return all;
    return white;
}

std::optional<std::int64_t> hhdbNumber(std::string_view field) {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
    if (field.empty() || error != std::errc() || end != field.data() + field.size()) return std::nullopt;
    return value;
}

}  // namespace tarnfold::zmf
