// The conversation with programs behind pipes, against small shell scripts
// in tests/data/external that misbehave in one way each.

#include <gtest/gtest.h>

#include <csignal>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "external/command_pipe.h"

namespace tarnfold::zmf {
namespace {

const std::string scripts = ZMFI_TEST_DATA_DIR "/external/";

// Strings joined by append: GCC 12 warns falsely on chains of +.
std::string join(std::initializer_list<std::string_view> pieces) {
    std::string text;
    for (std::string_view piece : pieces) text.append(piece);
    return text;
}

std::vector<std::string> script(const std::string& name) { return {"sh", join({scripts, name})}; }

std::string name(const std::vector<std::string>& arguments, CommandPipeTable& table) {
    std::string text = "'";
    for (size_t i = 0; i < arguments.size(); ++i) text.append(i ? " " : "").append(arguments[i]);
    return text.append("' (pid ").append(std::to_string(table.pidOf(arguments))).append(")");
}

class CommandPipe : public ::testing::Test {
protected:
    // As zmfi itself runs: a program that died must not take the process
    // with it through its pipe, and children are not waited for.
    void SetUp() override {
        std::signal(SIGPIPE, SIG_IGN);
        std::signal(SIGCHLD, SIG_IGN);
    }

    // One request; the response or the failure's text.
    std::string ask(const std::vector<std::string>& arguments, const std::string& request, bool expectOk,
                    PipeTimeouts timeouts = {}) {
        std::string response;
        EXPECT_EQ(table.send(arguments, request, timeouts, response), expectOk) << response;
        return response;
    }

