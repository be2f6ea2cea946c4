// The two ways of running the games: one loop on the main thread, or a pool
// of detached workers that take game texts from one shared scanner.

#include "driver/game_loop.h"

#include <array>
#include <istream>
#include <memory>
#include <mutex>
#include <streambuf>
#include <string>
#include <thread>

#include "driver/brief_lock.h"
#include "driver/output_spool.h"
#include "driver/process_game.h"
#include "pgn/pgn_reader.h"
#include "query/parser.h"

namespace tarnfold::zmf {

namespace {

bool shouldSkip(const RunGame& game, const ZMFDriverOptions& options) {
    return game.board.variant == Unknown && options.skipUnknownVariants;
}

bool resultFilterRejects(const RunGame& game, const ZMFDriverOptions& options) {
    return options.hasResultFilter && game.result != options.resultFilter;
}

enum class Range { Inside, Before, After };

// --gamenumber: games before the range are counted and passed over; the
// first game after it ends the reading.
Range inRange(const ZMFDriverOptions& options, uint32_t number) {
    if (options.gameNumberFirst == 0) return Range::Inside;
    if (number < options.gameNumberFirst) return Range::Before;
    return number > options.gameNumberLast ? Range::After : Range::Inside;
}

void addCounts(const GameCounts& from) {
    GameCounts& to = runTotals().counts;
    to.positions += from.positions;
    to.gamesOutOfRange += from.gamesOutOfRange;
    to.matchingPositions += from.matchingPositions;
    to.matchingGames += from.matchingGames;
}

// Reads a game's text where it lies, without copying it into a stream.
class TextView : public std::streambuf {
public:
    void show(const std::string& text) {
        char* begin = const_cast<char*>(text.data());
        setg(begin, begin, begin + text.size());
    }
};

// Everything a worker owns: its copy of the options, its own parse of the
// query, and its game, reader and engine.
struct WorkerContext {
    ZMFDriverOptions options;
};

// The games a worker takes at one turn of the reader lock. Taking a few at a
// time keeps the scanner, and the text just read, in one core's cache for
// several games, and makes a quarter as many turns at the lock.
class TakenGames {
public:
    static constexpr size_t perTurn = 4;

    // False when the input is used up.
    bool take() {
        RunTotals& totals = runTotals();
        count_ = next_ = 0;
        const auto lock = lockBriefly(totals.readerLock);
        while (count_ < perTurn) {
            Taken& game = games_[count_];
            game.start = totals.sharedScanner->position();
            if (!totals.sharedScanner->readGameText(game.text)) break;
            game.number = ++totals.gamesRead;
            ++count_;
        }
        return count_ > 0;
    }
    bool empty() const { return next_ == count_; }

    struct Taken {
        std::string text;
        PGN::PGNPosition start;
        uint32_t number = 0;
    };
    Taken& next() { return games_[next_++]; }

