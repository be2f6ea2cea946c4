#include <array>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <streambuf>
#include <string>

#include "pgn/byte_scan.h"
#include "pgn/game_result.h"
#include "pgn/pgn_parser.h"
#include "pgn/stream_get_area.h"

namespace tarnfold::PGN {

namespace {

inline bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// The cutter runs under the lock that all workers share, so it reads the
// stream buffer's characters where they lie (GetArea), a buffered run at a
// time, rather than one sbumpc and one push_back per character, and passes
// over comments, tag values and most of the move text sixteen bytes at a
// time. Lines are counted once over each run, after it is cut.

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
    const char* passMoveText(const char* p, const char* end);
    const char* scanString(const char* p, const char* end);
    const char* scanAfterInnerQuote(const char* p, const char* end);
    // Passes over characters up to and including Stop; false when the run
    // ended first.
    template <char Stop>
    bool passUntil(const char*& p, const char* end);
    const char* scanBrace(const char* p, const char* end);

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
    // Per run: the first character not yet copied.
    const char* keepFrom_ = nullptr;
};

const char* GameCut::scan(const char* begin, const char* end) {
    keepFrom_ = begin;
    const char* p = begin;
    while (p < end && !done_) {
        switch (within_) {
            case Within::MoveText: p = scanMoveText(p, end); break;
            case Within::String: p = scanString(p, end); break;
            case Within::Escape:
                ++p;
                within_ = Within::String;
                break;
            case Within::AfterInnerQuote: p = scanAfterInnerQuote(p, end); break;
            case Within::LineRest:
                if (passUntil<'\n'>(p, end)) within_ = Within::MoveText;
                break;
            case Within::Angle:
                if (passUntil<'>'>(p, end)) {
                    keepFrom_ = p;
                    within_ = Within::MoveText;
                }
                break;
            case Within::Brace: p = scanBrace(p, end); break;
        }
    }
    if (within_ != Within::Angle) text_.append(keepFrom_, p);
    position_.offset += static_cast<uint64_t>(p - begin);
    const uint64_t lines = countByte(begin, p, '\n');
    if (lines == 0) {
        position_.column += static_cast<uint64_t>(p - begin);
    } else {
        position_.line += lines;
        const auto* lastNewline = static_cast<const char*>(memrchr(begin, '\n', static_cast<size_t>(p - begin)));
        position_.column = static_cast<uint64_t>(p - lastNewline - 1);
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

// Whether c can take part in a result, so that the result state after it
// may be other than 0.
inline bool inResult(char c) {
    return c == '0' || c == '1' || c == '2' || c == '-' || c == '/' || c == '*';
}

// The result state in front of p, where the state at from was 0: every
// character outside a result sets it back to 0, so replaying the run of
// result characters that ends at p gives it.
int resultStateBefore(const char* from, const char* p) {
    const char* run = p;
    while (run > from && inResult(run[-1])) --run;
    int state = 0;
    for (; run < p; ++run) state = nextResultState(state, *run);
    return state;
}

// Move text once a move has been seen and no result is under way: no tag
// bracket is open (one would have ended the game), so only the characters
// that open another state, '[' and those that can go on to complete a
// result need a look. Stops in front of the first of them, with the result
// state exact there.
const char* GameCut::passMoveText(const char* p, const char* end) {
    const char* from = p;
    for (;;) {
        p = findFirstOf<'"', '%', ';', '<', '[', '{', '*', '-', '/'>(p, end);
        if (p == end) {
            resultState_ = resultStateBefore(from, p);
            return p;
        }
        if (*p != '-' && *p != '/') break;
        // Most dashes are castling's; only one after a '0' or '1' may begin
        // a result.
        const int state = nextResultState(resultStateBefore(from, p), *p);
        if (state != 0) {
            resultState_ = state;
            return p + 1;
        }
        from = ++p;
    }
    resultState_ = resultStateBefore(from, p);
    return p;
}

// Leaves at the end of the run, at the end of the game, or when a character
// opens one of the other states.
const char* GameCut::scanMoveText(const char* p, const char* end) {
    while (p < end) {
        if (resultState_ == 0 && seenMoveText_) {
            p = passMoveText(p, end);
            if (p == end) return p;
        } else if (resultState_ == 0) {
            // Before the first move, runs of plain characters and of blanks,
            // until a character that needs a look of its own.
            bool plain = false;
            for (;;) {
                const char* from = p;
                while (p < end && classOf(*p) == Plain) ++p;
                plain = plain || p != from;
                // The first move is seen: the rest goes the quick way.
                if (plain && !inTagBrackets_) break;
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
    p = findFirstOf<'\n', '\\', '"'>(p, end);
    if (p == end) return p;
    const char c = *p++;
    if (c == '\n') {
        within_ = Within::MoveText;
    } else if (c == '\\') {
        within_ = Within::Escape;
    } else {
        // The tokenizer's rule for quotes in tag values: only a ']' after
        // optional blanks, or the line's end, closes.
        within_ = inTagBrackets_ ? Within::AfterInnerQuote : Within::MoveText;
    }
    return p;
}

const char* GameCut::scanAfterInnerQuote(const char* p, const char* end) {
    while (p < end) {
        const char c = *p;
        if (c == '\n') {
            within_ = Within::MoveText;
            return p + 1;
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

template <char Stop>
bool GameCut::passUntil(const char*& p, const char* end) {
    p = findFirstOf<Stop>(p, end);
    if (p == end) return false;
    ++p;
    return true;
}

// The same depth rule as the tokenizer: without nested comments the first
// '}' closes.
const char* GameCut::scanBrace(const char* p, const char* end) {
    if (!nested_) {
        if (passUntil<'}'>(p, end)) within_ = Within::MoveText;
        return p;
    }
    while (p < end) {
        p = findFirstOf<'{', '}'>(p, end);
        if (p == end) return p;
        if (*p++ == '{') {
            ++braceDepth_;
        } else if (--braceDepth_ == 0) {
            within_ = Within::MoveText;
            return p;
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
