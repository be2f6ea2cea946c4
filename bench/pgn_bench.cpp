// PGN throughput over a large file made from the standard corpus: (a) cutting
// game texts with readGameText alone, (b) reading into game trees with every
// move checked, (c) reading and writing every game back as PGN. In the same
// run pgn-extract reads and writes the same file, for comparison.
//
//   pgn_bench [--copies N] [--corpus FILE] [--pgn-extract PATH] [--keep]

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include "pgn/pgn_reader.h"
#include "pgn/pgn_writer.h"

using namespace tarnfold;
using namespace tarnfold::PGN;

namespace {

using Clock = std::chrono::steady_clock;

struct Options {
    int copies = 80;
    std::string corpus = ZMFI_CORPUS_DIR "/standard.pgn";
    std::string pgnExtract = "/usr/games/pgn-extract";
    bool keep = false;
};

double since(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

// The corpus repeated; games keep their text, so every copy reads the same.
std::string makeBigFile(const Options& options, size_t& bytes) {
    std::ifstream corpus(options.corpus, std::ios::binary);
    if (!corpus) {
        std::fprintf(stderr, "pgn_bench: cannot read %s\n", options.corpus.c_str());
        std::exit(2);
    }
    std::stringstream content;
    content << corpus.rdbuf();
    const std::string text = content.str();
    const std::string path = (std::filesystem::temp_directory_path() / "zmfi-pgn-bench.pgn").string();
    std::ofstream big(path, std::ios::binary);
    for (int i = 0; i < options.copies; ++i) big << text << "\n";
    bytes = size_t(options.copies) * (text.size() + 1);
    return path;
}

struct Result {
    double seconds = 0;
    uint64_t games = 0;
};

Result scanOnly(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    PGNParser scanner(file);
    scanner.skipByteOrderMark();
    std::string text;
    Result result;
    const auto start = Clock::now();
    while (scanner.readGameText(text)) ++result.games;
    result.seconds = since(start);
    return result;
}

Result readAndMaybeWrite(const std::string& path, const std::string& output) {
    std::ifstream file(path, std::ios::binary);
    std::ofstream out;
    if (!output.empty()) out.open(output, std::ios::binary);
    PGNReader reader(file, false);
    reader.skipByteOrderMark();
    Game<AnnotatedGameTreeNode> game;
    reader.game = &game;
    const PGNWriteOptions options;
    Result result;
    const auto start = Clock::now();
    for (;;) {
        game.reset();
        reader.clearGameState();
        if (reader.read() == 2) break;
        ++result.games;
        if (output.empty()) continue;
        game.rewind();
        out << gameToPgn(options, game) << '\n';
    }
    out.flush();
    result.seconds = since(start);
    return result;
}

// Wall time of pgn-extract -s -o OUT FILE; negative when it cannot run.
double runPgnExtract(const Options& options, const std::string& path, const std::string& output) {
    if (access(options.pgnExtract.c_str(), X_OK) != 0) return -1;
    const auto start = Clock::now();
    const pid_t pid = fork();
    if (pid == 0) {
        // Its complaints about the file are not what is measured.
        const int devNull = open("/dev/null", O_WRONLY);
        if (devNull >= 0) {
            dup2(devNull, STDOUT_FILENO);
            dup2(devNull, STDERR_FILENO);
        }
        execl(options.pgnExtract.c_str(), options.pgnExtract.c_str(), "-s", "-o", output.c_str(),
              path.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    int status = 0;
    if (pid < 0 || waitpid(pid, &status, 0) < 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 0) return -1;
    return since(start);
}

void printRow(const char* name, const Result& result, size_t bytes) {
    std::printf("%-28s %8.3f s %10.0f games/s %8.1f MB/s\n", name, result.seconds,
                result.games / result.seconds, bytes / result.seconds / 1e6);
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view arg = argv[i];
        if (arg == "--copies" && i + 1 < argc) {
            options.copies = std::max(1, std::atoi(argv[++i]));
        } else if (arg == "--corpus" && i + 1 < argc) {
            options.corpus = argv[++i];
        } else if (arg == "--pgn-extract" && i + 1 < argc) {
            options.pgnExtract = argv[++i];
        } else if (arg == "--keep") {
            options.keep = true;
        } else {
            std::fputs("usage: pgn_bench [--copies N] [--corpus FILE] [--pgn-extract PATH] [--keep]\n",
                       stderr);
            return 2;
        }
    }
    size_t bytes = 0;
    const std::string path = makeBigFile(options, bytes);
    const std::string ours = path + ".out", theirs = path + ".pgn-extract.out";

    const Result scanned = scanOnly(path);
    const Result read = readAndMaybeWrite(path, "");
    const Result written = readAndMaybeWrite(path, ours);
    std::printf("%llu games, %.1f MB, single thread\n", static_cast<unsigned long long>(scanned.games),
                bytes / 1e6);
    printRow("(a) readGameText", scanned, bytes);
    printRow("(b) read into trees", read, bytes);
    printRow("(c) read and write", written, bytes);
    if (read.games != scanned.games || written.games != scanned.games) {
        std::fprintf(stderr, "pgn_bench: the modes counted different games\n");
        return 1;
    }
    const double extract = runPgnExtract(options, path, theirs);
    if (extract < 0) {
        std::printf("pgn-extract could not run (%s); our figures only\n", options.pgnExtract.c_str());
    } else {
        printRow("pgn-extract -s -o", {extract, scanned.games}, bytes);
        std::printf("(c) time / pgn-extract time = %.2f (target < 1)\n", written.seconds / extract);
    }
    if (!options.keep) {
        std::filesystem::remove(path);
        std::filesystem::remove(ours);
        std::filesystem::remove(theirs);
    }
    return 0;
}