    // A worker that stops settles the games it took and did not look at,
    // counted with those outside the range, as the loop on one thread
    // would not have read them.
    void giveUp(GameCounts& counts) {
        for (; next_ < count_; ++next_) {
            outputSpool().settle(games_[next_].number, nullptr);
            ++counts.gamesOutOfRange;
        }
    }

private:
    std::array<Taken, perTurn> games_;
    size_t count_ = 0;
    size_t next_ = 0;
};

void workerLoop(const ZMFDriverOptions& options, ParsedQuery& query) {
    RunTotals& totals = runTotals();
    OutputSpool& spool = outputSpool();
    RunGame game;
    ZMFEngine engine;
    setUpEngine(engine, options);
    GameCounts counts;
    OutputGame output;
    TakenGames taken;
    // One reader for all the worker's games, pointed at each text in turn.
    TextView view;
    std::istream stream(&view);
    PGN::PGNReader reader(stream, options.nestedComments, options.variantAliases);
    reader.game = &game;
    for (;;) {
        if (totals.fatal || totals.limitReached) break;
        if (taken.empty() && !taken.take()) break;
        game.reset();
        const TakenGames::Taken& next = taken.next();
        const uint32_t number = next.number;
        // Every number taken is settled, with a game or without, so that
        // the games after it can go out in order.
        bool written = false;
        const Range range = inRange(options, number);
        if (range != Range::Inside) ++counts.gamesOutOfRange;
        if (range != Range::Inside) {
            spool.settle(number, nullptr);
            if (range == Range::After) break;
            continue;
        }
        view.show(next.text);
        stream.clear();
        reader.setPosition(next.start);
        reader.clearGameState();
        const int status = reader.read();
        const bool skip = shouldSkip(game, options);
        if (status != 0 && !skip) listErrors(reader.errors, number);
        showProgress(number, options);
        const bool goOn = skip || resultFilterRejects(game, options) ||
                          processGame(options, query, engine, game, number, true, counts, output, written);
        spool.settle(number, written ? &output : nullptr);
        if (!goOn) break;
    }
    taken.giveUp(counts);
    counts.positions = engine.positionsTotal;
    std::lock_guard lock(totals.resultsLock);
    addCounts(counts);
    foldPersistentVariables(query, engine, totals.persistentVariables);
}

void workerMain(std::unique_ptr<WorkerContext> context) {
    // Each worker parses the query by itself, so that no part of the tree or
    // of its variable slots is shared between threads.
    Parser parser;
    parser.secureMode = context->options.secure;
    parser.finalPass = true;
    parser.keepCompounds = false;
    parser.keepParens = false;
    ParsedQuery query = parser.parseQuery(context->options.querySource);
    if (query.root) workerLoop(context->options, query);
    RunTotals& totals = runTotals();
    std::lock_guard lock(totals.workerCountLock);
    --totals.activeWorkers;
    totals.workersDone.notify_all();
}

}  // namespace

unsigned runSingleThreaded(const ZMFDriverOptions& options, ParsedQuery& query, std::istream& input) {
    RunTotals& totals = runTotals();
    OutputSpool& spool = outputSpool();
    PGN::PGNReader reader(input, options.nestedComments, options.variantAliases);
    reader.skipByteOrderMark();
    RunGame game;
    reader.game = &game;
    ZMFEngine engine;
    setUpEngine(engine, options);
    GameCounts counts;
    OutputGame output;
    for (;;) {
        game.reset();
        reader.clearGameState();
        const int status = reader.read();
        if (status == 2) break;
        const bool skip = shouldSkip(game, options);
        if (status == 1 && !skip) listErrors(reader.errors, totals.gamesRead + 1);
        const uint32_t number = ++totals.gamesRead;
        bool written = false;
        const Range range = inRange(options, number);
        if (range != Range::Inside) ++counts.gamesOutOfRange;
        if (range != Range::Inside) {
            spool.settle(number, nullptr);
            if (range == Range::After) break;
            continue;
        }
        showProgress(number, options);
        const bool goOn = skip || resultFilterRejects(game, options) ||
                          processGame(options, query, engine, game, number, false, counts, output, written);
        spool.settle(number, written ? &output : nullptr);
        if (!goOn) break;
    }
    counts.positions = engine.positionsTotal;
    addCounts(counts);
    collectPersistentVariables(query, engine, totals.persistentVariables);
    return 1;
}

unsigned runWorkers(const ZMFDriverOptions& options, std::istream& input, unsigned count) {
    RunTotals& totals = runTotals();
    PGN::PGNParser scanner(input);
    scanner.skipByteOrderMark();
    totals.sharedScanner = &scanner;
    for (unsigned i = 0; i < count; ++i) {
        auto context = std::make_unique<WorkerContext>(WorkerContext{options});
        {
            std::lock_guard lock(totals.workerCountLock);
            ++totals.activeWorkers;
        }
        std::thread(workerMain, std::move(context)).detach();
    }
    std::unique_lock lock(totals.workerCountLock);
    totals.workersDone.wait(lock, [&] { return totals.activeWorkers == 0; });
    totals.sharedScanner = nullptr;
    return count;
}

}  // namespace tarnfold::zmf
