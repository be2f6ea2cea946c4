#pragma once
// What a parse leaves for the run: the header's settings and the tree.

#include <memory>

#include "query/nodes/structure_nodes.h"
#include "query/query_header.h"
#include "query/sort_slots.h"
#include "query/symbols.h"

namespace tarnfold::zmf {

struct ParsedQuery {
    QueryHeaderSettings header;
    // Null after an error: a partial tree never reaches the engine.
    std::shared_ptr<QueryContainer> root;
    // One per variable of the query, numbered in order of creation.
    std::vector<VariableSlot> variableSlots;
    // One per distinct sort description, in order of appearance.
    std::vector<SortSlot> sortSlots;
};

}  // namespace tarnfold::zmf
