#include "query/nodes/io_nodes.h"

#include "query/nodes/node_support.h"
#include "query/nodes/text_nodes.h"

namespace tarnfold::zmf {

ReadfileNode::ReadfileNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::String, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void ReadfileNode::print(PrintTarget& target) const {
    printPrefix(target, "readfile", *operand, cardinalityOperand);
}

void ReadfileNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Readfile", {operand.get()});
}

WritefileNode::WritefileNode(OptionalOffset location, NodePtr left, NodePtr right, bool noclobber)
    : ZMFNode(kind, ValueType::Boolean, location),
      left(std::move(left)),
      right(std::move(right)),
      noclobber(noclobber) {
    spanToOperand(*this, *this->right);
}

void WritefileNode::print(PrintTarget& target) const {
    printArgumentPair(target, noclobber ? "writefile noclobber" : "writefile", *left, *right);
}

void WritefileNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, noclobber ? "Writefile (noclobber)" : "Writefile",
             {{left.get(), "filename"}, {right.get(), "context"}});
}

CommandpipeNode::CommandpipeNode(OptionalOffset location, std::vector<NodePtr> arguments)
    : ZMFNode(kind, ValueType::String, location), arguments(std::move(arguments)) {
    if (!this->arguments.empty()) spanToOperand(*this, *this->arguments.back());
}

void CommandpipeNode::print(PrintTarget& target) const {
    target << "commandpipe(";
    printSequence(target, arguments, " ", "");
    target << ")";
    target.ends = PrintedEnds{};
}

void CommandpipeNode::dump(DumpTarget& target, bool isLast) const {
    target.writeLine(*this, isLast, "Commandpipe");
    target.dumpChildren(isLast, arguments);
}

}  // namespace tarnfold::zmf
