#include "query/nodes/declaration_nodes.h"

#include <algorithm>
#include <cctype>

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

std::string_view mergeStrategyText(MergeStrategy strategy) {
    switch (strategy) {
        case MergeStrategy::None: return "";
        case MergeStrategy::Min: return "min";
        case MergeStrategy::Max: return "max";
        case MergeStrategy::Sum: return "sum";
        case MergeStrategy::IntMin: return "int min";
        case MergeStrategy::IntMax: return "int max";
        case MergeStrategy::IntSum: return "int sum";
    }
    return "";
}

namespace {

// "keyword (strategy) quiet ", the common head of both declarations.
void printDeclarationHead(PrintTarget& target, std::string_view keyword, MergeStrategy strategy, bool quiet) {
    target << keyword << " ";
    if (strategy != MergeStrategy::None) target << "(" << mergeStrategyText(strategy) << ") ";
    if (quiet) target << "quiet ";
}

// "Name (variable) slot N", then the strategy and quiet when present.
std::string declarationLine(std::string_view kind, const std::string& name, std::uint32_t slot,
                            MergeStrategy strategy, bool quiet) {
    std::string line(kind);
    line.append(" (").append(name).append(") slot ").append(std::to_string(slot));
    if (strategy != MergeStrategy::None) line.append(" ").append(mergeStrategyText(strategy));
    if (quiet) line.append(" quiet");
    return line;
}

std::string bindingLine(std::string_view kind, const std::string& name, std::optional<std::uint32_t> slot) {
    std::string line(kind);
    line.append(" (").append(name).append(")");
    if (slot) line.append(" slot ").append(std::to_string(*slot));
    return line;
}

}  // namespace

PersistentNode::PersistentNode(OptionalOffset location, std::string name, std::uint32_t slot,
                               MergeStrategy mergeStrategy, bool quiet, NodePtr assignment)
    : ZMFNode(kind, ValueType::Boolean, location),
      name(std::move(name)),
      slot(slot),
      mergeStrategy(mergeStrategy),
      quiet(quiet),
      assignment(std::move(assignment)) {
    spanToOperand(*this, *this->assignment);
}

void PersistentNode::print(PrintTarget& target) const {
    printDeclarationHead(target, "persistent", mergeStrategy, quiet);
    // The assignment is read from power 0, so anything behind it would join it.
    PrintedEnds ends = printOperand(target, *assignment, 0, 0);
    target.ends = PrintedEnds{closedEnd, std::min<BindingPower>(0, ends.right)};
}

void PersistentNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, declarationLine("Persistent", name, slot, mergeStrategy, quiet),
             {assignment.get()});
}

DictionaryNode::DictionaryNode(OptionalOffset location, std::string name, std::uint32_t slot,
                               MergeStrategy mergeStrategy, bool quiet)
    : ZMFNode(kind, ValueType::Boolean, location),
      name(std::move(name)),
      slot(slot),
      mergeStrategy(mergeStrategy),
      quiet(quiet) {}

void DictionaryNode::print(PrintTarget& target) const {
    printDeclarationHead(target, "dictionary", mergeStrategy, quiet);
    target << name;
    target.ends = PrintedEnds{};
}

void DictionaryNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, declarationLine("Dictionary", name, slot, mergeStrategy, quiet));
}

UnbindNode::UnbindNode(OptionalOffset location, std::string name, std::uint32_t slot, NodePtr key)
    : ZMFNode(kind, ValueType::Boolean, location),
      name(std::move(name)),
      slot(slot),
      key(std::move(key)) {}

void UnbindNode::print(PrintTarget& target) const {
    target << "unbind " << name;
    if (key) {
        PrintTarget inner = target.sibling();
        printOperand(inner, *key, 0, 0);
        const std::string& text = inner.text();
        // "[" directly before a letter could be read back as a bracketed
        // piece designator, as in [nb].
        bool letter = !text.empty() &&
                      (std::isalpha(static_cast<unsigned char>(text.front())) != 0 || text.front() == '_');
        target << (letter ? "[ " : "[") << text << "]";
    }
    target.ends = PrintedEnds{};
}

void UnbindNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, bindingLine("Unbind", name, slot), {{key.get(), "key"}});
}

IsboundNode::IsboundNode(OptionalOffset location, std::string name, std::optional<std::uint32_t> slot)
    : ZMFNode(kind, ValueType::Boolean, location), name(std::move(name)), slot(slot) {}

void IsboundNode::print(PrintTarget& target) const {
    target << "isbound " << name;
    target.ends = PrintedEnds{};
}

void IsboundNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, bindingLine("Isbound", name, slot));
}

IsunboundNode::IsunboundNode(OptionalOffset location, std::string name, std::optional<std::uint32_t> slot)
    : ZMFNode(kind, ValueType::Boolean, location), name(std::move(name)), slot(slot) {}

void IsunboundNode::print(PrintTarget& target) const {
    target << "isunbound " << name;
    target.ends = PrintedEnds{};
}

void IsunboundNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, bindingLine("Isunbound", name, slot));
}

}  // namespace tarnfold::zmf
