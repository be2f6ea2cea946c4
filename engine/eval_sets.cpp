// & | ~ on sets, 'in', '#', and the implicit conversions to numbers.

#include <bit>

#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

namespace {

// A string is in another if it occurs in it; the empty string is in every
// string and a string in the bogus state is in none.
bool contained(const ZmfString& left, const ZmfString& right) {
    if (left->text().isBogus()) return false;
    if (left->text().isEmpty()) return true;
    return right->text().indexOf(left->text()) >= 0;
}

}  // namespace

Value ZMFEngine::evaluateSetOperator(const ZMFNode& node) {
    switch (node.kind) {
        case NodeKind::BitAnd:
        case NodeKind::BitOr: {
            const bool isAnd = node.kind == NodeKind::BitAnd;
            const Value left = evaluate(isAnd ? *as<BitAndNode>(node).left : *as<BitOrNode>(node).left);
            const Value right = evaluate(isAnd ? *as<BitAndNode>(node).right : *as<BitOrNode>(node).right);
            if (!left.is(ValueType::Set) || !right.is(ValueType::Set)) return Value();
            return Value::set(isAnd ? left.asSet() & right.asSet() : left.asSet() | right.asSet());
        }
        case NodeKind::BitComplement: {
            const Value operand = evaluate(*as<BitComplementNode>(node).operand);
            return operand.is(ValueType::Set) ? Value::set(~operand.asSet()) : Value();
        }
        case NodeKind::In: {
            const Value left = evaluate(*as<InNode>(node).left);
            const Value right = evaluate(*as<InNode>(node).right);
            if (left.is(ValueType::Set) && right.is(ValueType::Set))
                return Value::boolean((left.asSet() & ~right.asSet()) == 0);
            if (left.is(ValueType::String) && right.is(ValueType::String))
                return Value::boolean(contained(left.asString(), right.asString()));
            return Value();
        }
        case NodeKind::Cardinality: {
            const Value operand = evaluate(*as<CardinalityNode>(node).operand);
            if (operand.is(ValueType::Set)) return Value::numeric(std::popcount(operand.asSet()));
            if (operand.is(ValueType::String)) return Value::numeric(operand.asString()->length());
            if (operand.is(ValueType::Dictionary))
                return Value::numeric(int64_t(operand.asDictionary()->size()));
            return Value();
        }
        case NodeKind::SetToNumericConversion: {
            const Value operand = evaluate(*as<SetToNumericConversionNode>(node).operand);
            return operand.is(ValueType::Set) ? Value::numeric(std::popcount(operand.asSet())) : Value();
        }
        default: {
            const Value operand = evaluate(*as<PositionToNumericConversionNode>(node).operand);
            return operand.is(ValueType::Position) ? Value::numeric(operand.asPosition().id) : Value();
        }
    }
}

}  // namespace tarnfold::zmf