    CommandPipeTable table;
};

TEST_F(CommandPipe, AProgramIsStartedOnceAndAnswersEachRequest) {
    EXPECT_EQ(ask({"cat"}, "Kg1 Qh7", true), "Kg1 Qh7");
    EXPECT_EQ(ask({"cat"}, "", true), "");
    EXPECT_EQ(ask(script("numbered.sh"), "first", true), "1 first");
    EXPECT_EQ(ask(script("numbered.sh"), "second", true), "2 second");
    EXPECT_EQ(table.size(), 2u);
    EXPECT_NE(table.pidOf({"cat"}), 0);
}

TEST_F(CommandPipe, AProgramThatCannotBeRunIsReportedAndNotTriedAgain) {
    EXPECT_EQ(ask({"zmfi-no-such-program", "-x"}, "hello", false),
              "failed to start program 'zmfi-no-such-program': No such file or directory");
    EXPECT_EQ(ask({"zmfi-no-such-program", "-x"}, "hello", false),
              "attempt to communicate with inactive command-pipe program 'zmfi-no-such-program -x' (pid 0)");
    // A file that is there but may not be executed.
    EXPECT_EQ(ask({join({scripts, "numbered.sh"})}, "hello", false),
              join({"failed to start program '", scripts, "numbered.sh': Permission denied"}));
}

TEST_F(CommandPipe, TwoAnswersInOnePieceEndTheConversation) {
    const auto program = script("two_answers.sh");
    EXPECT_EQ(ask(program, "one", true), "one");
    EXPECT_EQ(ask(program, "two", false), join({"command-pipe program ", name(program, table), " sent multiple responses to request"}));
    EXPECT_EQ(ask(program, "three", false),
              join({"attempt to communicate with inactive command-pipe program ", name(program, table)}));
}

TEST_F(CommandPipe, AProgramThatLeavesWithoutAnsweringIsNoLongerResponding) {
    const auto program = script("exits_silently.sh");
    EXPECT_EQ(ask(program, "one", true), "one");
    EXPECT_EQ(ask(program, "two", false), join({"command-pipe program ", name(program, table), " is no longer responding"}));
}

TEST_F(CommandPipe, MessagesHoldAtMost4096BytesWithTheirNewline) {
    // The request's newline makes 4096; one byte more is refused before
    // anything is sent, and the program stays usable.
    const std::string longest(4095, 'r');
    EXPECT_EQ(ask({"cat"}, longest, true), longest);
    EXPECT_EQ(ask({"cat"}, join({longest, "r"}), false), "size of request (4097) exceeds message size limit (4096)");
    EXPECT_EQ(ask({"cat"}, "still there", true), "still there");

    const auto program = script("long_answers.sh");
    EXPECT_EQ(ask(program, "one", true), std::string(4095, 'x'));
    EXPECT_EQ(ask(program, "two", false), join({"command-pipe program ", name(program, table), " response exceeded max length (4096)"}));
}

TEST_F(CommandPipe, TheFirstRequestHasItsOwnTimeout) {
    // 0.4 seconds to the first answer: within a first timeout of a second,
    // and the later requests keep to theirs.
    const auto slowStart = script("slow_start.sh");
    EXPECT_EQ(ask(slowStart, "one", true, {1000, 100}), "one");
    EXPECT_EQ(ask(slowStart, "two", true, {1000, 100}), "two");

    CommandPipeTable other;
    std::string response;
    EXPECT_FALSE(other.send(slowStart, "one", {200, 1000}, response));
    EXPECT_EQ(response, join({"command-pipe program ", name(slowStart, other),
                           " failed to respond within allotted time (200 milliseconds)"}));
}

TEST_F(CommandPipe, LaterRequestsKeepToTheLaterTimeout) {
    const auto slowLater = script("slow_later.sh");
    EXPECT_EQ(ask(slowLater, "one", true, {1000, 100}), "one");
    EXPECT_EQ(ask(slowLater, "two", false, {1000, 100}),
              join({"command-pipe program ", name(slowLater, table),
                    " failed to respond within allotted time (100 milliseconds)"}));
    // A timeout of 0 waits for as long as it takes.
    CommandPipeTable patient;
    std::string response;
    EXPECT_TRUE(patient.send(slowLater, "one", {0, 0}, response));
    EXPECT_TRUE(patient.send(slowLater, "two", {0, 0}, response));
    EXPECT_EQ(response, "two");
}

TEST_F(CommandPipe, TwoThreadsShareOneProgramOneRequestAtATime) {
    const auto program = script("numbered.sh");
    constexpr int perThread = 200;
    std::vector<std::string> answers[2];
    auto worker = [&](int thread) {
        for (int k = 0; k < perThread; ++k) {
            std::string response;
            const std::string request = join({"t", std::to_string(thread), "-", std::to_string(k)});
            if (!table.send(program, request, {}, response)) response = join({"failed: ", response});
            answers[thread].push_back(join({request, "|", response}));
        }
    };
    std::thread first(worker, 0), second(worker, 1);
    first.join();
    second.join();
    // Every answer names its own request, and the running numbers of the one
    // program cover both threads without a gap or a repeat.
    std::set<int> numbers;
    for (int thread = 0; thread < 2; ++thread) {
        ASSERT_EQ(answers[thread].size(), size_t(perThread));
        for (const std::string& answer : answers[thread]) {
            const size_t bar = answer.find('|'), blank = answer.find(' ', bar);
            ASSERT_NE(blank, std::string::npos) << answer;
            EXPECT_EQ(answer.substr(blank + 1), answer.substr(0, bar));
            numbers.insert(std::stoi(answer.substr(bar + 1, blank - bar - 1)));
        }
    }
    EXPECT_EQ(numbers.size(), size_t(2 * perThread));
    EXPECT_EQ(*numbers.begin(), 1);
    EXPECT_EQ(*numbers.rbegin(), 2 * perThread);
    EXPECT_EQ(table.size(), 1u);
}

TEST_F(CommandPipe, TheTableHoldsAHundredAndOnePrograms) {
    // Programs that fail to start take their place all the same.
    std::string response;
    for (int i = 0; i < 101; ++i)
        EXPECT_FALSE(table.send({join({"zmfi-no-such-program-", std::to_string(i)})}, "x", {}, response));
    EXPECT_EQ(table.size(), 101u);
    EXPECT_FALSE(table.send({"cat"}, "x", {}, response));
    EXPECT_EQ(response, "maximum number of command-pipe programs (100) reached");
    EXPECT_EQ(table.size(), 101u);
    // One already there is still found.
    EXPECT_FALSE(table.send({"zmfi-no-such-program-7"}, "x", {}, response));
    EXPECT_EQ(response, "attempt to communicate with inactive command-pipe program 'zmfi-no-such-program-7' (pid 0)");
}

}  // namespace
}  // namespace tarnfold::zmf
