#include "query/symbols.h"

#include <iterator>

namespace tarnfold::zmf {

void SymbolTable::reset() {
    globals_.clear();
    scopes_.clear();
    slots_.clear();
}

Symbol* SymbolTable::find(const std::string& name) {
    for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
        auto found = scope->names.find(name);
        if (found != scope->names.end()) return &found->second;
        if (scope->barrier) break;
    }
    auto global = globals_.find(name);
    return global == globals_.end() ? nullptr : &global->second;
}

Symbol& SymbolTable::addVariable(std::map<std::string, Symbol>& names, const std::string& name,
                                 ValueType type) {
    VariableSlot slot;
    slot.id = static_cast<std::uint32_t>(slots_.size());
    slot.name = name;
    slot.valueType = type;
    slots_.push_back(slot);
    Symbol& symbol = names[name] = Symbol{};
    symbol.name = name;
    symbol.slot = slot.id;
    symbol.valueType = type;
    return symbol;
}

Symbol& SymbolTable::findOrCreateGlobal(const std::string& name) {
    if (Symbol* symbol = find(name)) return *symbol;
    return addVariable(globals_, name, ValueType::Empty);
}

Symbol& SymbolTable::declareLocal(const std::string& name, ValueType type) {
    return addVariable(innermost(), name, type);
}

Symbol& SymbolTable::declareAlias(const std::string& name, const Symbol& target) {
    Symbol& symbol = innermost()[name] = target;
    symbol.name = name;
    return symbol;
}

Symbol& SymbolTable::defineFunction(const std::string& name) {
    Symbol& symbol = innermost()[name] = Symbol{};
    symbol.name = name;
    symbol.isFunction = true;
    symbol.scopeDepth = scopes_.size();
    return symbol;
}

void SymbolTable::pushScope(bool barrier) { scopes_.push_back(Scope{{}, barrier}); }

void SymbolTable::popScope() { scopes_.pop_back(); }

void SymbolTable::setType(Symbol& symbol, ValueType type) {
    symbol.valueType = type;
    if (!symbol.isFunction && symbol.slot < slots_.size()) slots_[symbol.slot].valueType = type;
}

void SymbolTable::truncateSlots(std::size_t count) {
    if (count >= slots_.size()) return;
    slots_.resize(count);
    auto forget = [count](std::map<std::string, Symbol>& names) {
        for (auto it = names.begin(); it != names.end();)
            it = !it->second.isFunction && it->second.slot >= count ? names.erase(it) : std::next(it);
    };
    forget(globals_);
    for (Scope& scope : scopes_) forget(scope.names);
}

}  // namespace tarnfold::zmf
