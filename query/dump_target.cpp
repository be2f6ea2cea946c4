#include "query/dump_target.h"

namespace tarnfold::zmf {

namespace {

constexpr std::string_view boldColor = "\033[1m";
constexpr std::string_view labelColor = "\033[36m";
constexpr std::string_view typeColor = "\033[93m";
constexpr std::string_view resetColor = "\033[0m";

}  // namespace

DumpTarget::DumpTarget(const QuerySource* source, bool unicode, bool colors)
    : source(source), unicode(unicode), colors(colors) {}

void DumpTarget::setLabel(std::string_view label) { label_ = label; }

void DumpTarget::writeColored(std::string_view color, std::string_view text) {
    if (colors) text_ += color;
    text_ += text;
    if (colors) text_ += resetColor;
}

void DumpTarget::writePrefix(bool isLast) {
    // The top node has no connector, so its level adds no column either.
    if (levels_.empty()) return;
    for (std::size_t i = 1; i < levels_.size(); ++i) {
        if (levels_[i])
            text_ += "  ";
        else
            text_ += unicode ? "\u2502 " : "| ";
    }
    if (unicode)
        text_ += isLast ? "\u2514\u2500" : "\u251c\u2500";
    else
        text_ += isLast ? "`-" : "|-";
}

void DumpTarget::writeLocation(const ZMFNode& node) {
    OptionalOffset first = node.firstOffset ? node.firstOffset : node.location;
    if (!first) {
        text_ += " <Invalid location>";
        return;
    }
    auto locate = [this](Offset offset) { return source ? source->locate(offset) : SourceLocation{}; };
    SourceLocation from = locate(*first);
    text_ += " <" + locationText(from);
    if (node.lastOffset) {
        SourceLocation to = locate(*node.lastOffset);
        bool sameSource = !source || source->entryAt(*first) == source->entryAt(*node.lastOffset);
        text_ += "-";
        if (!sameSource)
            text_ += locationText(to);
        else if (to.line == from.line)
            text_ += std::to_string(to.column);
        else
            text_ += std::to_string(to.line) + ":" + std::to_string(to.column);
    }
    text_ += ">";
}

void DumpTarget::writeLine(const ZMFNode& node, bool isLast, std::string_view name) {
    if (visit) visit(node);
    writePrefix(isLast);
    writeColored(boldColor, name);
    if (!label_.empty()) {
        text_ += " [";
        writeColored(labelColor, label_);
        text_ += "]";
        label_.clear();
    }
    text_ += " {";
    writeColored(typeColor, printableType(node.valueType));
    text_ += "}";
    writeLocation(node);
    if (node.implicit) text_ += " (implicit)";
    if (node.atomicInducer) text_ += " (atomic inducer)";
    if (node.vitiated) text_ += " (vitiated precedence)";
    text_ += "\n";
}

void DumpTarget::openLevel(bool isLast) { levels_.push_back(isLast); }

void DumpTarget::closeLevel() { levels_.pop_back(); }

void DumpTarget::dumpChildren(bool isLast, std::initializer_list<DumpChild> children) {
    const DumpChild* lastPresent = nullptr;
    for (const DumpChild& child : children)
        if (child.node) lastPresent = &child;
    openLevel(isLast);
    for (const DumpChild& child : children) {
        if (!child.node) continue;
        if (child.label.empty())
            child.node->dump(*this, &child == lastPresent);
        else
            child.node->dumpLabelled(*this, &child == lastPresent, child.label);
    }
    closeLevel();
}

void DumpTarget::dumpChildren(bool isLast, const std::vector<NodePtr>& children) {
    openLevel(isLast);
    for (std::size_t i = 0; i < children.size(); ++i) children[i]->dump(*this, i + 1 == children.size());
    closeLevel();
}

}  // namespace tarnfold::zmf
