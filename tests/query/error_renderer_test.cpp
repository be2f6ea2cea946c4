#include "query/error_renderer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>

namespace tarnfold::zmf {
namespace {

using ::testing::Eq;
using ::testing::ExitedWithCode;

QuerySource sampleSource() {
    QuerySource source;
    source.add("q.zmf", "check\nmate\n");
    return source;
}

std::string gameAndPosition(const ZMFEngine* engine) { return engine ? "game 7, position 12" : "no engine"; }

// Death tests only see standard error; the report writes to standard output.
void reportToStderr(ZMFiErrorRenderer& renderer, const Message& message) {
    dup2(STDERR_FILENO, STDOUT_FILENO);
    renderer.report(nullptr, message);
}

TEST(ZMFiErrorRenderer, NonErrorsAreTheBareText) {
    QuerySource source = sampleSource();
    std::mutex mutex;
    ZMFiErrorRenderer renderer(&source, &mutex, 2, gameAndPosition);
    testing::internal::CaptureStdout();
    renderer.report(nullptr, makeMessage(MessageLevel::Warning, "sp\xC3\xA4t", 6));
    renderer.report(nullptr, makeMessage(MessageLevel::Note, "and so", 0));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "sp\xC3\xA4t\nand so\n");
}

TEST(ZMFiErrorRenderer, ErrorTextWithAndWithoutSource) {
    QuerySource source = sampleSource();
    const auto* engine = reinterpret_cast<const ZMFEngine*>(&source);
    Message error = makeMessage(MessageLevel::Error, "assert failed", 7);

    ZMFiErrorRenderer withSource(&source, nullptr, 0, gameAndPosition);
    EXPECT_EQ(withSource.reportText(engine, error),
              "q.zmf:2:2 error: assert failed\nmate\n ^   \ngame 7, position 12\n");
    ZMFiErrorRenderer bare(nullptr, nullptr, 0, gameAndPosition);
    EXPECT_EQ(bare.reportText(nullptr, error), "assert failed\nno engine\n");
    ZMFiErrorRenderer noContext(nullptr, nullptr, 0);
    EXPECT_EQ(noContext.reportText(engine, error), "assert failed\n");
}

TEST(ZMFiErrorRendererDeathTest, ErrorEndsTheProcessAfterWriting) {
    QuerySource source = sampleSource();
    std::mutex mutex;
    ZMFiErrorRenderer renderer(&source, &mutex, 1, gameAndPosition);
    EXPECT_EXIT(reportToStderr(renderer, makeMessage(MessageLevel::Error, "pipe closed", 0, {{1, 3}})),
                ExitedWithCode(1), Eq("q.zmf:1:1 error: pipe closed\ncheck\n^~~~  \nno engine\n"));
    ZMFiErrorRenderer bare(nullptr, nullptr, 1);
    EXPECT_EXIT(reportToStderr(bare, makeMessage(MessageLevel::Error, "pipe closed", 0)), ExitedWithCode(1),
                Eq("pipe closed\n"));
}

TEST(ZMFiErrorRenderer, ReportWaitsForTheConsoleLock) {
    std::mutex mutex;
    ZMFiErrorRenderer renderer(nullptr, &mutex, 3);
    testing::internal::CaptureStdout();
    std::thread worker;
    {
        std::lock_guard<std::mutex> held(mutex);
        worker = std::thread([&] { renderer.report(nullptr, makeMessage(MessageLevel::Info, "late", {})); });
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        std::cout << "first\n" << std::flush;
    }
    worker.join();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "first\nlate\n");
}

}  // namespace
}  // namespace tarnfold::zmf
