#pragma once
// The whole text of a query, joined from its pieces (injected option text,
// the query file, padding, closing braces), with the map that turns a byte
// offset back into the piece, line and column it came from.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarnfold::zmf {

using Offset = std::uint64_t;
using OptionalOffset = std::optional<Offset>;

struct SourceLocation {
    std::string name = "???";
    std::uint64_t line = 0;    // from 1; 0 for the default location
    std::uint64_t column = 0;  // from 1; 0 for the default location
};

// "NAME:LINE:COLUMN"
std::string locationText(const SourceLocation& location);

struct SourceEntry {
    std::string name;
    Offset firstOffset = 0;
    std::size_t firstLine = 0;      // index into the line table
    std::uint64_t startColumn = 0;  // bytes of its first line that belong to earlier pieces
    std::uint64_t length = 0;
    std::size_t ordinal = 0;
};

class QuerySource {
public:
    struct Line {
        Offset start = 0;
        std::uint64_t length = 0;  // including the LF, when the line has one
    };

    // Appends a piece; an empty text adds nothing and gives null.
    const SourceEntry* add(std::string_view name, std::string_view text);
    // Joint between pieces: only once something stands before it.
    void pad(std::string_view text);

    const SourceEntry* entryAt(Offset offset) const;
    SourceLocation locate(Offset offset) const;
    // The whole line holding the offset, with its line end, and its first offset.
    std::pair<std::string_view, Offset> lineAt(Offset offset) const;

    const std::string& text() const { return text_; }
    const std::vector<SourceEntry>& sources() const { return sources_; }
    const std::vector<Line>& lines() const { return lines_; }
    bool empty() const { return text_.empty(); }

private:
    std::size_t lineIndexAt(Offset offset) const;
    Offset capped(Offset offset) const;

    std::vector<SourceEntry> sources_;
    std::vector<Line> lines_;
    std::string text_;
    Offset currentLineStart_ = 0;
    std::uint64_t currentLineLength_ = 0;
};

}  // namespace tarnfold::zmf
