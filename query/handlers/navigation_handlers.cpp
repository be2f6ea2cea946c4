// Position navigation: filters that name positions of the game tree, relate
// them, and look for other positions where a filter holds.
#include <string>
#include <string_view>

#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/literal_nodes.h"
#include "query/nodes/navigation_nodes.h"

namespace tarnfold::zmf {

namespace {

NodePtr fail(Parser& parser, const Token& at, std::string_view text) {
    parser.report(at.begin, MessageLevel::Error, text);
    return nullptr;
}

// An operand of the wrong type is reported with its text underlined.
bool checkOperand(Parser& parser, const Token& token, const ZMFNode& operand, ValueType wanted,
                  std::string_view name, std::string_view typeWord) {
    if (operand.valueType == wanted) return true;
    parser.reportOperand(token, operand, operandMessage(name, typeWord));
    return false;
}

// keyword(P P), the two positions optionally separated by a comma
template <class Node>
class PositionPairHandler : public PrefixHandler {
public:
    PositionPairHandler(Parser& parser, TokenKind kind, std::string_view name)
        : PrefixHandler(parser, kind), name_(name) {}

    NodePtr parse(const Token& token) override {
        if (parser.peekToken().kind != TokenKind::LeftParen)
            return fail(parser, token, joinPieces({"Missing open parenthesis after '", name_, "' filter"}));
        parser.nextToken();
        NodePtr left = parser.parseExpression(0);
        if (!left) return nullptr;
        if (!checkOperand(parser, token, *left, ValueType::Position, name_, "position")) return nullptr;
        if (parser.peekToken().kind == TokenKind::Comma) parser.nextToken();
        NodePtr right = parser.parseExpression(0);
        if (!right) return nullptr;
        if (!checkOperand(parser, token, *right, ValueType::Position, name_, "position")) return nullptr;
        if (parser.peekToken().kind != TokenKind::RightParen)
            return fail(parser, token,
                        joinPieces({"Missing closing parenthesis after '", name_, "' filter"}));
        parser.nextToken();
        return makeNode<Node>(parser, token, std::move(left), std::move(right));
    }

private:
    std::string_view name_;
};

// child, child(N)
class ChildHandler : public PrefixHandler {
public:
    ChildHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwChild) {}

    NodePtr parse(const Token& token) override {
        if (parser.peekToken().kind != TokenKind::LeftParen) {
            // The main child: an operand that no text stands behind.
            auto zero = std::make_unique<IntegerNode>(token.begin, 0);
            zero->implicit = 1;
            return makeNode<ChildNode>(parser, token, std::move(zero));
        }
        parser.nextToken();
        NodePtr operand = parser.parseExpression(0);
        if (!operand) return nullptr;
        if (!checkOperand(parser, token, *operand, ValueType::Numeric, "child", "numeric")) return nullptr;
        if (parser.peekToken().kind != TokenKind::RightParen)
            return fail(parser, token, "Missing closing parenthesis after 'child' filter");
        parser.nextToken();
        return makeNode<ChildNode>(parser, token, std::move(operand));
    }
};

// position N
class PositionHandler : public PrefixHandler {
public:
    PositionHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwPosition) {}

    NodePtr parse(const Token& token) override {
        NodePtr operand = parser.parseExpression(absOperand);
        if (!operand) return nullptr;
        if (!checkOperand(parser, token, *operand, ValueType::Numeric, "position", "numeric")) return nullptr;
        return makeNode<PositionNode>(parser, token, std::move(operand));
    }
};

// currenttransform
class CurrentTransformHandler : public PrefixHandler {
public:
    CurrentTransformHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwCurrenttransform) {}

    // The name of the copy of the innermost enclosing transform that holds
    // it; empty outside every transform.
    NodePtr parse(const Token& token) override {
        std::string name;
        if (!parser.transformStack.empty()) name = transformName(parser.transformStack.back());
        return makeNode<CurrentTransformNode>(parser, token, std::move(name));
    }
};

