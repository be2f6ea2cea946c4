#pragma once

#include <istream>

#include "driver/options.h"
#include "query/parsed_query.h"

namespace tarnfold::zmf {

// Both return the number of threads that ran the games.
unsigned runSingleThreaded(const ZMFDriverOptions& options, ParsedQuery& query, std::istream& input);
unsigned runWorkers(const ZMFDriverOptions& options, std::istream& input, unsigned count);

// Writes the collected games, the persistent variables and the summary;
// false when the output cannot be opened.
bool writeOutput(ZMFDriverOptions& options, unsigned threadsUsed);

}  // namespace tarnfold::zmf
