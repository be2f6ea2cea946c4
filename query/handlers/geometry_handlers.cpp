// Filters on the squares of the board: between, the direction filters, ray
// and xray, pin, makesquare, the square properties (colortype, type, file,
// rank, dark, light, pieceid), pawn structure, promoted pieces, and the
// distance of two positions.
#include <array>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "query/convert.h"
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/geometry_nodes.h"
#include "query/nodes/literal_nodes.h"
#include "query/nodes/piece_designator_node.h"
#include "query/nodes/structure_nodes.h"
#include "query/piece_designator.h"
#include "query/transform.h"

namespace tarnfold::zmf {

namespace {

// A missing or miscounted part is reported at the keyword; always null.
NodePtr reportAtKeyword(Parser& parser, const Token& token, std::string_view text) {
    parser.report(token.begin, MessageLevel::Error, text);
    return nullptr;
}

// One operand that must be a set; a piece variable stands for its square.
// Null after the message when it is something else.
NodePtr parseSetOperand(Parser& parser, const Token& token, BindingPower power, std::string_view message) {
    NodePtr operand = parser.parseExpression(power);
    if (!operand) return nullptr;
    convertPieceToSet(operand);
    if (operand->valueType != ValueType::Set) {
        parser.reportOperand(token, *operand, message);
        return nullptr;
    }
    return operand;
}

// Where the closing parenthesis of a list of any length cannot come any more.
bool endsList(TokenKind kind) { return kind == TokenKind::EndOfFile || kind == TokenKind::RightBrace; }

struct DirectionKeyword {
    TokenKind kind;
    Direction direction;
};

constexpr DirectionKeyword directionKeywords[] = {
    {TokenKind::KwRight, Right},
    {TokenKind::KwUp, Up},
    {TokenKind::KwNortheast, NorthEast},
    {TokenKind::KwNorthwest, NorthWest},
    {TokenKind::KwLeft, Left},
    {TokenKind::KwDown, Down},
    {TokenKind::KwSouthwest, SouthWest},
    {TokenKind::KwSoutheast, SouthEast},
    {TokenKind::KwDiagonal, Diagonal},
    {TokenKind::KwMaindiagonal, MainDiagonal},
    {TokenKind::KwOffdiagonal, OffDiagonal},
    {TokenKind::KwOrthogonal, Orthogonal},
    {TokenKind::KwVertical, Vertical},
    {TokenKind::KwHorizontal, Horizontal},
    {TokenKind::KwAnydirection, AnyDirection},
};

std::optional<Direction> directionOf(TokenKind kind) {
    for (const DirectionKeyword& keyword : directionKeywords)
        if (keyword.kind == kind) return keyword.direction;
    return std::nullopt;
}

// A designator that the parser puts where the text has none.
NodePtr implicitDesignator(std::string_view text) {
    DesignatorScan scan = scanPieceDesignator(text, 0);
    auto node =
        std::make_unique<PieceDesignatorNode>(std::nullopt, scan.squares, scan.pieceMask, std::string(text));
    node->implicit = 1;
    return node;
}

// between ( S S )
class BetweenHandler : public PrefixHandler {
public:
    BetweenHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwBetween) {}

    NodePtr parse(const Token& token) override {
        if (parser.peekToken().kind != TokenKind::LeftParen)
            return reportAtKeyword(parser, token, "Missing '(' at beginning of 'between' filter");
        parser.nextToken();
        constexpr std::string_view wrongType = "The operands of the 'between' filter must be set filters";
        NodePtr left = parseSetOperand(parser, token, squareOperand, wrongType);
        if (!left) return nullptr;
        NodePtr right = parseSetOperand(parser, token, squareOperand, wrongType);
        if (!right) return nullptr;
        if (parser.peekToken().kind != TokenKind::RightParen)
            return reportAtKeyword(parser, token, "Missing ')' at end of 'between' filter");
        parser.nextToken();
        return makeNode<BetweenNode>(parser, token, std::move(left), std::move(right));
    }
};

// colortype S, type S, file S, rank S; dark S, light S. Dark and light
// build each other's node under a transform that recolours the squares.
template <class Node, class Recoloured = Node>
class SquareSetHandler : public PrefixHandler {
public:
    SquareSetHandler(Parser& parser, TokenKind kind, BindingPower power)
        : PrefixHandler(parser, kind), power_(power) {}

