// == != < <= > >= over numbers, strings and sets.

#include "engine/collate.h"
#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

namespace {

// Equality of strings is exact, code unit by code unit.
bool sameString(const ZmfString& left, const ZmfString& right) { return left->text() == right->text(); }

std::optional<bool> equality(const Value& left, const Value& right) {
    if (left.type() != right.type()) return std::nullopt;
    if (left.is(ValueType::Numeric)) return left.asNumeric() == right.asNumeric();
    if (left.is(ValueType::String)) return sameString(left.asString(), right.asString());
    if (left.is(ValueType::Set)) return left.asSet() == right.asSet();
    return std::nullopt;
}

// The order of two numbers or two strings: negative, zero or positive;
// nothing for any other pair.
std::optional<int> order(const Value& left, const Value& right) {
    if (left.type() != right.type()) return std::nullopt;
    if (left.is(ValueType::Numeric))
        return left.asNumeric() < right.asNumeric() ? -1 : left.asNumeric() > right.asNumeric() ? 1 : 0;
    if (left.is(ValueType::String)) return collate(left.asString()->text(), right.asString()->text());
    return std::nullopt;
}

// An ordering that holds gives the left value, so that comparisons chain.
template <typename Holds>
Value ordered(const std::pair<Value, Value>& both, Holds holds) {
    const std::optional<int> found = order(both.first, both.second);
    return found && holds(*found) ? both.first : Value();
}

}  // namespace

// Equal numbers and strings give the left value, so that comparisons can be
// chained; sets give a Boolean.
Value ZMFEngine::eval(const EqualToNode& node) {
    auto [left, right] = evaluateOperands(*this, node);
    const std::optional<bool> equal = equality(left, right);
    if (!equal) return Value();
    if (left.is(ValueType::Set)) return Value::boolean(*equal);
    return *equal ? left : Value();
}

Value ZMFEngine::eval(const NotEqualNode& node) {
    auto [left, right] = evaluateOperands(*this, node);
    const std::optional<bool> equal = equality(left, right);
    return Value::boolean(!equal || !*equal);
}

Value ZMFEngine::eval(const LessThanNode& node) {
    return ordered(evaluateOperands(*this, node), [](int order) { return order < 0; });
}

Value ZMFEngine::eval(const LessEqualNode& node) {
    return ordered(evaluateOperands(*this, node), [](int order) { return order <= 0; });
}

Value ZMFEngine::eval(const GreaterThanNode& node) {
    return ordered(evaluateOperands(*this, node), [](int order) { return order > 0; });
}

Value ZMFEngine::eval(const GreaterEqualNode& node) {
    return ordered(evaluateOperands(*this, node), [](int order) { return order >= 0; });
}

}  // namespace tarnfold::zmf
