// Dictionaries: reading and writing an entry, iterating over the keys, and
// unbind. A dictionary value is shared by reference count; a write copies it
// only while another holder (a saved variable version, the run's totals)
// still sees the old entries.

#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

namespace {

ZmfDictionary& writableDictionary(Value& slot) {
    if (slot.asDictionary().use_count() != 1)
        slot = Value::dictionary(std::make_shared<ZmfDictionary>(*slot.asDictionary()));
    // Every dictionary is made as a mutable map; the const of the shared
    // pointer only keeps other holders from writing.
    return const_cast<ZmfDictionary&>(*slot.asDictionary());
}

uint32_t dictionarySlot(const ZMFNode& variable) { return as<IdentifierNode>(variable.unwrapParens()).slot; }

}  // namespace

Value ZMFEngine::eval(const DictionaryAccessNode& node) {
    const Value key = evaluate(*node.key);
    if (!key.is(ValueType::String)) return Value();
    const Value& slot = variables.resolve(dictionarySlot(*node.dictionary));
    if (!slot.is(ValueType::Dictionary)) return Value();
    const ZmfDictionary& entries = *slot.asDictionary();
    const auto found = entries.find(key.asString()->toUtf8());
    if (found == entries.end()) return Value();
    return Value::string(makeZmfString(found->second));
}

// D[key] = value: the key is read before the value.
Value ZMFEngine::assignDictionaryEntry(const DictionaryAccessNode& target, const ZMFNode& valueNode) {
    const Value key = evaluate(*target.key);
    if (!key.is(ValueType::String)) return Value();
    if (!variables.resolve(dictionarySlot(*target.dictionary)).is(ValueType::Dictionary)) return Value();
    const Value value = evaluate(valueNode);
    if (!value.is(ValueType::String)) return Value();
    // The value's evaluation may have moved the variable store on.
    Value& slot = variables.resolve(dictionarySlot(*target.dictionary));
    if (!slot.is(ValueType::Dictionary)) return Value();
    writableDictionary(slot)[key.asString()->toUtf8()] = value.asString()->toUtf8();
    return Value::boolean(true);
}

// string V in D F: the keys as they stand when the loop starts, whatever the
// body writes into D.
Value ZMFEngine::eval(const DictionaryIteratorNode& node) {
    const Value dictionary = variables.resolve(node.dictionarySlot);
    if (!dictionary.is(ValueType::Dictionary)) return Value();
    for (const auto& entry : *dictionary.asDictionary()) {
        if (abort) break;
        variables.resolve(node.slot) = Value::string(makeZmfString(entry.first));
        evaluate(*node.body);
    }
    return Value::boolean(true);
}

Value ZMFEngine::eval(const UnbindNode& node) {
    Value& slot = variables.resolve(node.slot);
    if (!slot.is(ValueType::Dictionary)) {
        slot = Value();
        return Value::boolean(true);
    }
    if (!node.key) {
        if (!slot.asDictionary()->empty()) slot = Value::dictionary(std::make_shared<ZmfDictionary>());
        return Value::boolean(true);
    }
    const Value key = evaluate(*node.key);
    if (!key.is(ValueType::String)) return Value();
    Value& held = variables.resolve(node.slot);
    if (held.is(ValueType::Dictionary)) writableDictionary(held).erase(key.asString()->toUtf8());
    return Value::boolean(true);
}

}  // namespace tarnfold::zmf