    NodePtr parse(const Token& token) override {
        NodePtr operand = parseSetOperand(parser, token, power_, operandMessage(token.text, "set"));
        if (!operand) return nullptr;
        if constexpr (!std::is_same_v<Node, Recoloured>)
            if (squareColoursSwapped(parser.transformStack))
                return makeNode<Recoloured>(parser, token, std::move(operand));
        return makeNode<Node>(parser, token, std::move(operand));
    }

private:
    BindingPower power_;
};

// direction R S, with R an optional range: up, down, right, left, northeast,
// northwest, southeast, southwest, vertical, horizontal, orthogonal,
// maindiagonal, offdiagonal, diagonal, anydirection
class DirectionHandler : public PrefixHandler {
public:
    DirectionHandler(Parser& parser, TokenKind kind, Direction direction)
        : PrefixHandler(parser, kind), direction_(direction) {}

    NodePtr parse(const Token& token) override {
        NodePtr range = parser.parseRange(true);
        if (!range) range = defaultRange();
        // The operand has no minimum power of its own: `up 1 R & k` shifts
        // the intersection.
        NodePtr operand =
            parseSetOperand(parser, token, 0, "The operand to the direction filter must be a set filter");
        if (!operand) return nullptr;
        Direction direction = applyTransformDirection(parser.transformStack, direction_);
        return makeNode<DirectionNode>(parser, token, direction, std::move(range), std::move(operand));
    }

private:
    // Every distance a shift can have on the board.
    static NodePtr defaultRange() {
        auto lower = std::make_unique<IntegerNode>(std::nullopt, 1);
        auto upper = std::make_unique<IntegerNode>(std::nullopt, 7);
        lower->implicit = upper->implicit = 1;
        auto range = std::make_unique<RangeNode>(std::nullopt, std::move(lower), std::move(upper));
        range->implicit = 1;
        return range;
    }

    Direction direction_;
};

// ray directions ( S S+ ), with any number of direction keywords;
// xray ( S S+ )
template <class Node>
class RayHandler : public PrefixHandler {
public:
    RayHandler(Parser& parser, TokenKind kind) : PrefixHandler(parser, kind) {}

    NodePtr parse(const Token& token) override {
        std::array<bool, rayDirectionCount> rays{};
        bool named = false;
        if constexpr (std::is_same_v<Node, RayNode>) {
            while (std::optional<Direction> direction = directionOf(parser.peekToken().kind)) {
                parser.nextToken();
                std::array<bool, rayDirectionCount> more = directionRays(*direction);
                for (int ray = 0; ray < rayDirectionCount; ++ray) rays[ray] = rays[ray] || more[ray];
                named = true;
            }
        }
        if (parser.peekToken().kind != TokenKind::LeftParen)
            return reportAtKeyword(parser, token,
                                   message("Missing open parenthesis after '", token, "' filter"));
        parser.nextToken();
        std::vector<NodePtr> arguments;
        std::string wrongType = message("The operands to the '", token, "' filter must be set filters");
        for (TokenKind next = parser.peekToken().kind; next != TokenKind::RightParen;
             next = parser.peekToken().kind) {
            if (endsList(next))
                return reportAtKeyword(parser, token,
                                       message("Missing closing parenthesis after '", token, "' filter"));
            NodePtr argument = parseSetOperand(parser, token, 0, wrongType);
            if (!argument) return nullptr;
            arguments.push_back(std::move(argument));
        }
        parser.nextToken();
        if (arguments.size() < 2)
            return reportAtKeyword(parser, token,
                                   message("The '", token, "' filter must contain at least 2 set arguments"));
        if constexpr (std::is_same_v<Node, RayNode>) {
            if (!named) rays = directionRays(AnyDirection);
            rays = applyTransformRays(parser.transformStack, rays);
            return makeNode<RayNode>(parser, token, rays, std::move(arguments));
        } else {
            return makeNode<XRayNode>(parser, token, std::move(arguments));
        }
    }

private:
    static std::string message(std::string_view before, const Token& token, std::string_view after) {
        std::string text(before);
        text.append(token.text);
        text.append(after);
        return text;
    }
};

// pin, then in any order and each at most once: from S, through S, to S
class PinHandler : public PrefixHandler {
public:
    PinHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwPin) {}

