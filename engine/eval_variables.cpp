// Variables: reading, isbound/isunbound, and assignment with its operators.

#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

namespace {

int64_t wrap(uint64_t value) { return static_cast<int64_t>(value); }

// The compound operators on a bound slot. Operand types were checked by the
// parser, so a mismatch here is an internal fault (the accessors abort).
Value combine(TokenKind op, Value& slot, const Value& value) {
    if (op == TokenKind::DivideAssign || op == TokenKind::ModulusAssign) {
        const int64_t divisor = value.asNumeric(), dividend = slot.asNumeric();
        if (divisor == 0) return Value::boolean(false);
        const bool divide = op == TokenKind::DivideAssign;
        if (divisor == -1)
            slot = Value::numeric(divide ? wrap(0 - uint64_t(dividend)) : 0);
        else
            slot = Value::numeric(divide ? dividend / divisor : dividend % divisor);
    } else if (op == TokenKind::AddAssign && slot.is(ValueType::String)) {
        slot = Value::string(makeZmfStringFromUnicode(slot.asString()->text() + value.asString()->text()));
    } else if (op == TokenKind::AddAssign) {
        slot = Value::numeric(wrap(uint64_t(slot.asNumeric()) + uint64_t(value.asNumeric())));
    } else if (op == TokenKind::SubtractAssign) {
        slot = Value::numeric(wrap(uint64_t(slot.asNumeric()) - uint64_t(value.asNumeric())));
    } else if (op == TokenKind::MultiplyAssign) {
        slot = Value::numeric(wrap(uint64_t(slot.asNumeric()) * uint64_t(value.asNumeric())));
    } else if (op == TokenKind::OrAssign) {
        slot = Value::set(slot.asSet() | value.asSet());
    } else if (op == TokenKind::AndAssign) {
        slot = Value::set(slot.asSet() & value.asSet());
    } else {
        std::abort();
    }
    return Value::boolean(true);
}

}  // namespace

Value ZMFEngine::eval(const IdentifierNode& node) { return variables.resolve(node.slot); }

Value ZMFEngine::eval(const IsboundNode& node) {
    return Value::boolean(node.slot && !variables.resolve(*node.slot).isNone());
}

Value ZMFEngine::eval(const IsunboundNode& node) {
    return Value::boolean(!node.slot || variables.resolve(*node.slot).isNone());
}

// A parameter that aliases the caller's variable needs nothing; every other
// one takes its argument's value before the body runs.
Value ZMFEngine::eval(const FunctionCallNode& node) {
    for (const FunctionCallNode::Binding& binding : node.bindings)
        variables.resolve(binding.slot) = evaluate(*node.arguments[binding.argument]);
    return evaluate(*node.body);
}

// The declaration's assignment runs only while the variable is unbound, so
// a persistent variable is set once and then kept from game to game.
Value ZMFEngine::eval(const PersistentNode& node) {
    if (node.assignment && variables.resolve(node.slot).isNone()) evaluate(*node.assignment);
    return Value::boolean(true);
}

Value ZMFEngine::eval(const AssignNode& assign) {
    const ZMFNode& target = unwrapParens(*assign.target);
    // A slice reads its string and indices before the value.
    if (target.kind == NodeKind::Slice) return assignSlice(as<SliceNode>(target), *assign.value);
    if (target.kind == NodeKind::DictionaryAccess)
        return assignDictionaryEntry(as<DictionaryAccessNode>(target), *assign.value);
    const Value value = evaluate(*assign.value);
    if (value.isNone()) return Value();
    // Other targets (pieces) have their own rules.
    if (target.kind != NodeKind::Identifier) return Value();
    Value& slot = variables.resolve(as<IdentifierNode>(target).slot);
    if (assign.op == TokenKind::Assign) {
        slot = value;
        return Value::boolean(true);
    }
    if (assign.op == TokenKind::ConditionalAssign) {
        // An empty set leaves the variable as it was.
        if (value.is(ValueType::Set) && value.asSet() == 0) return Value::boolean(false);
        slot = value;
        return Value::boolean(true);
    }
    if (slot.isNone()) return Value();
    if (slot.is(ValueType::String) && value.is(ValueType::String))
        chargeWork(std::size_t(slot.asString()->text().length() + value.asString()->text().length()));
    return combine(assign.op, slot, value);
}

}  // namespace tarnfold::zmf
