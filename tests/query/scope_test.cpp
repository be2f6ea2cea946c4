// Scopes and slots as the parser leaves them: what a tree dump does not show.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "query/dump_target.h"
#include "query/nodes/declaration_nodes.h"
#include "query/nodes/iteration_nodes.h"
#include "query/nodes/variable_nodes.h"
#include "query/parser.h"
#include "query/print_target.h"

namespace tarnfold::zmf {
namespace {

QuerySource sourceOf(const std::string& text) {
    QuerySource source;
    source.add("q.zmf", text);
    return source;
}

// Parses the filters of `text` one by one, as the top level does, and
// expects no error or warning (remarks on extensions may come).
std::vector<NodePtr> parseAll(Parser& parser, const std::string& text) {
    parser.beginParse(sourceOf(text));
    std::vector<NodePtr> nodes;
    while (parser.peekToken().kind != TokenKind::EndOfFile) {
        NodePtr node = parser.parseExpression(0);
        EXPECT_NE(node, nullptr) << text;
        if (!node) break;
        nodes.push_back(std::move(node));
    }
    for (const Message& message : parser.messages().messages())
        EXPECT_GT(message.level, MessageLevel::Warning) << text << ": " << messageText(message);
    return nodes;
}

std::vector<std::string> slotNames(const Parser& parser) {
    std::vector<std::string> names;
    for (const VariableSlot& slot : parser.symbols.slots()) names.push_back(slot.name);
    return names;
}

std::uint32_t identifierSlot(const NodePtr& node) {
    EXPECT_EQ(node->kind, NodeKind::Identifier);
    return static_cast<const IdentifierNode&>(*node).slot;
}

// The messages of a failed parse, one a line.
std::string failure(Parser& parser, const std::string& text) {
    parser.beginParse(sourceOf(text));
    while (parser.peekToken().kind != TokenKind::EndOfFile)
        if (!parser.parseExpression(0)) break;
    std::string texts;
    for (const Message& message : parser.messages().messages()) texts += messageText(message) + "\n";
    return texts;
}

TEST(Scope, SlotsAreNumberedInOrderOfCreationAndNeverReused) {
    Parser parser;
    std::vector<NodePtr> nodes = parseAll(parser, "x = 1 square sq in A sq square sq in A sq y = 2");
    ASSERT_EQ(nodes.size(), 4u);
    const auto& first = static_cast<const SquareNode&>(*nodes[1]);
    const auto& second = static_cast<const SquareNode&>(*nodes[2]);
    EXPECT_EQ(first.slot, 1u);
    EXPECT_EQ(identifierSlot(first.body), 1u);
    // The first loop's scope has ended, yet its slot stays taken.
    EXPECT_EQ(second.slot, 2u);
    EXPECT_EQ(identifierSlot(second.body), 2u);
    EXPECT_EQ(slotNames(parser), (std::vector<std::string>{"x", "sq", "sq", "y"}));
    EXPECT_EQ(parser.symbols.slot(1).valueType, ValueType::Set);
    EXPECT_EQ(parser.symbols.depth(), 0u);
    EXPECT_EQ(parser.symbols.find("sq"), nullptr);
}

TEST(Scope, LoopVariablesHaveTheTypeOfWhatTheyWalkOver) {
    Parser parser;
    parseAll(
        parser,
        "dictionary dict piece pc in A pc square sq in A sq string ch in \"ab\" ch string key in dict key");
    ASSERT_EQ(parser.symbols.slotCount(), 5u);
    EXPECT_EQ(parser.symbols.slot(0).valueType, ValueType::Dictionary);
    EXPECT_EQ(parser.symbols.slot(1).valueType, ValueType::Piece);
    EXPECT_EQ(parser.symbols.slot(2).valueType, ValueType::Set);
    EXPECT_EQ(parser.symbols.slot(3).valueType, ValueType::String);
    EXPECT_EQ(parser.symbols.slot(4).valueType, ValueType::String);
}

TEST(Scope, ALocalShadowsAGlobalOnlyInsideItsBody) {
    Parser parser;
    std::vector<NodePtr> nodes = parseAll(parser, "sq = a1 square sq in sq sq | sq sq");
    ASSERT_EQ(nodes.size(), 3u);
    const auto& loop = static_cast<const SquareNode&>(*nodes[1]);
    // The source is read before the local exists.
    EXPECT_EQ(identifierSlot(loop.set), 0u);
    EXPECT_EQ(loop.slot, 1u);
    ASSERT_EQ(loop.body->kind, NodeKind::BitOr);
    EXPECT_EQ(identifierSlot(nodes[2]), 0u);
    ASSERT_NE(parser.symbols.find("sq"), nullptr);
    EXPECT_EQ(parser.symbols.find("sq")->slot, 0u);
}

TEST(Scope, ABarrierHidesTheCallersLocalsButNotTheGlobals) {
    Parser parser;
    parser.beginParse(sourceOf(""));
    SymbolTable& symbols = parser.symbols;
    symbols.findOrCreateGlobal("total");
    symbols.pushScope(false);
    symbols.declareLocal("outer", ValueType::Set);
    symbols.pushScope(false);
    // Without a barrier the enclosing locals stay visible.
    ASSERT_NE(symbols.find("outer"), nullptr);
    symbols.pushScope(true);
    symbols.declareLocal("inner", ValueType::Numeric);
    EXPECT_EQ(symbols.find("outer"), nullptr);
    ASSERT_NE(symbols.find("total"), nullptr);
    EXPECT_EQ(symbols.find("total")->slot, 0u);
    ASSERT_NE(symbols.find("inner"), nullptr);
    symbols.popScope();
    EXPECT_EQ(symbols.find("inner"), nullptr);
    ASSERT_NE(symbols.find("outer"), nullptr);
    EXPECT_EQ(symbols.find("outer")->slot, 1u);

    // The same through the parser: a function body called from a loop sees
    // the global but not the loop variable.
    EXPECT_EQ(failure(parser, "function f() { total sq } total = 1 square sq in A f()"),
              "Attempted use of undefined variable 'sq'\nWhile instantiating function 'f'\n");
    parseAll(parser, "function f() { total } total = 1 square sq in A f()");
}

TEST(Scope, RestoreWithDiscardTakesBackSlotsAndNames) {
    Parser parser;
    parser.beginParse(sourceOf("x = 1 y = 2"));
    ParserSnapshot start = parser.snapshot();
    ASSERT_NE(parser.parseExpression(0), nullptr);
    ASSERT_EQ(parser.symbols.slotCount(), 1u);
    parser.restore(start, true);
    EXPECT_EQ(parser.symbols.slotCount(), 0u);
    EXPECT_EQ(parser.symbols.find("x"), nullptr);
    EXPECT_EQ(parser.peekToken().text, "x");

    // Without discard the reading goes back but the variables stay.
    ASSERT_NE(parser.parseExpression(0), nullptr);
    ParserSnapshot afterX = parser.snapshot();
    ASSERT_NE(parser.parseExpression(0), nullptr);
    parser.restore(afterX);
    EXPECT_EQ(slotNames(parser), (std::vector<std::string>{"x", "y"}));
    ASSERT_NE(parser.symbols.find("y"), nullptr);
    EXPECT_EQ(parser.peekToken().text, "y");

    // Discarding reaches names in open scopes and keeps older ones there.
    parser.symbols.pushScope(false);
    parser.symbols.declareLocal("kept", ValueType::Set);
    ParserSnapshot inScope = parser.snapshot();
    parser.symbols.declareLocal("dropped", ValueType::Set);
    parser.symbols.findOrCreateGlobal("droppedGlobal");
    parser.restore(inScope, true);
    EXPECT_EQ(slotNames(parser), (std::vector<std::string>{"x", "y", "kept"}));
    EXPECT_NE(parser.symbols.find("kept"), nullptr);
    EXPECT_EQ(parser.symbols.find("dropped"), nullptr);
    EXPECT_EQ(parser.symbols.find("droppedGlobal"), nullptr);
    parser.symbols.popScope();
}

TEST(Scope, EveryWayOutOfALoopClosesItsScope) {
    Parser parser;
    for (const char* text :
         {"square sq in A )", "square all sq in A (sq", "piece pc in A }", "piece all pc in A",
          "string ch in \"a\" )", "dictionary dict string key in dict ]", "square sq in 1 check",
          "square sq in A square t in A )", "square sq in A sq"}) {
        parser.beginParse(sourceOf(text));
        while (parser.peekToken().kind != TokenKind::EndOfFile)
            if (!parser.parseExpression(0)) break;
        EXPECT_EQ(parser.symbols.depth(), 0u) << text;
    }
}

TEST(Scope, DeclarationsMarkTheSlot) {
    Parser parser;
    parseAll(
        parser,
        "persistent (sum) quiet total = 0 persistent total = 1 persistent best = 2 persistent (max) best = 3 "
        "dictionary (int sum) quiet counts dictionary counts plain = 1");
    ASSERT_EQ(parser.symbols.slotCount(), 4u);
    const VariableSlot& total = parser.symbols.slot(0);
    EXPECT_TRUE(total.persistent);
    // A later declaration without strategy or quiet takes nothing away.
    EXPECT_TRUE(total.quiet);
    EXPECT_EQ(total.mergeStrategy, MergeStrategy::Sum);
    EXPECT_EQ(total.valueType, ValueType::Numeric);
    const VariableSlot& best = parser.symbols.slot(1);
    EXPECT_TRUE(best.persistent);
    EXPECT_FALSE(best.quiet);
    EXPECT_EQ(best.mergeStrategy, MergeStrategy::Max);
    const VariableSlot& counts = parser.symbols.slot(2);
    EXPECT_TRUE(counts.persistent);
    EXPECT_TRUE(counts.quiet);
    EXPECT_EQ(counts.mergeStrategy, MergeStrategy::IntSum);
    EXPECT_EQ(counts.valueType, ValueType::Dictionary);
    const VariableSlot& plain = parser.symbols.slot(3);
    EXPECT_FALSE(plain.persistent);
    EXPECT_EQ(plain.mergeStrategy, MergeStrategy::None);
}

TEST(Scope, PersistentVariablesHoldNumbersStringsOrSetsOnly) {
    // No filter gives a position yet, so the variable is typed by hand.
    Parser parser;
    parser.beginParse(sourceOf("persistent here = here"));
    Symbol& here = parser.symbols.findOrCreateGlobal("here");
    parser.symbols.setType(here, ValueType::Position);
    parser.symbols.slot(here.slot).persistent = true;
    EXPECT_EQ(parser.parseExpression(0), nullptr);
    ASSERT_EQ(parser.messages().messages().size(), 1u);
    EXPECT_EQ(messageText(parser.messages().messages()[0]),
              "Persistent variables must have numeric, string, or set type");
}

TEST(Scope, PieceAssignmentTypesANewOrUntypedVariable) {
    Parser parser;
    parser.beginParse(sourceOf("piece pid = Ra1"));
    parser.symbols.findOrCreateGlobal("pid");
    ASSERT_NE(parser.parseExpression(0), nullptr);
    EXPECT_EQ(parser.symbols.slotCount(), 1u);
    EXPECT_EQ(parser.symbols.slot(0).valueType, ValueType::Piece);
    EXPECT_EQ(parser.symbols.find("pid")->valueType, ValueType::Piece);

    // The assignment makes a global, even inside a loop body.
    parseAll(parser, "square sq in A piece pid = sq pid");
    EXPECT_EQ(slotNames(parser), (std::vector<std::string>{"sq", "pid"}));
    EXPECT_EQ(failure(parser, "square sq in A piece sq = Ra1"),
              "Non-piece variable cannot be used as target of assignment in piece filter\n");
}

// The tree without locations, so that two parses of different texts compare.
std::string shape(const ZMFNode& root) {
    DumpTarget dump(nullptr, false, false);
    root.dump(dump, true);
    return dump.text();
}

std::string printed(const ZMFNode& root) {
    PrintTarget print;
    root.print(print);
    return print.text();
}

// Loops two deep, with every kind of body and with loops as sources: each
// prints as text that reads back as the same tree, with parentheses dropped
// as in the run. A source that is a loop keeps its parentheses, or the
// outer body would join the inner one.
TEST(Scope, PrintedLoopsAndDeclarationsReadBackTheSame) {
    struct Head {
        const char* text;
        const char* source;
        bool takesSet;
        bool givesSet;
    };
    const std::vector<Head> heads = {
        {"square sq in ", "A", true, true},         {"square all sq in ", "a1-8", true, false},
        {"piece pc in ", "[Aa]", true, true},       {"piece all pc in ", "K", true, false},
        {"string ch in ", "\"abc\"", false, false}, {"string key in ", "dict", false, false}};
    const std::vector<std::string> simpleBodies = {"-1", "check", "1 + 1", "total", "{1 2}"};
    std::vector<std::string> innerLoops;
    std::vector<std::string> setLoops;
    for (const Head& head : heads)
        for (const std::string& body : simpleBodies) {
            innerLoops.push_back(head.text + std::string(head.source) + " " + body);
            if (head.givesSet) setLoops.push_back(innerLoops.back());
        }
    std::vector<std::string> bodies = simpleBodies;
    bodies.insert(bodies.end(), innerLoops.begin(), innerLoops.end());
    for (const char* declaration : {"persistent (sum) quiet total = 2", "piece pid = a1", "unbind dict[nb]",
                                    "unbind dict[ nb]", "isbound sq", "dictionary (int max) dict"})
        bodies.push_back(declaration);

    Parser parser;
    Parser reparser;
    parser.keepParens = reparser.keepParens = false;
    parser.keepCompounds = reparser.keepCompounds = false;
    const std::string prelude = "dictionary dict persistent total = 1 nb = \"k\" ";
    int checked = 0;
    for (const Head& head : heads) {
        std::vector<std::string> sources = {head.source};
        if (head.takesSet)
            for (const std::string& loop : setLoops) sources.push_back("(" + loop + ")");
        for (const std::string& source : sources)
            for (const std::string& body : bodies) {
                std::string text = prelude + head.text + source + " " + body;
                ParsedQuery query = parser.parseQuery(sourceOf(text));
                ASSERT_NE(query.root, nullptr) << text;
                std::string again = printed(*query.root);
                ParsedQuery reparsed = reparser.parseQuery(sourceOf(again));
                ASSERT_NE(reparsed.root, nullptr) << text << " printed as " << again;
                EXPECT_EQ(shape(*reparsed.root), shape(*query.root)) << text << " printed as " << again;
                ++checked;
            }
    }
    EXPECT_EQ(checked, 4 * (1 + 10) * 41 + 2 * 41);
}

}  // namespace
}  // namespace tarnfold::zmf
