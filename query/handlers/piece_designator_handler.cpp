// Piece designators: the token is scanned again to fold squares and pieces
// into the node, so that evaluation is a few bitboard operations.
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/piece_designator_node.h"
#include "query/piece_designator.h"

namespace tarnfold::zmf {

namespace {

// Enclosing transforms (flips, rotations, shifts) map the squares and swap
// the colours of the pieces here, as the designator is read. A look ahead
// leaves the bookkeeping alone: only the real read of a copy counts.
bool applyEnclosingTransforms(Parser& parser, const Token& token, DesignatorScan& scan) {
    if (parser.transformStack.empty() || !parser.realRead()) return false;
    DesignatorScan written = scan;
    if (scan.pieceMask) scan.pieceMask = applyTransformPieces(parser.transformStack, *scan.pieceMask);
    if (scan.squares) {
        parser.noteSquareDesignator();
        if (parser.rotate45Location)
            parser.report(token.begin, MessageLevel::Warning,
                          "Square designators are not influenced by 'rotate45' transforms and should be "
                          "enclosed by a 'notransform' filter",
                          {SourceSpan{token.begin, token.end}});
        bool voided = false;
        scan.squares = applyTransformSquares(parser.transformStack, *scan.squares, voided);
        if (voided) parser.voidCopyFlag = true;
    }
    return scan.squares != written.squares || scan.pieceMask != written.pieceMask;
}

// designator
class PieceDesignatorHandler : public PrefixHandler {
public:
    PieceDesignatorHandler(Parser& parser) : PrefixHandler(parser, TokenKind::PieceDesignator) {}
    NodePtr parse(const Token& token) override {
        DesignatorScan scan = scanPieceDesignator(parser.source().text(), *token.begin);
        bool transformed = applyEnclosingTransforms(parser, token, scan);
        auto node = makeNode<PieceDesignatorNode>(parser, token, scan.squares, scan.pieceMask, token.text);
        node->transformed = transformed;
        return node;
    }
};

}  // namespace

void registerPieceDesignatorHandler(Parser& parser) {
    parser.registerPrefix(std::make_unique<PieceDesignatorHandler>(parser));
}

}  // namespace tarnfold::zmf
