#include "query/parser.h"

#include <gtest/gtest.h>

#include <random>

#include "query/print_target.h"
#include "tree_shape.h"

namespace tarnfold::zmf {
namespace {

QuerySource sourceOf(const std::string& text) {
    QuerySource source;
    source.add("q.zmf", text);
    return source;
}

std::string printed(const ZMFNode& root) {
    PrintTarget print;
    root.print(print);
    return print.text();
}

TEST(Parser, RangesTakeOneOrTwoLiteralsAndGiveBackEverythingElse) {
    Parser parser;
    struct Case {
        const char* text;
        const char* range;  // empty: no range
        TokenKind next;
    } cases[] = {
        {"3 5 check", "3 5", TokenKind::KwCheck}, {"-2 check", "-2", TokenKind::KwCheck},
        {"4", "4", TokenKind::EndOfFile},         {"check 3", "", TokenKind::KwCheck},
        {"3 + 4", "", TokenKind::IntegerLiteral}, {"2 3 + 4", "2", TokenKind::IntegerLiteral},
        {"", "", TokenKind::EndOfFile},
    };
    for (const Case& c : cases) {
        parser.beginParse(sourceOf(c.text));
        NodePtr range = parser.parseRange(false);
        EXPECT_EQ(range ? printed(*range) : "", c.range) << c.text;
        EXPECT_EQ(parser.peekToken().kind, c.next) << c.text;
        EXPECT_TRUE(parser.messages().messages().empty()) << c.text;
        EXPECT_FALSE(parser.silent || parser.rangeOnly) << c.text;
    }
}

TEST(Parser, AfterTheFirstErrorTheParseGoesQuietAndGivesNoTree) {
    Parser parser;
    ParsedQuery query = parser.parseQuery(sourceOf("1 ) ( ] check"));
    EXPECT_EQ(query.root, nullptr);
    ASSERT_EQ(parser.messages().messages().size(), 1u);
    EXPECT_EQ(messageText(parser.messages().messages()[0]), "Unexpected token: ')'");

    // The same parser parses the next query from a clean state.
    query = parser.parseQuery(sourceOf("check"));
    ASSERT_NE(query.root, nullptr);
    EXPECT_TRUE(parser.messages().messages().empty());
    EXPECT_EQ(query.root->children.size(), 1u);
}

TEST(Parser, DeepNestingIsADiagnosticNotACrash) {
    Parser parser;
    for (std::string prefix : {"(", "not ", "- ", "{", "# ~"}) {
        std::string text;
        for (int i = 0; i < 20000; ++i) text += prefix;
        ParsedQuery query = parser.parseQuery(sourceOf(text + "1"));
        EXPECT_EQ(query.root, nullptr) << prefix;
        ASSERT_EQ(parser.messages().messages().size(), 1u) << prefix;
        EXPECT_EQ(messageText(parser.messages().messages()[0]),
                  "Expression nested too deeply: more than 400 levels");
    }
    std::string fine;
    for (int i = 0; i < 300; ++i) fine += "(";
    fine += "1";
    for (int i = 0; i < 300; ++i) fine += ")";
    EXPECT_NE(parser.parseQuery(sourceOf(fine)).root, nullptr);
}

TEST(Parser, OperandsTriedAfterPlusAndStarAreNotRetriedForever) {
    // Each "+ 2 *{" would double the work: the operand tried after * fails at
    // the end of the text and is offered again once + has taken its operand.
    std::string text;
    for (int i = 0; i < 60; ++i) text += "3 + 2 *{";
    Parser parser;
    ParsedQuery query = parser.parseQuery(sourceOf(text));
    EXPECT_EQ(query.root, nullptr);
    ASSERT_EQ(parser.messages().messages().size(), 1u);
    EXPECT_EQ(messageText(parser.messages().messages()[0]), "Unexpected token: '*'");
    EXPECT_EQ(*parser.messages().messages()[0].location, 6u);

    // An operand of the wrong type after + is remembered as well: each
    // "5 + not ..." is declined, offered to the level above, and would
    // parse the same operand again there.
    text = "1 + 2";
    for (int i = 0; i < 40; ++i) text += " < 51 > 5 > 5 + not 1 > 0 - 93";
    query = parser.parseQuery(sourceOf(text));
    EXPECT_EQ(query.root, nullptr);
    ASSERT_EQ(parser.messages().messages().size(), 1u);
    EXPECT_EQ(messageText(parser.messages().messages()[0]),
              "the operands to operator '+' must both be a numeric or string filter");
    EXPECT_EQ(*parser.messages().messages()[0].location, 19u);

    // The last guard: a budget of expressions per parse.
    parser.expressionBudget = 5;
    query = parser.parseQuery(sourceOf("1 2 3 4 5 6 7"));
    EXPECT_EQ(query.root, nullptr);
    ASSERT_EQ(parser.messages().messages().size(), 1u);
    EXPECT_EQ(messageText(parser.messages().messages()[0]),
              "Query too complex to parse: it would take too long");
    EXPECT_EQ(*parser.messages().messages()[0].location, 10u);
}

// Random token soups: every parse gives a tree or an error, never both, and
// a tree printed as text parses again to the same shape.
TEST(Parser, RandomQueriesGiveATreeOrAnErrorAndPrintedTreesReparse) {
    const std::vector<std::string> pieces = {"1",          "23",
                                             "-",          "+",
                                             "*",          "/",
                                             "%",          "(",
                                             ")",          "{",
                                             "}",          "#",
                                             "~",          "&",
                                             "|",          "<",
                                             "<=",         ">",
                                             ">=",         "==",
                                             "!=",         "and",
                                             "or",         "not",
                                             "abs",        "check",
                                             "mate",       "wtm",
                                             "btm",        "true",
                                             "false",      "a1",
                                             "Ra",         "[RQ]",
                                             "_",          ".",
                                             "a",          "A",
                                             "//c\n",      "/*c*/",
                                             "\xff",       "\xc3\xa9",
                                             "\"s\"",      "x",
                                             "a1-8",       "[]",
                                             "m",          "=",
                                             "+=",         "|=",
                                             "[",          "]",
                                             ":",          "in",
                                             "attacks",    "attackedby",
                                             "~~",         "\"a+\"",
                                             "`",          "\\n",
                                             "\\1",        "s = \"xy\"",
                                             "m = 1",      "function f(v) { v }",
                                             "f(",         "dictionary d",
                                             "d[\"k\"]",   "square v in",
                                             "piece v in", "persistent",
                                             "unbind",     "isbound"};
    std::mt19937 random(7);
    Parser parser;
    Parser reparser;
    reparser.keepParens = false;
    parser.keepParens = false;
    int trees = 0;
    for (int round = 0; round < 4000; ++round) {
        std::string text;
        for (int n = random() % 9; n > 0; --n) text += pieces[random() % pieces.size()] + " ";
        ParsedQuery query = parser.parseQuery(sourceOf(text));
        bool hasError = false;
        for (const Message& message : parser.messages().messages())
            hasError = hasError || message.level == MessageLevel::Error;
        ASSERT_NE(query.root != nullptr, hasError) << text;
        if (!query.root) continue;
        ++trees;
        std::string again = printed(*query.root);
        ParsedQuery reparsed = reparser.parseQuery(sourceOf(again));
        ASSERT_NE(reparsed.root, nullptr) << text << " printed as " << again;
        EXPECT_EQ(treeShape(*reparsed.root), treeShape(*query.root)) << text << " printed as " << again;
    }
    // The soup must not be all errors, or the round trip tests nothing.
    EXPECT_GT(trees, 600);
}

}  // namespace
}  // namespace tarnfold::zmf
