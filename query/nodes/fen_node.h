#pragma once
// fen "...": the placement of the current position against a FEN text.

#include <string>

#include "query/node.h"

namespace tarnfold::zmf {

class FenNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Fen;

    FenNode(OptionalOffset location, std::string fen);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string fen;  // as written between the quotes
};

}  // namespace tarnfold::zmf
