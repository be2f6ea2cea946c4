// The analysis runs at every position a query asks it for, so a position
// without findings must cost no allocation once the report and the
// thread's scratch lists have grown. Every allocation of this program is
// counted by replacing the global operator new.

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <new>
#include <sstream>
#include <vector>

#include "analysis/position_analysis.h"
#include "tools/san_replay.h"

namespace {
std::atomic<long> allocations{0};
}  // namespace

void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size ? size : 1)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace tarnfold {
namespace {

TEST(AnalysisAllocation, NoneForPositionsWithoutFindings) {
    std::ifstream file(ZMFI_TEST_DATA_DIR "/../../examples/games.pgn", std::ios::binary);
    ASSERT_TRUE(file);
    std::stringstream content;
    content << file.rdbuf();
    std::vector<Board> boards;
    replay::ReplayResult result;
    replay::Replayer(result, [&](const Board& board) { boards.push_back(board); }).run(content.str());
    ASSERT_EQ(boards.size(), 22462u);
    int checks = 0;
    for (const Board& board : boards) checks += board.isInCheck(board.sideToMove);
    EXPECT_EQ(checks, 1558);  // the path through the reverse moves is taken too

    AnalysisReport report;
    // The first pass grows the report, the scratch lists and each board's
    // own move stack.
    for (Board& board : boards) {
        ASSERT_TRUE(analyzePosition(board, report, false));
        ASSERT_TRUE(analyzePosition(board, report, true));
    }
    const long before = allocations.load();
    int passed = 0;
    for (Board& board : boards) {
        passed += analyzePosition(board, report, false);
        passed += analyzePosition(board, report, true);
    }
    EXPECT_EQ(allocations.load() - before, 0);
    EXPECT_EQ(passed, 2 * 22462);

    // A finding allocates, and the analysis says so: the counter works.
    Board illegal;
    ASSERT_TRUE(illegal.setFen("4k3/8/8/8/8/8/8/4R1K1 w - - 0 1"));
    const long beforeFinding = allocations.load();
    EXPECT_FALSE(analyzePosition(illegal, report, true));
    EXPECT_GT(allocations.load() - beforeFinding, 0);
}

}  // namespace
}  // namespace tarnfold
