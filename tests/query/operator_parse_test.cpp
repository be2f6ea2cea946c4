// The string, membership, attack, colon and identity operators, parsed with
// stand-in operands of every type ("zpos" a Position, "zpiece" a Piece ...),
// including types that no filter of the grammar gives yet.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "query/dump_target.h"
#include "query/handlers/handler_support.h"
#include "query/nodes/string_nodes.h"
#include "query/parser.h"
#include "query/print_target.h"
#include "stand_in_parse.h"

namespace tarnfold::zmf {
namespace {

class OperatorParse : public StandInParse {};

TEST_F(OperatorParse, ColonTakesAPositionAndHasTheTypeOfItsRightSide) {
    EXPECT_EQ(tree("zpos : a"),
              "ColonOperator {Set}\n"
              "|-StandIn (zpos) {Position}\n"
              "`-PieceDesignator (a) pieces: a {Set}\n");
    // Right-associative, and of no fixed type.
    EXPECT_EQ(tree("zpos : zpos : zstr"),
              "ColonOperator {String}\n"
              "|-StandIn (zpos) {Position}\n"
              "`-ColonOperator {String}\n"
              "  |-StandIn (zpos) {Position}\n"
              "  `-StandIn (zstr) {String}\n");
    EXPECT_EQ(tree("zpos : zempty"),
              "ColonOperator {Empty}\n"
              "|-StandIn (zpos) {Position}\n"
              "`-StandIn (zempty) {Empty}\n");
    // The colon binds tighter than any other infix operator.
    EXPECT_EQ(tree("zpos : a attacks b"),
              "Attacks {Set}\n"
              "|-ColonOperator {Set}\n"
              "| |-StandIn (zpos) {Position}\n"
              "| `-PieceDesignator (a) pieces: a {Set}\n"
              "`-PieceDesignator (b) pieces: b {Set}\n");
    EXPECT_EQ(tree("zpos : zstr ~~ \"x\""),
              "PatternMatch (\"x\") {String}\n"
              "`-ColonOperator {String}\n"
              "  |-StandIn (zpos) {Position}\n"
              "  `-StandIn (zstr) {String}\n");

    for (const char* left : {"znum", "zpiece", "zstr", "zdict", "zbool"}) {
        tree(std::string(left) + " : 1");
        EXPECT_EQ(messages(), "error @" + std::to_string(std::string(left).size() + 1) + " [0-" +
                                  std::to_string(std::string(left).size() - 1) +
                                  "]: Left operand to operator ':' must be a position filter\n")
            << left;
    }
}

TEST_F(OperatorParse, PiecesStandForTheirSquaresWhereASetIsNeeded) {
    EXPECT_EQ(tree("zpiece in a"),
              "InOperator {Boolean}\n"
              "|-PieceIDToSetConversion {Set}\n"
              "| `-StandIn (zpiece) {Piece}\n"
              "`-PieceDesignator (a) pieces: a {Set}\n");
    EXPECT_EQ(tree("a attacks zpiece"),
              "Attacks {Set}\n"
              "|-PieceDesignator (a) pieces: a {Set}\n"
              "`-PieceIDToSetConversion {Set}\n"
              "  `-StandIn (zpiece) {Piece}\n");
    EXPECT_EQ(tree("zpiece attacked by zpiece"),
              "AttackedBy {Set}\n"
              "|-PieceIDToSetConversion {Set}\n"
              "| `-StandIn (zpiece) {Piece}\n"
              "`-PieceIDToSetConversion {Set}\n"
              "  `-StandIn (zpiece) {Piece}\n");
    // Strings only meet strings.
    EXPECT_EQ(tree("zstr in zstr"),
              "InOperator {Boolean}\n"
              "|-StandIn (zstr) {String}\n"
              "`-StandIn (zstr) {String}\n");
    tree("zstr in zpiece");
    EXPECT_EQ(messages(),
              "error @5 [0-13]: The operands to the 'in' filter must both be set or string filters\n");
    tree("zdict in zstr");
    EXPECT_EQ(messages(), "error @6 [0-4]: Left operand to 'in' filter must be a set or string filter\n");
    tree("zpos attackedby a");
    EXPECT_EQ(messages(), "error @5 [0-3]: Left operand to 'attackedby' filter must be a set filter\n");
    tree("a attacks zpos");
    EXPECT_EQ(messages(), "error @2 [10-13]: Right operand to 'attacks' filter must be a set filter\n");
    tree("a attacked zpos");
    EXPECT_EQ(messages(), "error @2: Missing 'by' keyword after 'attacked'\n");
    tree("a attacked");
    EXPECT_EQ(messages(), "error @2: Missing 'by' keyword after 'attacked'\n");
}

TEST_F(OperatorParse, PatternsAreCompiledWhileParsing) {
    tree("zstr ~~ \"a(b+)\"");
    ASSERT_NE(query.root, nullptr);
    const auto& match = static_cast<const PatternMatchNode&>(*query.root->children.front());
    ASSERT_EQ(match.kind, NodeKind::PatternMatch);
    EXPECT_EQ(match.patternText, "a(b+)");
    ASSERT_NE(match.pattern, nullptr);
    EXPECT_EQ(match.pattern->pattern(), icu::UnicodeString(u"a(b+)"));
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString subject(u"xabbc");
    std::unique_ptr<icu::RegexMatcher> matcher(match.pattern->matcher(subject, status));
    ASSERT_TRUE(matcher->find(status));
    EXPECT_EQ(matcher->group(1, status), icu::UnicodeString(u"bb"));
    EXPECT_EQ(messages(), "");

    // Parentheses around the literal are no obstacle; anything else is.
    EXPECT_EQ(tree("zstr ~~ (\"x\")"), "PatternMatch (\"x\") {String}\n`-StandIn (zstr) {String}\n");
    tree("zstr ~~ zstr");
    EXPECT_EQ(messages(), "error @5 [8-11]: Right operand to regex filter must be a string literal\n");
    tree("zstr ~~ \"a\" + \"b\" ~~ zstr");
    EXPECT_EQ(messages(), "error @18 [21-24]: Right operand to regex filter must be a string literal\n");
    tree("zset ~~ \"a\"");
    EXPECT_EQ(messages(), "error @5 [0-3]: Left operand to binary operator '~~' must be a string filter\n");

    // Only a pattern that matches the empty text is warned about.
    for (const char* pattern : {"a*", "", "x|", "^", "(a?)(b?)", "$"}) {
        tree("zstr ~~ \"" + std::string(pattern) + "\"");
        EXPECT_EQ(messages(), "warning @5 [8-" + std::to_string(9 + std::string(pattern).size()) +
                                  "]: Regular expression can yield empty matches\n")
            << pattern;
    }
    for (const char* pattern : {"a+", "a{1,3}", "x|y", "^a$"}) {
        tree("zstr ~~ \"" + std::string(pattern) + "\"");
        EXPECT_EQ(messages(), "") << pattern;
    }
}

TEST_F(OperatorParse, PatternErrorsPointIntoTheLiteral) {
    // 'é' is two bytes, the caret goes to the ')' behind it.
    tree(
        "zstr ~~ \"\xC3\xA9"
        "a)b\"");
    EXPECT_EQ(messages(), "error @12 [8-14]: Invalid regular expression: U_REGEX_MISMATCHED_PAREN\n");
    // A CR LF ends one line; ICU counts lines and columns from 1.
    tree("zstr ~~ \"x\r\ny)\"");
    EXPECT_EQ(messages(), "error @13 [8-14]: Invalid regular expression: U_REGEX_MISMATCHED_PAREN\n");
    // Bytes that are no UTF-8 were one character each in the pattern.
    tree("zstr ~~ \"\x80\x80)x\"");
    EXPECT_EQ(messages(), "error @11 [8-13]: Invalid regular expression: U_REGEX_MISMATCHED_PAREN\n");
    tree("zstr ~~ \"\xE4\xB8\x80\xE4)\"");
    EXPECT_EQ(messages(), "error @13 [8-14]: Invalid regular expression: U_REGEX_MISMATCHED_PAREN\n");
    // An error at the end of the pattern is shown at its last character.
    tree("zstr ~~ \"ab[\"");
    EXPECT_EQ(messages(), "error @11 [8-12]: Invalid regular expression: U_REGEX_MISSING_CLOSE_BRACKET\n");
    tree("zstr ~~ \"a{2,1}\"");
    EXPECT_EQ(messages(), "error @14 [8-15]: Invalid regular expression: U_REGEX_MAX_LT_MIN\n");
}

TEST_F(OperatorParse, LiteralsAndTheirLimits) {
    EXPECT_EQ(tree("\\-0"), "CapturedGroupIndex (0) {Numeric}\n");
    EXPECT_EQ(tree("\\007"), "CapturedGroupString (7) {String}\n");
    for (const char* text : {"\\1000", "\\0000", "\\-1000", "\\-0000"}) {
        tree(text);
        EXPECT_EQ(messages(), "error @0: Capture group number must be between 0 and 999\n") << text;
    }
    // The literal's text is decoded once; values share it.
    tree("\"\xF0\x9D\x84\x9E x\"");
    ASSERT_NE(query.root, nullptr);
    const auto& string = static_cast<const StringNode&>(*query.root->children.front());
    EXPECT_EQ(string.value->length(), 3);
    EXPECT_EQ(string.value->toUtf8(), "\xF0\x9D\x84\x9E x");
    EXPECT_EQ(tree("\"\""), "String (\"\") {String}\n");
    EXPECT_EQ(static_cast<const StringNode&>(*query.root->children.front()).value.get(),
              emptyZmfString().get());
    tree("\\\"");
    const auto& quote = static_cast<const BackslashLiteralNode&>(*query.root->children.front());
    EXPECT_EQ(quote.value->toUtf8(), "\"");
    EXPECT_EQ(quote.character, '"');
}

TEST_F(OperatorParse, TheBackquoteRemarkComesOncePerBackquote) {
    EXPECT_EQ(tree("`zpiece"), "Identity {Piece}\n`-StandIn (zpiece) {Piece}\n");
    EXPECT_EQ(messages(), "info @0: The '`' filter is a ZMFi extension\n");

    // A range tried and given up reads the backquote twice.
    parser.beginParse(source("`3 `znum"));
    NodePtr range = parser.parseRange(false);
    EXPECT_EQ(range, nullptr);
    NodePtr first = parser.parseExpression(0);
    range = parser.parseRange(true);
    ASSERT_NE(range, nullptr);
    EXPECT_EQ(messages(),
              "info @0: The '`' filter is a ZMFi extension\n"
              "info @3: The '`' filter is a ZMFi extension\n");
}

TEST_F(OperatorParse, PrintedFormsParseAgainToTheSameTree) {
    EXPECT_EQ(printed("(zpos : a) | b"), "zpos : a | b");
    EXPECT_EQ(printed("zpos : (a | b)"), "zpos : (a | b)");
    EXPECT_EQ(printed("(zpos : zpos) : 1"), "(zpos : zpos) : 1");
    EXPECT_EQ(printed("zpos : zpos : 1"), "zpos : zpos : 1");
    EXPECT_EQ(printed("a attacked by b attacks k"), "a attackedby b attacks k");
    EXPECT_EQ(printed("a attacks (b attackedby k)"), "a attacks (b attackedby k)");
    // Without kept parentheses the spans are the inner filters'.
    EXPECT_EQ(printed("(a in b) in k"),
              "no tree: error @9 [1-6]: Left operand to 'in' filter must be a set or string filter\n");
    EXPECT_EQ(
        printed("zstr in (zstr in zstr)"),
        "no tree: error @5 [0-20]: The operands to the 'in' filter must both be set or string filters\n");
    EXPECT_EQ(printed("a in (b | k)"), "a in b | k");
    EXPECT_EQ(printed("(zstr + \"b\") ~~ \"a\""), "(zstr + \"b\") ~~ \"a\"");
    EXPECT_EQ(printed("zstr ~~ \"a\" ~~ \"b\""), "zstr ~~ \"a\" ~~ \"b\"");
    EXPECT_EQ(printed("#(zstr ~~ \"a\")"), "#zstr ~~ \"a\"");
    EXPECT_EQ(printed("zpos : zstr ~~ \"a\""), "zpos : zstr ~~ \"a\"");
    EXPECT_EQ(printed("`(1 + 2)"), "`(1 + 2)");
    EXPECT_EQ(printed("(`1) + 2"), "`1 + 2");
    EXPECT_EQ(printed("``a"), "` `a");
    EXPECT_EQ(printed("\\1 + \\n + \\\\ + \"x\""), "\\1 + \\n + \\\\ + \"x\"");
    EXPECT_EQ(printed("-\\-1"), "-\\-1");
    EXPECT_EQ(printed("\"a\nb\" in \"\""), "\"a\nb\" in \"\"");
}

}  // namespace
}  // namespace tarnfold::zmf
