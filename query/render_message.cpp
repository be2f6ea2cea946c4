#include "query/render_message.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace tarnfold::zmf {
namespace {

// Long lines are shown through a window of this many columns, with the caret
// kept this far from its left edge where the line allows.
constexpr std::size_t kLongLine = 81;
constexpr std::size_t kWindow = 70;
constexpr std::size_t kCaretLead = 35;

bool isContinuationByte(char c) {
    auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 && byte <= 0xBF;
}

// A column is a character: the byte index within the line at which each
// column starts.
class LineColumns {
public:
    LineColumns(std::string_view line, Offset lineStart) : lineStart_(lineStart) {
        for (std::size_t i = 0; i < line.size(); ++i)
            if (!isContinuationByte(line[i])) starts_.push_back(i);
    }

    std::size_t width() const { return starts_.size(); }

    // The column of the character holding the byte at the offset; a stray
    // continuation byte at the head of the line falls into column 0.
    std::size_t columnOf(Offset offset) const {
        std::size_t inLine = static_cast<std::size_t>(offset - lineStart_);
        auto after = std::upper_bound(starts_.begin(), starts_.end(), inLine);
        return after == starts_.begin() ? 0 : static_cast<std::size_t>(after - starts_.begin()) - 1;
    }

    // Byte index at which the column starts; the line's size past the last one.
    std::size_t byteOf(std::size_t column, std::size_t lineSize) const {
        return column < starts_.size() ? starts_[column] : lineSize;
    }

private:
    Offset lineStart_;
    std::vector<std::size_t> starts_;
};

}  // namespace

std::string renderMessage(const QuerySource& source, const Message& message) {
    SourceLocation where = message.location ? source.locate(*message.location) : SourceLocation{};
    std::string out = locationText(where);
    out += ' ';
    out += messageLevelWord(message.level);
    out += ": ";
    out += messageText(message);
    out += '\n';

    // Without a location the first line of the query is shown.
    Offset location = message.location.value_or(0);
    auto [sourceLine, lineStart] = source.lineAt(location);
    if (sourceLine.empty()) return out;
    location = std::min<Offset>(location, source.text().size() - 1);
    const Offset lineEnd = lineStart + sourceLine.size();

    LineColumns columns(sourceLine, lineStart);
    const std::size_t width = columns.width();
    std::string marker(width, ' ');

    for (const SourceSpan& span : message.spans) {
        if (!span.begin || !span.end) continue;
        Offset begin = *span.begin;
        Offset end = *span.end;
        if (begin < lineStart || begin >= lineEnd || begin > end) continue;
        Offset last = std::min<Offset>(end, lineEnd - 1);
        for (Offset offset = begin; offset <= last; ++offset) marker[columns.columnOf(offset)] = '~';
    }

    std::size_t caret = 0;
    if (width > 0) {
        caret = std::min(columns.columnOf(location), width - 1);
        marker[caret] = '^';
    }

    std::string shownLine(sourceLine);
    if (width >= kLongLine) {
        std::size_t start = caret >= kCaretLead ? caret - kCaretLead : 0;
        bool tailMark = true;
        if (width - start < kWindow) {
            start = width - kWindow;
            tailMark = false;
        }
        std::size_t firstByte = columns.byteOf(start, sourceLine.size());
        std::size_t endByte = columns.byteOf(start + kWindow, sourceLine.size());
        shownLine = std::string(sourceLine.substr(firstByte, endByte - firstByte));
        marker = marker.substr(start, kWindow);
        // The mark goes behind the last character shown, not behind the
        // line's own LF when the window happens to reach it.
        if (tailMark)
            shownLine.insert(shownLine.back() == '\n' ? shownLine.size() - 1 : shownLine.size(), " ...");
        // Only a caret beyond the lead moves the window off the line's start;
        // a window shifted back from the end still starts beyond it.
        if (caret > kCaretLead) {
            shownLine.insert(0, "... ");
            marker.insert(0, "    ");
        }
    }

    out += shownLine;
    if (shownLine.back() != '\n') out += '\n';
    out += marker;
    return out;
}

}  // namespace tarnfold::zmf
