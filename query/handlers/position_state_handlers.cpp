// Filters on the state of the current position that take no operand.
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/position_state_nodes.h"

namespace tarnfold::zmf {

void registerPositionStateHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<BareFilterHandler<CheckNode>>(parser, TokenKind::KwCheck));
    parser.registerPrefix(std::make_unique<BareFilterHandler<MateNode>>(parser, TokenKind::KwMate));
    parser.registerPrefix(
        std::make_unique<BareFilterHandler<WhiteToMoveNode, BlackToMoveNode>>(parser, TokenKind::KwWtm));
    parser.registerPrefix(
        std::make_unique<BareFilterHandler<BlackToMoveNode, WhiteToMoveNode>>(parser, TokenKind::KwBtm));
}

}  // namespace tarnfold::zmf
