#include "query/convert.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "query/nodes/conversion_nodes.h"
#include "query/nodes/literal_nodes.h"

namespace tarnfold::zmf {
namespace {

// A stand-in operand of any type, spanning offsets first to last.
NodePtr operand(ValueType type, Offset first, Offset last) {
    NodePtr node = std::make_unique<IntegerNode>(first + 1, 0);
    node->valueType = type;
    node->firstOffset = first;
    node->lastOffset = last;
    return node;
}

// The conversion wraps exactly the original node and covers its text.
template <class Conversion>
void expectWrapped(const NodePtr& node, const ZMFNode* original, NodeKind kind, ValueType type) {
    ASSERT_EQ(node->kind, kind);
    EXPECT_EQ(node->valueType, type);
    EXPECT_EQ(static_cast<const Conversion&>(*node).operand.get(), original);
    EXPECT_EQ(node->location, original->location);
    EXPECT_EQ(node->firstOffset, original->firstOffset);
    EXPECT_EQ(node->lastOffset, original->lastOffset);
}

TEST(Convert, NumbersMeetSetsAndPositionsOnEitherSide) {
    NodePtr number = operand(ValueType::Numeric, 0, 1), set = operand(ValueType::Set, 5, 8);
    const ZMFNode *numberBefore = number.get(), *setBefore = set.get();
    convertToCommon(number, set);
    EXPECT_EQ(number.get(), numberBefore);
    expectWrapped<SetToNumericConversionNode>(set, setBefore, NodeKind::SetToNumericConversion,
                                              ValueType::Numeric);

    NodePtr position = operand(ValueType::Position, 2, 3);
    number = operand(ValueType::Numeric, 6, 6);
    const ZMFNode* positionBefore = position.get();
    numberBefore = number.get();
    convertToCommon(position, number);
    EXPECT_EQ(number.get(), numberBefore);
    expectWrapped<PositionToNumericConversionNode>(position, positionBefore,
                                                   NodeKind::PositionToNumericConversion, ValueType::Numeric);

    // No other pair is touched.
    for (auto [a, b] : {std::pair{ValueType::Set, ValueType::Set},
                        {ValueType::Set, ValueType::Position},
                        {ValueType::Numeric, ValueType::Numeric},
                        {ValueType::Numeric, ValueType::String},
                        {ValueType::Numeric, ValueType::Piece},
                        {ValueType::Boolean, ValueType::Set}}) {
        NodePtr left = operand(a, 0, 0), right = operand(b, 1, 1);
        const ZMFNode *leftBefore = left.get(), *rightBefore = right.get();
        convertToCommon(left, right);
        EXPECT_EQ(left.get(), leftBefore) << printableType(a) << " " << printableType(b);
        EXPECT_EQ(right.get(), rightBefore) << printableType(a) << " " << printableType(b);
    }

    NodePtr piece = operand(ValueType::Piece, 4, 7);
    const ZMFNode* pieceBefore = piece.get();
    convertPieceToSet(piece);
    expectWrapped<PieceIDToSetConversionNode>(piece, pieceBefore, NodeKind::PieceIDToSetConversion,
                                              ValueType::Set);
    NodePtr already = operand(ValueType::Set, 0, 0);
    const ZMFNode* alreadyBefore = already.get();
    convertPieceToSet(already);
    EXPECT_EQ(already.get(), alreadyBefore);
}

TEST(Convert, ComparisonMessagesInTheirOrder) {
    using enum ValueType;
    auto error = [](std::string_view op, ValueType left, ValueType right) {
        return comparisonTypeError(op, left, right).value_or("(none)");
    };
    // A bad left side is named first, even when the right one is bad too.
    EXPECT_EQ(error("<", Boolean, Empty),
              "Left operand to '<' must be a set, numeric, string, or position filter");
    EXPECT_EQ(error("==", Piece, Numeric),
              "Left operand to '==' must be a set, numeric, string, or position filter");
    EXPECT_EQ(error(">=", String, Dictionary),
              "Right operand to '>=' must be a set, numeric, string, or position filter");
    EXPECT_EQ(error("!=", Set, static_cast<ValueType>(9)),
              "Right operand to '!=' must be a set, numeric, string, or position filter");

    // Position is judged before String.
    EXPECT_EQ(error("<", String, Position), "Right operand to '<' is a position but left operand is not");
    EXPECT_EQ(error("<=", Position, Set), "Left operand to '<=' is a position but right operand is not");
    EXPECT_EQ(error("==", Numeric, String), "Right operand to '==' is a string but left operand is not");
    EXPECT_EQ(error(">", String, Set), "Left operand to '>' is a string but right operand is not");

    EXPECT_EQ(error("<", Set, Set), "Sets cannot be compared using the '<' filter");
    EXPECT_EQ(error(">=", Set, Set), "Sets cannot be compared using the '>=' filter");

    EXPECT_EQ(error("==", Set, Set), "(none)");
    EXPECT_EQ(error("!=", Set, Set), "(none)");
    EXPECT_EQ(error("<", Position, Position), "(none)");
    EXPECT_EQ(error("<", String, String), "(none)");
    EXPECT_EQ(error(">", Numeric, Numeric), "(none)");
}

}  // namespace
}  // namespace tarnfold::zmf
