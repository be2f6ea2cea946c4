#pragma once
// Functions: a definition keeps its tokens; each call is the body parsed
// again with the arguments bound, so every call has a tree of its own.

#include <cstdint>
#include <string>
#include <vector>

#include "query/node.h"
#include "query/token.h"

namespace tarnfold::zmf {

class FunctionNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Function;

    FunctionNode(OptionalOffset location, std::string name, std::vector<std::string> parameters,
                 std::vector<Token> body);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string name;
    std::vector<std::string> parameters;
    std::vector<Token> body;  // in source order
};

class FunctionCallNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::FunctionCall;

    // A parameter that was given a variable shares its slot; any other gets
    // a slot of its own, assigned the argument's value when the call runs.
    struct Binding {
        std::uint32_t slot;
        std::size_t argument;
    };

    FunctionCallNode(OptionalOffset location, std::string name, std::vector<NodePtr> arguments,
                     std::vector<Binding> bindings, NodePtr body);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string name;
    std::vector<NodePtr> arguments;
    std::vector<Binding> bindings;
    NodePtr body;
};

}  // namespace tarnfold::zmf
