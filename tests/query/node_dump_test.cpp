#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "chess/bitboard.h"
#include "chess/types.h"
#include "query/dump_target.h"
#include "query/nodes/arithmetic_nodes.h"
#include "query/nodes/conversion_nodes.h"
#include "query/nodes/literal_nodes.h"
#include "query/nodes/logical_nodes.h"
#include "query/nodes/piece_designator_node.h"
#include "query/nodes/position_state_nodes.h"
#include "query/nodes/structure_nodes.h"

namespace tarnfold::zmf {
namespace {

// Offsets:    0123456789
const char* queryText = "1 + 2 * 3\ncheck\n";

QuerySource oneSource() {
    QuerySource source;
    source.add("q.zmf", queryText);
    return source;
}

NodePtr integer(Offset at, std::int64_t value) { return std::make_unique<IntegerNode>(at, value); }

std::unique_ptr<QueryContainer> sampleTree() {
    auto product = std::make_unique<MultiplyNode>(6, integer(4, 2), integer(8, 3));
    auto sum = std::make_unique<AddNode>(2, integer(0, 1), std::move(product));
    auto check = std::make_unique<CheckNode>(10);
    check->lastOffset = 14;
    std::vector<NodePtr> children;
    children.push_back(std::move(sum));
    children.push_back(std::move(check));
    auto root = std::make_unique<QueryContainer>(0, std::move(children));
    root->lastOffset = 14;
    return root;
}

std::string dumpOf(const ZMFNode& node, const QuerySource* source, bool unicode, bool colors = false) {
    DumpTarget target(source, unicode, colors);
    node.dump(target, true);
    return target.take();
}

TEST(NodeDump, TreePrefixesAndLocationsWithinOneLineOrSource) {
    QuerySource source = oneSource();
    auto root = sampleTree();
    EXPECT_EQ(dumpOf(*root, &source, true),
              "QueryContainer {Boolean} <q.zmf:1:1-2:5>\n"
              "\u251c\u2500AddOperator {Numeric} <q.zmf:1:1-9>\n"
              "\u2502 \u251c\u2500Integer (1) {Numeric} <q.zmf:1:1-1>\n"
              "\u2502 \u2514\u2500MultiplyOperator {Numeric} <q.zmf:1:5-9>\n"
              "\u2502   \u251c\u2500Integer (2) {Numeric} <q.zmf:1:5-5>\n"
              "\u2502   \u2514\u2500Integer (3) {Numeric} <q.zmf:1:9-9>\n"
              "\u2514\u2500Check {Boolean} <q.zmf:2:1-5>\n");
    EXPECT_EQ(dumpOf(*root, &source, false),
              "QueryContainer {Boolean} <q.zmf:1:1-2:5>\n"
              "|-AddOperator {Numeric} <q.zmf:1:1-9>\n"
              "| |-Integer (1) {Numeric} <q.zmf:1:1-1>\n"
              "| `-MultiplyOperator {Numeric} <q.zmf:1:5-9>\n"
              "|   |-Integer (2) {Numeric} <q.zmf:1:5-5>\n"
              "|   `-Integer (3) {Numeric} <q.zmf:1:9-9>\n"
              "`-Check {Boolean} <q.zmf:2:1-5>\n");
}

TEST(NodeDump, LabelsFlagsAndColours) {
    QuerySource source = oneSource();
    auto negate = std::make_unique<NegateNode>(2, integer(4, 2));
    negate->implicit = 1;
    negate->atomicInducer = 1;
    negate->vitiated = 1;
    auto root = std::make_unique<NotNode>(0, std::move(negate));
    root->vitiated = 1;

    // The label belongs to the line it was given for, not to the lines below.
    DumpTarget plain(&source, false);
    root->dumpLabelled(plain, true, "body");
    EXPECT_EQ(plain.text(),
              "Not [body] {Boolean} <q.zmf:1:1-5> (vitiated precedence)\n"
              "`-Negate {Numeric} <q.zmf:1:3-5> (implicit) (atomic inducer) (vitiated precedence)\n"
              "  `-Integer (2) {Numeric} <q.zmf:1:5-5>\n");

    DumpTarget colored(&source, true, true);
    root->dumpLabelled(colored, true, "body");
    EXPECT_EQ(colored.text(),
              "\033[1mNot\033[0m [\033[36mbody\033[0m] {\033[93mBoolean\033[0m} <q.zmf:1:1-5> (vitiated "
              "precedence)\n"
              "\u2514\u2500\033[1mNegate\033[0m {\033[93mNumeric\033[0m} <q.zmf:1:3-5>"
              " (implicit) (atomic inducer) (vitiated precedence)\n"
              "  \u2514\u2500\033[1mInteger (2)\033[0m {\033[93mNumeric\033[0m} <q.zmf:1:5-5>\n");
}

TEST(NodeDump, LocationsAcrossSourcesAndMissingOnes) {
    QuerySource source;
    source.add("<option>", "check ");
    source.add("q.zmf", "mate\nwtm");
    auto node = std::make_unique<CheckNode>(0);
    node->lastOffset = 6;
    EXPECT_EQ(dumpOf(*node, &source, false), "Check {Boolean} <<option>:1:1-q.zmf:1:1>\n");

    // Without a first offset the node's own token stands in.
    node->firstOffset.reset();
    node->location = 11;
    node->lastOffset = 12;
    EXPECT_EQ(dumpOf(*node, &source, false), "Check {Boolean} <q.zmf:2:1-2>\n");

    node->lastOffset.reset();
    EXPECT_EQ(dumpOf(*node, &source, false), "Check {Boolean} <q.zmf:2:1>\n");

    node->location.reset();
    node->lastOffset = 12;
    EXPECT_EQ(dumpOf(*node, &source, false), "Check {Boolean} <Invalid location>\n");

    auto orphan = std::make_unique<MateNode>(3);
    EXPECT_EQ(dumpOf(*orphan, nullptr, false), "Mate {Boolean} <???:0:0-0>\n");
}

TEST(NodeDump, NodeNamesParametersAndOptionalChildren) {
    QuerySource source;
    source.add("q.zmf", "count 1 Ra1 [Qq]d4,e5 [] a1");
    auto range = std::make_unique<RangeNode>(6, integer(6, 1), nullptr);
    EXPECT_EQ(dumpOf(*range, &source, false),
              "Range {Numeric} <q.zmf:1:7-7>\n"
              "`-Integer (1) {Numeric} <q.zmf:1:7-7>\n");

    auto rook = std::make_unique<PieceDesignatorNode>(8, squareBit(A1), std::uint16_t(1 << 3), "Ra1");
    auto conversion = std::make_unique<SetToNumericConversionNode>(8, std::move(rook));
    EXPECT_EQ(dumpOf(*conversion, &source, false),
              "SetToNumericConversion {Numeric} <q.zmf:1:9-9>\n"
              "`-PieceDesignator (Ra1) squares: a1 pieces: R {Set} <q.zmf:1:9-9>\n");

    PieceDesignatorNode queens(12, squareBit(D4) | squareBit(E5), std::uint16_t((1 << 4) | (1 << 10)),
                               "[Qq]d4,e5");
    EXPECT_EQ(dumpOf(queens, &source, false),
              "PieceDesignator ([Qq]d4,e5) squares: d4,e5 pieces: Qq {Set} <q.zmf:1:13-13>\n");
    PieceDesignatorNode none(22, std::nullopt, std::uint16_t(0), "[]");
    EXPECT_EQ(dumpOf(none, &source, false), "PieceDesignator ([]) pieces: none {Set} <q.zmf:1:23-23>\n");
    PieceDesignatorNode square(25, squareBit(A1), std::nullopt, "a1");
    EXPECT_EQ(dumpOf(square, &source, false), "PieceDesignator (a1) squares: a1 {Set} <q.zmf:1:26-26>\n");
}

TEST(NodeDump, LabelledChildrenAndTypeNames) {
    QuerySource source = oneSource();
    auto sum = std::make_unique<AddNode>(2, integer(0, 1), integer(4, 2));
    DumpTarget target(&source, false);
    target.writeLine(*sum, true, "Example");
    target.dumpChildren(true, {{sum->left.get(), "lower"}, nullptr, {sum->right.get(), "upper"}, nullptr});
    EXPECT_EQ(target.text(),
              "Example {Numeric} <q.zmf:1:1-5>\n"
              "|-Integer (1) [lower] {Numeric} <q.zmf:1:1-1>\n"
              "`-Integer (2) [upper] {Numeric} <q.zmf:1:5-5>\n");

    EXPECT_EQ(printableType(ValueType::Empty), "Empty");
    EXPECT_EQ(printableType(ValueType::Piece), "Piece");
    EXPECT_EQ(printableType(ValueType::Dictionary), "Dictionary");
    EXPECT_EQ(printableType(static_cast<ValueType>(8)), "???");
}

}  // namespace
}  // namespace tarnfold::zmf
