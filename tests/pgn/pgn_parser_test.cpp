#include "pgn/pgn_parser.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "pgn/recording_parser.h"

namespace tarnfold::PGN {
namespace {

using testing::RecordingParser;

struct Options {
    bool nested = false;
    bool anywhere = false;
    bool bom = false;
};

// The debug forms of all tokens up to the end of the stream, joined by " ".
std::string tokens(const std::string& text, Options options = {}) {
    std::istringstream stream(text);
    PGNParser parser(stream);
    parser.setNestedComments(options.nested);
    parser.setEscapeAnywhere(options.anywhere);
    if (options.bom) parser.skipByteOrderMark();
    std::string out;
    for (int guard = 0; guard < 200; ++guard) {
        const PGNToken token = parser.nextToken();
        if (!out.empty()) out += " ";
        out += tokenDebugForm(token);
        if (token.type == PGNTokenType::Eof) return out;
    }
    return out + " (no end)";
}

struct TokenCase {
    std::string text;
    std::string expected;
    Options options = {};
};

TEST(PGNTokenizer, TokensAndTheirDebugForms) {
    const TokenCase cases[] = {
        {"", "EOF(line 1, col 1)"},
        {"e4 e5", "SYMBOL (e4)(line 1, col 1) SYMBOL (e5)(line 1, col 4) EOF(line 1, col 6)"},
        {"1. e4 1/2",
         "INTEGER (1)(line 1, col 1) PERIOD(line 1, col 2) SYMBOL (e4)(line 1, col 4) ENDGAME(line 1, col 7) "
         "EOF(line 1, col 10)"},
        {"1-0 0-1 1/2-1/2 * 1/2- 10-1 2-0",
         "ENDGAME(line 1, col 1) ENDGAME(line 1, col 5) ENDGAME(line 1, col 9) ENDGAME(line 1, col 17) "
         "SYMBOL (1/2-)(line 1, col 19) SYMBOL (10-1)(line 1, col 24) SYMBOL (2-0)(line 1, col 29) "
         "EOF(line 1, col 32)"},
        {"0042 18446744073709551615 e4*",
         "INTEGER (42)(line 1, col 1) INTEGER (18446744073709551615)(line 1, col 6) SYMBOL (e4)(line 1, col "
         "27) "
         "ENDGAME(line 1, col 29) EOF(line 1, col 30)"},
        // Annotation characters continue a symbol; alone they form an annotation.
        {"e4!? e4 !? -- - +- !!? =",
         "SYMBOL (e4!?)(line 1, col 1) SYMBOL (e4)(line 1, col 6) ANNOTATION (!?)(line 1, col 9) "
         "SYMBOL (--)(line 1, col 12) INVALID (-)(line 1, col 15) ANNOTATION (+-)(line 1, col 17) "
         "INVALID (!!?)(line 1, col 20) ANNOTATION (=)(line 1, col 24) EOF(line 1, col 25)"},
        {"( ) . < > [ ] # & @e4 Q@f7 e8=Q+ O-O-O a_b:c e4#x/y",
         "LPAREN(line 1, col 1) RPAREN(line 1, col 3) PERIOD(line 1, col 5) LANGLE(line 1, col 7) "
         "RANGLE(line 1, col 9) LBRACKET(line 1, col 11) RBRACKET(line 1, col 13) INVALID (#)(line 1, col "
         "15) "
         "INVALID (&)(line 1, col 17) SYMBOL (@e4)(line 1, col 19) SYMBOL (Q@f7)(line 1, col 23) "
         "SYMBOL (e8=Q+)(line 1, col 28) SYMBOL (O-O-O)(line 1, col 34) SYMBOL (a_b:c)(line 1, col 40) "
         "SYMBOL (e4#x/y)(line 1, col 46) EOF(line 1, col 52)"},
        {"$12 $ $007x",
         "NAG (12)(line 1, col 1) NAG (0)(line 1, col 5) NAG (7)(line 1, col 7) SYMBOL (x)(line 1, col 11) "
         "EOF(line 1, col 12)"},
        // Outside a tag the first unescaped quote closes a string.
        {R"("a\"b\\c" "x"y")",
         "STRING (a\"b\\c)(line 1, col 1) STRING (x)(line 1, col 11) SYMBOL (y)(line 1, col 14) "
         "STRING ()(line 1, col 15) EOF(line 1, col 16)"},
        {"\"ab\ncd", "STRING (ab)(line 1, col 1) SYMBOL (cd)(line 2, col 1) EOF(line 2, col 3)"},
        {";  a \t b  \n{ x\n\n y }",
         "COMMENT (a b)(line 1, col 1) BRCOMMENT (x y)(line 2, col 1) EOF(line 4, col 5)"},
        {"{a {b} c}",
         "BRCOMMENT (a {b)(line 1, col 1) SYMBOL (c)(line 1, col 8) INVALID (})(line 1, col 9) "
         "EOF(line 1, col 10)"},
        {"{a {b} c}", "BRCOMMENT (a {b} c)(line 1, col 1) EOF(line 1, col 10)", {.nested = true}},
        {"{a {b {c}} d", "BRCOMMENT (a {b {c}} d)(line 1, col 1) EOF(line 1, col 13)", {.nested = true}},
        {"{open ", "BRCOMMENT (open)(line 1, col 1) EOF(line 1, col 7)"},
        {"%esc  line \n %x\n",
         "ESCLINE (esc  line )(line 1, col 1) INVALID (%)(line 2, col 2) SYMBOL (x)(line 2, col 3) "
         "EOF(line 3, col 1)"},
        {"%esc  line \n %x\n",
         "ESCLINE (esc  line )(line 1, col 1) ESCLINE (x)(line 2, col 2) EOF(line 3, col 1)",
         {.anywhere = true}},
        // A carriage return is a character of its line; only the newline ends it.
        {"e4\r\ne5 ;c\r\n%x\r\n",
         "SYMBOL (e4)(line 1, col 1) SYMBOL (e5)(line 2, col 1) COMMENT (c)(line 2, col 4) "
         "ESCLINE (x\r)(line 3, col 1) EOF(line 4, col 1)"},
        // The mark is read, so it takes three columns; with them '%' is no
        // longer at column 1.
        {"\xEF\xBB\xBF"
         "e4\n%x",
         "SYMBOL (e4)(line 1, col 4) ESCLINE (x)(line 2, col 1) EOF(line 2, col 3)",
         {.bom = true}},
        {"\xEF\xBB\xBF%x",
         "INVALID (%)(line 1, col 4) SYMBOL (x)(line 1, col 5) EOF(line 1, col 6)",
         {.bom = true}},
        {"\xEF\xBBx",
         "INVALID (\xEF)(line 1, col 1) INVALID (\xBB)(line 1, col 2) SYMBOL (x)(line 1, col 3) "
         "EOF(line 1, col 4)",
         {.bom = true}},
        {"\xEF", "INVALID (\xEF)(line 1, col 1) EOF(line 1, col 2)", {.bom = true}},
        {"\xEF\xBB\xBF",
         "INVALID (\xEF)(line 1, col 1) INVALID (\xBB)(line 1, col 2) INVALID (\xBF)(line 1, col 3) "
         "EOF(line 1, col 4)"},
    };
    for (const TokenCase& c : cases) EXPECT_EQ(tokens(c.text, c.options), c.expected) << "input: " << c.text;
}

TEST(PGNTokenizer, AnnotationTable) {
    const std::pair<const char*, int> table[] = {
        {"!", 1},    {"?", 2},    {"!!", 3},   {"??", 4},   {"!?", 5},  {"?!", 6},  {"=", 10},
        {"+/=", 14}, {"=/+", 15}, {"+/-", 16}, {"-/+", 17}, {"+-", 18}, {"-+", 19}, {"!!?", -1},
        {"+", -1},   {"-", -1},   {"--", -1},  {"+=", -1},  {"", -1},   {"e4", -1},
    };
    for (const auto& [text, nag] : table) {
        EXPECT_EQ(annotationNag(text), nag) << text;
        if (nag < 0) continue;
        std::istringstream stream(text);
        PGNParser parser(stream);
        const PGNToken token = parser.nextToken();
        EXPECT_EQ(token.type, PGNTokenType::Annotation) << text;
        EXPECT_EQ(token.value, static_cast<uint64_t>(nag)) << text;
    }
}

TEST(PGNTokenizer, PushedBackCharactersRestoreThePosition) {
    std::istringstream stream("e4\n;c\nx");
    PGNParser parser(stream);
    PGNToken token = parser.nextToken();
    EXPECT_EQ(token.end, (PGNPosition{0, 2, 2}));
    EXPECT_EQ(parser.position(), (PGNPosition{0, 2, 2}));
    token = parser.nextToken();
    EXPECT_EQ(token.start, (PGNPosition{1, 1, 4}));
    EXPECT_EQ(token.end, (PGNPosition{1, 2, 5}));
    token = parser.nextToken();
    EXPECT_EQ(token.start, (PGNPosition{2, 1, 7}));
    EXPECT_EQ(parser.nextToken().start, (PGNPosition{2, 2, 8}));

    std::istringstream partial("\xEF\xBB");
    PGNParser refused(partial);
    refused.skipByteOrderMark();
    EXPECT_EQ(refused.position(), (PGNPosition{0, 0, 0}));
    std::istringstream whole("\xEF\xBB\xBF");
    PGNParser skipped(whole);
    skipped.skipByteOrderMark();
    EXPECT_EQ(skipped.position(), (PGNPosition{0, 3, 3}));
    EXPECT_EQ(skipped.nextToken().type, PGNTokenType::Eof);
}

struct ParseOptions {
    bool nested = false;
    bool anywhere = false;
    std::string failingMove = "";
    std::string errorMove = "";
    bool refuseVariations = false;
};

struct ParseCase {
    std::string text;
    std::string expected;
    ParseOptions options = {};
};

std::string parse(const std::string& text, const ParseOptions& options, bool withPositions = false) {
    std::istringstream stream(text);
    RecordingParser parser(stream);
    parser.setNestedComments(options.nested);
    parser.setEscapeAnywhere(options.anywhere);
    parser.failingMove = options.failingMove;
    parser.errorMove = options.errorMove;
    parser.refuseVariations = options.refuseVariations;
    parser.skipByteOrderMark();
    parser.parseAll();
    std::string log = parser.log(withPositions);
    // Once the input is used up it stays used up.
    parser.events.clear();
    if (parser.parseGame() != 2) log += " (a further call found more)";
    return log;
}

TEST(PGNParser, CallbacksOfWholeGames) {
    const ParseCase cases[] = {
        {"", "eos => 2"},
        {" \n\t\r\n ", "eos => 2"},
        {"[Event \"x\"]\n[Site \"y\"]\n\n1. e4 e5 2. Nf3 1-0\n",
         "tag Event=x | tag Site=y | start | move e4 | move e5 | move Nf3 | end 0 => 0 | eos => 2"},
        {"1. e4 e5 0-1 e4 1/2 e5 1/2-1/2 * 1-0",
         "start | move e4 | move e5 | end 1 => 0 | start | move e4 | end 2 => 0 | start | move e5 | end 2 => "
         "0 | "
         "start | end 3 => 0 | start | end 0 => 0 | eos => 2"},
        // Unescaped quotes in tag values: only a quote before the ']' closes.
        {"[White \"Foo \"Bar\" Baz\"]",
         "quote Foo \" | quote Foo \"Bar\"  | tag White=Foo \"Bar\" Baz | end 4 missing => 1 | eos => 2"},
        {"[A \"a\" ]\n[B \"b\"  x\"]\n[C \"c\\\"d\\\\\"]",
         "tag A=a | quote b\"   | tag B=b\"  x | tag C=c\"d\\ | end 4 missing => 1 | eos => 2"},
        {"[A \"a\\qb\"]", "escape a q | tag A=aqb | end 4 missing => 1 | eos => 2"},
        {"[White \"abc\n1. e4 *",
         "unterminated abc | invalid INTEGER (1) | start | move e4 | end 3 => 0 | eos => 2"},
        {"[White \"abc\" \n] 1. e4 *", "tag White=abc | start | move e4 | end 3 => 0 | eos => 2"},
        // A quote before anything but the ']' stays in the value.
        {"[A \"v\" x] e4 *", "quote v\"  | invalid EOF | end 4 missing => 1 | eos => 2"},
        {"[] [Name] [1 \"x\"] [A \"v\"\nx] e4 *",
         "emptytag | tagnovalue Name | invalid INTEGER (1) | invalid STRING (x) | invalid RBRACKET | "
         "invalid SYMBOL (x) | invalid RBRACKET | start | move e4 | end 3 => 0 | eos => 2"},
        {"[A", "invalid EOF | end 4 missing => 1 | eos => 2"},
        {"{pre} ;line\n1. e4 $1 !? e5 {a {b} c} *",
         "{pre} | ;line | start | move e4 | nag $1=1 | ann !?=5 | move e5 | {a {b} | move c | invalid "
         "INVALID (}) | "
         "end 3 => 0 | eos => 2"},
        {"{pre} ;line\n1. e4 $1 !? e5 {a {b} c} *",
         "{pre} | ;line | start | move e4 | nag $1=1 | ann !?=5 | move e5 | {a {b} c} | end 3 => 0 | eos => "
         "2",
         {.nested = true}},
        {"%top\n  % indented\ne4 *",
         "%top | invalid INVALID (%) | start | move indented | move e4 | end 3 => 0 | eos => 2"},
        {"%top\n  % indented\ne4 *",
         "%top | % indented | start | move e4 | end 3 => 0 | eos => 2",
         {.anywhere = true}},
        // Comments, escape lines and stray tokens do not start a game, so tags
        // may still follow them.
        {"{c}\n%e\n) # ] > \"s\" [A \"b\"] *",
         "{c} | %e | ) | invalid INVALID (#) | invalid RBRACKET | invalid RANGLE | invalid STRING (s) | tag "
         "A=b | "
         "start | end 3 => 0 | eos => 2"},
        {"$1 [A \"b\"] *", "start | nag $1=1 | end 4 missing => 1 | tag A=b | start | end 3 => 0 | eos => 2"},
        {"! [A \"b\"] *", "start | ann !=1 | end 4 missing => 1 | tag A=b | start | end 3 => 0 | eos => 2"},
        {"( [A \"b\"] *", "start | ( | end 4 missing => 1 | tag A=b | start | end 3 => 0 | eos => 2"},
        {"1 [A \"b\"]", "start | end 4 missing => 1 | tag A=b | end 4 missing => 1 | eos => 2"},
        {"{only a comment}", "{only a comment} | end 4 missing => 1 | eos => 2"},
        {"1. e4 e5 [White \"next\"] d4 *",
         "start | move e4 | move e5 | end 4 missing => 1 | tag White=next | start | move d4 | end 3 => 0 | "
         "eos => 2"},
        {"1. e4", "start | move e4 | end 4 missing => 1 | eos => 2"},
        // The reserved expansion syntax hides everything up to its '>'.
        {"e4 < e5 [x] 1-0 > e5 *", "start | move e4 | move e5 | end 3 => 0 | eos => 2"},
        // Tokens are skipped, not characters: a '>' inside a comment is no end.
        {"e4 < { > } e5 *", "start | move e4 | end 4 missing => 1 | eos => 2"},
        {"< a > [A \"b\"] e4 *", "tag A=b | start | move e4 | end 3 => 0 | eos => 2"},
        {"e4 < e5 1-0", "start | move e4 | end 4 missing => 1 | eos => 2"},
        {"e4 (d4 (c4) d5) ) e5 *",
         "start | move e4 | ( | move d4 | ( | move c4 | ) | move d5 | ) | ) | move e5 | "
         "end 3 => 0 | eos => 2"},
        // A move that cannot be played ends its line of play.
        {"1. e4 bad (e5) f4 {c} 1-0 [Event \"n\"] d4 *",
         "start | move e4 | move bad | end 0 => 0 | tag Event=n | start | move d4 | end 3 => 0 | eos => 2",
         {.failingMove = "bad"}},
        {"e4 (d4 bad (x (y)) z) e5 (bad) f4 *",
         "start | move e4 | ( | move d4 | move bad | ) | move e5 | ( | move bad | ) | move f4 | end 3 => 0 | "
         "eos => 2",
         {.failingMove = "bad"}},
        {"e4 bad e5 [A \"b\"] *",
         "start | move e4 | move bad | end 4 missing => 1 | tag A=b | start | end 3 => 0 | eos => 2",
         {.failingMove = "bad"}},
        {"e4 (bad e5",
         "start | move e4 | ( | move bad | end 4 missing => 1 | eos => 2",
         {.failingMove = "bad"}},
        {"bad", "start | move bad | end 4 missing => 1 | eos => 2", {.failingMove = "bad"}},
        {"e4 (d4 (c4) d5) e5 *",
         "start | move e4 | ( no | move e5 | end 3 => 0 | eos => 2",
         {.refuseVariations = true}},
        {"e4 (d4 1-0 e5 *",
         "start | move e4 | ( no | end 0 => 0 | start | move e5 | end 3 => 0 | eos => 2",
         {.refuseVariations = true}},
        {"e4 (d4 [A \"b\"]",
         "start | move e4 | ( no | end 4 missing => 1 | tag A=b | end 4 missing => 1 | eos => 2",
         {.refuseVariations = true}},
        // Errors recorded by the derived class make the result 1.
        {"e4 bad * e4 *",
         "start | move e4 | move bad | end 3 => 1 | start | move e4 | end 3 => 0 | eos => 2",
         {.errorMove = "bad"}},
    };
    for (const ParseCase& c : cases) EXPECT_EQ(parse(c.text, c.options), c.expected) << "input: " << c.text;
}

TEST(PGNParser, PositionsOfCallbacks) {
    const ParseCase cases[] = {
        {"\xEF\xBB\xBF[A \"b\"]\r\n1. e4 {c\r\nd} *\r\n",
         "tag A=b@0:4:4 | start@1:1:13 | move e4@1:4:16 | {c d}@1:7:19 | end 3@2:4:26 => 0 | eos@3:1:29 => "
         "2"},
        // A newline in a string is reported on the string's own line.
        {"[A \"x\n\"]",
         "unterminated x@0:5:5 | invalid STRING (])@1:1:7 | end 4 missing@1:3:9 => 1 | eos@1:4:10 => 2"},
        {"e4\n[A \"b\"]\n;c\n",
         "start@0:1:1 | move e4@0:1:1 | end 4 missing@1:1:4 => 1 | tag A=b@1:1:4 | ;c@2:1:12 | "
         "end 4 missing@3:1:15 => 1 | eos@3:2:16 => 2"},
        {"e4 (bad x) e5 *",
         "start@0:1:1 | move e4@0:1:1 | (@0:4:4 | move bad@0:5:5 | )@0:10:10 | "
         "move e5@0:12:12 | end 3@0:15:15 => 0 | eos@0:16:16 => 2",
         {.failingMove = "bad"}},
    };
    for (const ParseCase& c : cases)
        EXPECT_EQ(parse(c.text, c.options, true), c.expected) << "input: " << c.text;
}

}  // namespace
}  // namespace tarnfold::PGN
