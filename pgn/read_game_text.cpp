#include <array>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <streambuf>
#include <string>

#include "pgn/game_result.h"
#include "pgn/pgn_parser.h"
#include "pgn/stream_get_area.h"

namespace tarnfold::PGN {

namespace {

inline bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// The cutter runs under the lock that all workers share, so it reads the
// stream buffer's characters where they lie (GetArea), a buffered run at a
// time, rather than one sbumpc and one push_back per character.

// What the cutter is inside of when a run of characters ends. A game's text
// may break anywhere between two runs, so every state the scan can be in is
// one of these.
enum class Within : uint8_t {
    MoveText,
    String,
    // After a backslash in a string: the next character is taken as it is.
    Escape,
    // After a quote inside a tag value: only blanks and then a ']' close it.
    AfterInnerQuote,
    // A '%' or ';' line, up to its newline.
    LineRest,
    // After a '<': dropped up to and including the next '>'.
    Angle,
    Brace,
};

class GameCut {
public:
    GameCut(std::string& text, PGNPosition& position, bool nestedComments)
        : text_(text), position_(position), nested_(nestedComments) {}

    // Consumes characters from [begin, end) and returns where it stopped: at
    // end, after the white space that follows a result, or in front of the '['
    // that opens the next game. done_ tells the last two apart from the first.
    const char* scan(const char* begin, const char* end);

    bool done() const { return done_; }
    bool nonSpace() const { return nonSpace_; }

private:
    const char* scanMoveText(const char* p, const char* end);
    const char* scanString(const char* p, const char* end);
    const char* scanAfterInnerQuote(const char* p, const char* end);
    // Passes over characters up to and including stop; false when the run
    // ended first.
    bool passUntil(const char*& p, const char* end, char stop);
    const char* scanBrace(const char* p, const char* end);

    void newline(const char* after) {
        ++lines_;
        lineStart_ = after;
    }

