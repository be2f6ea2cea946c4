#pragma once

// What a run adds up across all games and threads, and the form in which a
// matching game waits for the output: finished text with its sort keys.

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

#include "engine/value.h"
#include "pgn/pgn_parser.h"

namespace tarnfold::zmf {

struct SortKey {
    std::variant<int64_t, std::string> value;
    bool hasValue = false;
    bool ascending = true;
};

struct OutputGame {
    std::vector<SortKey> sortKeys;
    std::string text;
};

// Counts of one thread (or of the single-threaded loop), added to the run's
// totals when it ends.
struct GameCounts {
    uint64_t positions = 0;
    uint32_t gamesOutOfRange = 0;
    uint32_t matchingPositions = 0;
    uint32_t matchingGames = 0;
};

// Process-wide. The locks are never held two at a time.
struct RunTotals {
    uint32_t gamesRead = 0;
    GameCounts counts;
    uint32_t limitCount = 0;
    std::atomic<bool> limitReached{false};
    std::atomic<bool> fatal{false};
    uint32_t activeWorkers = 0;
    std::map<std::string, Value> persistentVariables;
    PGN::PGNParser* sharedScanner = nullptr;
    std::chrono::steady_clock::time_point start;

    std::mutex consoleLock;  // progress, --showmatches, error listings, messages
    std::mutex readerLock;   // sharedScanner, gamesRead
    std::mutex workerCountLock;
    std::condition_variable workersDone;  // with workerCountLock, over activeWorkers
    std::mutex resultsLock;               // the totals at a worker's end
    std::mutex limitLock;                 // limitCount, limitReached
};

RunTotals& runTotals();

}  // namespace tarnfold::zmf
