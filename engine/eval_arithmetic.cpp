// + - * / % on numbers (and + on strings), unary minus, abs, sqrt.

#include <cmath>

#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

namespace {

// Arithmetic wraps around like the machine's, without undefined behaviour.
int64_t wrap(uint64_t value) { return static_cast<int64_t>(value); }

bool bothNumeric(const Value& left, const Value& right) {
    return left.is(ValueType::Numeric) && right.is(ValueType::Numeric);
}

// Division by zero gives None; the one quotient that overflows wraps to
// itself, and its remainder is 0.
Value divide(const Value& left, const Value& right, bool quotient) {
    if (!bothNumeric(left, right) || right.asNumeric() == 0) return Value();
    const int64_t a = left.asNumeric(), b = right.asNumeric();
    if (b == -1) return Value::numeric(quotient ? wrap(0 - uint64_t(a)) : 0);
    return Value::numeric(quotient ? a / b : a % b);
}

}  // namespace

Value ZMFEngine::eval(const AddNode& node) {
    auto [left, right] = evaluateOperands(*this, node);
    if (bothNumeric(left, right))
        return Value::numeric(wrap(uint64_t(left.asNumeric()) + uint64_t(right.asNumeric())));
    if (left.is(ValueType::String) && right.is(ValueType::String)) {
        chargeWork(std::size_t(left.asString()->text().length() + right.asString()->text().length()));
        return Value::string(makeZmfStringFromUnicode(left.asString()->text() + right.asString()->text()));
    }
    return Value();
}

Value ZMFEngine::eval(const SubtractNode& node) {
    auto [left, right] = evaluateOperands(*this, node);
    if (!bothNumeric(left, right)) return Value();
    return Value::numeric(wrap(uint64_t(left.asNumeric()) - uint64_t(right.asNumeric())));
}

Value ZMFEngine::eval(const MultiplyNode& node) {
    auto [left, right] = evaluateOperands(*this, node);
    if (!bothNumeric(left, right)) return Value();
    return Value::numeric(wrap(uint64_t(left.asNumeric()) * uint64_t(right.asNumeric())));
}

Value ZMFEngine::eval(const DivideNode& node) {
    auto [left, right] = evaluateOperands(*this, node);
    return divide(left, right, true);
}

Value ZMFEngine::eval(const ModulusNode& node) {
    auto [left, right] = evaluateOperands(*this, node);
    return divide(left, right, false);
}

Value ZMFEngine::eval(const NegateNode& node) {
    const Value operand = evaluate(*node.operand);
    if (!operand.is(ValueType::Numeric)) return Value();
    return Value::numeric(wrap(0 - uint64_t(operand.asNumeric())));
}

Value ZMFEngine::eval(const AbsNode& node) {
    const Value operand = evaluate(*node.operand);
    if (!operand.is(ValueType::Numeric)) return Value();
    const int64_t value = operand.asNumeric();
    return Value::numeric(value < 0 ? wrap(0 - uint64_t(value)) : value);
}

Value ZMFEngine::eval(const SqrtNode& node) {
    const Value operand = evaluate(*node.operand);
    if (!operand.is(ValueType::Numeric) || operand.asNumeric() < 0) return Value();
    return Value::numeric(int64_t(std::sqrt(double(operand.asNumeric()))));
}

}  // namespace tarnfold::zmf
