// The move filter and its parameters, imagine with its specifiers, and
// consecutivemoves: trees, messages and the text printed back. Stand-ins of
// fixed types ("zpos" a Position, "zset" a Set ...) take the place of
// variables and of filters that give such values.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "query/dump_target.h"
#include "query/handlers/handler_support.h"
#include "query/nodes/imagine_nodes.h"
#include "query/nodes/move_nodes.h"
#include "query/parser.h"
#include "query/print_target.h"
#include "stand_in_parse.h"

namespace tarnfold::zmf {
namespace {

// A filter of kind Comment: `comment` and one operand read from power 0, as
// the real one reads a single argument.
class CommentStandInNode : public ZMFNode {
public:
    CommentStandInNode(OptionalOffset location, NodePtr operand)
        : ZMFNode(NodeKind::Comment, ValueType::Boolean, location), operand(std::move(operand)) {}
    void print(PrintTarget& target) const override {
        target << "comment ";
        printOperand(target, *operand, 0, 0);
        target.ends = PrintedEnds{closedEnd, 0};
    }
    void dump(DumpTarget& target, bool isLast) const override {
        target.writeLine(*this, isLast, "CommentStandIn");
        target.dumpChildren(isLast, {operand.get()});
    }
    NodePtr operand;
};

class CommentStandInHandler : public PrefixHandler {
public:
    CommentStandInHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwComment) {}
    NodePtr parse(const Token& token) override {
        NodePtr operand = parser.parseExpression(0);
        if (!operand) return nullptr;
        return makeNode<CommentStandInNode>(parser, token, std::move(operand));
    }
};

class MoveParse : public StandInParse {
protected:
    MoveParse() {
        for (Parser* p : {&parser, &reparser}) p->registerPrefix(std::make_unique<CommentStandInHandler>(*p));
    }
};

// The golden case parse/move_parameters shows from and to deciding the result.
TEST_F(MoveParse, TheFirstParameterDecidesTheResult) {
    // Absent squares are implicit designators of the whole board.
    EXPECT_EQ(tree("move capture zset to a1"),
              "Move result: capture {Set} (atomic inducer)\n"
              "|-PieceDesignator (.) [from] {Set} <Invalid location> (implicit)\n"
              "|-PieceDesignator (a1) squares: a1 [to] {Set}\n"
              "`-StandIn (zset) [capture] {Set}\n");
    EXPECT_EQ(tree("move legal to a1"),
              "Move legal {Boolean}\n"
              "|-PieceDesignator (.) [from] {Set} <Invalid location> (implicit)\n"
              "`-PieceDesignator (a1) squares: a1 [to] {Set}\n");
    // count wins over the set.
    EXPECT_EQ(tree("move to a1 count"),
              "Move count result: to {Numeric} (atomic inducer)\n"
              "|-PieceDesignator (.) [from] {Set} <Invalid location> (implicit)\n"
              "`-PieceDesignator (a1) squares: a1 [to] {Set}\n");
    const auto& move = static_cast<const MoveNode&>(only());
    EXPECT_TRUE(move.count);
    EXPECT_EQ(move.resultKind, MoveResultKind::To);
    EXPECT_EQ(move.capture, nullptr);

    EXPECT_EQ(tree("move"),
              "Move {Boolean} (atomic inducer)\n"
              "|-PieceDesignator (.) [from] {Set} <Invalid location> (implicit)\n"
              "`-PieceDesignator (.) [to] {Set} <Invalid location> (implicit)\n");
    EXPECT_EQ(messages(), "");
}

TEST_F(MoveParse, EveryParameterIsRecorded) {
    tree("move o-o-o primary enpassant null count");
    const auto& first = static_cast<const MoveNode&>(only());
    EXPECT_EQ(first.castle, MoveCastle::Queenside);
    EXPECT_EQ(first.variation, MoveVariation::Primary);
    EXPECT_TRUE(first.enpassant);
    EXPECT_TRUE(first.null);
    EXPECT_FALSE(first.reverse);
    EXPECT_EQ(first.source, MoveSource::Game);
    EXPECT_EQ(first.valueType, ValueType::Numeric);

    tree("move pseudolegal reverse o-o");
    const auto& second = static_cast<const MoveNode&>(only());
    EXPECT_EQ(second.source, MoveSource::Pseudolegal);
    EXPECT_EQ(second.castle, MoveCastle::Kingside);
    EXPECT_TRUE(second.reverse);
    EXPECT_EQ(messages(), "info @17: Reverse 'move' filter is a ZMFi extension\n");

    EXPECT_EQ(tree("move previous secondary castle enpassantsquare e6 promote [QN] to zpiece"),
              "Move previous secondary castle {Boolean}\n"
              "|-PieceDesignator (.) [from] {Set} <Invalid location> (implicit)\n"
              "|-PieceIDToSetConversion [to] {Set}\n"
              "| `-StandIn (zpiece) {Piece}\n"
              "|-PieceDesignator (e6) squares: e6 [enpassantsquare] {Set}\n"
              "`-PieceDesignator ([QN]) pieces: NQ [promote] {Set}\n");
    // Any piece of a colour counts as every piece type.
    tree("move promote A");
    EXPECT_EQ(messages(), "");
}

TEST_F(MoveParse, SetParametersReadBelowTheAttackOperators) {
    // attacks (80) stays out of the parameter, & (70) too; ~ reads at 75.
    EXPECT_EQ(tree("move from a attacks k"),
              "Attacks {Set}\n"
              "|-Move result: from {Set} (atomic inducer)\n"
              "| |-PieceDesignator (a) pieces: a [from] {Set}\n"
              "| `-PieceDesignator (.) [to] {Set} <Invalid location> (implicit)\n"
              "`-PieceDesignator (k) pieces: k {Set}\n");
    EXPECT_EQ(tree("move from zset & a"),
              "BitAndOperator {Set}\n"
              "|-Move result: from {Set} (atomic inducer)\n"
              "| |-StandIn (zset) [from] {Set}\n"
              "| `-PieceDesignator (.) [to] {Set} <Invalid location> (implicit)\n"
              "`-PieceDesignator (a) pieces: a {Set}\n");
    EXPECT_EQ(tree("move to ~a1 from a1"),
              "Move result: to {Set} (atomic inducer)\n"
              "|-PieceDesignator (a1) squares: a1 [from] {Set}\n"
              "`-Complement [to] {Set}\n"
              "  `-PieceDesignator (a1) squares: a1 {Set}\n");
    EXPECT_EQ(messages(), "");
}

TEST_F(MoveParse, CommentsAndSpeculationTakeFilters) {
    EXPECT_EQ(tree("move to a1 comment zstr from b2"),
              "Move result: to {Set} (atomic inducer)\n"
              "|-PieceDesignator (b2) squares: b2 [from] {Set}\n"
              "|-PieceDesignator (a1) squares: a1 [to] {Set}\n"
              "`-CommentStandIn [comment] {Boolean}\n"
              "  `-StandIn (zstr) {String}\n");
    // A second comment is no longer a parameter.
    query = parser.parseQuery(source("move comment zstr comment zstr"));
    ASSERT_NE(query.root, nullptr);
    EXPECT_EQ(query.root->children.size(), 2u);

    // The set before the colon declines it as an operator; the move filter
    // takes it as its own, and the body ends the filter.
    EXPECT_EQ(tree("move legal from a1 : zbool"),
              "Move legal {Boolean}\n"
              "|-PieceDesignator (a1) squares: a1 [from] {Set}\n"
              "|-PieceDesignator (.) [to] {Set} <Invalid location> (implicit)\n"
              "`-StandIn (zbool) [speculative] {Boolean}\n");
    EXPECT_EQ(messages(), "info @19: Speculative 'move' filter is a ZMFi extension\n");
    query = parser.parseQuery(source("move : zbool a1"));
    ASSERT_NE(query.root, nullptr);
    EXPECT_EQ(query.root->children.size(), 2u);
    EXPECT_EQ(messages(), "info @5: Speculative 'move' filter is a ZMFi extension\n");
}

TEST_F(MoveParse, RepeatedParameters) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"move from a1 from a2",
         "error @13: The 'move' filter may contain at most one 'from' specification\n"},
        {"move to a1 to a2", "error @11: The 'move' filter may contain at most one 'to' specification\n"},
        {"move capture a1 capture a2",
         "error @16: The 'move' filter may contain at most one 'capture' specification\n"},
        {"move enpassantsquare a1 enpassantsquare a2",
         "error @24: The 'move' filter may contain at most one 'enpassantsquare' specification\n"},
        {"move castle o-o", "error @12: The 'move' filter may contain at most one castling specification\n"},
        {"move o-o-o o-o-o", "error @11: The 'move' filter may contain at most one castling specification\n"},
        {"move enpassant enpassant",
         "error @15: The 'move' filter may contain at most one 'enpassant' specification\n"},
        {"move null null", "error @10: The 'move' filter may contain at most one 'null' specification\n"},
        {"move primary secondary",
         "error @13: The 'move' filter may contain at most one variation specification\n"},
        {"move previous legal",
         "error @14: The 'move' filter may contain at most one of 'previous', 'legal', or 'pseudolegal'\n"},
        {"move legal legal",
         "error @11: The 'move' filter may contain at most one of 'previous', 'legal', or 'pseudolegal'\n"},
        {"move count count", "error @11: Multiple 'count' parameters to 'move' filter\n"},
        {"move legal reverse reverse",
         "info @11: Reverse 'move' filter is a ZMFi extension\n"
         "info @19: Reverse 'move' filter is a ZMFi extension\n"
         "error @19: Multiple 'reverse' parameters to 'move' filter\n"},
        {"move promote Q promote R",
         "error @15: The 'move' filter may contain at most one 'promote' specification\n"},
        {"move drop Q drop R", "error @12: The 'move' filter may contain at most one 'drop' specification\n"},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(failure(text), expected) << text;
}

