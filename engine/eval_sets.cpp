// & | ~ on sets, 'in', '#', and the implicit conversions to numbers.

#include <bit>

#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

namespace {

bool bothSets(const Value& left, const Value& right) {
    return left.is(ValueType::Set) && right.is(ValueType::Set);
}

}  // namespace

Value ZMFEngine::eval(const BitAndNode& node) {
    auto [left, right] = evaluateOperands(*this, node);
    return bothSets(left, right) ? Value::set(left.asSet() & right.asSet()) : Value();
}

Value ZMFEngine::eval(const BitOrNode& node) {
    auto [left, right] = evaluateOperands(*this, node);
    return bothSets(left, right) ? Value::set(left.asSet() | right.asSet()) : Value();
}

Value ZMFEngine::eval(const BitComplementNode& node) {
    const Value operand = evaluate(*node.operand);
    return operand.is(ValueType::Set) ? Value::set(~operand.asSet()) : Value();
}

Value ZMFEngine::eval(const InNode& node) {
    auto [left, right] = evaluateOperands(*this, node);
    if (bothSets(left, right)) return Value::boolean((left.asSet() & ~right.asSet()) == 0);
    if (left.is(ValueType::String) && right.is(ValueType::String))
        return Value::boolean(right.asString()->contains(*left.asString()));
    return Value();
}

Value ZMFEngine::eval(const CardinalityNode& node) {
    const Value operand = evaluate(*node.operand);
    if (operand.is(ValueType::Set)) return Value::numeric(std::popcount(operand.asSet()));
    if (operand.is(ValueType::String)) return Value::numeric(operand.asString()->length());
    if (operand.is(ValueType::Dictionary)) return Value::numeric(int64_t(operand.asDictionary()->size()));
    return Value();
}

Value ZMFEngine::eval(const SetToNumericConversionNode& node) {
    const Value operand = evaluate(*node.operand);
    return operand.is(ValueType::Set) ? Value::numeric(std::popcount(operand.asSet())) : Value();
}

Value ZMFEngine::eval(const PositionToNumericConversionNode& node) {
    const Value operand = evaluate(*node.operand);
    return operand.is(ValueType::Position) ? Value::numeric(operand.asPosition().id) : Value();
}

}  // namespace tarnfold::zmf
