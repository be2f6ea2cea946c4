#pragma once

#include <istream>

#include "driver/options.h"
#include "query/parsed_query.h"

namespace tarnfold::zmf {

// Both return the number of threads that ran the games.
unsigned runSingleThreaded(const ZMFDriverOptions& options, ParsedQuery& query, std::istream& input);
unsigned runWorkers(const ZMFDriverOptions& options, std::istream& input, unsigned count);

// Writes the collected games, the persistent variables and the summary;
// false when the output cannot be opened. The output is named (nameOutput).
bool writeOutput(const ZMFDriverOptions& options, unsigned threadsUsed);
// The output file's name when neither the command line nor the query named
// one; known before the run, so that the games can be spooled beside it.
void nameOutput(ZMFDriverOptions& options);
// The output file the spooled games may take the place of: none for
// standard output or when appending.
std::string outputToReplace(const ZMFDriverOptions& options);

}  // namespace tarnfold::zmf