TEST_F(MoveParse, ParametersThatExcludeEachOther) {
    const std::string dropWith =
        "Cannot combine 'drop' with 'reverse', 'null', 'from', 'capture', 'promote', 'enpassant', "
        "'enpassantsquare', or castling specification\n";
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"move drop Q from a1", "error @12: Cannot combine 'from' with 'drop' in 'move' filter\n"},
        {"move drop Q capture a1", "error @12: Cannot combine 'capture' with 'drop' in 'move' filter\n"},
        {"move drop Q enpassantsquare a1",
         "error @12: Cannot combine 'enpassantsquare' with 'drop' in 'move' filter\n"},
        {"move drop Q promote Q", "error @12: Cannot combine 'promote' with 'drop' in 'move' filter\n"},
        {"move drop Q castle",
         "error @12: Cannot combine castling specification with 'drop' in 'move' filter\n"},
        {"move drop Q enpassant", "error @12: Cannot combine 'enpassant' with 'drop' in 'move' filter\n"},
        {"move drop Q null", "error @12: Cannot combine 'null' with 'drop' in 'move' filter\n"},
        {"move legal drop Q reverse",
         "info @18: Reverse 'move' filter is a ZMFi extension\n"
         "error @18: Cannot combine 'reverse' with 'drop' in 'move' filter\n"},
        {"move from a1 drop Q", "error @13: " + dropWith},
        {"move capture a1 drop Q", "error @16: " + dropWith},
        {"move enpassantsquare a1 drop Q", "error @24: " + dropWith},
        {"move promote Q drop Q", "error @15: " + dropWith},
        {"move o-o drop Q", "error @9: " + dropWith},
        {"move enpassant drop Q", "error @15: " + dropWith},
        {"move null drop Q", "error @10: " + dropWith},
        {"move legal reverse drop Q",
         "info @11: Reverse 'move' filter is a ZMFi extension\nerror @19: " + dropWith},
        {"move enpassant enpassantsquare a1",
         "error @15: Cannot use both 'enpassantsquare' and 'enpassant' in a 'move' filter\n"},
        {"move enpassantsquare a1 enpassant",
         "error @24: Cannot use both 'enpassantsquare' and 'enpassant' in a 'move' filter\n"},
        {"move legal primary",
         "error @11: Cannot combine 'primary' with 'legal' or 'pseudolegal' in 'move' filter\n"},
        {"move pseudolegal secondary",
         "error @17: Cannot combine 'secondary' with 'legal' or 'pseudolegal' in 'move' filter\n"},
        {"move secondary legal",
         "error @15: Cannot combine 'primary', or 'secondary' with 'legal' or 'pseudolegal' in 'move' "
         "filter\n"},
        {"move primary pseudolegal",
         "error @13: Cannot combine 'primary', or 'secondary' with 'legal' or 'pseudolegal' in 'move' "
         "filter\n"},
        {"move reverse",
         "info @5: Reverse 'move' filter is a ZMFi extension\n"
         "error @5: The 'reverse' parameter of the 'move' filter can only be used with 'legal' or "
         "'pseudolegal'\n"},
        {"move reverse previous",
         "info @5: Reverse 'move' filter is a ZMFi extension\n"
         "error @5: The 'reverse' parameter of the 'move' filter can only be used with 'legal' or "
         "'pseudolegal'\n"},
        {"move previous : zbool",
         "info @14: Speculative 'move' filter is a ZMFi extension\n"
         "error @14: Speculative 'move' filter cannot be used with 'previous'\n"},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(failure(text), expected) << text;
    // primary and secondary go with previous.
    tree("move previous primary");
    EXPECT_EQ(messages(), "");
}

