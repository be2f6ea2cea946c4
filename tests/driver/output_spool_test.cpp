#include "driver/output_spool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace tarnfold::zmf {
namespace {

OutputGame gameText(uint32_t number) {
    OutputGame game;
    // Texts of very different lengths, so that a slot reused for a shorter
    // game must not keep the longer one's tail.
    game.text = "game " + std::to_string(number) + std::string(number % 7 == 0 ? 300 : number % 5, '.');
    return game;
}

// Every number whose game is written (here: not a multiple of 3), in order.
std::string expectedOutput(uint32_t last, uint32_t skipped = 0) {
    std::string out;
    for (uint32_t number = 1; number <= last; ++number)
        if (number % 3 != 0 && number != skipped) out += gameText(number).text + "\n";
    return out;
}

void settleNumber(OutputSpool& spool, uint32_t number) {
    if (number % 3 == 0) {
        spool.settle(number, nullptr);
    } else {
        const OutputGame game = gameText(number);
        spool.settle(number, &game);
    }
}

std::string copied(OutputSpool& spool) {
    std::ostringstream out;
    std::string error;
    EXPECT_TRUE(spool.copyTo(out, error)) << error;
    EXPECT_EQ(error, "");
    return out.str();
}

TEST(OutputSpool, WritesInInputOrderWhateverOrderGamesAreSettledIn) {
    // Four threads taking numbers in turn and finishing them at different
    // speeds, through a window of four: early games wait, the window fills
    // and empties, and its slots are reused many times over; the games in
    // order are written every few hundred bytes while others are settled.
    OutputSpool spool;
    spool.reset(false);
    spool.windowGames = 4;
    spool.pendingBytes = 200;
    constexpr uint32_t games = 3000;
    std::atomic<uint32_t> next{0};
    std::vector<std::thread> workers;
    for (int worker = 0; worker < 4; ++worker) {
        workers.emplace_back([&spool, &next, worker] {
            for (uint32_t number = ++next; number <= games; number = ++next) {
                if ((number + uint32_t(worker)) % 11 == 0) std::this_thread::yield();
                settleNumber(spool, number);
            }
        });
    }
    for (std::thread& worker : workers) worker.join();
    EXPECT_EQ(copied(spool), expectedOutput(games));

    // Settled backwards, every game but the first is early: the ring grows to
    // hold numbers far ahead of the one due, and the first releases them all.
    spool.reset(false);
    spool.windowGames = 1000;
    for (uint32_t number = 900; number >= 2; --number) settleNumber(spool, number);
    settleNumber(spool, 1);
    EXPECT_EQ(copied(spool), expectedOutput(900));

    // A number never settled (a worker that stopped) leaves a gap; the games
    // after it still go out, in order.
    spool.reset(false);
    for (uint32_t number : {1u, 2u, 5u, 3u, 8u, 7u, 6u}) settleNumber(spool, number);
    EXPECT_EQ(copied(spool), expectedOutput(8, 4));
}

TEST(OutputSpool, SortedRunsMergeWithTiesInInputOrder) {
    // Keys 0..4 repeating; runs of a few games each are spilled and merged.
    OutputSpool spool;
    spool.reset(true);
    spool.runBytes = 40;
    std::vector<std::string> expected(5);
    for (uint32_t number = 1; number <= 60; ++number) {
        OutputGame game = gameText(number);
        SortKey key;
        key.value = int64_t(number % 5);
        key.hasValue = number % 13 != 0;
        game.sortKeys.push_back(key);
        spool.settle(number, &game);
        if (key.hasValue) expected[number % 5] += game.text + "\n";
    }
    std::string whole;
    for (const std::string& part : expected) whole += part;
    // Games without a value go last, in their order.
    for (uint32_t number : {13u, 26u, 39u, 52u}) whole += gameText(number).text + "\n";
    EXPECT_EQ(copied(spool), whole);
}

}  // namespace
}  // namespace tarnfold::zmf
