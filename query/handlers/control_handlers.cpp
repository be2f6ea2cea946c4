// Control of evaluation: if, loop, while, assert; max and min among their
// operands; sort over the game; echo over every pair of positions.
#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/handlers/sort_slot.h"
#include "query/nodes/control_nodes.h"
#include "query/nodes/conversion_nodes.h"
#include "query/nodes/iteration_nodes.h"

namespace tarnfold::zmf {

namespace {

NodePtr fail(Parser& parser, const Token& at, std::string_view text) {
    parser.report(at.begin, MessageLevel::Error, text);
    return nullptr;
}

// Tokens that cannot begin a clause of `if`: what stands there belongs to
// an enclosing filter, or is the next keyword of the `if` itself.
bool endsClause(TokenKind kind) {
    switch (kind) {
        case TokenKind::EndOfFile:
        case TokenKind::RightParen:
        case TokenKind::RightBrace:
        case TokenKind::KwThen:
        case TokenKind::KwElse: return true;
        default: return false;
    }
}

// if F then F else F, `then` optional, the else clause optional
class IfHandler : public PrefixHandler {
public:
    IfHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwIf) {}

    NodePtr parse(const Token& token) override {
        if (endsClause(parser.peekToken().kind))
            return fail(parser, token, "Missing condition for 'if' filter");
        NodePtr condition = parser.parseExpression(0);
        if (!condition) return nullptr;
        if (parser.peekToken().kind == TokenKind::KwThen) parser.nextToken();
        if (endsClause(parser.peekToken().kind))
            return fail(parser, token, "Missing 'then' clause in 'if' filter");
        NodePtr thenBranch = parser.parseExpression(0);
        if (!thenBranch) return nullptr;
        NodePtr elseBranch;
        if (parser.peekToken().kind == TokenKind::KwElse) {
            parser.nextToken();
            if (endsClause(parser.peekToken().kind))
                return fail(parser, token, "Missing 'else' clause in 'if' filter");
            elseBranch = parser.parseExpression(0);
            if (!elseBranch) return nullptr;
        }
        return makeNode<IfNode>(parser, token, std::move(condition), std::move(thenBranch),
                                std::move(elseBranch));
    }
};

// keyword F, the operand read from power 0 (Node = AssertNode, LoopNode)
template <class Node>
class OpenOperandHandler : public PrefixHandler {
public:
    using PrefixHandler::PrefixHandler;

    NodePtr parse(const Token& token) override {
        NodePtr operand = parser.parseExpression(0);
        if (!operand) return nullptr;
        return makeNode<Node>(parser, token, std::move(operand));
    }
};

// while (F) F
class WhileHandler : public PrefixHandler {
public:
    WhileHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwWhile) {}

    NodePtr parse(const Token& token) override {
        if (parser.peekToken().kind != TokenKind::LeftParen)
            return fail(parser, token, "Missing open parenthesis after 'while'");
        parser.nextToken();
        NodePtr condition = parser.parseExpression(0);
        if (!condition) return nullptr;
        // The text names another filter; users' scripts match on it as it is.
        if (parser.peekToken().kind != TokenKind::RightParen)
            return fail(parser, token, "Missing closing parenthesis after 'settag' filter");
        parser.nextToken();
        NodePtr body = parser.parseExpression(0);
        if (!body) return nullptr;
        // Over a pattern match the loop runs once per match, captures set.
        if (condition->unwrapAll().kind == NodeKind::PatternMatch)
            return makeNode<StringIteratorNode>(parser, token, std::move(condition), std::move(body));
        return makeNode<WhileNode>(parser, token, std::move(condition), std::move(body));
    }
};

// max(F F+), min(F F+): all Numeric or all String
template <class Node>
class ExtremumHandler : public PrefixHandler {
public:
    ExtremumHandler(Parser& parser, TokenKind kind, std::string_view name)
        : PrefixHandler(parser, kind), name_(name) {}

    NodePtr parse(const Token& token) override {
        if (parser.peekToken().kind != TokenKind::LeftParen)
            return fail(parser, token, joinPieces({"Missing open parenthesis after '", name_, "' filter"}));
        parser.nextToken();
        std::vector<NodePtr> arguments;
        for (;;) {
            TokenKind next = parser.peekToken().kind;
            if (next == TokenKind::RightParen) break;
            if (next == TokenKind::EndOfFile || next == TokenKind::RightBrace)
                return fail(parser, token,
                            joinPieces({"Missing closing parenthesis for '", name_, "' filter"}));
            NodePtr argument = parser.parseExpression(0);
            if (!argument) return nullptr;
            if (!hasType(*argument, {ValueType::Numeric, ValueType::String})) {
                parser.reportOperand(
                    token, *argument,
                    joinPieces({"Invalid operand type '", printableType(argument->valueType), "' for '",
                                name_, "' filter, operands must be all string or numeric filters"}));
                return nullptr;
            }
            if (!arguments.empty() && arguments.back()->valueType != argument->valueType) {
                reportMixed(token, *arguments.back(), *argument);
                return nullptr;
            }
            arguments.push_back(std::move(argument));
        }
        parser.nextToken();
        if (arguments.size() < 2)
            return fail(parser, token,
                        joinPieces({"The '", name_, "' filter requires at least two numeric arguments"}));
        return makeNode<Node>(parser, token, std::move(arguments));
    }

private:
    void reportMixed(const Token& token, const ZMFNode& previous, const ZMFNode& operand) {
        parser.reportOperand(token, operand,
                             joinPieces({"The operands to the '", name_,
                                         "' filter must all be either numeric or string filters"}));
        SourceSpan at = Parser::spanOf(operand);
        parser.report(at.begin, MessageLevel::Note,
                      joinPieces({"This operand has '", printableType(operand.valueType), "' type"}), {at});
        SourceSpan earlier = Parser::spanOf(previous);
        parser.report(earlier.begin, MessageLevel::Note,
                      joinPieces({"The previous operand has '", printableType(previous.valueType), "' type"}),
                      {earlier});
    }