    NodePtr parse(const Token& token) override {
        NodePtr from, through, to;
        for (;;) {
            TokenKind next = parser.peekToken().kind;
            NodePtr* slot = next == TokenKind::KwFrom      ? &from
                            : next == TokenKind::KwThrough ? &through
                            : next == TokenKind::KwTo      ? &to
                                                           : nullptr;
            // A repeated parameter is no longer the pin's, and the frame
            // reports it where it stands.
            if (!slot || *slot) break;
            parser.nextToken();
            *slot = parseSetOperand(parser, token, pinParameter,
                                    "The operand to the 'pin' filter must be a set filter");
            if (!*slot) return nullptr;
        }
        // Without parameters the filter asks for any piece pinned to its king.
        if (!from) from = implicitDesignator("[Aa]");
        if (!through) through = implicitDesignator("[Aa]");
        if (!to) to = implicitDesignator("[Kk]");
        return makeNode<PinNode>(parser, token, std::move(from), std::move(through), std::move(to));
    }
};

// makesquare ( N N ) | makesquare T
class MakesquareHandler : public PrefixHandler {
public:
    MakesquareHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwMakesquare) {}

    NodePtr parse(const Token& token) override {
        ParserSnapshot beforeParen = parser.snapshot();
        TokenKind next = parser.peekToken().kind;
        if (next != TokenKind::LeftParen) {
            if (endsList(next) || next == TokenKind::RightParen)
                return reportAtKeyword(parser, token, missingArgument);
            return parseName(token);
        }
        parser.nextToken();
        NodePtr left = parseNumber(token);
        if (!left) return nullptr;
        // A parenthesised name is the name form, its parentheses those of
        // an ordinary expression.
        if (left->valueType == ValueType::String && parser.peekToken().kind == TokenKind::RightParen) {
            parser.restore(beforeParen, true);
            return parseName(token);
        }
        if (!numeric(*left)) return wrongNumber(token, *left);
        NodePtr right = parseNumber(token);
        if (!right) return nullptr;
        if (!numeric(*right)) return wrongNumber(token, *right);
        if (!closeParenthesis()) return nullptr;
        return makeNode<MakesquareNode>(parser, token, std::move(left), std::move(right));
    }

private:
    static constexpr std::string_view missingArgument = "missing argument to 'makesquare' filter";

    NodePtr parseName(const Token& token) {
        NodePtr operand = parser.parseExpression(absOperand);
        if (!operand) return nullptr;
        if (operand->valueType != ValueType::String) {
            parser.reportOperand(
                token, *operand,
                "expected argument with string type for unparenthesized 'makesquare' filter");
            return nullptr;
        }
        return makeNode<MakesquareNode>(parser, token, std::move(operand));
    }

    // One argument of the parenthesised form, typed by the caller.
    NodePtr parseNumber(const Token& token) {
        if (parser.peekToken().kind == TokenKind::RightParen || endsList(parser.peekToken().kind))
            return reportAtKeyword(parser, token, missingArgument);
        return parser.parseExpression(0);
    }

    // The closing parenthesis, or the frame's message for what stands there.
    bool closeParenthesis() {
        Token next = parser.peekToken();
        if (next.kind == TokenKind::EndOfFile) {
            parser.report(next.begin, MessageLevel::Error, "Unexpected end of file");
            return false;
        }
        return parser.expectToken(TokenKind::RightParen).kind == TokenKind::RightParen;
    }

    static bool numeric(const ZMFNode& node) { return node.valueType == ValueType::Numeric; }

    NodePtr wrongNumber(const Token& token, const ZMFNode& operand) {
        parser.reportOperand(token, operand, "The operands to the makesquare filter must be numeric filters");
        return nullptr;
    }
};

// pieceid S | pieceid of a piece variable
class PieceidHandler : public PrefixHandler {
public:
    PieceidHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwPieceid) {}

    NodePtr parse(const Token& token) override {
        NodePtr operand = parser.parseExpression(squareOperand);
        if (!operand) return nullptr;
        if (!hasType(*operand, {ValueType::Set, ValueType::Piece})) {
            parser.reportOperand(
                token, *operand,
                "The operand to the 'pieceid' operator must be a set filter or a piece variable");
            return nullptr;
        }
        return makeNode<PieceidNode>(parser, token, std::move(operand));
    }
};

