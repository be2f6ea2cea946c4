// The string, tag, file and study-database filters and the query header:
// what the parse hands on beyond the dump (header settings, node fields),
// and that printed filters read back as the same tree.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "query/handlers/handler_support.h"
#include "query/nodes/control_nodes.h"
#include "query/nodes/hhdb_nodes.h"
#include "query/nodes/literal_nodes.h"
#include "query/nodes/tag_nodes.h"
#include "query/parser.h"
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

std::string messagesOf(const Parser& parser) {
    std::string text;
    for (const Message& message : parser.messages().messages()) {
        text.append(messageText(message));
        text.push_back('\n');
    }
    return text;
}

TEST(QueryHeader, SettingsReachTheParsedQuery) {
    Parser parser;
    ParsedQuery query = parser.parseQuery(
        sourceOf("zmf(input a.pgn input \"b c.pgn\" output dir/o.pgn matchcount 2 5 sort matchcount 1 "
                 "gamenumber 7 result 0-1 matchstring \"hit\" silent variations) check"));
    ASSERT_TRUE(query.root) << messagesOf(parser);
    const QueryHeaderSettings& header = query.header;
    EXPECT_EQ(header.input, (std::vector<std::string>{"a.pgn", "b c.pgn"}));
    EXPECT_EQ(header.output, "dir/o.pgn");
    ASSERT_TRUE(header.matchCount);
    EXPECT_EQ(header.matchCount->first, 2u);
    EXPECT_EQ(header.matchCount->last, 5u);
    ASSERT_TRUE(header.sortMatchCount);
    EXPECT_EQ(header.sortMatchCount->first, 1u);
    EXPECT_EQ(header.sortMatchCount->last, 1u);
    ASSERT_TRUE(header.gameNumber);
    EXPECT_EQ(header.gameNumber->first, 7u);
    EXPECT_EQ(header.result, 1u);
    EXPECT_EQ(header.matchString, "hit");
    EXPECT_TRUE(header.silent);
    EXPECT_FALSE(header.quiet);
    EXPECT_TRUE(header.variations);
}

TEST(QueryHeader, TwoHeadersAddInputsAndTheLaterOverrides) {
    Parser parser;
    ParsedQuery query =
        parser.parseQuery(sourceOf("zmf(input a.pgn output x.pgn quiet) zmf(input b.pgn output y.pgn)"));
    ASSERT_TRUE(query.root) << messagesOf(parser);
    EXPECT_EQ(query.header.input, (std::vector<std::string>{"a.pgn", "b.pgn"}));
    EXPECT_EQ(query.header.output, "y.pgn");
    EXPECT_TRUE(query.header.quiet);
}

TEST(QueryHeader, ANewParseStartsWithoutSettingsAndSecureModeDropsFiles) {
    Parser parser;
    parser.parseQuery(sourceOf("zmf(input a.pgn result *)"));
    ParsedQuery second = parser.parseQuery(sourceOf("check"));
    EXPECT_TRUE(second.header.input.empty());
    EXPECT_FALSE(second.header.result);

    parser.secureMode = true;
    ParsedQuery secure = parser.parseQuery(sourceOf("zmf(input a.pgn output b.pgn gamenumber 3)"));
    ASSERT_TRUE(secure.root) << messagesOf(parser);
    EXPECT_TRUE(secure.header.input.empty());
    EXPECT_FALSE(secure.header.output);
    ASSERT_TRUE(secure.header.gameNumber);
    EXPECT_EQ(secure.header.gameNumber->first, 3u);
    EXPECT_EQ(messagesOf(parser),
              "'input' parameter ignored in secure mode\n'output' parameter ignored in secure mode\n");
}

TEST(QueryHeader, TheFinalPassKeepsTheSettingsButNotTheNode) {
    Parser parser;
    parser.finalPass = true;
    ParsedQuery query = parser.parseQuery(sourceOf("zmf(output o.pgn) check"));
    ASSERT_TRUE(query.root);
    ASSERT_EQ(query.root->children.size(), 1u);
    EXPECT_EQ(query.root->children[0]->kind, NodeKind::Check);
    EXPECT_EQ(query.header.output, "o.pgn");
}

TEST(RawWord, ReadsUpToABlankOrParenthesisAndMovesTheCursor) {
    Parser parser;
    parser.beginParse(sourceOf("  ../a/b.pgn) c.x\td"));
    Token word = parser.readRawWord();
    EXPECT_EQ(word.text, "../a/b.pgn");
    EXPECT_EQ(word.begin, OptionalOffset(2));
    EXPECT_EQ(word.end, OptionalOffset(11));
    EXPECT_EQ(parser.lastToken().text, "../a/b.pgn");
    EXPECT_EQ(parser.nextToken().kind, TokenKind::RightParen);
    EXPECT_EQ(parser.readRawWord().text, "c.x");
    EXPECT_EQ(parser.readRawWord().text, "d");
    EXPECT_EQ(parser.readRawWord().text, "");
    EXPECT_EQ(parser.peekToken().kind, TokenKind::EndOfFile);
}

