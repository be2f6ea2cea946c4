#pragma once
// Small pieces shared by the handler families.

#include <initializer_list>
#include <memory>
#include <string>

#include "query/parser.h"

namespace tarnfold::zmf {

inline bool hasType(const ZMFNode& node, std::initializer_list<ValueType> types) {
    for (ValueType type : types)
        if (node.valueType == type) return true;
    return false;
}

// Builds a node at the token, lets the caller fill it, and ends it at the
// last consumed token.
template <class Node, class... Args>
std::unique_ptr<Node> makeNode(Parser& parser, const Token& token, Args&&... args) {
    auto node = std::make_unique<Node>(token.begin, std::forward<Args>(args)...);
    parser.finish(*node);
    return node;
}

// A keyword filter that takes no operand.
template <class Node>
class BareFilterHandler : public PrefixHandler {
public:
    using PrefixHandler::PrefixHandler;
    // keyword
    NodePtr parse(const Token& token) override { return makeNode<Node>(parser, token); }
};

}  // namespace tarnfold::zmf
