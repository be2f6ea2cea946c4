#pragma once

// The token reader: the parser pulls one token at a time, looks ahead as far
// as it likes, and rewinds by putting back a copy of the whole reading state.
// Tokens stored for a function body are served through the same entry, so the
// parser cannot tell a replayed token from one read off the text.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "query/token.h"

namespace tarnfold::zmf {

// One function instantiation being replayed.
struct ReplayRecord {
    std::vector<Token> tokens;  // in reverse order: the next token is back()
    std::string functionName;
    OptionalOffset callSite;
};

// Everything a snapshot has to cover. The text itself is not part of it: it
// never changes while a query is read.
struct ReaderState {
    std::size_t cursor = 0;
    Offset offset = 0;  // advances with the cursor byte for byte
    bool offsetValid = true;
    Token lastToken;
    std::vector<ReplayRecord> replays;
    unsigned peekDepth = 0;
};

class TokenReader {
public:
    // Back to the start of the text with nothing read and nothing replayed.
    void reset();
    void setText(std::string_view text);
    const std::string& text() const { return text_; }

    // Reads one token and records it as the last consumed one.
    Token next();
    // The token after `skip` further ones, leaving the state as it was.
    Token peek(std::size_t skip = 0);

    const Token& lastToken() const { return state_.lastToken; }
    unsigned peekDepth() const { return state_.peekDepth; }

    // The parser snapshots by copying this and restores by assigning it.
    ReaderState& state() { return state_; }
    const ReaderState& state() const { return state_; }

private:
    Token read();
    Token readFromText();
    void skipBlanks();
    void advance(std::size_t count);
    Token take(TokenKind kind, std::size_t length);
    Token endOfFile() const;
    unsigned char byteAt(std::size_t index) const;

    std::string text_;
    ReaderState state_;
};

}  // namespace tarnfold::zmf
