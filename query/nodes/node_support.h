#pragma once
// Pieces that the node families share, kept as free functions so that every
// node class stays a direct subclass of ZMFNode.

#include <string_view>

#include "query/dump_target.h"
#include "query/node.h"
#include "query/print_target.h"

namespace tarnfold::zmf {

// An infix node covers its operands' text: from the left's start to the
// right's end, as far as they are known.
void spanOperands(ZMFNode& node, const ZMFNode& left, const ZMFNode& right);

// A prefix node ends where its operand ends.
void spanToOperand(ZMFNode& node, const ZMFNode& operand);

// The node's line, then its children one level down.
void dumpNode(const ZMFNode& node, DumpTarget& target, bool isLast, std::string_view name,
              std::initializer_list<DumpChild> children = {});

}  // namespace tarnfold::zmf
