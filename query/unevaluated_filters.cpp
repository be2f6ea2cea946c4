#include "query/unevaluated_filters.h"

#include <set>
#include <string>

#include "query/dump_target.h"

namespace tarnfold::zmf {

namespace {

bool isWordCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// A class that several keywords share (the directions, the pawn queries) is
// named by the word the query has at the node's place.
std::string filterName(const ZMFNode& node, const QuerySource& source) {
    const std::string_view listed = nodeKindFilterName(node.kind);
    if (!listed.empty() || !node.location || *node.location >= source.text().size())
        return std::string(listed);
    const std::string& text = source.text();
    std::size_t end = *node.location;
    while (end < text.size() && isWordCharacter(text[end])) ++end;
    if (end == *node.location) return std::string(nodeKindName(node.kind));
    return text.substr(*node.location, end - *node.location);
}

}  // namespace

std::vector<Message> unevaluatedFilterWarnings(const ZMFNode& root, const QuerySource& source) {
    std::vector<Message> warnings;
    std::set<std::string> named;
    DumpTarget walk(&source);
    walk.expandFunctions = true;
    walk.visit = [&](const ZMFNode& node) {
        if (nodeKindState(node.kind) != NodeKindState::Pending) return;
        std::string name = filterName(node, source);
        if (!named.insert(name).second) return;
        warnings.push_back(makeMessage(MessageLevel::Warning,
                                       "'" + name + "' is parsed but not yet evaluated; it matches nothing",
                                       node.location));
    };
    root.dump(walk, true);
    return warnings;
}

}  // namespace tarnfold::zmf