    std::string_view name_;
};

// The body's own scope for the two position variables of echo. It sees the
// names around it and closes on every way out.
class EchoScope {
public:
    explicit EchoScope(Parser& parser) : parser_(parser) { parser_.symbols.pushScope(false); }
    ~EchoScope() { parser_.symbols.popScope(); }
    EchoScope(const EchoScope&) = delete;
    EchoScope& operator=(const EchoScope&) = delete;

private:
    Parser& parser_;
};

// echo quiet (V V) in all F
class EchoHandler : public PrefixHandler {
public:
    EchoHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwEcho) {}

    NodePtr parse(const Token& token) override {
        const bool quiet = takeKeyword(parser, TokenKind::KwQuiet);
        if (parser.peekToken().kind != TokenKind::LeftParen)
            return fail(parser, token, "Missing open parenthesis after 'echo' filter");
        parser.nextToken();
        Token source = parser.nextToken();
        if (source.kind != TokenKind::Identifier)
            return fail(parser, token, "Expected variable name for 'echo' filter");
        Token target = parser.nextToken();
        if (target.kind != TokenKind::Identifier)
            return fail(parser, token, "Expected variable name for 'echo' filter");
        if (source.text == target.text)
            return fail(parser, token, "The source and target variables for 'echo' must be distinct");
        if (parser.peekToken().kind != TokenKind::RightParen)
            return fail(parser, token, "Missing closing parenthesis after 'echo' filter");
        parser.nextToken();
        bool inAll = false;
        if (parser.peekToken().kind == TokenKind::KwIn) {
            parser.nextToken();
            if (parser.nextToken().kind != TokenKind::KwAll)
                return fail(parser, token, "Expected 'all' after 'in' in 'echo' filter");
            inAll = true;
        }
        EchoScope scope(parser);
        std::uint32_t sourceSlot = parser.symbols.declareLocal(source.text, ValueType::Position).slot;
        std::uint32_t targetSlot = parser.symbols.declareLocal(target.text, ValueType::Position).slot;
        const bool savedInducer = parser.inducerSeen;
        NodePtr body = parser.parseExpression(0);
        parser.inducerSeen = savedInducer;
        if (!body) return nullptr;
        return makeNode<EchoNode>(parser, token, source.text, sourceSlot, target.text, targetSlot,
                                  std::move(body), inAll, quiet);
    }
};

// sort quiet min "description" F, sort quiet max "description" F
class SortHandler : public PrefixHandler {
public:
    SortHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwSort) {}

    NodePtr parse(const Token& token) override {
        const bool quiet = takeKeyword(parser, TokenKind::KwQuiet);
        SortDirection direction = SortDirection::Maximum;
        TokenKind next = parser.peekToken().kind;
        if (next == TokenKind::KwMin || next == TokenKind::KwMax) {
            parser.nextToken();
            if (next == TokenKind::KwMin) direction = SortDirection::Minimum;
        }
        std::optional<std::string> label;
        if (parser.peekToken().kind == TokenKind::StringLiteral) {
            // The token keeps its quotes; there are no escapes to undo.
            std::string text = parser.nextToken().text;
            label = text.substr(1, text.size() - 2);
        }
        NodePtr operand = parser.parseExpression(0);
        if (!operand) return nullptr;
        if (!hasType(*operand, {ValueType::Numeric, ValueType::String, ValueType::Set})) {
            parser.reportOperand(token, *operand,
                                 "Argument to 'sort' filter must be a set, string, or numeric filter");
            return nullptr;
        }
        if (direction == SortDirection::Minimum && operand->unwrapAll().kind == NodeKind::Echo) {
            parser.reportOperand(token, *operand,
                                 "The 'echo' filter cannot be used as the target of 'min' sort filter");
            return nullptr;
        }
        if (operand->valueType == ValueType::Set) {
            OptionalOffset at = operand->location;
            operand = std::make_unique<SetToNumericConversionNode>(at, std::move(operand));
        }
        const size_t slotsBefore = parser.sortSlots.size();
        std::optional<std::uint32_t> slot =
            claimSortSlot(parser, token, label, direction, operand->valueType);
        if (!slot) return nullptr;
        if (parser.sortSlots.size() > slotsBefore) parser.sortSlots[*slot].quiet = quiet;
        return makeNode<SortNode>(parser, token, *slot, direction, std::move(label), quiet,
                                  std::move(operand));
    }
};

}  // namespace

void registerControlHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<IfHandler>(parser));
    parser.registerPrefix(std::make_unique<OpenOperandHandler<AssertNode>>(parser, TokenKind::KwAssert));
    parser.registerPrefix(std::make_unique<OpenOperandHandler<LoopNode>>(parser, TokenKind::KwLoop));
    parser.registerPrefix(std::make_unique<WhileHandler>(parser));
    parser.registerPrefix(std::make_unique<ExtremumHandler<MaxNode>>(parser, TokenKind::KwMax, "max"));
    parser.registerPrefix(std::make_unique<ExtremumHandler<MinNode>>(parser, TokenKind::KwMin, "min"));
    parser.registerPrefix(std::make_unique<EchoHandler>(parser));
    parser.registerPrefix(std::make_unique<SortHandler>(parser));
}

}  // namespace tarnfold::zmf
