// Filters on the board of the current position and the rules it is played
// by: the colours, the side to move, the position's texts, the halfmove
// clock, legality, and the variant's end of game.
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/board_state_nodes.h"

namespace tarnfold::zmf {

namespace {

// keyword, for a filter that the base language does not have
template <class Node>
class ExtensionFilterHandler : public PrefixHandler {
public:
    using PrefixHandler::PrefixHandler;

    NodePtr parse(const Token& token) override {
        reportExtension(parser, token, token.text);
        return makeNode<Node>(parser, token);
    }
};

template <class Node, class Swapped = Node>
void registerBare(Parser& parser, TokenKind kind) {
    parser.registerPrefix(std::make_unique<BareFilterHandler<Node, Swapped>>(parser, kind));
}

template <class Node>
void registerExtension(Parser& parser, TokenKind kind) {
    parser.registerPrefix(std::make_unique<ExtensionFilterHandler<Node>>(parser, kind));
}

}  // namespace

void registerBoardStateHandlers(Parser& parser) {
    registerBare<WhiteNode, BlackNode>(parser, TokenKind::KwWhite);
    registerBare<BlackNode, WhiteNode>(parser, TokenKind::KwBlack);
    registerBare<SideToMoveNode>(parser, TokenKind::KwSidetomove);
    registerBare<CurrentFenNode>(parser, TokenKind::KwCurrentfen);
    registerExtension<StandardFenNode>(parser, TokenKind::KwStandardfen);
    registerExtension<ZobristkeyNode>(parser, TokenKind::KwZobristkey);
    registerExtension<HalfmoveclockNode>(parser, TokenKind::KwHalfmoveclock);
    registerExtension<LegalpositionNode>(parser, TokenKind::KwLegalposition);
    registerExtension<ValidpositionNode>(parser, TokenKind::KwReachableposition);
    registerBare<VariantNode>(parser, TokenKind::KwVariant);
    registerBare<VariantendNode>(parser, TokenKind::KwVariantend);
    registerBare<VariantwinNode>(parser, TokenKind::KwVariantwin);
    registerBare<VariantlossNode>(parser, TokenKind::KwVariantloss);
    registerBare<VariantdrawNode>(parser, TokenKind::KwVariantdraw);
}

}  // namespace tarnfold::zmf
