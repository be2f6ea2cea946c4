// Text: comment, message, str, case mapping, ascii, int, indexof, and the
// numeric functions sqrt and power.
#include <string>
#include <vector>

#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/text_nodes.h"

namespace tarnfold::zmf {

namespace {

// One argument of comment or message. A tag filter inside does not take
// the string literal that follows it, which is the next argument instead.
NodePtr parseTextArgument(Parser& parser) {
    bool outer = parser.noStringArguments;
    parser.noStringArguments = true;
    NodePtr argument = parser.parseExpression(0);
    parser.noStringArguments = outer;
    return argument;
}

// The arguments of comment and message: one filter, or any number of them
// in parentheses, at least one. Empty on failure, after the report.
std::vector<NodePtr> parseTextArguments(Parser& parser, const Token& token) {
    std::vector<NodePtr> arguments;
    if (parser.peekToken().kind != TokenKind::LeftParen) {
        NodePtr argument = parseTextArgument(parser);
        if (argument) arguments.push_back(std::move(argument));
        return arguments;
    }
    parser.nextToken();
    if (parser.peekToken().kind == TokenKind::RightParen) {
        parser.report(token.begin, MessageLevel::Error,
                      joinPieces({"No argument specified for '", token.text, "' filter"}));
        return arguments;
    }
    while (parser.peekToken().kind != TokenKind::RightParen) {
        NodePtr argument = parseTextArgument(parser);
        if (!argument) return {};
        arguments.push_back(std::move(argument));
    }
    parser.nextToken();
    return arguments;
}

// comment F | comment ( F F ... )
class CommentHandler : public PrefixHandler {
public:
    CommentHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwComment) {}
    NodePtr parse(const Token& token) override {
        std::vector<NodePtr> arguments = parseTextArguments(parser, token);
        if (arguments.empty()) return nullptr;
        return makeNode<CommentNode>(parser, token, std::move(arguments));
    }
};

// message quiet? F | message quiet? ( F F ... )
class MessageHandler : public PrefixHandler {
public:
    MessageHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwMessage) {}
    NodePtr parse(const Token& token) override {
        bool quiet = parser.peekToken().kind == TokenKind::KwQuiet;
        if (quiet) parser.nextToken();
        std::vector<NodePtr> arguments = parseTextArguments(parser, token);
        if (arguments.empty()) return nullptr;
        return makeNode<MessageNode>(parser, token, std::move(arguments), quiet);
    }
};

// str F | str ( F F ... )
class StrHandler : public PrefixHandler {
public:
    StrHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwStr) {}
    NodePtr parse(const Token& token) override {
        std::vector<NodePtr> arguments;
        if (parser.peekToken().kind != TokenKind::LeftParen) {
            NodePtr argument = parser.parseExpression(0);
            if (!argument) return nullptr;
            arguments.push_back(std::move(argument));
            return makeNode<StrNode>(parser, token, std::move(arguments));
        }
        parser.nextToken();
        for (TokenKind next = parser.peekToken().kind;
             next != TokenKind::RightParen && next != TokenKind::EndOfFile; next = parser.peekToken().kind) {
            NodePtr argument = parser.parseExpression(0);
            if (!argument) return nullptr;
            arguments.push_back(std::move(argument));
        }
        if (parser.peekToken().kind == TokenKind::EndOfFile) {
            parser.report(token.begin, MessageLevel::Error, "Missing closing parenthesis for 'str' filter");
            return nullptr;
        }
        parser.nextToken();
        if (arguments.empty()) {
            parser.report(token.begin, MessageLevel::Error,
                          "The parentheses of the 'str' filter must enclose at least one filter");
            return nullptr;
        }
        return makeNode<StrNode>(parser, token, std::move(arguments));
    }
};

// keyword X, for the one-operand filters: Node takes the operand, whose
// type must be `type` (named `typeName` in the message).
template <class Node>
class OneOperandHandler : public PrefixHandler {
public:
    OneOperandHandler(Parser& parser, TokenKind kind, BindingPower power, ValueType type,
                      std::string_view typeName)
        : PrefixHandler(parser, kind), power_(power), type_(type), typeName_(typeName) {}
    NodePtr parse(const Token& token) override {
        NodePtr operand = parser.parseExpression(power_);
        if (!operand) return nullptr;
        if (operand->valueType != type_) {
            parser.reportOperand(token, *operand, operandMessage(token.text, typeName_));
            return nullptr;
        }
        return makeNode<Node>(parser, token, std::move(operand));
    }

private:
    BindingPower power_;
    ValueType type_;
    std::string_view typeName_;
};

// ascii N | ascii T
class AsciiHandler : public PrefixHandler {
public:
    AsciiHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwAscii) {}
    NodePtr parse(const Token& token) override {
        NodePtr operand = parser.parseExpression(absOperand);
        if (!operand) return nullptr;
        if (!hasType(*operand, {ValueType::Numeric, ValueType::String})) {
            parser.reportOperand(token, *operand,
                                 "The operand to the 'ascii' filter must be a numeric or string filter");
            return nullptr;
        }
        return makeNode<AsciiNode>(parser, token, std::move(operand));
    }
};

// indexof ( T T )
class IndexofHandler : public PrefixHandler {
public:
    IndexofHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwIndexof) {}
    NodePtr parse(const Token& token) override {
        if (parser.peekToken().kind != TokenKind::LeftParen) {
            parser.report(token.begin, MessageLevel::Error, "Missing open parenthesis after 'indexof'");
            return nullptr;
        }
        parser.nextToken();
        NodePtr left = parseString(token);
        if (!left) return nullptr;
        NodePtr right = parseString(token);
        if (!right) return nullptr;
        if (parser.expectToken(TokenKind::RightParen).kind != TokenKind::RightParen) return nullptr;
        return makeNode<IndexofNode>(parser, token, std::move(left), std::move(right));
    }

private:
    NodePtr parseString(const Token& token) {
        NodePtr operand = parser.parseExpression(0);
        if (!operand) return nullptr;
        if (operand->valueType != ValueType::String) {
            parser.reportOperand(token, *operand, operandMessage("indexof", "string"));
            return nullptr;
        }
        return operand;
    }
};

}  // namespace

void registerTextHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<CommentHandler>(parser));
    parser.registerPrefix(std::make_unique<MessageHandler>(parser));
    parser.registerPrefix(std::make_unique<StrHandler>(parser));
    parser.registerPrefix(std::make_unique<AsciiHandler>(parser));
    parser.registerPrefix(std::make_unique<IndexofHandler>(parser));
    parser.registerPrefix(std::make_unique<OneOperandHandler<LowerNode>>(
        parser, TokenKind::KwLowercase, squareOperand, ValueType::String, "string"));
    parser.registerPrefix(std::make_unique<OneOperandHandler<UpperNode>>(
        parser, TokenKind::KwUppercase, squareOperand, ValueType::String, "string"));
    parser.registerPrefix(std::make_unique<OneOperandHandler<IntNode>>(
        parser, TokenKind::KwInt, cardinalityOperand, ValueType::String, "string"));
    parser.registerPrefix(std::make_unique<OneOperandHandler<SqrtNode>>(parser, TokenKind::KwSqrt, absOperand,
                                                                        ValueType::Numeric, "numeric"));
    parser.registerPrefix(std::make_unique<OneOperandHandler<PowerNode>>(
        parser, TokenKind::KwPower, squareOperand, ValueType::Set, "set"));
}

}  // namespace tarnfold::zmf
