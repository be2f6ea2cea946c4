#include "query/nodes/piece_designator_node.h"

#include "chess/names.h"
#include "query/nodes/node_support.h"
#include "query/piece_designator.h"

namespace tarnfold::zmf {

PieceDesignatorNode::PieceDesignatorNode(OptionalOffset location, std::optional<Bitboard> squares,
                                         std::optional<std::uint16_t> pieceMask, std::string text)
    : ZMFNode(kind, ValueType::Set, location),
      squares(squares),
      pieceMask(pieceMask),
      text(std::move(text)) {}

// The written text, which reading the query again under the same
// transforms folds the same way; the copies of a transform show their own
// sets.
void PieceDesignatorNode::print(PrintTarget& target) const {
    target << (transformed && target.expandTransforms ? designatorText(squares, pieceMask) : text);
}

void PieceDesignatorNode::dump(DumpTarget& target, bool isLast) const {
    auto orNone = [](std::string list) { return list.empty() ? std::string("none") : list; };
    std::string name = "PieceDesignator (" + (transformed ? designatorText(squares, pieceMask) : text) + ")";
    if (squares) name += " squares: " + orNone(squareListText(*squares, false));
    if (pieceMask) name += " pieces: " + orNone(pieceMaskText(*pieceMask));
    dumpNode(*this, target, isLast, name);
}

}  // namespace tarnfold::zmf
