#pragma once
// The command line: options into ZMFDriverOptions, and the query text built
// from the query file and from the filters that options inject.

#include <string>
#include <string_view>
#include <vector>

#include "driver/options.h"

namespace tarnfold::zmf {

// An option is at least two characters starting with '-'; one or two leading
// dashes and letter case do not matter, and there are no abbreviations.
bool matchOption(std::string_view argument, std::string_view name);

// Stops at the first error and leaves the whole message in `error`. A query
// file that cannot be read fails with `error` empty: its reader has already
// printed why.
// Every option name the command line accepts, short aliases included,
// without dashes.
std::vector<std::string> knownOptionNames();

bool parseCommandLine(const std::vector<std::string>& arguments, ZMFDriverOptions& options,
                      std::string& error);

}  // namespace tarnfold::zmf
