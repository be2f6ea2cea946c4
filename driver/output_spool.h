#pragma once
// Where the matching games wait for the end of the run. The output file is
// only written once the run is over (a failing query writes nothing), but the
// games do not wait in memory: their text goes to an unnamed file (beside
// the output when it can) as soon as its place in the output is known, so
// that memory does not grow with the number of games written.
//
// Without sort keys the output order is the input order: a game is written
// once every game before it is settled. Worker threads settle games out of
// order; a small window holds those that are early, and a worker that runs
// too far ahead waits. The window's texts are copies kept in strings that
// keep their room from game to game: a text made by one thread and freed by
// another would make the threads meet on the allocator's locks. With sort
// keys, games are gathered into runs of a bounded size, each sorted and
// spilled to a file of its own, and the runs are merged at the end; ties
// keep the input order.

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <ostream>
#include <vector>

#include "driver/run_totals.h"

namespace tarnfold::zmf {

// Whether a comes before b in the output: by the sort keys in turn, a game
// without a value for a key after those with one.
bool gameLess(const OutputGame& a, const OutputGame& b);

class OutputSpool {
public:
    OutputSpool();
    ~OutputSpool();
    OutputSpool(const OutputSpool&) = delete;
    OutputSpool& operator=(const OutputSpool&) = delete;

    // Forgets every game; `sorted` when the games carry sort keys. With an
    // output path, the spool file is made in that file's folder, so that at
    // the end it can take the output's place by a rename instead of a copy;
    // without one, in the system's temporary folder.
    void reset(bool sorted, const std::string& outputPath = {});

    // The game with this number is settled: with its output, or with none
    // (game null). Every number handed out must be settled once, in any
    // order. Safe to call from several threads. May wait while the window is
    // full.
    void settle(uint32_t number, const OutputGame* game);

    // Writes every game in its order. False when the spool could not be
    // written or read back; `error` then says why.
    bool copyTo(std::ostream& out, std::string& error);

    // Makes the spool file the output file at path, when it can: games in
    // input order, the spool made beside path, and path new or a plain file
    // of the user's own that may be written (its mode is kept). False when
    // it cannot, and nothing has changed: copyTo then writes the output.
    bool becomeFile(const std::string& path);

    // Stops threads waiting for room: the run is over without output.
    void abandon();

    // How many bytes of game text a sorted run gathers before it is
    // spilled; small values let tests exercise the merge.
    std::size_t runBytes = std::size_t(32) << 20;
    // How many games the window may hold ahead of the next one due: enough
    // for a game many times as long as most to hold up only itself.
    std::size_t windowGames = 64;
    // How many bytes of games in order gather before they are written; small
    // values let tests make the writes meet the threads settling games.
    std::size_t pendingBytes = std::size_t(1) << 20;

private:
    void appendText(const std::string& text);
    void writePendingOutside(std::unique_lock<std::mutex>& guard);
    void writeChunk(std::FILE* file, const std::string& chunk);
    bool writeAllPending();
    void openSpool();
    void writeEarlyLeft();
    void writeInOrder(uint32_t number, const std::string* text);
    struct EarlyGame {
        bool settled = false;
        bool hasText = false;
        std::string text;
    };
    // The slot of a number ahead of the next one due; the ring grows when
    // the number is further ahead than it reaches.
    EarlyGame& earlySlot(uint32_t number);
    void takeFromSlot(EarlyGame& slot);
    void spillRun();
    bool mergeRuns(std::ostream& out, std::string& error);

    bool sorted_ = false;
    std::mutex lock_;
    std::condition_variable room_;
    bool abandoned_ = false;
    // Set by a write outside the lock too.
    std::atomic<bool> failed_{false};

    // Input order: the spool file, the next number due and the early ones,
    // in a ring (its size a power of two) where number n has slot n mod size.
    std::FILE* spool_ = nullptr;
    // The folder of the output file, and whether the spool file was made
    // there, unnamed.
    std::string outputFolder_;
    bool spoolBesideOutput_ = false;
    uint32_t nextNumber_ = 1;
    std::vector<EarlyGame> early_;
    std::size_t earlyCount_ = 0;
    // Games in order not yet in the file, and the megabyte being written,
    // under fileLock_, after the spool's lock is let go.
    std::string pending_;
    std::string writing_;
    std::mutex fileLock_;

    // Sorted: the games of the run being gathered, and the spilled runs.
    std::vector<OutputGame> gathered_;
    std::size_t gatheredBytes_ = 0;
    std::vector<std::FILE*> runs_;
    std::FILE* temporaryFile(bool besideOutput);
};

OutputSpool& outputSpool();

}  // namespace tarnfold::zmf
