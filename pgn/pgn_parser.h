#pragma once

// A PGN tokenizer and parser that knows nothing of chess: it reports tags,
// moves as text, comments, NAGs, variations and game ends through virtual
// callbacks, and a derived class decides what they mean. The same object can
// instead cut the raw text of one game after the other out of the stream
// (readGameText), which is how many workers share one input file.

#include <cstdint>
#include <istream>
#include <streambuf>
#include <string>
#include <vector>

#include "pgn/pgn_position.h"
#include "pgn/pgn_token.h"

namespace tarnfold::PGN {

struct PGNTag {
    std::string name;
    std::string value;
    PGNPosition start;  // the '['
    PGNPosition nameStart;
    PGNPosition valueStart;  // the opening quote; the ']' for a tag without value
    PGNPosition end;         // the ']'
};

struct PGNComment {
    enum : uint32_t { Line = 0, Brace = 1 };
    uint32_t kind = Line;
    std::string text;
    PGNPosition start;
    PGNPosition end;
};

class PGNParser {
public:
    // The stream is not owned; a game file should be opened in binary mode.
    explicit PGNParser(std::istream& stream);
    virtual ~PGNParser();

    PGNParser(const PGNParser&) = delete;
    PGNParser& operator=(const PGNParser&) = delete;

    // The raw text of the next game, without tokenizing it. Returns whether the
    // text holds anything but white space: false means the input is used up.
    virtual bool readGameText(std::string& text);

    virtual bool nestedComments() const;
    virtual void setNestedComments(bool nested);
    // Whether a '%' line is recognised at any column, not only at column 1.
    virtual bool escapeAnywhere() const;
    virtual void setEscapeAnywhere(bool anywhere);

    // Callbacks: all default to doing nothing and returning true.
    virtual bool onTag(const PGNTag& tag);
    virtual bool onEmptyTag(const PGNPosition& position);
    virtual bool onTagWithoutValue(const PGNTag& tag);
    virtual bool onComment(const PGNComment& comment);
    virtual bool onNag(const PGNToken& token);
    virtual bool onAnnotation(const PGNToken& token);
    virtual bool onEndOfStream(const PGNPosition& position);
    virtual bool onGameEnd(uint32_t result, const PGNPosition& position, bool missingTerminator);
    // False when the variation cannot be followed: it is skipped.
    virtual bool onVariationBegin(const PGNPosition& position);
    virtual bool onVariationEnd(const PGNPosition& position);
    // False when the move cannot be played: the rest of its line is skipped.
    virtual bool onMove(const std::string& moveText, const PGNToken& token, const PGNPosition& position);
    // Never called; they hold their places among the virtual functions.
    virtual bool reservedCallback1();
    virtual bool reservedCallback2();
    virtual bool reservedCallback3();
    virtual bool reservedCallback4();
    virtual bool onEscapeLine(const std::string& text, const PGNPosition& start, const PGNPosition& end);
    virtual bool onInvalidToken(const PGNToken& token);
    // A newline inside a string.
    virtual bool onUnterminatedString(const std::string& text, const PGNPosition& position);
    virtual bool onUnescapedQuote(const std::string& text, const PGNPosition& position);
    virtual bool onInvalidEscape(const std::string& text, const PGNPosition& position, char character);
    // Once per game, before its first move-text item.
    virtual bool onGameStart(const PGNPosition& position);

    // Consumes a UTF-8 byte order mark, once, right after the stream is attached.
    void skipByteOrderMark();
    // 0: a game was read without errors; 1: a game was read with errors (or
    // without a terminator); 2: no game was left.
    int parseGame();
    PGNToken nextToken();
    // Entered after an LBRACKET with inTag set; false when the tag is malformed.
    bool parseTag();
    const PGNPosition& position() const { return position_; }
    // Positions count from here: a reader over one game's text cut out of a
    // file reports the lines and columns of the file.
    void setPosition(const PGNPosition& start) { position_ = previousPosition_ = start; }

    // Kept by the derived class; the parser only asks whether it is empty.
    std::vector<PGNError> errors;

private:
    enum class SkipEnd { Closed, GameEnd, Bracket };

    int get();
    // Moves the position past one character read.
    void count(int c);
    void unget(int c);
    // Takes the characters [from, to) of the buffer's get area as read, as
    // get() would one by one.
    void advanceOver(const char* from, const char* to);
    void readToken(PGNToken& token);
    void readSymbol(PGNToken& token, int first);
    void readString(PGNToken& token);
    void readNag(PGNToken& token);
    void readEscapeLine(PGNToken& token);
    void readLineComment(PGNToken& token);
    void readBraceComment(PGNToken& token);
    bool scanBufferedComment(PGNToken& token, int& depth, bool& blank);
    SkipEnd skipLine(bool reportEnd);
    bool startGame(bool& started);

    // Null when the stream had already failed: it then reads as an empty file.
    std::streambuf* buffer_;
    PGNPosition position_;
    PGNPosition previousPosition_;
    bool nestedComments_ = false;
    bool escapeAnywhere_ = false;
    bool inTag_ = false;
    // The token being looked at by parseGame and parseTag, reused so that its
    // text keeps its capacity from token to token.
    PGNToken token_;
    PGNTag tag_;
    PGNComment comment_;
};

}  // namespace tarnfold::PGN
