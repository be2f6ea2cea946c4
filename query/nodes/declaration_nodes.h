#pragma once
// Declarations that give a variable more than a value: persistence from game
// to game, the dictionary type, and the filters that test or remove a
// binding while the query runs. Persistence, quiet and the merge strategy
// that are in force live on the variable's slot; a node keeps what its own
// text said, so that it prints back as written.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "query/node.h"
#include "query/symbols.h"

namespace tarnfold::zmf {

// "min", "max", "sum", "int min", "int max" or "int sum"; empty for None.
std::string_view mergeStrategyText(MergeStrategy strategy);

// persistent (strategy) quiet V = F
class PersistentNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Persistent;

    PersistentNode(OptionalOffset location, std::string name, std::uint32_t slot, MergeStrategy mergeStrategy,
                   bool quiet, NodePtr assignment);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string name;
    std::uint32_t slot;
    MergeStrategy mergeStrategy;  // as written here; None when not given
    bool quiet;
    NodePtr assignment;  // run only while the slot is still unbound
};

// dictionary (strategy) quiet V
class DictionaryNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Dictionary;

    DictionaryNode(OptionalOffset location, std::string name, std::uint32_t slot, MergeStrategy mergeStrategy,
                   bool quiet);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string name;
    std::uint32_t slot;
    MergeStrategy mergeStrategy;
    bool quiet;
};

// unbind V, unbind V[key]
class UnbindNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Unbind;

    UnbindNode(OptionalOffset location, std::string name, std::uint32_t slot, NodePtr key);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string name;
    std::uint32_t slot;
    NodePtr key;  // null: the whole variable
};

// isbound V. A name that no variable has gets no slot, and is never bound.
class IsboundNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Isbound;

    IsboundNode(OptionalOffset location, std::string name, std::optional<std::uint32_t> slot);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string name;
    std::optional<std::uint32_t> slot;
};

// isunbound V, the negation of isbound.
class IsunboundNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Isunbound;

    IsunboundNode(OptionalOffset location, std::string name, std::optional<std::uint32_t> slot);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string name;
    std::optional<std::uint32_t> slot;
};

}  // namespace tarnfold::zmf
