#include "query/nodes/function_nodes.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

FunctionNode::FunctionNode(OptionalOffset location, std::string name, std::vector<std::string> parameters,
                           std::vector<Token> body)
    : ZMFNode(kind, ValueType::Boolean, location),
      name(std::move(name)),
      parameters(std::move(parameters)),
      body(std::move(body)) {}

void FunctionNode::print(PrintTarget& target) const {
    target << "function " << name << "(";
    for (std::size_t i = 0; i < parameters.size(); ++i) target << (i ? " " : "") << parameters[i];
    target << ") {";
    // Tokens joined by blanks read back as the same tokens; a line comment
    // cannot occur, since comments are not tokens.
    for (const Token& token : body) target << " " << token.text;
    target << " }";
}

void FunctionNode::dump(DumpTarget& target, bool isLast) const {
    std::string name_ = "Function (" + name + ")";
    for (const std::string& parameter : parameters) name_ += " " + parameter;
    dumpNode(*this, target, isLast, name_);
}

FunctionCallNode::FunctionCallNode(OptionalOffset location, std::string name, std::vector<NodePtr> arguments,
                                   std::vector<Binding> bindings, NodePtr body)
    : ZMFNode(kind, body->valueType, location),
      name(std::move(name)),
      arguments(std::move(arguments)),
      bindings(std::move(bindings)),
      body(std::move(body)) {}

void FunctionCallNode::print(PrintTarget& target) const {
    if (target.expandFunctions) {
        // The expanded form shows what runs: the body as parsed for this call.
        PrintTarget inner = target.sibling();
        body->print(inner);
        target << "{" << inner.text() << "}";
        target.ends = PrintedEnds{};
        return;
    }
    // Arguments stand side by side like the filters of a compound.
    target << name << "(";
    printSequence(target, arguments, " ", "");
    target << ")";
    target.ends = PrintedEnds{};
}

void FunctionCallNode::dump(DumpTarget& target, bool isLast) const {
    target.writeLine(*this, isLast, "FunctionCall (" + name + ")");
    std::vector<DumpChild> children;
    if (target.expandFuncArgs)
        for (const NodePtr& argument : arguments) children.emplace_back(argument.get(), "argument");
    if (target.expandFunctions || target.expandFuncArgs) children.emplace_back(body.get(), "body");
    if (children.empty()) return;
    target.openLevel(isLast);
    for (std::size_t i = 0; i < children.size(); ++i) {
        if (children[i].label.empty())
            children[i].node->dump(target, i + 1 == children.size());
        else
            children[i].node->dumpLabelled(target, i + 1 == children.size(), children[i].label);
    }
    target.closeLevel();
}

}  // namespace tarnfold::zmf
