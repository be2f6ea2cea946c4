// Grouping: ( F ) and { F+ }.
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/literal_nodes.h"
#include "query/nodes/structure_nodes.h"

namespace tarnfold::zmf {

namespace {

// ( F )
class ParenHandler : public PrefixHandler {
public:
    ParenHandler(Parser& parser) : PrefixHandler(parser, TokenKind::LeftParen) {}

    NodePtr parse(const Token& token) override {
        if (parser.peekToken().kind == TokenKind::RightParen) {
            parser.report(token.begin, MessageLevel::Error,
                          "A parenthesized expression must enclose exactly one filter");
            return nullptr;
        }
        NodePtr operand = parser.parseExpression(0);
        if (!operand) return nullptr;
        Token next = parser.peekToken();
        if (next.kind != TokenKind::RightParen) {
            parser.report(
                token.begin, MessageLevel::Error,
                next.kind == TokenKind::EndOfFile
                    ? "A parenthesized expression must enclose exactly one filter"
                    : "A parenthesized expression must enclose exactly one filter, use braces to enclose "
                      "multiple filters");
            return nullptr;
        }
        parser.nextToken();
        if (!parser.keepParens) return operand;
        return makeNode<ParenNode>(parser, token, std::move(operand));
    }
};

// { F+ }
class CompoundHandler : public PrefixHandler {
public:
    CompoundHandler(Parser& parser) : PrefixHandler(parser, TokenKind::LeftBrace) {}

    NodePtr parse(const Token& token) override {
        std::vector<NodePtr> children;
        bool anyFilter = false;
        while (parser.peekToken().kind != TokenKind::RightBrace) {
            NodePtr child = parser.parseExpression(0);
            if (!child) return nullptr;
            anyFilter = true;
            if (parser.finalPass && doneWhileParsing(*child)) continue;
            children.push_back(std::move(child));
        }
        parser.nextToken();
        if (!anyFilter) {
            parser.report(token.begin, MessageLevel::Error,
                          "The braces of a compound expression must enclose at least one filter");
            return nullptr;
        }
        // A compound of definitions alone still stands, as an always true filter.
        if (children.empty()) return makeNode<TrueNode>(parser, token);
        if (children.size() == 1 && !parser.keepCompounds) return std::move(children.front());
        return makeNode<CompoundNode>(parser, token, std::move(children));
    }
};

}  // namespace

void registerStructureHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<ParenHandler>(parser));
    parser.registerPrefix(std::make_unique<CompoundHandler>(parser));
}

}  // namespace tarnfold::zmf
