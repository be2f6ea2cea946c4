#pragma once
// Shows the diagnostics of a parse on the console, filtered by --warnlevel,
// with a pointer back to the command line for text that an option injected.

#include <cstdint>
#include <ostream>
#include <vector>

#include "query/message.h"
#include "query/query_source.h"

namespace tarnfold::zmf {

bool isMessageShown(MessageLevel level, std::uint32_t warnLevel);

void printDiagnostics(const std::vector<Message>& messages, const QuerySource& source,
                      std::uint32_t warnLevel, std::ostream& out);

}  // namespace tarnfold::zmf
