#pragma once

// The engine knows a node's class from its kind, so it casts without a
// virtual call. The node headers come along for every evaluator.

#include <cassert>
#include <utility>

#include "engine/value.h"
#include "query/nodes/all_nodes.h"

namespace tarnfold::zmf {

// A cast to the wrong class is caught in debug and sanitizer builds.
template <typename NodeClass>
const NodeClass& as(const ZMFNode& node) {
    assert(node.kind == NodeClass::kind);
    return static_cast<const NodeClass&>(node);
}

// The node behind any parentheses, without the parser's virtual call.
inline const ZMFNode& unwrapParens(const ZMFNode& node) {
    const ZMFNode* inner = &node;
    while (inner->kind == NodeKind::Paren) inner = as<ParenNode>(*inner).operand.get();
    return *inner;
}

// Both operands of a binary node, left first, all side effects kept.
template <typename Engine, typename Binary>
std::pair<Value, Value> evaluateOperands(Engine& engine, const Binary& binary) {
    Value left = engine.evaluate(*binary.left);
    Value right = engine.evaluate(*binary.right);
    return {std::move(left), std::move(right)};
}

}  // namespace tarnfold::zmf
