#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "chess/types.h"
#include "query/nodes/arithmetic_nodes.h"
#include "query/nodes/comparison_nodes.h"
#include "query/nodes/conversion_nodes.h"
#include "query/nodes/literal_nodes.h"
#include "query/nodes/logical_nodes.h"
#include "query/nodes/piece_designator_node.h"
#include "query/nodes/position_state_nodes.h"
#include "query/nodes/set_nodes.h"
#include "query/nodes/structure_nodes.h"
#include "query/print_target.h"

namespace tarnfold::zmf {
namespace {

// Locations play no part in the text, so every node sits at offset 0.
NodePtr n(std::int64_t value) { return std::make_unique<IntegerNode>(0, value); }
NodePtr check() { return std::make_unique<CheckNode>(0); }
NodePtr mate() { return std::make_unique<MateNode>(0); }
NodePtr wtm() { return std::make_unique<WhiteToMoveNode>(0); }
NodePtr square(const char* name) {
    return std::make_unique<PieceDesignatorNode>(0, std::nullopt, std::nullopt, name);
}

template <class Node>
NodePtr binary(NodePtr left, NodePtr right) {
    return std::make_unique<Node>(0, std::move(left), std::move(right));
}
template <class Node>
NodePtr compare(NodePtr left, NodePtr right) {
    return std::make_unique<Node>(0, std::move(left), std::move(right), ValueType::Numeric);
}
template <class Node>
NodePtr unary(NodePtr operand) {
    return std::make_unique<Node>(0, std::move(operand));
}

std::vector<NodePtr> list(NodePtr a, NodePtr b) {
    std::vector<NodePtr> nodes;
    nodes.push_back(std::move(a));
    nodes.push_back(std::move(b));
    return nodes;
}

std::string text(const NodePtr& node) {
    PrintTarget target;
    node->print(target);
    return target.take();
}

TEST(NodePrint, InfixGroupingFollowsBindingPowers) {
    EXPECT_EQ(text(binary<MultiplyNode>(binary<AddNode>(n(1), n(2)), n(3))), "(1 + 2) * 3");
    EXPECT_EQ(text(binary<AddNode>(n(1), binary<MultiplyNode>(n(2), n(3)))), "1 + 2 * 3");
    EXPECT_EQ(text(binary<SubtractNode>(n(1), binary<SubtractNode>(n(2), n(3)))), "1 - (2 - 3)");
    EXPECT_EQ(text(binary<SubtractNode>(binary<SubtractNode>(n(1), n(2)), n(3))), "1 - 2 - 3");
    EXPECT_EQ(text(binary<DivideNode>(n(8), binary<ModulusNode>(n(5), n(3)))), "8 / (5 % 3)");
    EXPECT_EQ(text(binary<ModulusNode>(binary<DivideNode>(n(8), n(5)), n(3))), "8 / 5 % 3");

    // Comparisons are right-associative: the right nesting needs nothing.
    EXPECT_EQ(text(compare<LessThanNode>(n(1), compare<LessEqualNode>(n(2), n(3)))), "1 < 2 <= 3");
    EXPECT_EQ(text(compare<GreaterThanNode>(compare<GreaterEqualNode>(n(1), n(2)), n(3))), "(1 >= 2) > 3");
    EXPECT_EQ(text(compare<EqualToNode>(binary<AddNode>(n(1), n(2)), compare<NotEqualNode>(n(3), n(4)))),
              "1 + 2 == 3 != 4");

    EXPECT_EQ(text(binary<OrNode>(check(), binary<AndNode>(mate(), wtm()))), "check or mate and wtm");
    EXPECT_EQ(text(binary<AndNode>(binary<OrNode>(check(), mate()), wtm())), "(check or mate) and wtm");
    EXPECT_EQ(text(binary<BitOrNode>(square("a1"), binary<BitAndNode>(square("b2"), square("c3")))),
              "a1 | b2 & c3");
    EXPECT_EQ(text(binary<BitAndNode>(binary<BitOrNode>(square("a1"), square("b2")), square("c3"))),
              "(a1 | b2) & c3");
}

TEST(NodePrint, PrefixOperatorsReachAsFarAsTheirOperandPower) {
    EXPECT_EQ(text(unary<NotNode>(binary<AndNode>(check(), mate()))), "not (check and mate)");
    EXPECT_EQ(text(binary<AndNode>(unary<NotNode>(check()), mate())), "not check and mate");
    EXPECT_EQ(text(unary<NotNode>(compare<EqualToNode>(n(1), n(2)))), "not 1 == 2");
    EXPECT_EQ(text(compare<EqualToNode>(unary<NotNode>(n(1)), n(2))), "(not 1) == 2");

    EXPECT_EQ(text(unary<AbsNode>(binary<AddNode>(n(1), n(2)))), "abs 1 + 2");
    EXPECT_EQ(text(binary<AddNode>(unary<AbsNode>(n(1)), n(2))), "(abs 1) + 2");
    EXPECT_EQ(text(unary<CardinalityNode>(binary<BitOrNode>(square("a1"), square("b2")))), "#a1 | b2");
    EXPECT_EQ(text(binary<AddNode>(unary<CardinalityNode>(square("a1")), n(1))), "(#a1) + 1");

    EXPECT_EQ(text(unary<NegateNode>(binary<AddNode>(n(1), n(2)))), "-(1 + 2)");
    EXPECT_EQ(text(binary<SubtractNode>(n(1), unary<NegateNode>(n(2)))), "1 - -2");
    // Symbols that would fuse into another token are kept apart.
    EXPECT_EQ(text(unary<NegateNode>(unary<NegateNode>(n(2)))), "- -2");
    EXPECT_EQ(text(unary<BitComplementNode>(unary<BitComplementNode>(square("a1")))), "~ ~a1");
    EXPECT_EQ(text(unary<BitComplementNode>(binary<BitAndNode>(square("a1"), square("b2")))), "~(a1 & b2)");

    // A prefix deep on the right edge still reaches out for a later operator.
    EXPECT_EQ(text(compare<EqualToNode>(binary<MultiplyNode>(n(1), unary<NotNode>(check())), n(3))),
              "(1 * not check) == 3");
}

TEST(NodePrint, BracketsSequencesAndTransparentNodes) {
    auto grouped = binary<MultiplyNode>(std::make_unique<ParenNode>(0, binary<AddNode>(n(1), n(2))), n(3));
    EXPECT_EQ(text(grouped), "(1 + 2) * 3");
    EXPECT_EQ(text(std::make_unique<ParenNode>(0, n(7))), "(7)");

    EXPECT_EQ(text(std::make_unique<CompoundNode>(0, list(check(), mate()))), "{check mate}");
    // A leading minus would continue the filter before it as a subtraction.
    EXPECT_EQ(text(std::make_unique<CompoundNode>(0, list(unary<NegateNode>(n(1)), n(2)))), "{-1 2}");
    EXPECT_EQ(text(std::make_unique<QueryContainer>(0, list(n(1), binary<AddNode>(n(-2), n(3))))),
              "1\n(-2 + 3)\n");
    EXPECT_EQ(text(std::make_unique<QueryContainer>(0)), "");

    EXPECT_EQ(text(std::make_unique<RangeNode>(0, n(1), n(5))), "1 5");
    EXPECT_EQ(text(std::make_unique<RangeNode>(0, n(3), nullptr)), "3");

    // Conversions are invisible, including to the grouping of their operand.
    auto size = unary<SetToNumericConversionNode>(binary<BitOrNode>(square("a1"), square("b2")));
    EXPECT_EQ(text(compare<LessThanNode>(std::move(size), n(2))), "a1 | b2 < 2");
    auto id = unary<PositionToNumericConversionNode>(unary<NotNode>(check()));
    EXPECT_EQ(text(binary<AddNode>(std::move(id), n(1))), "(not check) + 1");
    EXPECT_EQ(text(unary<PieceIDToSetConversionNode>(square("[Qq]d4"))), "[Qq]d4");
    EXPECT_EQ(text(std::make_unique<TrueNode>(0)) + text(std::make_unique<FalseNode>(0)), "truefalse");
    EXPECT_EQ(text(std::make_unique<BlackToMoveNode>(0)), "btm");
}

TEST(NodeTree, UnwrappingAndDerivedTypesAndSpans) {
    std::vector<NodePtr> only;
    only.push_back(std::make_unique<ParenNode>(0, check()));
    auto inner = std::make_unique<CompoundNode>(0, std::move(only));
    auto outer = std::make_unique<ParenNode>(0, std::move(inner));
    const ZMFNode& constOuter = *outer;
    EXPECT_EQ(outer->unwrapParens().kind, NodeKind::Compound);
    EXPECT_EQ(constOuter.unwrapAll().kind, NodeKind::Check);
    EXPECT_EQ(outer->unwrapAll().valueType, ValueType::Boolean);

    auto pair = std::make_unique<CompoundNode>(0, list(check(), n(1)));
    EXPECT_EQ(&pair->unwrapAll(), pair.get());
    EXPECT_EQ(pair->valueType, ValueType::Numeric);
    EXPECT_FALSE(pair->isAssignment());

    // Position & position stays a position; anything else is a set.
    EXPECT_EQ(binary<BitAndNode>(square("a1"), square("b2"))->valueType, ValueType::Set);
    NodePtr a = n(0), b = n(0);
    a->valueType = b->valueType = ValueType::Position;
    EXPECT_EQ(binary<BitAndNode>(std::move(a), std::move(b))->valueType, ValueType::Position);
    NodePtr text = std::make_unique<IntegerNode>(0, 1);
    text->valueType = ValueType::String;
    EXPECT_EQ(binary<AddNode>(std::move(text), n(1))->valueType, ValueType::String);

    // An infix node spans its operands; a prefix node ends with its operand.
    auto left = std::make_unique<IntegerNode>(3, 1);
    auto right = std::make_unique<IntegerNode>(9, 2);
    right->lastOffset = 10;
    SubtractNode difference(6, std::move(left), std::move(right));
    EXPECT_EQ(difference.location, OptionalOffset(6));
    EXPECT_EQ(difference.firstOffset, OptionalOffset(3));
    EXPECT_EQ(difference.lastOffset, OptionalOffset(10));
    NegateNode negation(1, std::make_unique<IntegerNode>(2, 5));
    EXPECT_EQ(negation.firstOffset, OptionalOffset(1));
    EXPECT_EQ(negation.lastOffset, OptionalOffset(2));
}

}  // namespace
}  // namespace tarnfold::zmf
