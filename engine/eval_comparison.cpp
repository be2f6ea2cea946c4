// == != < <= > >= over numbers, strings and sets.

#include "engine/collate.h"
#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

namespace {

// Equality of strings is exact, code unit by code unit.
bool sameString(const ZmfString& left, const ZmfString& right) { return left->text() == right->text(); }

bool holds(NodeKind kind, int order) {
    switch (kind) {
        case NodeKind::LessThan: return order < 0;
        case NodeKind::LessEqual: return order <= 0;
        case NodeKind::GreaterThan: return order > 0;
        default: return order >= 0;
    }
}

}  // namespace

Value ZMFEngine::evaluateComparison(const ZMFNode& node) {
    std::pair<Value, Value> both;
    switch (node.kind) {
        case NodeKind::EqualTo: both = evaluateOperands<EqualToNode>(*this, node); break;
        case NodeKind::NotEqual: both = evaluateOperands<NotEqualNode>(*this, node); break;
        case NodeKind::LessThan: both = evaluateOperands<LessThanNode>(*this, node); break;
        case NodeKind::LessEqual: both = evaluateOperands<LessEqualNode>(*this, node); break;
        case NodeKind::GreaterThan: both = evaluateOperands<GreaterThanNode>(*this, node); break;
        default: both = evaluateOperands<GreaterEqualNode>(*this, node); break;
    }
    const Value& left = both.first;
    const Value& right = both.second;
    const bool sameType = left.type() == right.type();
    const ValueType type = left.type();

    if (node.kind == NodeKind::EqualTo || node.kind == NodeKind::NotEqual) {
        std::optional<bool> equal;
        if (sameType && type == ValueType::Numeric) equal = left.asNumeric() == right.asNumeric();
        if (sameType && type == ValueType::String) equal = sameString(left.asString(), right.asString());
        if (sameType && type == ValueType::Set) equal = left.asSet() == right.asSet();
        if (node.kind == NodeKind::NotEqual) return Value::boolean(!equal.has_value() || !*equal);
        if (!equal.has_value()) return Value();
        // Equal numbers and strings give the left value, so that comparisons
        // can be chained; sets give a Boolean.
        if (type == ValueType::Set) return Value::boolean(*equal);
        return *equal ? left : Value();
    }
    if (!sameType) return Value();
    if (type == ValueType::Numeric) {
        const int order = left.asNumeric() < right.asNumeric()   ? -1
                          : left.asNumeric() > right.asNumeric() ? 1
                                                                 : 0;
        return holds(node.kind, order) ? left : Value();
    }
    if (type == ValueType::String)
        return holds(node.kind, collate(left.asString()->text(), right.asString()->text())) ? left : Value();
    return Value();
}

}  // namespace tarnfold::zmf
