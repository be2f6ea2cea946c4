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

}  // namespace

Value ZMFEngine::evaluateArithmetic(const ZMFNode& node) {
    switch (node.kind) {
        case NodeKind::Add: {
            auto [left, right] = evaluateOperands<AddNode>(*this, node);
            if (bothNumeric(left, right))
                return Value::numeric(wrap(uint64_t(left.asNumeric()) + uint64_t(right.asNumeric())));
            if (left.is(ValueType::String) && right.is(ValueType::String))
                return Value::string(
                    makeZmfStringFromUnicode(left.asString()->text() + right.asString()->text()));
            return Value();
        }
        case NodeKind::Subtract: {
            auto [left, right] = evaluateOperands<SubtractNode>(*this, node);
            if (!bothNumeric(left, right)) return Value();
            return Value::numeric(wrap(uint64_t(left.asNumeric()) - uint64_t(right.asNumeric())));
        }
        case NodeKind::Multiply: {
            auto [left, right] = evaluateOperands<MultiplyNode>(*this, node);
            if (!bothNumeric(left, right)) return Value();
            return Value::numeric(wrap(uint64_t(left.asNumeric()) * uint64_t(right.asNumeric())));
        }
        case NodeKind::Divide:
        case NodeKind::Modulus: {
            auto [left, right] = node.kind == NodeKind::Divide ? evaluateOperands<DivideNode>(*this, node)
                                                               : evaluateOperands<ModulusNode>(*this, node);
            if (!bothNumeric(left, right) || right.asNumeric() == 0) return Value();
            const int64_t a = left.asNumeric(), b = right.asNumeric();
            // The one quotient that overflows wraps to itself, its remainder is 0.
            if (b == -1) return Value::numeric(node.kind == NodeKind::Divide ? wrap(0 - uint64_t(a)) : 0);
            return Value::numeric(node.kind == NodeKind::Divide ? a / b : a % b);
        }
        case NodeKind::Negate: {
            const Value operand = evaluate(*as<NegateNode>(node).operand);
            if (!operand.is(ValueType::Numeric)) return Value();
            return Value::numeric(wrap(0 - uint64_t(operand.asNumeric())));
        }
        case NodeKind::Abs: {
            const Value operand = evaluate(*as<AbsNode>(node).operand);
            if (!operand.is(ValueType::Numeric)) return Value();
            const int64_t value = operand.asNumeric();
            return Value::numeric(value < 0 ? wrap(0 - uint64_t(value)) : value);
        }
        default: {
            const Value operand = evaluate(*as<SqrtNode>(node).operand);
            if (!operand.is(ValueType::Numeric) || operand.asNumeric() < 0) return Value();
            return Value::numeric(int64_t(std::sqrt(double(operand.asNumeric()))));
        }
    }
}

}  // namespace tarnfold::zmf
