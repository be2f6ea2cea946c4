#include "query/token_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarnfold::zmf {
namespace {

std::string offsetText(const OptionalOffset& offset) { return offset ? std::to_string(*offset) : "-"; }

// "Kind text begin..end"
std::string describe(const Token& token) {
    return std::string(tokenKindName(token.kind)) + " " + token.text + " " + offsetText(token.begin) + ".." +
           offsetText(token.end);
}

// Every token up to and including the first end of file, joined by " | ".
std::string tokenize(std::string_view text) {
    TokenReader reader;
    reader.setText(text);
    std::string out;
    for (int guard = 0; guard < 100; ++guard) {
        Token token = reader.next();
        out += describe(token);
        if (token.kind == TokenKind::EndOfFile) {
            // The end is final: reading on gives the same end again.
            EXPECT_EQ(describe(reader.next()), describe(token)) << "after the end of: " << text;
            return out;
        }
        out += " | ";
    }
    return out + "(no end)";
}

struct Case {
    std::string text;
    std::string tokens;
};

TEST(TokenReader, ScansTextIntoTokens) {
    const Case cases[] = {
        {"", "EndOfFile <EOF> 0..0"},
        {"x/=2", "Identifier x 0..0 | DivideAssign /= 1..2 | IntegerLiteral 2 3..3 | EndOfFile <EOF> 4..4"},
        {"x//2", "Identifier x 0..0 | EndOfFile <EOF> 4..4"},
        {"x /", "Identifier x 0..0 | Divide / 2..2 | EndOfFile <EOF> 3..3"},
        {"/", "Divide / 0..0 | EndOfFile <EOF> 1..1"},
        {"a1-8", "PieceDesignator a1-8 0..3 | EndOfFile <EOF> 4..4"},
        {"a1-x", "PieceDesignator a1 0..1 | Minus - 2..2 | Identifier x 3..3 | EndOfFile <EOF> 4..4"},
        {"a1-", "PieceDesignator a1 0..1 | Minus - 2..2 | EndOfFile <EOF> 3..3"},
        {"12abc", "IntegerLiteral 12 0..1 | Identifier abc 2..4 | EndOfFile <EOF> 5..5"},
        {"12a1", "IntegerLiteral 12 0..1 | PieceDesignator a1 2..3 | EndOfFile <EOF> 4..4"},
        {"attackedby", "KwAttackedby attackedby 0..9 | EndOfFile <EOF> 10..10"},
        {"attackedbyx", "Identifier attackedbyx 0..10 | EndOfFile <EOF> 11..11"},
        {"attacked by", "KwAttacked attacked 0..7 | KwBy by 9..10 | EndOfFile <EOF> 11..11"},
        {"a$", "Identifier a$ 0..1 | EndOfFile <EOF> 2..2"},
        {"hascomment originalcomment",
         "KwOriginalcomment hascomment 0..9 | KwOriginalcomment originalcomment 11..25 | EndOfFile <EOF> "
         "26..26"},
        {"Move if rotate45 rotate45x",
         "Identifier Move 0..3 | KwIf if 5..6 | KwRotate45 rotate45 8..15 | Identifier rotate45x 17..25 | "
         "EndOfFile <EOF> 26..26"},
        {"Rook Ab _x A1 Aa1",
         "Identifier Rook 0..3 | Identifier Ab 5..6 | Identifier _x 8..9 | Identifier A1 11..12 | "
         "PieceDesignator Aa1 14..16 | EndOfFile <EOF> 17..17"},
        {"x[b]", "Identifier x 0..0 | PieceDesignator [b] 1..3 | EndOfFile <EOF> 4..4"},
        {"[a1,b2",
         "LeftBracket [ 0..0 | PieceDesignator a1 1..2 | Comma , 3..3 | PieceDesignator b2 4..5 | "
         "EndOfFile <EOF> 6..6"},
        {".a1", "PieceDesignator . 0..0 | PieceDesignator a1 1..2 | EndOfFile <EOF> 3..3"},
        {"\"abc\\\"", "StringLiteral \"abc\\\" 0..5 | EndOfFile <EOF> 6..6"},
        {"\"a\nb\" \"\xC3\xA9\"",
         "StringLiteral \"a\nb\" 0..4 | StringLiteral \"\xC3\xA9\" 6..9 | EndOfFile <EOF> 10..10"},
        {"\"abc", "Invalid \"abc 0..0 | EndOfFile <EOF> 4..4"},
        {"\"ab\xFFzz\"", "Invalid \"ab 0..0 | EndOfFile <EOF> 3..3"},
        {"/* never closed", "EndOfFile <EOF> 15..15"},
        {"x \xFF y", "Identifier x 0..0 | EndOfFile <EOF> 2..2"},
        {"move /*x*/ from", "KwMove move 0..3 | KwFrom from 11..14 | EndOfFile <EOF> 15..15"},
        {"/**/x/*/ y */z", "Identifier x 4..4 | Identifier z 13..13 | EndOfFile <EOF> 14..14"},
        {"/*a\xFF z", "Identifier z 5..5 | EndOfFile <EOF> 6..6"},
        {"x // c\ry", "Identifier x 0..0 | Identifier y 7..7 | EndOfFile <EOF> 8..8"},
        {"x // c\ny", "Identifier x 0..0 | Identifier y 7..7 | EndOfFile <EOF> 8..8"},
        {"x //c\xFFy", "Identifier x 0..0 | Identifier y 6..6 | EndOfFile <EOF> 7..7"},
        {" \t\n\v\f\rx", "Identifier x 6..6 | EndOfFile <EOF> 7..7"},
        {"o-o-o", "LongCastle o-o-o 0..4 | EndOfFile <EOF> 5..5"},
        {"o-o", "ShortCastle o-o 0..2 | EndOfFile <EOF> 3..3"},
        {"o-ox", "ShortCastle o-o 0..2 | Identifier x 3..3 | EndOfFile <EOF> 4..4"},
        {"-->-=-<--<=<~~~",
         "ForwardArrow --> 0..2 | SubtractAssign -= 3..4 | Minus - 5..5 | BackwardArrow <-- 6..8 | "
         "LessEqual <= 9..10 | Less < 11..11 | PatternMatch ~~ 12..13 | Tilde ~ 14..14 | EndOfFile <EOF> "
         "15..15"},
        {"===?=!=",
         "Equal == 0..1 | ConditionalAssign =? 2..3 | Assign = 4..4 | NotEqual != 5..6 | EndOfFile <EOF> "
         "7..7"},
        {"*=**|=|&=&",
         "MultiplyAssign *= 0..1 | Star * 2..2 | Star * 3..3 | OrAssign |= 4..5 | BitOr | 6..6 | "
         "AndAssign &= 7..8 | BitAnd & 9..9 | EndOfFile <EOF> 10..10"},
        {R"(\n\r\t\"\\)",
         "BackslashLiteral \\n 0..1 | BackslashLiteral \\r 2..3 | BackslashLiteral \\t 4..5 | "
         "BackslashLiteral \\\" 6..7 | BackslashLiteral \\\\ 8..9 | EndOfFile <EOF> 10..10"},
        {R"(\12 \-3)", "CapturedGroupString \\12 0..2 | CapturedGroupIndex \\-3 4..6 | EndOfFile <EOF> 7..7"},
        {R"(\x)", "Invalid \\ 0..0 | Identifier x 1..1 | EndOfFile <EOF> 2..2"},
        {R"(\-x)", "Invalid \\ 0..0 | Minus - 1..1 | Identifier x 2..2 | EndOfFile <EOF> 3..3"},
        {"x\xC3\xA9", "Identifier x 0..0 | Invalid \xC3 1..1 | Invalid \xA9 2..2 | EndOfFile <EOF> 3..3"},
        // Not white space in the "C" locale, whatever the process locale says.
        {"\xA0\x85", "Invalid \xA0 0..0 | Invalid \x85 1..1 | EndOfFile <EOF> 2..2"},
        {"@", "Invalid @ 0..0 | EndOfFile <EOF> 1..1"},
    };
    for (const Case& c : cases) EXPECT_EQ(tokenize(c.text), c.tokens) << "text: " << c.text;
}

// Every spelling alone reads as its own kind: no designator, earlier operator
// or keyword may take it, and a keyword run on into an identifier is none.
TEST(TokenReader, EverySpellingReadsAsItsKind) {
    auto expectKind = [](std::string_view text, TokenKind kind) {
        TokenReader reader;
        reader.setText(text);
        Token token = reader.next();
        EXPECT_EQ(tokenKindName(token.kind), tokenKindName(kind)) << text;
        EXPECT_EQ(token.text, text);
        EXPECT_EQ(reader.next().kind, TokenKind::EndOfFile) << text;
    };
#define EXPECT_SPELLING(kind, text) expectKind(text, TokenKind::kind);
#define EXPECT_KEYWORD(kind, text)               \
    expectKind(text, TokenKind::kind);           \
    expectKind(text "_", TokenKind::Identifier); \
    expectKind(text "$", TokenKind::Identifier);
    ZMF_OPERATOR_TOKENS(EXPECT_SPELLING)
    ZMF_KEYWORD_TOKENS(EXPECT_KEYWORD)
#undef EXPECT_SPELLING
#undef EXPECT_KEYWORD
}

TEST(TokenReader, PeekLeavesTheStateAsItWas) {
    TokenReader reader;
    reader.setText("x y  z");
    EXPECT_EQ(describe(reader.peek()), "Identifier x 0..0");
    EXPECT_EQ(describe(reader.peek(2)), "Identifier z 5..5");
    EXPECT_EQ(describe(reader.peek(7)), "EndOfFile <EOF> 6..6");
    EXPECT_EQ(reader.state().cursor, 0u);
    EXPECT_EQ(reader.state().offset, 0u);
    EXPECT_EQ(describe(reader.lastToken()), "EndOfFile  -..-");
    EXPECT_EQ(reader.peekDepth(), 0u);

    EXPECT_EQ(describe(reader.next()), "Identifier x 0..0");
    EXPECT_EQ(describe(reader.peek(1)), "Identifier z 5..5");
    EXPECT_EQ(describe(reader.lastToken()), "Identifier x 0..0");
    EXPECT_EQ(reader.state().cursor, 1u);

    // Copying the state is a snapshot; assigning it back rewinds.
    ReaderState saved = reader.state();
    EXPECT_EQ(describe(reader.next()), "Identifier y 2..2");
    EXPECT_EQ(describe(reader.next()), "Identifier z 5..5");
    reader.state() = saved;
    EXPECT_EQ(describe(reader.lastToken()), "Identifier x 0..0");
    EXPECT_EQ(describe(reader.next()), "Identifier y 2..2");

    reader.reset();
    EXPECT_EQ(reader.state().cursor, 0u);
    EXPECT_EQ(describe(reader.lastToken()), "EndOfFile  -..-");
    EXPECT_EQ(describe(reader.next()), "Identifier x 0..0");
}

TEST(TokenReader, PeekAtAStrayEndMarkerStaysThere) {
    TokenReader reader;
    reader.setText("a \xFF b");
    EXPECT_EQ(describe(reader.next()), "PieceDesignator a 0..0");
    EXPECT_EQ(describe(reader.peek()), "EndOfFile <EOF> 2..2");
    EXPECT_EQ(describe(reader.peek(3)), "EndOfFile <EOF> 2..2");
    EXPECT_EQ(describe(reader.next()), "EndOfFile <EOF> 2..2");
    EXPECT_EQ(reader.state().cursor, 2u);
    EXPECT_EQ(describe(reader.peek()), "EndOfFile <EOF> 2..2");
}

TEST(TokenReader, ReplayServesStoredTokensBeforeTheText) {
    TokenReader reader;
    reader.setText("x y");
    EXPECT_EQ(describe(reader.next()), "Identifier x 0..0");

    ReplayRecord body;
    body.functionName = "f";
    body.tokens = {
        Token{TokenKind::RightBrace, 30, 30, "}"},
        Token{TokenKind::IntegerLiteral, 25, 26, "12"},
        Token{TokenKind::LeftBrace, 20, 20, "{"},
    };
    reader.state().replays.push_back(body);

    EXPECT_EQ(describe(reader.peek()), "LeftBrace { 20..20");
    EXPECT_EQ(describe(reader.peek(2)), "RightBrace } 30..30");
    EXPECT_EQ(describe(reader.peek(3)), "EndOfFile <EOF> -..-");
    EXPECT_EQ(reader.state().replays.back().tokens.size(), 3u);

    EXPECT_EQ(describe(reader.next()), "LeftBrace { 20..20");
    EXPECT_EQ(describe(reader.next()), "IntegerLiteral 12 25..26");
    EXPECT_EQ(describe(reader.lastToken()), "IntegerLiteral 12 25..26");
    EXPECT_EQ(describe(reader.next()), "RightBrace } 30..30");
    EXPECT_EQ(describe(reader.next()), "EndOfFile <EOF> -..-");
    EXPECT_EQ(describe(reader.next()), "EndOfFile <EOF> -..-");
    EXPECT_EQ(reader.state().cursor, 1u);
    EXPECT_EQ(reader.state().offset, 1u);

    // The inner record is served first; the outer one resumes behind it.
    reader.state().replays.back().tokens = {Token{TokenKind::Identifier, 40, 40, "b"},
                                            Token{TokenKind::Identifier, 41, 41, "a"}};
    ReplayRecord inner;
    inner.tokens = {Token{TokenKind::Identifier, 50, 50, "i"}};
    reader.state().replays.push_back(inner);
    EXPECT_EQ(describe(reader.next()), "Identifier i 50..50");
    EXPECT_EQ(describe(reader.next()), "EndOfFile <EOF> -..-");
    reader.state().replays.pop_back();
    EXPECT_EQ(describe(reader.next()), "Identifier a 41..41");
    reader.state().replays.pop_back();
    EXPECT_EQ(describe(reader.next()), "Identifier y 2..2");
}

}  // namespace
}  // namespace tarnfold::zmf
