// Navigation and control filters: the fields their handlers fill, the print
// form read back to the same tree, and the sort slots shared by description.
#include <gtest/gtest.h>

#include <string>

#include "query/dump_target.h"
#include "query/nodes/control_nodes.h"
#include "query/nodes/literal_nodes.h"
#include "query/nodes/navigation_nodes.h"
#include "query/parser.h"
#include "query/print_target.h"

namespace tarnfold::zmf {
namespace {

class NavigationControl : public ::testing::Test {
protected:
    NavigationControl() {
        // Without parentheses in the tree, print must put back those that
        // the grouping needs.
        parser.keepParens = false;
        reparser.keepParens = false;
    }

    static QuerySource source(const std::string& text) {
        QuerySource source;
        source.add("q.zmf", text);
        return source;
    }

    static std::string dumpOf(const ZMFNode& node) {
        DumpTarget dump(nullptr, false, false);
        node.dump(dump, true);
        std::string text = dump.take();
        for (std::size_t at; (at = text.find(" <???:0:0")) != std::string::npos;)
            text.erase(at, text.find('>', at) + 1 - at);
        return text;
    }

    // Parses a query of one filter and hands back that filter.
    const ZMFNode& only(const std::string& text) {
        query = parser.parseQuery(source(text));
        EXPECT_TRUE(query.root) << text << "\n" << messages();
        EXPECT_EQ(query.root ? query.root->children.size() : 0u, 1u) << text;
        return *query.root->children.front();
    }

    // The print of the only filter, after checking that it parses again to
    // the same tree.
    std::string printed(const std::string& text) {
        const ZMFNode& node = only(text);
        PrintTarget target;
        node.print(target);
        std::string again = target.take();
        ParsedQuery reparsed = reparser.parseQuery(source(again));
        if (!reparsed.root || reparsed.root->children.size() != 1) return "does not parse again: " + again;
        EXPECT_EQ(dumpOf(*reparsed.root->children.front()), dumpOf(node)) << text << " printed as " << again;
        return again;
    }

    std::string messages() const {
        std::string all;
        for (const Message& message : parser.messages().messages()) {
            all += messageLevelWord(message.level);
            all += message.location ? " @" + std::to_string(*message.location) : " @-";
            all += ": " + messageText(message) + "\n";
        }
        return all;
    }

    std::uint32_t sortSlot(std::size_t child) const {
        const ZMFNode& node = *query.root->children.at(child);
        EXPECT_EQ(node.kind, NodeKind::Sort);
        return static_cast<const SortNode&>(node).slot;
    }