// connectedpawns | doubledpawns | isolatedpawns | passedpawns
class PawnQueryHandler : public PrefixHandler {
public:
    PawnQueryHandler(Parser& parser, TokenKind kind, PawnQueryNode::Mode mode)
        : PrefixHandler(parser, kind), mode_(mode) {}

    NodePtr parse(const Token& token) override { return makeNode<PawnQueryNode>(parser, token, mode_); }

private:
    PawnQueryNode::Mode mode_;
};

// distance ( P P ), a comma between the two allowed
class DistanceHandler : public PrefixHandler {
public:
    DistanceHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwDistance) {}

    NodePtr parse(const Token& token) override {
        if (parser.peekToken().kind != TokenKind::LeftParen)
            return reportAtKeyword(parser, token, "Missing open parenthesis after 'distance' filter");
        parser.nextToken();
        NodePtr left = parsePosition(token);
        if (!left) return nullptr;
        if (parser.peekToken().kind == TokenKind::Comma) parser.nextToken();
        NodePtr right = parsePosition(token);
        if (!right) return nullptr;
        if (parser.peekToken().kind != TokenKind::RightParen)
            return reportAtKeyword(parser, token, "Missing closing parenthesis after 'distance' filter");
        parser.nextToken();
        return makeNode<DistanceNode>(parser, token, std::move(left), std::move(right));
    }

private:
    NodePtr parsePosition(const Token& token) {
        NodePtr operand = parser.parseExpression(0);
        if (!operand) return nullptr;
        if (operand->valueType != ValueType::Position) {
            parser.reportOperand(token, *operand,
                                 "The arguments to the 'distance' filter must be position filters");
            return nullptr;
        }
        return operand;
    }
};

}  // namespace

void registerGeometryHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<BetweenHandler>(parser));
    parser.registerPrefix(
        std::make_unique<SquareSetHandler<ColortypeNode>>(parser, TokenKind::KwColortype, squareOperand));
    parser.registerPrefix(
        std::make_unique<SquareSetHandler<TypeNode>>(parser, TokenKind::KwType, squareOperand));
    parser.registerPrefix(
        std::make_unique<SquareSetHandler<FileNode>>(parser, TokenKind::KwFile, squareOperand));
    parser.registerPrefix(
        std::make_unique<SquareSetHandler<RankNode>>(parser, TokenKind::KwRank, squareOperand));
    parser.registerPrefix(
        std::make_unique<SquareSetHandler<DarkNode, LightNode>>(parser, TokenKind::KwDark, colourOperand));
    parser.registerPrefix(
        std::make_unique<SquareSetHandler<LightNode, DarkNode>>(parser, TokenKind::KwLight, colourOperand));
    for (const DirectionKeyword& keyword : directionKeywords)
        parser.registerPrefix(std::make_unique<DirectionHandler>(parser, keyword.kind, keyword.direction));
    parser.registerPrefix(std::make_unique<RayHandler<RayNode>>(parser, TokenKind::KwRay));
    parser.registerPrefix(std::make_unique<RayHandler<XRayNode>>(parser, TokenKind::KwXray));
    parser.registerPrefix(std::make_unique<PinHandler>(parser));
    parser.registerPrefix(std::make_unique<MakesquareHandler>(parser));
    parser.registerPrefix(std::make_unique<PieceidHandler>(parser));
    parser.registerPrefix(
        std::make_unique<PawnQueryHandler>(parser, TokenKind::KwConnectedpawns, PawnQueryNode::Connected));
    parser.registerPrefix(
        std::make_unique<PawnQueryHandler>(parser, TokenKind::KwDoubledpawns, PawnQueryNode::Doubled));
    parser.registerPrefix(
        std::make_unique<PawnQueryHandler>(parser, TokenKind::KwIsolatedpawns, PawnQueryNode::Isolated));
    parser.registerPrefix(
        std::make_unique<PawnQueryHandler>(parser, TokenKind::KwPassedpawns, PawnQueryNode::Passed));
    parser.registerPrefix(
        std::make_unique<BareFilterHandler<PromotedpiecesNode>>(parser, TokenKind::KwPromotedpieces));
    parser.registerPrefix(std::make_unique<DistanceHandler>(parser));
}

}  // namespace tarnfold::zmf
