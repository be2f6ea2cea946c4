#pragma once
// The base of every node of a parsed query. A tree is built bottom-up by the
// handlers and never changes afterwards; the engine switches on `kind` and
// reads the public fields of the concrete class, so the virtual operations
// here serve the parser and the diagnostic output only.

#include <cstdint>
#include <memory>
#include <string_view>

#include "query/node_kind.h"
#include "query/query_source.h"
#include "query/value_type.h"

namespace tarnfold::zmf {

class PrintTarget;
class DumpTarget;

class ZMFNode {
public:
    // Both ends of the expression start at the node's own token; handlers
    // widen them once the operands are known.
    ZMFNode(NodeKind kind, ValueType valueType, OptionalOffset location);
    virtual ~ZMFNode();
    ZMFNode(const ZMFNode&) = delete;
    ZMFNode& operator=(const ZMFNode&) = delete;

    // Appends the node as query text.
    virtual void print(PrintTarget& target) const = 0;
    // Appends the node's line and its children's lines to the tree dump.
    virtual void dump(DumpTarget& target, bool isLast) const = 0;
    // A parent names the role of a child this way.
    virtual void dumpLabelled(DumpTarget& target, bool isLast, std::string_view label) const;
    virtual bool isAssignment() const;
    // The node behind any parentheses.
    virtual const ZMFNode& unwrapParens() const;
    virtual ZMFNode& unwrapParens();
    // The node behind parentheses and single-filter braces: what a handler
    // must look at to know which filter it really has.
    virtual const ZMFNode& unwrapAll() const;
    virtual ZMFNode& unwrapAll();

    NodeKind kind;
    OptionalOffset location;     // the filter's own token
    OptionalOffset lastOffset;   // end of the whole expression
    OptionalOffset firstOffset;  // start of the whole expression
    ValueType valueType;
    std::uint8_t implicit = 0;       // made up by the parser, no text behind it
    std::uint8_t vitiated = 0;       // built under precedence vitiation
    std::uint8_t atomicInducer = 0;  // forces atomic evaluation in a line constituent
};

using NodePtr = std::unique_ptr<ZMFNode>;

}  // namespace tarnfold::zmf