    Parser parser;
    Parser reparser;
    ParsedQuery query;
};

TEST_F(NavigationControl, PrintReadsBackToTheSameTree) {
    // An inner if without else gets parentheses, or it would take the else.
    EXPECT_EQ(printed("if check then (if mate then a) else stalemate"),
              "if check then (if mate then a) else stalemate");
    EXPECT_EQ(printed("if check then if mate then a else b"), "if check then if mate then a else b");
    // A numeric body of find would be read as a range.
    EXPECT_EQ(printed("find (ply == 4)"), "find (ply == 4)");
    EXPECT_EQ(printed("find 2 (3)"), "find 2 (3)");
    EXPECT_EQ(printed("find quiet <-- 1 3 check or mate"), "find quiet <-- 1 3 check or mate");
    // A later operand that starts with a minus would be subtracted.
    EXPECT_EQ(printed("max(1 (-2))"), "max(1 (-2))");
    EXPECT_EQ(printed("child(1 + 1)"), "child(1 + 1)");
    EXPECT_EQ(printed("child"), "child");
    EXPECT_EQ(printed("position 3 + 1"), "position 3 + 1");
    EXPECT_EQ(printed("lca(parent child(2))"), "lca(parent, child(2))");
    EXPECT_EQ(printed("sort quiet min \"d\" a"), "sort quiet min \"d\" a");
    EXPECT_EQ(printed("echo quiet (s t) in all s == t"), "echo quiet (s t) in all s == t");
    EXPECT_EQ(printed("while (check) loop assert mate"), "while (check) loop assert mate");
}

TEST_F(NavigationControl, ChildWithoutOperandHoldsAnImplicitZero) {
    const auto& bare = static_cast<const ChildNode&>(only("child"));
    ASSERT_EQ(bare.operand->kind, NodeKind::Integer);
    EXPECT_EQ(static_cast<const IntegerNode&>(*bare.operand).value, 0);
    EXPECT_EQ(bare.operand->implicit, 1);
    const auto& explicitZero = static_cast<const ChildNode&>(only("child(0)"));
    EXPECT_EQ(explicitZero.operand->implicit, 0);
    EXPECT_EQ(explicitZero.implicit, 0);
}

TEST_F(NavigationControl, FindCountsWithAllOrARange) {
    const auto& first = static_cast<const FindNode&>(only("find check"));
    EXPECT_EQ(first.valueType, ValueType::Position);
    EXPECT_FALSE(first.counting());
    EXPECT_FALSE(first.reverse || first.all || first.quiet);

    const auto& all = static_cast<const FindNode&>(only("find <-- all quiet check"));
    EXPECT_EQ(all.valueType, ValueType::Numeric);
    EXPECT_TRUE(all.reverse && all.all && all.quiet);
    EXPECT_EQ(all.range, nullptr);

    const auto& ranged = static_cast<const FindNode&>(only("find 2 check"));
    EXPECT_EQ(ranged.valueType, ValueType::Numeric);
    ASSERT_NE(ranged.range, nullptr);
    EXPECT_EQ(dumpOf(*ranged.range), "Range {Numeric}\n`-Integer (2) {Numeric}\n");
}

TEST_F(NavigationControl, IfHasTheBranchesTypeOnlyWhenBothAgree) {
    EXPECT_EQ(only("if check then 1 else 2").valueType, ValueType::Numeric);
    EXPECT_EQ(only("if check then a else b").valueType, ValueType::Set);
    EXPECT_EQ(only("if check then parent else child").valueType, ValueType::Position);
    EXPECT_EQ(only("if check then \"x\" else \"y\"").valueType, ValueType::String);
    EXPECT_EQ(only("if check then check else mate").valueType, ValueType::Boolean);
    EXPECT_EQ(only("if check then 1 else a").valueType, ValueType::Boolean);
    EXPECT_EQ(only("if check then 1").valueType, ValueType::Boolean);
    const auto& node = static_cast<const IfNode&>(only("if check 1"));
    EXPECT_EQ(node.elseBranch, nullptr);
    EXPECT_EQ(node.thenBranch->kind, NodeKind::Integer);
}

TEST_F(NavigationControl, EchoVariablesBelongToItsBody) {
    const auto& echo = static_cast<const EchoNode&>(only("echo (s t) s == t"));
    EXPECT_EQ(echo.sourceVariable, "s");
    EXPECT_EQ(echo.targetVariable, "t");
    EXPECT_NE(echo.sourceSlot, echo.targetSlot);
    EXPECT_FALSE(echo.inAll || echo.quiet);
    EXPECT_EQ(echo.valueType, ValueType::Boolean);

    query = parser.parseQuery(source("echo (s t) 1 s"));
    EXPECT_FALSE(query.root);
    EXPECT_EQ(messages(), "error @13: Attempted use of undefined variable 's'\n");
}

TEST_F(NavigationControl, SortsOfOneDescriptionShareASlot) {
    query = parser.parseQuery(source("sort \"x\" ply sort ply sort \"y\" ply sort \"x\" depth"));
    ASSERT_TRUE(query.root) << messages();
    EXPECT_EQ(sortSlot(0), 0u);
    EXPECT_EQ(sortSlot(1), 1u);
    EXPECT_EQ(sortSlot(2), 2u);
    EXPECT_EQ(sortSlot(3), 0u);

    // The same text again, as in the driver's final pass: the same slots.
    query = parser.parseQuery(source("sort \"x\" ply sort ply sort \"y\" ply sort \"x\" depth"));
    ASSERT_TRUE(query.root) << messages();
    EXPECT_EQ(sortSlot(1), 1u);
    EXPECT_EQ(sortSlot(2), 2u);

    // Another query starts afresh: nothing of the last one is left over.
    query = parser.parseQuery(source("sort \"y\" \"text\""));
    ASSERT_TRUE(query.root) << messages();
    EXPECT_EQ(sortSlot(0), 0u);
    EXPECT_EQ(query.root->children.front()->valueType, ValueType::String);
}

TEST_F(NavigationControl, ASortCalledWithAnotherTypeConflictsWithItself) {
    query = parser.parseQuery(source("function f(v) {sort \"d\" v} f(1) f(\"a\")"));
    EXPECT_FALSE(query.root);
    EXPECT_EQ(messages(),
              "error @15: Inconsistent types (string vs numeric) between 'sort' filters with the same "
              "description\n"
              "note @32: While instantiating function 'f'\n"
              "note @15: Conflicting 'sort' filter is here\n"
              "note @32: While instantiating function 'f'\n");
}

}  // namespace
}  // namespace tarnfold::zmf
