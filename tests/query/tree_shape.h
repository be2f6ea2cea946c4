#pragma once
// The parsed tree as the dump writes it, for comparing a query with its
// printed form read back.

#include <string>

#include "query/dump_target.h"
#include "query/node.h"

namespace tarnfold::zmf {

// Without locations, which differ between the two texts. The printer
// parenthesises an operand that was obtained by precedence vitiation, so the
// reparse needs no vitiation: the mark may differ.
inline std::string treeShape(const ZMFNode& root) {
    DumpTarget dump(nullptr, false, false);
    dump.expandFunctions = true;
    dump.expandTransforms = true;
    root.dump(dump, true);
    std::string text = dump.take();
    const std::string mark = " (vitiated precedence)";
    for (std::size_t at; (at = text.find(mark)) != std::string::npos;) text.erase(at, mark.size());
    return text;
}

}  // namespace tarnfold::zmf
