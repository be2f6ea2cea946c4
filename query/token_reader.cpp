#include "query/token_reader.h"

#include <iterator>
#include <utility>

#include "query/piece_designator.h"

namespace tarnfold::zmf {
namespace {

struct Spelling {
    std::string_view text;
    TokenKind kind;
};

#define ZMF_SPELLING_ROW(kind, text) Spelling{text, TokenKind::kind},
constexpr Spelling operatorTable[] = {ZMF_OPERATOR_TOKENS(ZMF_SPELLING_ROW)};
constexpr Spelling keywordTable[] = {ZMF_KEYWORD_TOKENS(ZMF_SPELLING_ROW)};
#undef ZMF_SPELLING_ROW

static_assert(std::size(operatorTable) == 44);
static_assert(std::size(keywordTable) == 186);

// The stray-byte marker: it ends the query wherever a token could start.
constexpr unsigned char endMarker = 0xFF;

// Character classes of the "C" locale, spelled out so that the process
// locale cannot change them; bytes from 0x80 up belong to none of them.
bool isBlank(unsigned char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}
bool isDigit(unsigned char c) { return c >= '0' && c <= '9'; }
bool isLetter(unsigned char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool startsIdentifier(unsigned char c) { return isLetter(c) || c == '_' || c == '$'; }
bool continuesIdentifier(unsigned char c) { return startsIdentifier(c) || isDigit(c); }

}  // namespace

void TokenReader::reset() { state_ = ReaderState{}; }

void TokenReader::setText(std::string_view text) { text_.assign(text); }

Token TokenReader::next() {
    Token token = read();
    state_.lastToken = token;
    return token;
}

Token TokenReader::peek(std::size_t skip) {
    ReaderState saved = state_;
    ++state_.peekDepth;
    for (std::size_t i = 0; i < skip; ++i) read();
    Token token = read();
    state_ = std::move(saved);
    return token;
}

unsigned char TokenReader::byteAt(std::size_t index) const {
    return index < text_.size() ? static_cast<unsigned char>(text_[index]) : 0;
}

void TokenReader::advance(std::size_t count) {
    state_.cursor += count;
    state_.offset += count;
}

Token TokenReader::endOfFile() const {
    Token token;
    token.kind = TokenKind::EndOfFile;
    if (state_.offsetValid) token.begin = token.end = state_.offset;
    token.text = "<EOF>";
    return token;
}

Token TokenReader::take(TokenKind kind, std::size_t length) {
    Token token;
    token.kind = kind;
    if (state_.offsetValid) {
        token.begin = state_.offset;
        // An invalid token is pointed at, not spanned.
        token.end = kind == TokenKind::Invalid ? state_.offset : state_.offset + length - 1;
    }
    token.text = text_.substr(state_.cursor, length);
    advance(length);
    return token;
}

Token TokenReader::read() {
    if (!state_.replays.empty()) {
        std::vector<Token>& tokens = state_.replays.back().tokens;
        if (tokens.empty()) {
            // The end of a function body; the parser pops the record itself.
            Token end;
            end.text = "<EOF>";
            return end;
        }
        Token token = std::move(tokens.back());
        tokens.pop_back();
        return token;
    }
    return readFromText();
}

void TokenReader::skipBlanks() {
    const std::size_t size = text_.size();
    while (state_.cursor < size) {
        const std::size_t at = state_.cursor;
        unsigned char c = byteAt(at);
        if (isBlank(c)) {
            advance(1);
            continue;
        }
        // A slash that is the very last byte is the divide operator.
        if (c != '/' || at + 1 >= size) return;
        std::size_t p = at + 2;
        if (byteAt(at + 1) == '*') {
            // Unterminated block comments run silently to the end.
            while (p < size) {
                unsigned char b = byteAt(p++);
                if (b == endMarker) break;
                if (b == '*' && p < size && byteAt(p) == '/') {
                    ++p;
                    break;
                }
            }
        } else if (byteAt(at + 1) == '/') {
            while (p < size) {
                unsigned char b = byteAt(p++);
                if (b == '\n' || b == '\r' || b == endMarker) break;
            }
        } else {
            return;
        }
        advance(p - at);
    }
}

Token TokenReader::readFromText() {
    skipBlanks();
    const std::size_t start = state_.cursor;
    const std::size_t size = text_.size();
    if (start >= size) return endOfFile();
    const unsigned char first = byteAt(start);
    std::string_view rest = std::string_view(text_).substr(start);

    auto digitsFrom = [&](std::size_t p) {
        while (isDigit(byteAt(p))) ++p;
        return p - start;
    };

    if (first == '\\') {
        if (isDigit(byteAt(start + 1))) return take(TokenKind::CapturedGroupString, digitsFrom(start + 1));
        if (byteAt(start + 1) == '-' && isDigit(byteAt(start + 2)))
            return take(TokenKind::CapturedGroupIndex, digitsFrom(start + 2));
    }

    // The cursor stays in front of the marker, so every later read stops here too.
    if (first == endMarker) return endOfFile();

    // Designators come before operators and keywords: a1, R, [RQ], . and _
    // would otherwise be read as something else.
    DesignatorScan designator = scanPieceDesignator(text_, start);
    if (designator.length > 0) return take(TokenKind::PieceDesignator, designator.length);

    // First match wins; the table order is the longest-match rule.
    for (const Spelling& op : operatorTable)
        if (rest.starts_with(op.text)) return take(op.kind, op.text.size());

    for (const Spelling& keyword : keywordTable)
        if (rest.starts_with(keyword.text) && !continuesIdentifier(byteAt(start + keyword.text.size())))
            return take(keyword.kind, keyword.text.size());

    if (isDigit(first)) return take(TokenKind::IntegerLiteral, digitsFrom(start));

    if (first == '"') {
        // No escapes: a backslash is an ordinary byte inside a string.
        std::size_t p = start + 1;
        while (p < size && byteAt(p) != '"' && byteAt(p) != endMarker) ++p;
        if (p < size && byteAt(p) == '"') return take(TokenKind::StringLiteral, p + 1 - start);
        return take(TokenKind::Invalid, p - start);
    }

    if (startsIdentifier(first)) {
        std::size_t p = start + 1;
        while (continuesIdentifier(byteAt(p))) ++p;
        return take(TokenKind::Identifier, p - start);
    }

    return take(TokenKind::Invalid, 1);
}

}  // namespace tarnfold::zmf
