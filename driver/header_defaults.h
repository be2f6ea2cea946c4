#pragma once
// How a query's header completes the options: the command line always wins.

#include "driver/options.h"
#include "query/query_header.h"

namespace tarnfold::zmf {

void applyHeaderDefaults(const QueryHeaderSettings& header, ZMFDriverOptions& options);

}  // namespace tarnfold::zmf
