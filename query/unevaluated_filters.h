#pragma once
// A query may hold filters that the parser knows but the engine does not
// evaluate yet; they match nothing, and a run says so before the first game
// instead of leaving the user to wonder.

#include <vector>

#include "query/message.h"
#include "query/node.h"

namespace tarnfold::zmf {

// One warning for each such filter, at its first place in the query, in the
// order of the tree. Function bodies are looked into at each call.
std::vector<Message> unevaluatedFilterWarnings(const ZMFNode& root, const QuerySource& source);

}  // namespace tarnfold::zmf
