// and, or, not, braces and the query root, parentheses and the backquote,
// if, loop, while and ':'.

#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

Value ZMFEngine::eval(const AndNode& node) {
    if (!evaluate(*node.left).isTrue()) return Value::boolean(false);
    return Value::boolean(evaluate(*node.right).isTrue());
}

Value ZMFEngine::eval(const OrNode& node) {
    if (evaluate(*node.left).isTrue()) return Value::boolean(true);
    return Value::boolean(evaluate(*node.right).isTrue());
}

Value ZMFEngine::eval(const NotNode& node) { return Value::boolean(!evaluate(*node.operand).isTrue()); }

Value ZMFEngine::eval(const ParenNode& node) { return evaluate(*node.operand); }

Value ZMFEngine::eval(const IdentityNode& node) { return evaluate(*node.operand); }

Value ZMFEngine::eval(const CompoundNode& node) { return evaluateCompound(node.children, node); }

Value ZMFEngine::eval(const QueryContainer& node) { return evaluateCompound(node.children, node); }

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
Value ZMFEngine::eval(const IfNode& node) {
    const ZMFNode* branch =
        evaluate(*node.condition).isTrue() ? node.thenBranch.get() : node.elseBranch.get();
    if (!branch) return Value::boolean(true);
    Value result = evaluate(*branch);
    return node.valueType == ValueType::Boolean ? Value::boolean(result.isTrue()) : result;
}

Value ZMFEngine::eval(const LoopNode& node) {
    bool anyPass = false;
    while (evaluate(*node.operand).isTrue()) anyPass = true;
    return Value::boolean(anyPass);
}

Value ZMFEngine::eval(const WhileNode& node) {
    while (evaluate(*node.condition).isTrue()) evaluate(*node.body);
    return Value::boolean(true);
}

// position : filter evaluates the filter at that position.
Value ZMFEngine::eval(const ColonNode& node) {
    const Value where = evaluate(*node.left);
    if (!where.is(ValueType::Position)) return Value();
    const uint32_t saved = current;
    current = where.asPosition().id;
    Value result = evaluate(*node.right);
    current = saved;
    return result;
}

}  // namespace tarnfold::zmf
