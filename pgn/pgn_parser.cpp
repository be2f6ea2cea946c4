#include "pgn/pgn_parser.h"

#include <cstdio>
#include <cstdlib>

#include "pgn/game_result.h"
#include "pgn/stream_get_area.h"

namespace tarnfold::PGN {

namespace {

// The C locale's isspace, without its undefined behaviour for negative chars.
inline bool isSpace(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
inline bool isDigit(int c) { return c >= '0' && c <= '9'; }
inline bool isLetter(int c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
inline bool isAnnotationChar(int c) { return c == '!' || c == '+' || c == '-' || c == '=' || c == '?'; }
inline bool isSymbolStart(int c) { return isLetter(c) || isDigit(c) || c == '@' || isAnnotationChar(c); }

inline bool isSymbolChar(int c) {
    if (isLetter(c) || isDigit(c)) return true;
    switch (c) {
        case '!':
        case '#':
        case '+':
        case '-':
        case '/':
        case ':':
        case '=':
        case '?':
        case '@':
        case '_': return true;
        default: return false;
    }
}

inline bool isResultChar(int c) { return c == '0' || c == '1' || c == '2' || c == '-' || c == '/'; }

}  // namespace

PGNParser::PGNParser(std::istream& stream) : buffer_(stream ? stream.rdbuf() : nullptr) {}

PGNParser::~PGNParser() = default;

bool PGNParser::nestedComments() const { return nestedComments_; }
void PGNParser::setNestedComments(bool nested) { nestedComments_ = nested; }
bool PGNParser::escapeAnywhere() const { return escapeAnywhere_; }
void PGNParser::setEscapeAnywhere(bool anywhere) { escapeAnywhere_ = anywhere; }

bool PGNParser::onTag(const PGNTag&) { return true; }
bool PGNParser::onEmptyTag(const PGNPosition&) { return true; }
bool PGNParser::onTagWithoutValue(const PGNTag&) { return true; }
bool PGNParser::onComment(const PGNComment&) { return true; }
bool PGNParser::onNag(const PGNToken&) { return true; }
bool PGNParser::onAnnotation(const PGNToken&) { return true; }
bool PGNParser::onEndOfStream(const PGNPosition&) { return true; }
bool PGNParser::onGameEnd(uint32_t, const PGNPosition&, bool) { return true; }
bool PGNParser::onVariationBegin(const PGNPosition&) { return true; }
bool PGNParser::onVariationEnd(const PGNPosition&) { return true; }
bool PGNParser::onMove(const std::string&, const PGNToken&, const PGNPosition&) { return true; }
bool PGNParser::reservedCallback1() { return true; }
bool PGNParser::reservedCallback2() { return true; }
bool PGNParser::reservedCallback3() { return true; }
bool PGNParser::reservedCallback4() { return true; }
bool PGNParser::onEscapeLine(const std::string&, const PGNPosition&, const PGNPosition&) { return true; }
bool PGNParser::onInvalidToken(const PGNToken&) { return true; }
bool PGNParser::onUnterminatedString(const std::string&, const PGNPosition&) { return true; }
bool PGNParser::onUnescapedQuote(const std::string&, const PGNPosition&) { return true; }
bool PGNParser::onInvalidEscape(const std::string&, const PGNPosition&, char) { return true; }
bool PGNParser::onGameStart(const PGNPosition&) { return true; }

// The end of the file counts as a character read, so that pushing it back
// (which leaves the stream alone) restores the position like any other.
int PGNParser::get() {
    const int c = buffer_ ? buffer_->sbumpc() : EOF;
    count(c);
    return c;
}

void PGNParser::count(int c) {
    if (c == '\n') {
        previousPosition_ = position_;
        ++position_.line;
        position_.column = 0;
    } else {
        ++position_.column;
    }
    ++position_.offset;
}

void PGNParser::advanceOver(const char* from, const char* to) {
    for (const char* at = from; at < to; ++at) count(*at);
    GetArea::consume(*buffer_, static_cast<int>(to - from));
}

void PGNParser::unget(int c) {
    if (c != EOF && buffer_) buffer_->sputbackc(static_cast<char>(c));
    if (position_.column > 0) {
        --position_.column;
        --position_.offset;
    } else {
        position_ = previousPosition_;
    }
}

void PGNParser::skipByteOrderMark() {
    static constexpr int kMark[3] = {0xEF, 0xBB, 0xBF};
    int read[3];
    int count = 0;
    bool matches = true;
    while (count < 3 && matches) {
        read[count] = get();
        matches = read[count] == kMark[count];
        ++count;
    }
    if (matches) return;
    while (count > 0) unget(read[--count]);
}

PGNToken PGNParser::nextToken() {
    readToken(token_);
    return token_;
}

void PGNParser::readToken(PGNToken& token) {
    token.text.clear();
    token.value = 0;
    int c;
    do c = get();
    while (isSpace(c));
    token.start = position_;
    const auto single = [&token, c](PGNTokenType type) {
        token.type = type;
        token.text.push_back(static_cast<char>(c));
    };
    switch (c) {
        case EOF: token.type = PGNTokenType::Eof; break;
        case '"': readString(token); break;
        case '$': readNag(token); break;
        case '%': readEscapeLine(token); break;
        case ';': readLineComment(token); break;
        case '{': readBraceComment(token); break;
        case '(': single(PGNTokenType::LParen); break;
        case ')': single(PGNTokenType::RParen); break;
        case '.': single(PGNTokenType::Period); break;
        case '<': single(PGNTokenType::LAngle); break;
        case '>': single(PGNTokenType::RAngle); break;
        case '[': single(PGNTokenType::LBracket); break;
        case ']': single(PGNTokenType::RBracket); break;
        case '*': single(PGNTokenType::EndGame); break;
        default: readSymbol(token, c); break;
    }
    token.end = position_;
}

void PGNParser::readSymbol(PGNToken& token, int first) {
    token.text.push_back(static_cast<char>(first));
    if (!isSymbolStart(first)) {
        token.type = PGNTokenType::Invalid;
        return;
    }
    bool allDigits = isDigit(first);
    bool resultLike = first == '0' || first == '1';
    for (;;) {
        // What the buffer holds is passed in one loop; get() only refills.
        if (buffer_) {
            const char* const from = GetArea::next(*buffer_);
            const char* const end = GetArea::end(*buffer_);
            const char* at = from;
            for (; at < end && isSymbolChar(static_cast<unsigned char>(*at)); ++at) {
                allDigits = allDigits && isDigit(*at);
                resultLike = resultLike && isResultChar(*at);
            }
            token.text.append(from, at);
            advanceOver(from, at);
            if (at < end) break;
        }
        const int c = get();
        if (!isSymbolChar(c)) {
            unget(c);
            break;
        }
        token.text.push_back(static_cast<char>(c));
        allDigits = allDigits && isDigit(c);
        resultLike = resultLike && isResultChar(c);
    }
    const std::string& text = token.text;
    if (allDigits) {
        token.type = PGNTokenType::Integer;
        // Saturating, as strtoull, without its locale and sign handling.
        uint64_t value = 0;
        for (char c : text) {
            const auto digit = static_cast<uint64_t>(c - '0');
            value = value > (UINT64_MAX - digit) / 10 ? UINT64_MAX : value * 10 + digit;
        }
        token.value = value;
    } else if (isAnnotationChar(first) && text != "--") {
        // "--" is the null move, the one symbol that starts like an annotation.
        const int nag = annotationNag(text);
        token.type = nag < 0 ? PGNTokenType::Invalid : PGNTokenType::Annotation;
        token.value = nag < 0 ? 0 : static_cast<uint64_t>(nag);
    } else if (resultLike && (text == "1-0" || text == "0-1" || text == "1/2-1/2" || text == "1/2")) {
        token.type = PGNTokenType::EndGame;
    } else {
        token.type = PGNTokenType::Symbol;
    }
}

void PGNParser::readString(PGNToken& token) {
    token.type = PGNTokenType::String;
    std::string& text = token.text;
    for (;;) {
        int c = get();
        if (c == EOF) {
            unget(c);
            return;
        }
        if (c == '\\') {
            c = get();
            if (c == EOF) {
                unget(c);
                return;
            }
            if (c != '"' && c != '\\') onInvalidEscape(text, position_, static_cast<char>(c));
            text.push_back(static_cast<char>(c));
            continue;
        }
        if (c == '\n') {
            // Pushed back so that the report and the token's end stay on the
            // line of the string.
            unget(c);
            onUnterminatedString(text, position_);
            return;
        }
        if (c != '"') {
            text.push_back(static_cast<char>(c));
            continue;
        }
        if (!inTag_) return;
        // Tag values often hold unescaped quotes: only a quote that is followed
        // by the ']' (or by the end of the line) closes the value.
        const size_t length = text.size();
        text.push_back('"');
        for (c = get(); c != '\n' && c != EOF && isSpace(c); c = get()) text.push_back(static_cast<char>(c));
        unget(c);
        if (c == ']' || c == '\n' || c == EOF) {
            text.resize(length);
            return;
        }
        onUnescapedQuote(text, position_);
    }
}

void PGNParser::readNag(PGNToken& token) {
    token.type = PGNTokenType::Nag;
    token.text.push_back('$');
    uint32_t value = 0;
    for (;;) {
        const int c = get();
        if (!isDigit(c)) {
            unget(c);
            break;
        }
        token.text.push_back(static_cast<char>(c));
        value = value * 10 + static_cast<uint32_t>(c - '0');
    }
    token.value = value;
}

void PGNParser::readEscapeLine(PGNToken& token) {
    if (!escapeAnywhere_ && token.start.column != 1) {
        token.type = PGNTokenType::Invalid;
        token.text.push_back('%');
        return;
    }
    token.type = PGNTokenType::EscLine;
    for (;;) {
        const int c = get();
        if (c == '\n' || c == EOF) {
            unget(c);
            return;
        }
        token.text.push_back(static_cast<char>(c));
    }
}

void PGNParser::readLineComment(PGNToken& token) {
    token.type = PGNTokenType::Comment;
    bool blank = false;
    for (;;) {
        const int c = get();
        if (c == '\n' || c == EOF) {
            // The token ends on the comment's own line.
            unget(c);
            return;
        }
        if (isSpace(c)) {
            blank = !token.text.empty();
            continue;
        }
        if (blank) token.text.push_back(' ');
        blank = false;
        token.text.push_back(static_cast<char>(c));
    }
}

// The comment's characters the buffer holds, in one loop and appended a
// word at a time; true when the closing brace was among them.
bool PGNParser::scanBufferedComment(PGNToken& token, int& depth, bool& blank) {
    const char* const from = GetArea::next(*buffer_);
    const char* const end = GetArea::end(*buffer_);
    const char* at = from;
    bool closed = false;
    while (at < end && !closed) {
        const char c = *at;
        if (isSpace(c)) {
            ++at;
            blank = !token.text.empty();
            continue;
        }
        const char* word = at;
        if (c == '}') {
            ++at;
            closed = --depth == 0 || !nestedComments_;
            if (closed) break;
        } else if (c == '{') {
            ++at;
            ++depth;
        } else {
            while (at < end && !isSpace(*at) && *at != '{' && *at != '}') ++at;
        }
        if (blank) token.text.push_back(' ');
        blank = false;
        token.text.append(word, at);
    }
    advanceOver(from, at);
    return closed;
}

void PGNParser::readBraceComment(PGNToken& token) {
    token.type = PGNTokenType::BrComment;
    int depth = 1;
    bool blank = false;
    for (;;) {
        if (buffer_ && scanBufferedComment(token, depth, blank)) return;
        const int c = get();
        if (c == EOF) {
            unget(c);
            return;
        }
        if (c == '}') {
            if (--depth == 0 || !nestedComments_) return;
        } else if (c == '{') {
            ++depth;
        } else if (isSpace(c)) {
            blank = !token.text.empty();
            continue;
        }
        if (blank) token.text.push_back(' ');
        blank = false;
        token.text.push_back(static_cast<char>(c));
    }
}

bool PGNParser::parseTag() {
    const PGNPosition start = token_.start;
    const bool wasInTag = inTag_;
    inTag_ = true;
    struct Restore {
        bool& flag;
        bool value;
        ~Restore() { flag = value; }
    } restore{inTag_, wasInTag};

    readToken(token_);
    if (token_.type == PGNTokenType::RBracket) {
        onEmptyTag(start);
        return true;
    }
    if (token_.type != PGNTokenType::Symbol) return false;
    tag_.start = start;
    tag_.name = token_.text;
    tag_.nameStart = token_.start;
    readToken(token_);
    if (token_.type == PGNTokenType::RBracket) {
        tag_.value.clear();
        tag_.valueStart = token_.start;
        tag_.end = token_.end;
        onTagWithoutValue(tag_);
        return true;
    }
    if (token_.type != PGNTokenType::String) return false;
    tag_.value = token_.text;
    tag_.valueStart = token_.start;
    readToken(token_);
    if (token_.type != PGNTokenType::RBracket) return false;
    tag_.end = token_.end;
    onTag(tag_);
    return true;
}

bool PGNParser::startGame(bool& started) {
    if (started) return true;
    started = true;
    return onGameStart(token_.start);
}

// After a move that could not be played or a variation that was refused: the
// rest of that line of play is skipped up to its closing parenthesis, which in
// the main line never comes, so there the skip runs to the end of the game.
PGNParser::SkipEnd PGNParser::skipLine(bool reportEnd) {
    int depth = 1;
    for (;;) {
        readToken(token_);
        switch (token_.type) {
            case PGNTokenType::LParen: ++depth; break;
            case PGNTokenType::RParen:
                if (--depth == 0) {
                    if (reportEnd) onVariationEnd(token_.start);
                    return SkipEnd::Closed;
                }
                break;
            case PGNTokenType::LBracket: unget('['); return SkipEnd::Bracket;
            case PGNTokenType::EndGame:
            case PGNTokenType::Eof: return SkipEnd::GameEnd;
            default: break;
        }
    }
}

int PGNParser::parseGame() {
    bool started = false;
    readToken(token_);
    const PGNTokenType first = token_.type;
    for (bool more = true; more;) {
        SkipEnd skipped = SkipEnd::Closed;
        switch (token_.type) {
            case PGNTokenType::Integer:
            case PGNTokenType::Period: startGame(started); break;
            case PGNTokenType::Symbol:
                startGame(started);
                if (!onMove(token_.text, token_, token_.start)) skipped = skipLine(true);
                break;
            case PGNTokenType::LBracket:
                if (started) {
                    unget('[');
                    skipped = SkipEnd::Bracket;
                } else if (!parseTag()) {
                    onInvalidToken(token_);
                }
                break;
            case PGNTokenType::LParen:
                startGame(started);
                if (!onVariationBegin(token_.start)) skipped = skipLine(false);
                break;
            case PGNTokenType::RParen: onVariationEnd(token_.start); break;
            case PGNTokenType::LAngle:
                // The reserved expansion syntax: everything up to the '>' is skipped.
                do readToken(token_);
                while (token_.type != PGNTokenType::RAngle && token_.type != PGNTokenType::Eof);
                if (token_.type == PGNTokenType::Eof) continue;
                break;
            case PGNTokenType::Nag:
                startGame(started);
                onNag(token_);
                break;
            case PGNTokenType::Comment:
            case PGNTokenType::BrComment:
                comment_.kind = token_.type == PGNTokenType::Comment ? PGNComment::Line : PGNComment::Brace;
                comment_.text = token_.text;
                comment_.start = token_.start;
                comment_.end = token_.end;
                onComment(comment_);
                break;
            case PGNTokenType::Annotation:
                startGame(started);
                onAnnotation(token_);
                break;
            case PGNTokenType::EscLine: onEscapeLine(token_.text, token_.start, token_.end); break;
            case PGNTokenType::EndGame:
            case PGNTokenType::Eof: more = false; continue;
            case PGNTokenType::Invalid:
            case PGNTokenType::String:
            case PGNTokenType::RBracket:
            case PGNTokenType::RAngle: onInvalidToken(token_); break;
        }
        if (skipped == SkipEnd::Bracket) {
            // The next game has begun without a terminator for this one.
            onGameEnd(NoResult, token_.start, true);
            return 1;
        }
        if (skipped == SkipEnd::GameEnd) break;
        readToken(token_);
    }
    if (token_.type == PGNTokenType::EndGame) {
        startGame(started);
        onGameEnd(resultFromText(token_.text), token_.start, false);
        return errors.empty() ? 0 : 1;
    }
    if (first == PGNTokenType::Eof) {
        onEndOfStream(token_.start);
        return 2;
    }
    onGameEnd(NoResult, token_.start, true);
    return 1;
}

}  // namespace tarnfold::PGN