const HHDBNode& onlyHHDB(const ParsedQuery& query) {
    EXPECT_EQ(query.root->children.size(), 1u);
    const ZMFNode& node = *query.root->children.front();
    EXPECT_EQ(node.kind, NodeKind::HHDB);
    return static_cast<const HHDBNode&>(node);
}

TEST(HHDB, AwardFormSetsItsFields) {
    Parser parser;
    ParsedQuery query = parser.parseQuery(sourceOf("hhdb commendation special max"));
    ASSERT_TRUE(query.root) << messagesOf(parser);
    const HHDBNode& node = onlyHHDB(query);
    EXPECT_EQ(node.code, 11u);
    EXPECT_EQ(node.resultKind, ValueType::Numeric);
    EXPECT_EQ(node.awardKind, HHDBAwardKind::Commendation);
    EXPECT_EQ(node.special, 1);
    EXPECT_EQ(node.nonspecial, 0);
    EXPECT_EQ(node.max, 1);
    EXPECT_EQ(node.sortable, 0);
    EXPECT_EQ(node.command, "commendation special max");

    query = parser.parseQuery(sourceOf("hhdb \"TW\""));
    ASSERT_TRUE(query.root) << messagesOf(parser);
    EXPECT_EQ(onlyHHDB(query).code, 33u);
    EXPECT_EQ(onlyHHDB(query).command, "TW");
}

// Stands in for the sort filter, which is not part of these families.
class SortStandInHandler : public PrefixHandler {
public:
    SortStandInHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwSort) {}
    NodePtr parse(const Token& token) override { return makeNode<TrueNode>(parser, token); }
};

TEST(HHDB, ASortBehindTheAwardFormIsNotPartOfItAndIsWarnedAbout) {
    Parser parser;
    parser.registerPrefix(std::make_unique<SortStandInHandler>(parser));
    ParsedQuery query = parser.parseQuery(sourceOf("hhdb prize sort"));
    ASSERT_TRUE(query.root) << messagesOf(parser);
    ASSERT_EQ(query.root->children.size(), 2u);
    EXPECT_EQ(query.root->children[1]->kind, NodeKind::True);
    EXPECT_EQ(static_cast<const HHDBNode&>(*query.root->children[0]).sortable, 0);
    EXPECT_EQ(messagesOf(parser),
              "'sort' keyword following 'hhdb' award filter is suspicious, parenthesize the preceding 'hhdb' "
              "filter or place 'sort' after 'hhdb' to suppress this warning\n");

    // A sort word makes the award form a sort key of its own.
    query = parser.parseQuery(sourceOf("hhdb sort prize"));
    ASSERT_TRUE(query.root) << messagesOf(parser);
    ASSERT_EQ(query.root->children.size(), 1u);
    ASSERT_EQ(query.root->children[0]->kind, NodeKind::Sort);
    const auto& sort = static_cast<const SortNode&>(*query.root->children[0]);
    EXPECT_EQ(sort.implicit, 1);
    EXPECT_EQ(sort.slot, 0u);
    ASSERT_EQ(sort.operand->kind, NodeKind::HHDB);
    EXPECT_EQ(static_cast<const HHDBNode&>(*sort.operand).sortable, 1);
    EXPECT_EQ(query.sortSlots.size(), 1u);
    EXPECT_EQ(messagesOf(parser), "");
}

TEST(KeywordPrint, PrintedFiltersReadBackAsTheSameTree) {
    const char* texts[] = {
        "comment (\"a\" date \"x\" result 1-0)",
        "message quiet (\"m\" 1)",
        "str (\"a\" -1)",
        "indexof (\"a\" \"b\") + 1",
        "settag (\"a\" tag \"b\")",
        "writefile noclobber (\"f\" readfile \"g\" + \"h\")",
        "commandpipe (\"p\" \"q\" \"r\")",
        "player black \"K\" elo white year result \"1/2-1/2\"",
        "sqrt (4 + 5) + 1",
        "(int \"3\") + 1",
        "ascii \"A\" + 1",
        "hhdb (c) hhdb gbr material hhdb sort hm",
        "removetag \"x\" removecomment hascomment \"y\"",
    };
    for (const char* text : texts) {
        Parser parser;
        parser.keepParens = false;
        ParsedQuery first = parser.parseQuery(sourceOf(text));
        ASSERT_TRUE(first.root) << text << "\n" << messagesOf(parser);
        std::string again = printed(*first.root);
        ParsedQuery second = parser.parseQuery(sourceOf(again));
        ASSERT_TRUE(second.root) << again << "\n" << messagesOf(parser);
        EXPECT_EQ(treeShape(*second.root), treeShape(*first.root)) << text << " printed as " << again;
    }
}

}  // namespace
}  // namespace tarnfold::zmf