TEST_F(MoveParse, OperandsOfParameters) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"move from", "error @5: Missing argument to 'from' specification of 'move' filter\n"},
        {"move from to a1", "error @5: Missing argument to 'from' specification of 'move' filter\n"},
        {"{move to}", "error @6: Missing argument to 'to' specification of 'move' filter\n"},
        {"move capture", "error @5: Missing argument to 'capture' specification of 'move' filter\n"},
        {"move enpassantsquare legal",
         "error @5: Missing argument to 'enpassantsquare' specification of 'move' filter\n"},
        {"move from znum",
         "error @5 [10-13]: The 'from' specification of the 'move' filter requires a Set argument\n"},
        {"move to zpos",
         "error @5 [8-11]: The 'to' specification of the 'move' filter requires a Set argument\n"},
        {"move capture zstr",
         "error @5 [13-16]: The 'capture' specification of the 'move' filter requires a Set argument\n"},
        {"move enpassantsquare zbool",
         "error @5 [21-25]: The 'enpassantsquare' specification of the 'move' filter requires a Set "
         "argument\n"},
        // A failure inside the operand is told where it lies.
        {"move from (a1 | )", "error @16: Unexpected token: ')'\n"},
        {"move from (a1", "error @10: A parenthesized expression must enclose exactly one filter\n"},
        {"move promote", "error @5: Missing piece designator for 'promote' specification of 'move' filter\n"},
        {"move promote zset",
         "error @5: Missing piece designator for 'promote' specification of 'move' filter\n"},
        {"move promote Qa8",
         "error @5 [13-15]: The piece designator for the 'promote' specification may not contain a square "
         "designator\n"},
        {"move promote _",
         "error @5 [13-13]: The piece designator for the 'promote' specification must contain at least one "
         "piece "
         "type\n"},
        {"move promote .",
         "error @5 [13-13]: The piece designator for the 'promote' specification must contain at least one "
         "piece "
         "type\n"},
        {"move drop (Q)", "error @5: Missing piece designator for 'drop' specification of 'move' filter\n"},
        {"move drop a-h8",
         "error @5 [10-13]: The piece designator for the 'drop' specification may not contain a square "
         "designator\n"},
        {"move drop []",
         "error @5 [10-11]: The piece designator for the 'drop' specification must contain at least one "
         "piece "
         "type\n"},
        {"move legal :",
         "info @11: Speculative 'move' filter is a ZMFi extension\n"
         "error @11: Missing filter argument to speculative 'move' filter\n"},
        {"move legal : }",
         "info @11: Speculative 'move' filter is a ZMFi extension\n"
         "error @11: Missing filter argument to speculative 'move' filter\n"},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(failure(text), expected) << text;
}

