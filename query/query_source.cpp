#include "query/query_source.h"

#include <algorithm>

namespace tarnfold::zmf {

std::string locationText(const SourceLocation& location) {
    return location.name + ":" + std::to_string(location.line) + ":" + std::to_string(location.column);
}

const SourceEntry* QuerySource::add(std::string_view name, std::string_view text) {
    if (text.empty()) return nullptr;
    // The record of an unfinished last line is provisional: it is written
    // again once this piece has extended or finished the line.
    if (currentLineLength_ > 0) lines_.pop_back();

    SourceEntry entry;
    entry.name = std::string(name);
    entry.firstOffset = text_.size();
    entry.firstLine = lines_.size();
    entry.startColumn = currentLineLength_;
    entry.length = text.size();
    entry.ordinal = sources_.size();

    text_.append(text);
    for (char c : text) {
        ++currentLineLength_;
        if (c == '\n') {
            lines_.push_back({currentLineStart_, currentLineLength_});
            currentLineStart_ += currentLineLength_;
            currentLineLength_ = 0;
        }
    }
    if (currentLineLength_ > 0) lines_.push_back({currentLineStart_, currentLineLength_});

    sources_.push_back(std::move(entry));
    return &sources_.back();
}

void QuerySource::pad(std::string_view text) {
    if (!sources_.empty()) add("<padding>", text);
}

const SourceEntry* QuerySource::entryAt(Offset offset) const {
    for (const SourceEntry& entry : sources_)
        if (entry.firstOffset + entry.length > offset) return &entry;
    return sources_.empty() ? nullptr : &sources_.back();
}

Offset QuerySource::capped(Offset offset) const { return std::min<Offset>(offset, text_.size() - 1); }

std::size_t QuerySource::lineIndexAt(Offset offset) const {
    auto after = std::upper_bound(lines_.begin(), lines_.end(), offset,
                                  [](Offset value, const Line& line) { return value < line.start; });
    return static_cast<std::size_t>(after - lines_.begin()) - 1;
}

SourceLocation QuerySource::locate(Offset offset) const {
    if (text_.empty()) return SourceLocation{};
    offset = capped(offset);
    const SourceEntry* entry = entryAt(offset);
    std::size_t lineIndex = lineIndexAt(offset);
    SourceLocation location;
    location.name = entry->name;
    location.line = lineIndex - entry->firstLine + 1;
    location.column = offset - lines_[lineIndex].start + 1;
    if (lineIndex == entry->firstLine) location.column -= entry->startColumn;
    return location;
}

std::pair<std::string_view, Offset> QuerySource::lineAt(Offset offset) const {
    if (text_.empty()) return {std::string_view(), 0};
    const Line& line = lines_[lineIndexAt(capped(offset))];
    return {std::string_view(text_).substr(line.start, line.length), line.start};
}

}  // namespace tarnfold::zmf
