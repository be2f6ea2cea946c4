// Variables: reading, isbound/isunbound, and assignment with its operators.

#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

namespace {

int64_t wrap(uint64_t value) { return static_cast<int64_t>(value); }

// The compound operators on a bound slot. Operand types were checked by the
// parser, so a mismatch here is an internal fault (the accessors abort).
Value combine(TokenKind op, Value& slot, const Value& value) {
    switch (op) {
        case TokenKind::AddAssign:
            if (slot.is(ValueType::String))
                slot = Value::string(
                    makeZmfStringFromUnicode(slot.asString()->text() + value.asString()->text()));
            else
                slot = Value::numeric(wrap(uint64_t(slot.asNumeric()) + uint64_t(value.asNumeric())));
            break;
        case TokenKind::SubtractAssign:
            slot = Value::numeric(wrap(uint64_t(slot.asNumeric()) - uint64_t(value.asNumeric())));
            break;
        case TokenKind::MultiplyAssign:
            slot = Value::numeric(wrap(uint64_t(slot.asNumeric()) * uint64_t(value.asNumeric())));
            break;
        case TokenKind::DivideAssign:
        case TokenKind::ModulusAssign: {
            const int64_t divisor = value.asNumeric(), dividend = slot.asNumeric();
            if (divisor == 0) return Value::boolean(false);
            const bool divide = op == TokenKind::DivideAssign;
            if (divisor == -1)
                slot = Value::numeric(divide ? wrap(0 - uint64_t(dividend)) : 0);
            else
                slot = Value::numeric(divide ? dividend / divisor : dividend % divisor);
            break;
        }
        case TokenKind::OrAssign: slot = Value::set(slot.asSet() | value.asSet()); break;
        case TokenKind::AndAssign: slot = Value::set(slot.asSet() & value.asSet()); break;
        default: std::abort();
    }
    return Value::boolean(true);
}

}  // namespace

Value ZMFEngine::evaluateVariable(const ZMFNode& node) {
    switch (node.kind) {
        case NodeKind::Identifier: return variables.resolve(as<IdentifierNode>(node).slot);
        case NodeKind::Isbound: {
            const auto& slot = as<IsboundNode>(node).slot;
            return Value::boolean(slot && !variables.resolve(*slot).isNone());
        }
        default: {
            const auto& slot = as<IsunboundNode>(node).slot;
            return Value::boolean(!slot || variables.resolve(*slot).isNone());
        }
    }
}

// The declaration's assignment runs only while the variable is unbound, so
// a persistent variable is set once and then kept from game to game.
Value ZMFEngine::evaluatePersistent(const ZMFNode& node) {
    const auto& persistent = as<PersistentNode>(node);
    if (persistent.assignment && variables.resolve(persistent.slot).isNone())
        evaluate(*persistent.assignment);
    return Value::boolean(true);
}

Value ZMFEngine::evaluateAssign(const ZMFNode& node) {
    const auto& assign = as<AssignNode>(node);
    const Value value = evaluate(*assign.value);
    if (value.isNone()) return Value();
    const ZMFNode& target = assign.target->unwrapParens();
    // Other targets (slices, dictionary entries, pieces) have their own rules.
    if (target.kind != NodeKind::Identifier) return Value();
    Value& slot = variables.resolve(as<IdentifierNode>(target).slot);
    switch (assign.op) {
        case TokenKind::Assign: slot = value; return Value::boolean(true);
        case TokenKind::ConditionalAssign:
            // An empty set leaves the variable as it was.
            if (value.is(ValueType::Set) && value.asSet() == 0) return Value::boolean(false);
            slot = value;
            return Value::boolean(true);
        default:
            if (slot.isNone()) return Value();
            return combine(assign.op, slot, value);
    }
}

}  // namespace tarnfold::zmf
