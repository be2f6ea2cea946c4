// Move generation speed, measured by perft and compared with Stockfish.
//
//   perft_bench [--quick] [--repeat N] [--stockfish PATH]
//
// Both of our counting modes run on each position, best of N; Stockfish's
// "go perft" on the same position and depth gives the yardstick and a
// second opinion on the node count.

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "chess/board.h"
#include "chess/perft.h"

using namespace tarnfold;

namespace {

using Clock = std::chrono::steady_clock;

struct Position {
    const char* name;
    const char* fen;
    int depth;
    int quickDepth;
};

constexpr Position positions[] = {
    {"start", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 6, 5},
    {"kiwipete", "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", 5, 4},
};

struct Options {
    bool quick = false;
    int repeat = 3;
    std::string stockfish = "/usr/games/stockfish";
};

struct Timing {
    uint64_t nodes = 0;
    double seconds = 0;
};

double seconds(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double mnps(const Timing& t) { return t.seconds > 0 ? t.nodes / t.seconds / 1e6 : 0.0; }

int usage() {
    std::fputs("usage: perft_bench [--quick] [--repeat N] [--stockfish PATH]\n", stderr);
    return 2;
}

std::optional<Options> parseOptions(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view arg = argv[i];
        if (arg == "--quick") {
            options.quick = true;
        } else if (arg == "--repeat" && i + 1 < argc) {
            char* end = nullptr;
            const long n = std::strtol(argv[++i], &end, 10);
            if (*end || n < 1 || n > 100) return std::nullopt;
            options.repeat = int(n);
        } else if (arg == "--stockfish" && i + 1 < argc) {
            options.stockfish = argv[++i];
        } else {
            return std::nullopt;
        }
    }
    return options;
}

// Best of the runs; a run whose count differs from the first is a fault in
// make/unmake leaving the board changed, so it is reported as a zero count.
template <typename Count>
Timing timeOurs(Board& board, int depth, int repeat, Count count) {
    Timing best;
    for (int run = 0; run < repeat; ++run) {
        const auto start = Clock::now();
        const uint64_t nodes = count(board, depth);
        const double elapsed = seconds(start);
        if (run > 0 && nodes != best.nodes) return Timing{0, 0};
        if (run == 0 || elapsed < best.seconds) best.seconds = elapsed;
        best.nodes = nodes;
    }
    return best;
}

// Reads lines until one starts with the marker; the line, or nothing at the
// end of the output.
std::optional<std::string> readUntil(FILE* out, std::string_view marker) {
    char* line = nullptr;
    size_t capacity = 0;
    std::optional<std::string> found;
    while (getline(&line, &capacity, out) >= 0) {
        if (std::string_view(line).starts_with(marker)) {
            found = line;
            break;
        }
    }
    std::free(line);
    return found;
}

bool send(int fd, const std::string& text) {
    return write(fd, text.data(), text.size()) == ssize_t(text.size());
}

// One Stockfish session: it is started and given the position first, and the
// clock runs only from "go perft" to its "Nodes searched" line, so that its
// start-up (which varies a lot from run to run) is not counted. Nothing if
// it could not be run or said nothing.
std::optional<Timing> runStockfish(const std::string& path, const char* fen, int depth) {
    int toChild[2], fromChild[2];
    if (pipe(toChild) != 0) return std::nullopt;
    if (pipe(fromChild) != 0) {
        close(toChild[0]);
        close(toChild[1]);
        return std::nullopt;
    }
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(toChild[0], STDIN_FILENO);
        dup2(fromChild[1], STDOUT_FILENO);
        const int devNull = open("/dev/null", O_WRONLY);
        if (devNull >= 0) dup2(devNull, STDERR_FILENO);
        close(toChild[0]);
        close(toChild[1]);
        close(fromChild[0]);
        close(fromChild[1]);
        execl(path.c_str(), path.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    close(toChild[0]);
    close(fromChild[1]);
    if (pid < 0) {
        close(toChild[1]);
        close(fromChild[0]);
        return std::nullopt;
    }

    std::optional<Timing> result;
    FILE* out = fdopen(fromChild[0], "r");
    if (out && send(toChild[1], "uci\nposition fen " + std::string(fen) + "\nisready\n") &&
        readUntil(out, "readyok")) {
        const auto start = Clock::now();
        constexpr std::string_view marker = "Nodes searched:";
        std::optional<std::string> line;
        if (send(toChild[1], "go perft " + std::to_string(depth) + "\n") && (line = readUntil(out, marker)))
            result = Timing{std::strtoull(line->c_str() + marker.size(), nullptr, 10), seconds(start)};
    }
    send(toChild[1], "quit\n");
    close(toChild[1]);
    if (out) {
        std::fclose(out);
    } else {
        close(fromChild[0]);
    }
    waitpid(pid, nullptr, 0);
    return result;
}

std::optional<Timing> bestStockfish(const Options& options, const char* fen, int depth) {
    std::optional<Timing> best;
    for (int run = 0; run < options.repeat; ++run) {
        const std::optional<Timing> timing = runStockfish(options.stockfish, fen, depth);
        if (!timing) return std::nullopt;
        if (!best || timing->seconds < best->seconds) best = timing;
    }
    return best;
}

void printRow(const char* name, int depth, const char* counter, const Timing& t) {
    std::printf("%-9s %5d  %-10s %12llu %9.3f %9.2f\n", name, depth, counter,
                static_cast<unsigned long long>(t.nodes), t.seconds, mnps(t));
}

// False if Stockfish counts differently; a disagreement between our own two
// modes ends the run at once, since then neither count can be trusted.
bool benchPosition(const Position& position, const Options& options, bool withStockfish) {
    const int depth = options.quick ? position.quickDepth : position.depth;
    Board board;
    if (!board.setFen(position.fen)) {
        std::fprintf(stderr, "perft_bench: cannot read the FEN of %s\n", position.name);
        return false;
    }
    const Timing a = timeOurs(board, depth, options.repeat, perft);
    const Timing b = timeOurs(board, depth, options.repeat, perftMakingEveryMove);
    printRow(position.name, depth, "mode a", a);
    printRow("", depth, "mode b", b);
    if (a.nodes == 0 || a.nodes != b.nodes) {
        std::fprintf(stderr,
                     "perft_bench: %s depth %d: mode a counts %llu, mode b %llu (or a repeat differed)\n",
                     position.name, depth, static_cast<unsigned long long>(a.nodes),
                     static_cast<unsigned long long>(b.nodes));
        std::exit(1);
    }
    if (!withStockfish) return true;

    const std::optional<Timing> stockfish = bestStockfish(options, position.fen, depth);
    if (!stockfish) {
        std::printf("stockfish gave no node count for %s; skipped\n\n", position.name);
        return true;
    }
    const Timing sf = *stockfish;
    printRow("", depth, "stockfish", sf);
    if (sf.nodes != a.nodes) {
        // Speeds over different trees say nothing, so no ratio.
        std::printf("  *** NODE COUNT MISMATCH: stockfish %llu, ours %llu ***\n\n",
                    static_cast<unsigned long long>(sf.nodes), static_cast<unsigned long long>(a.nodes));
        return false;
    }
    std::printf("  mode a / stockfish = %.2f (target >= 0.50)   mode b / stockfish = %.2f\n\n",
                mnps(a) / mnps(sf), mnps(b) / mnps(sf));
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    const std::optional<Options> options = parseOptions(argc, argv);
    if (!options) return usage();
    // A Stockfish that dies before reading its commands must not kill us.
    std::signal(SIGPIPE, SIG_IGN);

    const bool withStockfish = access(options->stockfish.c_str(), X_OK) == 0;
    if (!withStockfish) std::printf("no stockfish at %s; our figures only\n", options->stockfish.c_str());
    std::printf(
        "best of %d, single thread; mode a counts the last ply from the move list, mode b makes it\n\n",
        options->repeat);
    std::printf("%-9s %5s  %-10s %12s %9s %9s\n", "position", "depth", "counter", "nodes", "seconds",
                "Mnodes/s");

    bool agree = true;
    for (const Position& position : positions)
        agree = benchPosition(position, *options, withStockfish) && agree;
    return agree ? 0 : 1;
}
