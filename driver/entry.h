#pragma once

#include "driver/options.h"

namespace tarnfold::zmf {

// The whole program from the first instruction to the exit code.
int zmfiMain(int argc, char** argv);

// Parses the query, runs it over the input and writes the result; true on
// success.
bool runQuery(ZMFDriverOptions& options);

}  // namespace tarnfold::zmf