TEST_F(MoveParse, PrintedMovesReadBackTheSame) {
    EXPECT_EQ(printed("move to a2 legal from a1"), "move to a2 legal from a1");
    EXPECT_EQ(printed("move count from a1"), "move count from a1");
    EXPECT_EQ(printed("move enpassantsquare e6 capture d5 to e6"),
              "move enpassantsquare e6 to e6 capture d5");
    EXPECT_EQ(printed("move drop N comment zstr to zset"), "move drop N comment zstr to zset");
    EXPECT_EQ(printed("move null pseudolegal reverse o-o promote [QR]"),
              "move pseudolegal o-o null reverse promote [QR]");
    EXPECT_EQ(printed("move pseudolegal from (a1 | b1) : move to a1"),
              "move pseudolegal from (a1 | b1) : move to a1");
    EXPECT_EQ(printed("(move from a1) | b1"), "move from a1 | b1");
    // The body of the colon reads at 85: operators of less power after it
    // apply to the whole filter, so the body needs parentheses for them.
    EXPECT_EQ(printed("(move from a1 : zbool) | b1"), "move from a1 : zbool | b1");
    EXPECT_EQ(printed("move from a1 : (zset & a1)"), "move from a1 : (zset & a1)");
    EXPECT_EQ(printed("move from a1 : zpos : a1"), "move from a1 : zpos : a1");
    EXPECT_EQ(printed("move count primary o-o null enpassant"), "move primary o-o enpassant null count");
    // The comment's argument is read from power 0 and would take the operator.
    EXPECT_EQ(printed("(move to a1 comment zstr) | b1"), "(move to a1 comment zstr) | b1");
}

