// The end of a run: the spooled games in their order, then the persistent
// variables and the summary lines.

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>

#include "driver/game_loop.h"
#include "driver/output_spool.h"
#include "driver/path_search.h"
#include "driver/run_totals.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

namespace {

void printPersistentVariables(const ZMFDriverOptions& options) {
    for (const auto& [name, value] : runTotals().persistentVariables) {
        if (value.is(ValueType::Dictionary) && !options.showDictionaries) continue;
        std::cout << "Persistent variable '" << name << "': ";
        if (value.is(ValueType::String))
            std::cout << '"' << renderValue(value, nullptr) << '"';
        else
            std::cout << renderValue(value, nullptr);
        std::cout << "\n";
    }
}

void printSummary(const ZMFDriverOptions& options, unsigned threadsUsed) {
    RunTotals& totals = runTotals();
    const GameCounts& counts = totals.counts;
    std::printf("%u ZMF matches (in %u game%s) written to %s\n", counts.matchingPositions,
                counts.matchingGames, counts.matchingGames == 1 ? "" : "s", options.outputFile.c_str());
    const int games = int(totals.gamesRead - counts.gamesOutOfRange);
    const auto elapsed = std::chrono::steady_clock::now() - totals.start;
    const double seconds =
        double(std::chrono::duration_cast<std::chrono::nanoseconds>(elapsed).count()) / 1e9;
    // A run too short to measure still prints finite rates.
    const double divisor = seconds > 0 ? seconds : 1e-9;
    std::printf("Analyzed %d games with %llu positions in %.4g seconds using %u thread%s (%d g/s, %d p/s)\n",
                games, static_cast<unsigned long long>(counts.positions), seconds, threadsUsed,
                threadsUsed < 2 ? "" : "s", int(games / divisor), int(double(counts.positions) / divisor));
    std::fflush(stdout);
}

}  // namespace

void nameOutput(ZMFDriverOptions& options) {
    if (!options.outputFile.empty()) return;
    std::string stem = fileStem(options.queryFile);
    if (stem.empty()) stem = "zmfdefault";
    options.outputFile = stem + "-out.pgn";
    options.appendOutput = false;
}

std::string outputToReplace(const ZMFDriverOptions& options) {
    if (options.outputFile == "stdout" || options.appendOutput) return {};
    return options.outputFile;
}

namespace {

// Opens the output and copies the spooled games into it; false, with the
// message printed, when it cannot.
bool copyOutput(const ZMFDriverOptions& options) {
    const bool toStdout = options.outputFile == "stdout";
    std::ofstream file;
    if (!toStdout) {
        file.open(options.outputFile,
                  std::ios::binary | (options.appendOutput ? std::ios::app : std::ios::trunc));
        if (!file) {
            std::cout << "Failed to open output file '" << options.outputFile << "': " << std::strerror(errno)
                      << "\n"
                      << std::flush;
            return false;
        }
    }
    std::ostream& out = toStdout ? std::cout : file;
    std::string error;
    if (!outputSpool().copyTo(out, error) || !out) {
        if (error.empty()) error = std::strerror(errno);
        std::cout << "Failed to write output file '" << options.outputFile << "': " << error << "\n" << std::flush;
        return false;
    }
    return true;
}

}  // namespace

bool writeOutput(const ZMFDriverOptions& options, unsigned threadsUsed) {
    std::cout << std::flush;
    // Games in input order are already in a file beside the output: a
    // rename puts them in place. Otherwise they are copied.
    const std::string replaced = outputToReplace(options);
    const bool renamed = !replaced.empty() && outputSpool().becomeFile(replaced);
    if (!renamed && !copyOutput(options)) return false;
    printPersistentVariables(options);
    std::cout << std::flush;
    printSummary(options, threadsUsed);
    return true;
}

}  // namespace tarnfold::zmf
