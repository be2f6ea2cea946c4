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

// The written text, not the folded sets: under a transform the same text
// stands for a different set in each copy, and reading it back redoes that.
void PieceDesignatorNode::print(PrintTarget& target) const { target << text; }

void PieceDesignatorNode::dump(DumpTarget& target, bool isLast) const {
    auto orNone = [](std::string list) { return list.empty() ? std::string("none") : list; };
    std::string name = "PieceDesignator (" + text + ")";
    if (squares) name += " squares: " + orNone(squareListText(*squares, false));
    if (pieceMask) name += " pieces: " + orNone(pieceMaskText(*pieceMask));
    dumpNode(*this, target, isLast, name);
}

}  // namespace tarnfold::zmf