TEST_F(MoveParse, ImagineSpecifiers) {
    EXPECT_EQ(tree("imagine piece Q --> a1 | b2 swap e1 h1 sidetomove reverse : zset"),
              "Imagine {Set}\n"
              "|-ImaginePiece (Q) piece: Q {Empty}\n"
              "| `-BitOrOperator {Set}\n"
              "|   |-PieceDesignator (a1) squares: a1 {Set}\n"
              "|   `-PieceDesignator (b2) squares: b2 {Set}\n"
              "|-ImagineSwap {Empty}\n"
              "| |-PieceDesignator (e1) squares: e1 {Set}\n"
              "| `-PieceDesignator (h1) squares: h1 {Set}\n"
              "|-ImagineSidetomove (reverse) {Empty}\n"
              "`-StandIn (zset) [body] {Set}\n");
    EXPECT_EQ(messages(), "info @0: The 'imagine' filter is a ZMFi extension\n");
    const auto& imagine = static_cast<const ImagineNode&>(only());
    ASSERT_EQ(imagine.specifiers.size(), 3u);
    EXPECT_EQ(static_cast<const ImaginePieceNode&>(*imagine.specifiers[0]).piece, WhiteQueen);

    EXPECT_EQ(tree("imagine sidetomove black piece n --> zpiece : znum"),
              "Imagine {Numeric}\n"
              "|-ImagineSidetomove (black) {Empty}\n"
              "|-ImaginePiece (n) piece: n {Empty}\n"
              "| `-PieceIDToSetConversion {Set}\n"
              "|   `-StandIn (zpiece) {Piece}\n"
              "`-StandIn (znum) [body] {Numeric}\n");
    EXPECT_EQ(
        static_cast<const ImaginePieceNode&>(*static_cast<const ImagineNode&>(only()).specifiers[1]).piece,
        BlackKnight);
    EXPECT_EQ(tree("imagine : zbool"), "Imagine {Boolean}\n`-StandIn (zbool) [body] {Boolean}\n");
}

