// and, or, not, braces and the query root, if, loop, while and ':'.

#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

Value ZMFEngine::evaluateLogical(const ZMFNode& node) {
    switch (node.kind) {
        case NodeKind::And: {
            const auto& andNode = as<AndNode>(node);
            if (!evaluate(*andNode.left).isTrue()) return Value::boolean(false);
            return Value::boolean(evaluate(*andNode.right).isTrue());
        }
        case NodeKind::Or: {
            const auto& orNode = as<OrNode>(node);
            if (evaluate(*orNode.left).isTrue()) return Value::boolean(true);
            return Value::boolean(evaluate(*orNode.right).isTrue());
        }
        default: return Value::boolean(!evaluate(*as<NotNode>(node).operand).isTrue());
    }
}

// Filters side by side must all hold; the last one's value is the result.
Value ZMFEngine::evaluateCompound(const std::vector<NodePtr>& children, const ZMFNode& node) {
    Value result = Value::boolean(true);
    for (const NodePtr& child : children) {
        result = evaluate(*child);
        if (result.isTrue()) continue;
        if (node.kind == NodeKind::QueryContainer) return result;
        return node.valueType == ValueType::Set ? Value::set(0) : Value();
    }
    if (node.kind == NodeKind::Compound && node.valueType == ValueType::Boolean) return Value::boolean(true);
    return result;
}

// A one-armed if never fails.
Value ZMFEngine::evaluateIf(const ZMFNode& node) {
    const auto& ifNode = as<IfNode>(node);
    const ZMFNode* branch =
        evaluate(*ifNode.condition).isTrue() ? ifNode.thenBranch.get() : ifNode.elseBranch.get();
    if (!branch) return Value::boolean(true);
    Value result = evaluate(*branch);
    return node.valueType == ValueType::Boolean ? Value::boolean(result.isTrue()) : result;
}

Value ZMFEngine::evaluateLoop(const ZMFNode& node) {
    if (node.kind == NodeKind::Loop) {
        bool anyPass = false;
        while (evaluate(*as<LoopNode>(node).operand).isTrue()) anyPass = true;
        return Value::boolean(anyPass);
    }
    const auto& whileNode = as<WhileNode>(node);
    while (evaluate(*whileNode.condition).isTrue()) evaluate(*whileNode.body);
    return Value::boolean(true);
}

// position : filter evaluates the filter at that position.
Value ZMFEngine::evaluateColon(const ZMFNode& node) {
    const auto& colon = as<ColonNode>(node);
    const Value where = evaluate(*colon.left);
    if (!where.is(ValueType::Position)) return Value();
    const uint32_t saved = current;
    current = where.asPosition().id;
    Value result = evaluate(*colon.right);
    current = saved;
    return result;
}

}  // namespace tarnfold::zmf