// find quiet <-- all F, find quiet <-- R F
class FindHandler : public PrefixHandler {
public:
    FindHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwFind) {}

    NodePtr parse(const Token& token) override {
        bool quiet = false, reverse = false, all = false;
        NodePtr range;
        for (;;) {
            TokenKind next = parser.peekToken().kind;
            if (next == TokenKind::KwQuiet && !quiet) {
                parser.nextToken();
                quiet = true;
            } else if (next == TokenKind::BackwardArrow && !reverse) {
                parser.nextToken();
                reverse = true;
            } else if (next == TokenKind::KwAll && !all) {
                parser.nextToken();
                all = true;
            } else if (!range && (range = parser.parseRange(true))) {
                continue;
            } else {
                break;
            }
        }
        if (all && range)
            return fail(parser, token,
                        "Cannot use 'all' and a range with 'find' filter, use one or the other");
        // What the body depends on is its own business, not the line's.
        const bool savedInducer = parser.inducerSeen;
        NodePtr body = parser.parseExpression(findBody);
        parser.inducerSeen = savedInducer;
        if (!body) return nullptr;
        return makeNode<FindNode>(parser, token, std::move(body), std::move(range), reverse, all, quiet);
    }
};

}  // namespace

void registerNavigationHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<BareFilterHandler<ParentNode>>(parser, TokenKind::KwParent));
    parser.registerPrefix(
        std::make_unique<BareFilterHandler<PositionIDNode>>(parser, TokenKind::KwPositionid));
    parser.registerPrefix(
        std::make_unique<BareFilterHandler<CurrentPositionNode>>(parser, TokenKind::KwCurrentposition));
    parser.registerPrefix(std::make_unique<BareFilterHandler<InitialNode>>(parser, TokenKind::KwInitial));
    parser.registerPrefix(
        std::make_unique<BareFilterHandler<InitialpositionNode>>(parser, TokenKind::KwInitialposition));
    parser.registerPrefix(std::make_unique<BareFilterHandler<MainlineNode>>(parser, TokenKind::KwMainline));
    parser.registerPrefix(
        std::make_unique<BareFilterHandler<VirtualMainlineNode>>(parser, TokenKind::KwVirtualmainline));
    parser.registerPrefix(std::make_unique<BareFilterHandler<TerminalNode>>(parser, TokenKind::KwTerminal));
    parser.registerPrefix(std::make_unique<BareFilterHandler<VariationNode>>(parser, TokenKind::KwVariation));
    parser.registerPrefix(std::make_unique<BareFilterHandler<StalemateNode>>(parser, TokenKind::KwStalemate));
    parser.registerPrefix(std::make_unique<BareFilterHandler<DepthNode>>(parser, TokenKind::KwDepth));
    parser.registerPrefix(std::make_unique<BareFilterHandler<PlyNode>>(parser, TokenKind::KwPly));
    parser.registerPrefix(
        std::make_unique<BareFilterHandler<MoveNumberNode>>(parser, TokenKind::KwMovenumber));
    parser.registerPrefix(
        std::make_unique<BareFilterHandler<GamenumberNode>>(parser, TokenKind::KwGamenumber));
    parser.registerPrefix(
        std::make_unique<BareFilterHandler<SavePositionNode>>(parser, TokenKind::KwSaveposition));
    parser.registerPrefix(
        std::make_unique<BareFilterHandler<CurrentMutationNode>>(parser, TokenKind::KwCurrentmutation));
    parser.registerPrefix(std::make_unique<CurrentTransformHandler>(parser));
    parser.registerPrefix(std::make_unique<ChildHandler>(parser));
    parser.registerPrefix(std::make_unique<PositionHandler>(parser));
    parser.registerPrefix(
        std::make_unique<PositionPairHandler<AncestorNode>>(parser, TokenKind::KwAncestor, "ancestor"));
    parser.registerPrefix(
        std::make_unique<PositionPairHandler<DescendantNode>>(parser, TokenKind::KwDescendant, "descendant"));
    parser.registerPrefix(std::make_unique<PositionPairHandler<LCANode>>(parser, TokenKind::KwLca, "lca"));
    parser.registerPrefix(std::make_unique<FindHandler>(parser));
}

}  // namespace tarnfold::zmf
