#pragma once

// The engine knows a node's class from its kind, so it casts without a
// virtual call. The node headers come along for every evaluator.

#include "query/nodes/arithmetic_nodes.h"
#include "query/nodes/board_state_nodes.h"
#include "query/nodes/comparison_nodes.h"
#include "query/nodes/control_nodes.h"
#include "query/nodes/conversion_nodes.h"
#include "query/nodes/declaration_nodes.h"
#include "query/nodes/literal_nodes.h"
#include "query/nodes/logical_nodes.h"
#include "query/nodes/navigation_nodes.h"
#include "query/nodes/operator_nodes.h"
#include "query/nodes/piece_designator_node.h"
#include "query/nodes/position_state_nodes.h"
#include "query/nodes/set_nodes.h"
#include "query/nodes/string_nodes.h"
#include "query/nodes/structure_nodes.h"
#include "query/nodes/text_nodes.h"
#include "query/nodes/variable_nodes.h"

#include <utility>

#include "engine/value.h"

namespace tarnfold::zmf {

template <typename NodeClass>
const NodeClass& as(const ZMFNode& node) {
    return static_cast<const NodeClass&>(node);
}

// Both operands of a binary node, left first, all side effects kept.
template <typename Binary, typename Engine>
std::pair<Value, Value> evaluateOperands(Engine& engine, const ZMFNode& node) {
    const auto& binary = as<Binary>(node);
    Value left = engine.evaluate(*binary.left);
    Value right = engine.evaluate(*binary.right);
    return {std::move(left), std::move(right)};
}

}  // namespace tarnfold::zmf
