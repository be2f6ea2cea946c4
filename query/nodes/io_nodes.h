#pragma once
// The filters that reach outside the process: files and programs behind
// pipes. All are refused in secure mode.

#include <cstdint>
#include <vector>

#include "query/node.h"

namespace tarnfold::zmf {

// readfile T: the whole text of the named file.
class ReadfileNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Readfile;

    ReadfileNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// writefile noclobber? (T T): the right text written to the file named on
// the left; with `noclobber` appended instead of replacing the file.
class WritefileNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Writefile;

    WritefileNode(OptionalOffset location, NodePtr left, NodePtr right, bool noclobber);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
    std::uint8_t noclobber;
};

// commandpipe (T T ...): every argument but the last is a word of the
// program's command line, the first naming the program; the last is the
// request sent to it, and the response is the value.
class CommandpipeNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Commandpipe;

    CommandpipeNode(OptionalOffset location, std::vector<NodePtr> arguments);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::vector<NodePtr> arguments;
};

}  // namespace tarnfold::zmf