    std::string& text_;
    PGNPosition& position_;
    const bool nested_;
    Within within_ = Within::MoveText;
    int resultState_ = 0;
    int braceDepth_ = 0;
    bool inTagBrackets_ = false;
    bool seenMoveText_ = false;
    bool nonSpace_ = false;
    bool done_ = false;
    // Per run: the first character not yet copied, and the newlines seen.
    const char* keepFrom_ = nullptr;
    const char* lineStart_ = nullptr;
    uint64_t lines_ = 0;
};

const char* GameCut::scan(const char* begin, const char* end) {
    keepFrom_ = begin;
    lineStart_ = begin;
    lines_ = 0;
    const char* p = begin;
    while (p < end && !done_) {
        switch (within_) {
            case Within::MoveText: p = scanMoveText(p, end); break;
            case Within::String: p = scanString(p, end); break;
            case Within::Escape:
                if (*p++ == '\n') newline(p);
                within_ = Within::String;
                break;
            case Within::AfterInnerQuote: p = scanAfterInnerQuote(p, end); break;
            case Within::LineRest:
                if (passUntil(p, end, '\n')) within_ = Within::MoveText;
                break;
            case Within::Angle:
                if (passUntil(p, end, '>')) {
                    keepFrom_ = p;
                    within_ = Within::MoveText;
                }
                break;
            case Within::Brace: p = scanBrace(p, end); break;
        }
    }
    if (within_ != Within::Angle) text_.append(keepFrom_, p);
    position_.offset += static_cast<uint64_t>(p - begin);
    if (lines_ == 0) {
        position_.column += static_cast<uint64_t>(p - begin);
    } else {
        position_.line += lines_;
        position_.column = static_cast<uint64_t>(p - lineStart_);
    }
    return p;
}

// How the move-text scan treats a character. Most characters of a game are
// Plain, and runs of them and of blanks are passed over in tight loops.
enum CharClass : uint8_t { Plain, Blank, Newline, ResultChar, Special };

constexpr std::array<CharClass, 256> makeCharClasses() {
    std::array<CharClass, 256> classes{};
    for (int c : {' ', '\t', '\v', '\f', '\r'}) classes[c] = Blank;
    classes['\n'] = Newline;
    // Only these begin a result; the rest of a result's characters matter
    // only after them, where each character goes through the slow path.
    for (int c : {'*', '0', '1'}) classes[c] = ResultChar;
    for (int c : {'"', '%', ';', '<', '[', ']', '{'}) classes[c] = Special;
    return classes;
}
constexpr std::array<CharClass, 256> charClasses = makeCharClasses();

inline CharClass classOf(char c) { return charClasses[static_cast<unsigned char>(c)]; }

// Whether c, after a '0' or '1' that began a result, ends it unmade and
// leaves nothing else to note: a blank, or a plain character other than the
// result's own '-' and '/'. Move numbers and squares are full of these.
inline bool endsNoResult(char c) {
    const CharClass kind = classOf(c);
    return kind == Blank || (kind == Plain && c != '-' && c != '/');
}

// Leaves at the end of the run, at the end of the game, or when a character
// opens one of the other states.
const char* GameCut::scanMoveText(const char* p, const char* end) {
    while (p < end) {
        // Outside a result, plain characters and blanks only mark move text.
        if (resultState_ == 0) {
            // Runs of plain characters and of blanks, until a character
            // that needs a look of its own.
            bool plain = false;
            for (;;) {
                const char* from = p;
                while (p < end && classOf(*p) == Plain) ++p;
                plain = plain || p != from;
                if (p + 1 < end && (*p == '0' || *p == '1') && endsNoResult(p[1])) {
                    p += 2;
                    plain = true;
                    continue;
                }
                while (p < end && classOf(*p) == Blank) ++p;
                if (p == end || classOf(*p) != Plain) break;
            }
            if (plain) {
                nonSpace_ = true;
                if (!inTagBrackets_) seenMoveText_ = true;
            }
            if (p == end) return p;
        }
        const char c = *p++;
        const bool space = isSpace(c);
        if (c == '\n') newline(p);
        if (resultState_ == 6 && space) {
            done_ = true;
            return p;
        }
        resultState_ = nextResultState(resultState_, c);
        if (space) continue;
        nonSpace_ = true;
        switch (c) {
            case '"': within_ = Within::String; return p;
            case '%':
            case ';': within_ = Within::LineRest; return p;
            case '<':
                // The '<' stays in the text, what follows it does not.
                text_.append(keepFrom_, p);
                within_ = Within::Angle;
                return p;
            case '[':
                if (!inTagBrackets_ && seenMoveText_) {
                    // A game without a terminator: the bracket is the next game's.
                    done_ = true;
                    return p - 1;
                }
                inTagBrackets_ = true;
                break;
            case ']': inTagBrackets_ = false; break;
            case '{':
                braceDepth_ = 1;
                within_ = Within::Brace;
                return p;
            default:
                if (!inTagBrackets_) seenMoveText_ = true;
                break;
        }
    }
    return p;
}

// Backslash escapes are honoured, and a newline outside an escape ends the string.
const char* GameCut::scanString(const char* p, const char* end) {
    while (p < end) {
        const char c = *p++;
        if (c == '\n') {
            newline(p);
            within_ = Within::MoveText;
            return p;
        }
        if (c == '\\') {
            within_ = Within::Escape;
            return p;
        }
        if (c == '"') {
            // The tokenizer's rule for quotes in tag values: only a ']' after
            // optional blanks, or the line's end, closes.
            within_ = inTagBrackets_ ? Within::AfterInnerQuote : Within::MoveText;
            return p;
        }
    }
    return p;
}

const char* GameCut::scanAfterInnerQuote(const char* p, const char* end) {
    while (p < end) {
        const char c = *p;
        if (c == '\n') {
            ++p;
            newline(p);
            within_ = Within::MoveText;
            return p;
        }
        if (c == ']') {
            inTagBrackets_ = false;
            within_ = Within::MoveText;
            return p + 1;
        }
        if (!isSpace(c)) {
            // The quote was part of the value: this character is read as one
            // of the string's.
            within_ = Within::String;
            return p;
        }
        ++p;
    }
    return p;
}

bool GameCut::passUntil(const char*& p, const char* end, char stop) {
    while (p < end) {
        const char c = *p++;
        if (c == '\n') newline(p);
        if (c == stop) return true;
    }
    return false;
}

// The same depth rule as the tokenizer: without nested comments the first
// '}' closes.
const char* GameCut::scanBrace(const char* p, const char* end) {
    while (p < end) {
        const char c = *p++;
        if (c == '\n') {
            newline(p);
        } else if (c == '}') {
            if (--braceDepth_ == 0 || !nested_) {
                within_ = Within::MoveText;
                return p;
            }
        } else if (c == '{') {
            ++braceDepth_;
        }
    }
    return p;
}

}  // namespace

// Each character is looked at once and copied at most once; the position is
// kept so that a worker's parser can count the file's lines from where its
// game begins.
bool PGNParser::readGameText(std::string& text) {
    text.clear();
    if (!buffer_) return false;
    std::streambuf& in = *buffer_;
    GameCut cut(text, position_, nestedComments_);
    for (;;) {
        if (in.sgetc() == EOF) return cut.nonSpace();
        const char* begin = GetArea::next(in);
        const char* end = GetArea::end(in);
        if (begin == end) {
            // A buffer without a get area hands out one character at a time.
            const char c = static_cast<char>(in.sgetc());
            if (cut.scan(&c, &c + 1) != &c) in.sbumpc();
        } else {
            if (end - begin > INT_MAX) end = begin + INT_MAX;
            GetArea::consume(in, static_cast<int>(cut.scan(begin, end) - begin));
        }
        if (cut.done()) {
            previousPosition_ = position_;
            return true;
        }
    }
}

}  // namespace tarnfold::PGN
