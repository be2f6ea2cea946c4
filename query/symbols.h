#pragma once
// Names of a query, resolved while parsing. A variable gets a fixed slot and
// a fixed type; at run time the engine has only slots. A function is kept as
// its tokens and expanded inline at each call.

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "query/token.h"
#include "query/value_type.h"

namespace tarnfold::zmf {

// How a persistent variable or dictionary is folded across worker threads.
enum class MergeStrategy : std::uint8_t { None, Min, Max, Sum, IntMin, IntMax, IntSum };

struct VariableSlot {
    std::uint32_t id = 0;
    std::string name;
    ValueType valueType = ValueType::Empty;
    bool persistent = false;
    bool quiet = false;
    MergeStrategy mergeStrategy = MergeStrategy::None;
};

struct Symbol {
    std::string name;
    std::uint32_t slot = 0;  // unused for a function
    ValueType valueType = ValueType::Empty;
    bool isFunction = false;
    std::vector<std::string> parameters;  // function only
    std::vector<Token> body;              // function only, in reverse order: the next token is back()
    std::size_t scopeDepth = 0;           // where the function was defined
};

class SymbolTable {
public:
    void reset();

    // From the innermost scope outward, stopping after the first scope with
    // a barrier (a function body sees its own names and the globals only).
    Symbol* find(const std::string& name);
    // Like find, but creates a global variable when the name is unknown.
    Symbol& findOrCreateGlobal(const std::string& name);
    // A new variable in the innermost scope (a global when no scope is open).
    Symbol& declareLocal(const std::string& name, ValueType type);
    // A name in the innermost scope that refers to an existing slot.
    Symbol& declareAlias(const std::string& name, const Symbol& target);
    Symbol& defineFunction(const std::string& name);

    void pushScope(bool barrier);
    void popScope();
    std::size_t depth() const { return scopes_.size(); }

    // Typing on first assignment reaches the slot as well.
    void setType(Symbol& symbol, ValueType type);

    VariableSlot& slot(std::uint32_t id) { return slots_[id]; }
    const std::vector<VariableSlot>& slots() const { return slots_; }
    std::size_t slotCount() const { return slots_.size(); }
    // Forgets the variables made after the count: an abandoned attempt of
    // the parser takes its variables with it.
    void truncateSlots(std::size_t count);

private:
    struct Scope {
        std::map<std::string, Symbol> names;
        bool barrier = false;
    };
    Symbol& addVariable(std::map<std::string, Symbol>& names, const std::string& name, ValueType type);
    std::map<std::string, Symbol>& innermost() { return scopes_.empty() ? globals_ : scopes_.back().names; }

    std::map<std::string, Symbol> globals_;
    std::vector<Scope> scopes_;
    std::vector<VariableSlot> slots_;
};

}  // namespace tarnfold::zmf
