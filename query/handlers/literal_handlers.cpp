// Literals: integers, true and false.
#include <cstdlib>

#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/literal_nodes.h"

namespace tarnfold::zmf {

namespace {

// digits
class IntegerLiteralHandler : public PrefixHandler {
public:
    IntegerLiteralHandler(Parser& parser) : PrefixHandler(parser, TokenKind::IntegerLiteral) {}
    NodePtr parse(const Token& token) override {
        // strtoll saturates on overflow, which is what a too-long literal means.
        std::int64_t value = std::strtoll(token.text.c_str(), nullptr, 10);
        return makeNode<IntegerNode>(parser, token, value);
    }
};

}  // namespace

void registerLiteralHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<IntegerLiteralHandler>(parser));
    parser.registerPrefix(std::make_unique<BareFilterHandler<TrueNode>>(parser, TokenKind::KwTrue));
    parser.registerPrefix(std::make_unique<BareFilterHandler<FalseNode>>(parser, TokenKind::KwFalse));
}

}  // namespace tarnfold::zmf
