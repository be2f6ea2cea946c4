// The board geometry and board state filters, parsed with stand-in operands
// of every type ("zpos" a Position, "zpiece" a Piece ...): their trees, the
// fields the engine reads, their messages, and printing back to text that
// parses to the same tree.
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "chess/names.h"
#include "query/dump_target.h"
#include "query/handlers/handler_support.h"
#include "query/nodes/geometry_nodes.h"
#include "query/nodes/structure_nodes.h"
#include "query/parser.h"
#include "query/print_target.h"
#include "stand_in_parse.h"

namespace tarnfold::zmf {
namespace {

class GeometryParse : public StandInParse {};

TEST_F(GeometryParse, DirectionsTakeAnOptionalRangeAndASet) {
    EXPECT_EQ(tree("northeast zset"),
              "Direction (northeast) {Set}\n"
              "|-Range {Numeric} <Invalid location> (implicit)\n"
              "| |-Integer (1) {Numeric} <Invalid location> (implicit)\n"
              "| `-Integer (7) {Numeric} <Invalid location> (implicit)\n"
              "`-StandIn (zset) {Set}\n");
    const auto& direction = static_cast<const DirectionNode&>(only());
    EXPECT_EQ(direction.direction, NorthEast);
    EXPECT_EQ(direction.range->implicit, 1);

    // A range of one number or two, signed; the operand is read from power 0.
    EXPECT_EQ(tree("up -1 2 a | zset"),
              "Direction (up) {Set}\n"
              "|-Range {Numeric}\n"
              "| |-Negate {Numeric}\n"
              "| | `-Integer (1) {Numeric}\n"
              "| `-Integer (2) {Numeric}\n"
              "`-BitOrOperator {Set}\n"
              "  |-PieceDesignator (a) pieces: a {Set}\n"
              "  `-StandIn (zset) {Set}\n");
    EXPECT_EQ(static_cast<const DirectionNode&>(only()).range->implicit, 0);
    EXPECT_EQ(tree("down zpiece"),
              "Direction (down) {Set}\n"
              "|-Range {Numeric} <Invalid location> (implicit)\n"
              "| |-Integer (1) {Numeric} <Invalid location> (implicit)\n"
              "| `-Integer (7) {Numeric} <Invalid location> (implicit)\n"
              "`-PieceIDToSetConversion {Set}\n"
              "  `-StandIn (zpiece) {Piece}\n");
    // A numeric variable may stand in a range; a set one is the operand.
    EXPECT_EQ(tree("anydirection znum zset"),
              "Direction (anydirection) {Set}\n"
              "|-Range {Numeric}\n"
              "| `-StandIn (znum) {Numeric}\n"
              "`-StandIn (zset) {Set}\n");

    EXPECT_EQ(printed("down a"), "down a");
    EXPECT_EQ(printed("left 2 3 a & zset"), "left 2 3 a & zset");
    EXPECT_EQ(printed("vertical -2 a"), "vertical -2 a");
    EXPECT_EQ(printed("(diagonal 1 a) | b"), "(diagonal 1 a) | b");

    EXPECT_EQ(failure("right 1 zstr"),
              "error @0 [8-11]: The operand to the direction filter must be a set filter\n");
    EXPECT_EQ(failure("horizontal 1 2 3"),
              "error @0 [15-15]: The operand to the direction filter must be a set filter\n");
    // Every one of the fifteen keywords is a direction filter.
    for (const char* word :
         {"anydirection", "diagonal", "down", "horizontal", "left", "maindiagonal", "northeast", "northwest",
          "offdiagonal", "orthogonal", "right", "southeast", "southwest", "up", "vertical"}) {
        tree(std::string(word) + " a");
        ASSERT_NE(query.root, nullptr) << word;
        EXPECT_EQ(only().kind, NodeKind::Direction) << word;
        EXPECT_EQ(directionName(static_cast<const DirectionNode&>(only()).direction), word);
    }
}

TEST_F(GeometryParse, RaysTakeDirectionKeywordsAndTwoOrMoreSets) {
    EXPECT_EQ(tree("ray (a zpiece zset)"),
              "Ray (anydirection) {Set}\n"
              "|-PieceDesignator (a) pieces: a {Set}\n"
              "|-PieceIDToSetConversion {Set}\n"
              "| `-StandIn (zpiece) {Piece}\n"
              "`-StandIn (zset) {Set}\n");
    std::array<bool, 8> all{true, true, true, true, true, true, true, true};
    EXPECT_EQ(static_cast<const RayNode&>(only()).directions, all);

    // Keywords add up: up and down make a vertical ray.
    tree("ray up northeast down (a b)");
    std::array<bool, 8> some{false, true, true, false, false, true, false, false};
    EXPECT_EQ(static_cast<const RayNode&>(only()).directions, some);
    EXPECT_EQ(printed("ray up northeast down (a b)"), "ray vertical northeast (a b)");
    EXPECT_EQ(printed("ray left right southwest northeast northwest southeast (a b)"),
              "ray horizontal diagonal (a b)");
    EXPECT_EQ(printed("ray orthogonal offdiagonal (a b)"), "ray orthogonal offdiagonal (a b)");
    EXPECT_EQ(printed("ray anydirection (a b)"), "ray (a b)");
    EXPECT_EQ(printed("ray southeast (a b & k zset)"), "ray southeast (a b & k zset)");

    EXPECT_EQ(tree("xray (a b k)"),
              "XRay {Set}\n"
              "|-PieceDesignator (a) pieces: a {Set}\n"
              "|-PieceDesignator (b) pieces: b {Set}\n"
              "`-PieceDesignator (k) pieces: k {Set}\n");
    EXPECT_EQ(printed("xray (a zset)"), "xray (a zset)");

    EXPECT_EQ(failure("ray a b"), "error @0: Missing open parenthesis after 'ray' filter\n");
    // xray follows the lines of its sliders and has no direction keywords.
    EXPECT_EQ(failure("xray up (a b)"), "error @0: Missing open parenthesis after 'xray' filter\n");
    EXPECT_EQ(failure("ray (a b"), "error @0: Missing closing parenthesis after 'ray' filter\n");
    EXPECT_EQ(failure("{xray (a b}"), "error @1: Missing closing parenthesis after 'xray' filter\n");
    EXPECT_EQ(failure("ray (a zstr b)"),
              "error @0 [7-10]: The operands to the 'ray' filter must be set filters\n");
    EXPECT_EQ(failure("xray (zpos a)"),
              "error @0 [6-9]: The operands to the 'xray' filter must be set filters\n");
    EXPECT_EQ(failure("ray (a)"), "error @0: The 'ray' filter must contain at least 2 set arguments\n");
    EXPECT_EQ(failure("xray ()"), "error @0: The 'xray' filter must contain at least 2 set arguments\n");
}

TEST_F(GeometryParse, PinReadsItsParametersInAnyOrderAndMakesUpTheAbsentOnes) {
    EXPECT_EQ(tree("pin"),
              "Pin {Set}\n"
              "|-PieceDesignator ([Aa]) pieces: Aa [from] {Set} <Invalid location> (implicit)\n"
              "|-PieceDesignator ([Aa]) pieces: Aa [through] {Set} <Invalid location> (implicit)\n"
              "`-PieceDesignator ([Kk]) pieces: Kk [to] {Set} <Invalid location> (implicit)\n");
    EXPECT_EQ(static_cast<const PinNode&>(only()).mode, PinNode::Pinned);
    EXPECT_EQ(tree("pin to zpiece from R"),
              "Pin {Set}\n"
              "|-PieceDesignator (R) pieces: R [from] {Set}\n"
              "|-PieceDesignator ([Aa]) pieces: Aa [through] {Set} <Invalid location> (implicit)\n"
              "`-PieceIDToSetConversion [to] {Set}\n"
              "  `-StandIn (zpiece) {Piece}\n");
    // Parameters are read at power 85: &, | and attacks end them.
    EXPECT_EQ(tree("pin through a attacks b"),
              "Attacks {Set}\n"
              "|-Pin {Set}\n"
              "| |-PieceDesignator ([Aa]) pieces: Aa [from] {Set} <Invalid location> (implicit)\n"
              "| |-PieceDesignator (a) pieces: a [through] {Set}\n"
              "| `-PieceDesignator ([Kk]) pieces: Kk [to] {Set} <Invalid location> (implicit)\n"
              "`-PieceDesignator (b) pieces: b {Set}\n");
    EXPECT_EQ(printed("pin through (a attacks b) to k"), "pin through (a attacks b) to k");
    EXPECT_EQ(tree("pin from Q & zset"),
              "BitAndOperator {Set}\n"
              "|-Pin {Set}\n"
              "| |-PieceDesignator (Q) pieces: Q [from] {Set}\n"
              "| |-PieceDesignator ([Aa]) pieces: Aa [through] {Set} <Invalid location> (implicit)\n"
              "| `-PieceDesignator ([Kk]) pieces: Kk [to] {Set} <Invalid location> (implicit)\n"
              "`-StandIn (zset) {Set}\n");
    EXPECT_EQ(printed("pin to k through n from B"), "pin from B through n to k");
    EXPECT_EQ(printed("pin"), "pin");
    EXPECT_EQ(printed("pin from (a | b)"), "pin from (a | b)");

    EXPECT_EQ(failure("pin through zstr"),
              "error @0 [12-15]: The operand to the 'pin' filter must be a set filter\n");
    // A second parameter of a kind is not the pin's any more.
    EXPECT_EQ(failure("pin to k to K"), "error @9: Unexpected token: 'to'\n");
}

TEST_F(GeometryParse, MakesquareHasANumericAndANameForm) {
    EXPECT_EQ(tree("makesquare (znum 3)"),
              "MakeSquare {Set}\n"
              "|-StandIn (znum) [file] {Numeric}\n"
              "`-Integer (3) [rank] {Numeric}\n");
    EXPECT_EQ(tree("makesquare zstr + \"1\""),
              "MakeSquare {Set}\n"
              "`-AddOperator {String}\n"
              "  |-StandIn (zstr) {String}\n"
              "  `-String (\"1\") {String}\n");
    // Parentheses around a single name are those of an expression.
    EXPECT_EQ(tree("makesquare (zstr)"),
              "MakeSquare {Set}\n"
              "`-StandIn (zstr) {String}\n");
    // A second argument that starts with a minus needs its parentheses.
    EXPECT_EQ(printed("makesquare (1 (-2))"), "makesquare (1 (-2))");
    EXPECT_EQ(printed("makesquare (znum + 1 znum)"), "makesquare (znum + 1 znum)");
    EXPECT_EQ(printed("makesquare (zstr < zstr)"), "makesquare (zstr < zstr)");

    EXPECT_EQ(failure("makesquare"), "error @0: missing argument to 'makesquare' filter\n");
    EXPECT_EQ(failure("makesquare (1)"), "error @0: missing argument to 'makesquare' filter\n");
    EXPECT_EQ(failure("makesquare (1 -2)"), "error @0: missing argument to 'makesquare' filter\n");
    EXPECT_EQ(failure("makesquare ()"), "error @0: missing argument to 'makesquare' filter\n");
    EXPECT_EQ(
        failure("makesquare znum"),
        "error @0 [11-14]: expected argument with string type for unparenthesized 'makesquare' filter\n");
    EXPECT_EQ(failure("makesquare (1 zset)"),
              "error @0 [14-17]: The operands to the makesquare filter must be numeric filters\n");
    EXPECT_EQ(failure("makesquare (zstr 1)"),
              "error @0 [12-15]: The operands to the makesquare filter must be numeric filters\n");
    EXPECT_EQ(failure("makesquare (1 2 3)"), "error @16: Unexpected token: '3'\n");
}

TEST_F(GeometryParse, SquarePropertiesTakeOneSetAtTheirOwnPower) {
    EXPECT_EQ(tree("colortype zpiece"),
              "ColorType {Numeric}\n"
              "`-PieceIDToSetConversion {Set}\n"
              "  `-StandIn (zpiece) {Piece}\n");
    // file, rank, type and colortype read at 60: | is inside, + outside.
    EXPECT_EQ(tree("file a | b + 1"),
              "AddOperator {Numeric}\n"
              "|-File {Numeric}\n"
              "| `-BitOrOperator {Set}\n"
              "|   |-PieceDesignator (a) pieces: a {Set}\n"
              "|   `-PieceDesignator (b) pieces: b {Set}\n"
              "`-Integer (1) {Numeric}\n");
    // dark and light read at 90: & and | are outside, attacks too.
    EXPECT_EQ(tree("dark a & b"),
              "BitAndOperator {Set}\n"
              "|-Dark {Set}\n"
              "| `-PieceDesignator (a) pieces: a {Set}\n"
              "`-PieceDesignator (b) pieces: b {Set}\n");
    EXPECT_EQ(printed("light (a attacks b)"), "light (a attacks b)");
    EXPECT_EQ(printed("rank (a & b)"), "rank a & b");
    EXPECT_EQ(printed("type zset"), "type zset");

    for (std::string word : {"colortype", "type", "file", "rank", "dark", "light"}) {
        EXPECT_EQ(failure(word + " znum"), "error @0 [" + std::to_string(word.size() + 1) + "-" +
                                               std::to_string(word.size() + 4) + "]: The operand to the '" +
                                               word + "' filter must be a set filter\n");
    }

    // pieceid takes a piece as it is, without its square.
    EXPECT_EQ(tree("pieceid zpiece"),
              "PieceId {Numeric}\n"
              "`-StandIn (zpiece) {Piece}\n");
    EXPECT_EQ(printed("pieceid a | b"), "pieceid a | b");
    EXPECT_EQ(
        failure("pieceid zbool"),
        "error @0 [8-12]: The operand to the 'pieceid' operator must be a set filter or a piece variable\n");
}

TEST_F(GeometryParse, BetweenAndDistanceTakeTwoOperandsInParentheses) {
    EXPECT_EQ(tree("between (zpiece a | b)"),
              "Between {Set}\n"
              "|-PieceIDToSetConversion {Set}\n"
              "| `-StandIn (zpiece) {Piece}\n"
              "`-BitOrOperator {Set}\n"
              "  |-PieceDesignator (a) pieces: a {Set}\n"
              "  `-PieceDesignator (b) pieces: b {Set}\n");
    EXPECT_EQ(printed("between (a attacks b k)"), "between (a attacks b k)");
    // Each operand is read at power 60, so a comparison needs parentheses.
    EXPECT_EQ(failure("between (a == b k)"), "error @11: Unexpected token: '=='\n");
    EXPECT_EQ(failure("between a b"), "error @0: Missing '(' at beginning of 'between' filter\n");
    EXPECT_EQ(failure("between (a zstr)"),
              "error @0 [11-14]: The operands of the 'between' filter must be set filters\n");
    EXPECT_EQ(failure("between (a b c)"), "error @0: Missing ')' at end of 'between' filter\n");

    EXPECT_EQ(tree("distance (zpos, zpos)"),
              "Distance {Numeric}\n"
              "|-StandIn (zpos) {Position}\n"
              "`-StandIn (zpos) {Position}\n");
    EXPECT_EQ(printed("distance (zpos zpos)"), "distance (zpos zpos)");
    EXPECT_EQ(failure("distance zpos zpos"), "error @0: Missing open parenthesis after 'distance' filter\n");
    EXPECT_EQ(failure("distance (zpos znum)"),
              "error @0 [15-18]: The arguments to the 'distance' filter must be position filters\n");
    EXPECT_EQ(failure("distance (zpos zpos zpos)"),
              "error @0: Missing closing parenthesis after 'distance' filter\n");
}

TEST_F(GeometryParse, BareFiltersHaveTheirTypesAndRemarks) {
    struct Bare {
        const char* word;
        const char* line;
        bool extension;
    };
    for (const Bare& bare :
         {Bare{"connectedpawns", "PawnQuery (connectedpawns) {Set}\n", false},
          Bare{"doubledpawns", "PawnQuery (doubledpawns) {Set}\n", false},
          Bare{"isolatedpawns", "PawnQuery (isolatedpawns) {Set}\n", false},
          Bare{"passedpawns", "PawnQuery (passedpawns) {Set}\n", false},
          Bare{"promotedpieces", "PromotedPieces {Set}\n", false}, Bare{"white", "White {Numeric}\n", false},
          Bare{"black", "Black {Numeric}\n", false}, Bare{"sidetomove", "SideToMove {Numeric}\n", false},
          Bare{"currentfen", "CurrentFen {String}\n", false},
          Bare{"standardfen", "StandardFen {String}\n", true},
          Bare{"zobristkey", "ZobristKey {String}\n", true},
          Bare{"halfmoveclock", "HalfmoveClock {Numeric}\n", true},
          Bare{"legalposition", "LegalPosition {Boolean}\n", true},
          Bare{"reachableposition", "ReachablePosition {Boolean}\n", true},
          Bare{"variant", "Variant {Boolean}\n", false}, Bare{"variantend", "VariantEnd {Boolean}\n", false},
          Bare{"variantwin", "VariantWin {Boolean}\n", false},
          Bare{"variantloss", "VariantLoss {Boolean}\n", false},
          Bare{"variantdraw", "VariantDraw {Boolean}\n", false}}) {
        EXPECT_EQ(tree(bare.word), bare.line);
        EXPECT_EQ(messages(), bare.extension ? std::string("info @0: The '") + bare.word +
                                                   "' filter is a ZMFi extension\n"
                                             : std::string())
            << bare.word;
        EXPECT_EQ(printed(bare.word), bare.word);
    }
    tree("passedpawns");
    EXPECT_EQ(static_cast<const PawnQueryNode&>(only()).mode, PawnQueryNode::Passed);
    // The colours are numbers, to be compared with the side to move.
    EXPECT_EQ(tree("sidetomove == black"),
              "EqualToOperator {Numeric}\n"
              "|-SideToMove {Numeric}\n"
              "`-Black {Numeric}\n");
}

}  // namespace
}  // namespace tarnfold::zmf