TEST_F(MoveParse, ImagineMessages) {
    const std::string remark = "info @0: The 'imagine' filter is a ZMFi extension\n";
    const std::string onePiece =
        "The piece designator after 'imagine piece' must name exactly one piece and no squares\n";
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"imagine piece Qa1 --> a2 : zbool", remark + "error @0 [14-16]: " + onePiece},
        {"imagine piece [QR] --> a2 : zbool", remark + "error @0 [14-17]: " + onePiece},
        {"imagine piece A --> a2 : zbool", remark + "error @0 [14-14]: " + onePiece},
        {"imagine piece zset --> a2 : zbool", remark + "error @14: Unexpected token: 'zset'\n"},
        {"imagine piece Q a2 : zbool", remark + "error @16: Unexpected token: 'a2'\n"},
        {"imagine piece Q --> zstr : zbool",
         remark + "error @0 [20-23]: The operand to the 'imagine' filter must be a set filter\n"},
        {"imagine swap a1 zstr : zbool",
         remark + "error @0 [16-19]: The operand to the 'imagine' filter must be a set filter\n"},
        {"imagine sidetomove up : zbool", remark + "error @19: Unexpected token: 'up'\n"},
        {"imagine swap a1 b1", remark + "error @18: Unexpected end of file\n"},
        {"imagine swap a1 b1 zbool", remark + "error @19: Unexpected token: 'zbool'\n"},
        {"imagine :", remark + "error @9: Unexpected end of file\n"},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(failure(text), expected) << text;
}

TEST_F(MoveParse, ImaginePrintedBack) {
    EXPECT_EQ(printed("imagine piece Q --> a1 | b2 swap e1 h1 sidetomove white : zset & a1"),
              "imagine piece Q --> a1 | b2 swap e1 h1 sidetomove white : zset & a1");
    EXPECT_EQ(printed("(imagine : zset) | a1"), "(imagine : zset) | a1");
}

TEST_F(MoveParse, Consecutivemoves) {
    EXPECT_EQ(tree("consecutivemoves quiet 2 5 (zpos zpos)"),
              "Consecutivemoves quiet {Numeric}\n"
              "|-Range [range] {Numeric}\n"
              "| |-Integer (2) {Numeric}\n"
              "| `-Integer (5) {Numeric}\n"
              "|-StandIn (zpos) {Position}\n"
              "`-StandIn (zpos) {Position}\n");
    EXPECT_EQ(tree("consecutivemoves 3 quiet (zpos zpos)"),
              "Consecutivemoves quiet {Numeric}\n"
              "|-Range [range] {Numeric}\n"
              "| `-Integer (3) {Numeric}\n"
              "|-StandIn (zpos) {Position}\n"
              "`-StandIn (zpos) {Position}\n");
    EXPECT_EQ(tree("consecutivemoves (zpos zpos)"),
              "Consecutivemoves {Numeric}\n"
              "|-StandIn (zpos) {Position}\n"
              "`-StandIn (zpos) {Position}\n");
    EXPECT_EQ(messages(), "");
    EXPECT_EQ(printed("consecutivemoves quiet 1 (zpos zpos)"), "consecutivemoves quiet 1 (zpos zpos)");

    const std::vector<std::pair<std::string, std::string>> cases = {
        {"consecutivemoves zpos zpos",
         "error @0: Missing opening parenthesis after 'consecutivemoves' filter\n"},
        {"consecutivemoves (zpos zpos",
         "error @0: Missing closing parenthesis after 'consecutivemoves' filter\n"},
        {"consecutivemoves (zpos zpos zpos)",
         "error @0: Missing closing parenthesis after 'consecutivemoves' filter\n"},
        {"consecutivemoves (zset zpos)",
         "error @0 [18-21]: Arguments to 'consecutivemoves' filter must be position filters\n"},
        {"consecutivemoves (zpos znum)",
         "error @0 [23-26]: Arguments to 'consecutivemoves' filter must be position filters\n"},
        {"consecutivemoves (zpos)", "error @22: Unexpected token: ')'\n"},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(failure(text), expected) << text;
}

}  // namespace
}  // namespace tarnfold::zmf
