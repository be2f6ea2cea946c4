// Files written and read by a query: truncated once per run, then appended;
// whole lines from two writers; the messages of what cannot be done.

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>

#include "external/file_filters.h"

namespace tarnfold::zmf {
namespace {

namespace fs = std::filesystem;

// Strings joined by append: GCC 12 warns falsely on chains of +.
std::string join(std::initializer_list<std::string_view> pieces) {
    std::string text;
    for (std::string_view piece : pieces) text.append(piece);
    return text;
}

class FileFilters : public ::testing::Test {
protected:
    void SetUp() override {
        directory = fs::temp_directory_path() /
                    join({"zmfi-file-filters-", std::to_string(::getpid()), "-",
                          ::testing::UnitTest::GetInstance()->current_test_info()->name()});
        fs::remove_all(directory);
        fs::create_directories(directory);
    }
    void TearDown() override { fs::remove_all(directory); }

    std::string path(const std::string& name) const { return (directory / name).string(); }
    static std::string content(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }
    static void put(const std::string& path, const std::string& text) {
        std::ofstream(path, std::ios::binary) << text;
    }

    fs::path directory;
    OpenFileTable table;
    std::string error;
};

TEST_F(FileFilters, AFileIsReplacedOnceAndThenAppendedTo) {
    const std::string file = path("report.txt");
    put(file, "from an earlier run\n");
    EXPECT_TRUE(table.write(file, "first\n", false, error)) << error;
    EXPECT_EQ(content(file), "first\n");
    // Later writes of the run go on behind, noclobber or not.
    EXPECT_TRUE(table.write(file, "second\n", false, error)) << error;
    EXPECT_TRUE(table.write(file, "third\n", true, error)) << error;
    EXPECT_EQ(content(file), "first\nsecond\nthird\n");
}

TEST_F(FileFilters, NoclobberKeepsWhatTheFileHeld) {
    const std::string file = path("kept.txt");
    put(file, "kept\n");
    EXPECT_TRUE(table.write(file, "added\n", true, error)) << error;
    EXPECT_TRUE(table.write(file, "and more\n", false, error)) << error;
    EXPECT_EQ(content(file), "kept\nadded\nand more\n");
    // A file that is not there yet is made.
    EXPECT_TRUE(table.write(path("new.txt"), "made", true, error)) << error;
    EXPECT_EQ(content(path("new.txt")), "made");
}

TEST_F(FileFilters, TwoWritersLoseNoLineAndBreakNone) {
    const std::string file = path("shared.txt");
    constexpr int perThread = 2000;
    auto writer = [&](int thread) {
        std::string failure;
        for (int k = 0; k < perThread; ++k) {
            // Long enough that an unlocked write would be cut by the other's.
            const std::string line = join({"thread ", std::to_string(thread), " line ", std::to_string(k), " ",
                                           std::string(200, char('a' + thread)), "\n"});
            if (!table.write(file, line, false, failure)) ADD_FAILURE() << failure;
        }
    };
    std::thread first(writer, 0), second(writer, 1);
    first.join();
    second.join();
    std::istringstream lines(content(file));
    std::map<int, int> next;  // each thread's lines arrive in its order
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        int thread = -1, k = -1;
        char fill[256] = {};
        ASSERT_EQ(std::sscanf(line.c_str(), "thread %d line %d %255s", &thread, &k, fill), 3) << line;
        ASSERT_TRUE(thread == 0 || thread == 1) << line;
        EXPECT_EQ(std::string(fill), std::string(200, 'a' + thread)) << line;
        EXPECT_EQ(k, next[thread]++) << line;
    }
    EXPECT_EQ(count, 2 * perThread);
    EXPECT_EQ(next[0], perThread);
    EXPECT_EQ(next[1], perThread);
}

TEST_F(FileFilters, WhatCannotBeWrittenIsReportedWithItsReason) {
    const std::string missing = path("no/such/folder.txt");
    EXPECT_FALSE(table.write(missing, "x", false, error));
    EXPECT_EQ(error, join({"failed to open file '", missing,
                           "' for writing while evaluating 'writefile' filter: No such file or directory"}));
    EXPECT_FALSE(table.write(directory.string(), "x", true, error));
    EXPECT_EQ(error, join({"failed to open file '", directory.string(),
                           "' for writing while evaluating 'writefile' filter: Is a directory"}));
    // A full device takes the text into the buffer and refuses the flush.
    EXPECT_FALSE(table.write("/dev/full", "x", false, error));
    EXPECT_EQ(error, "failed to flush file '/dev/full' while evaluating 'writefile' filter: No space left on device");
    EXPECT_EQ(fileAccessRefused("out.txt", true),
              "failed to open file 'out.txt' for writing while evaluating 'writefile' filter: Permission denied");
}

TEST_F(FileFilters, AFileIsReadWhole) {
    const std::string file = path("in.txt");
    const std::string text = join({"line one\nÉchecs\n", std::string(100000, 'z'), std::string(1, '\0'), "end"});
    put(file, text);
    std::string read;
    ASSERT_TRUE(readWholeFile(file, read, error)) << error;
    EXPECT_EQ(read, text);
    put(file, "");
    ASSERT_TRUE(readWholeFile(file, read, error)) << error;
    EXPECT_EQ(read, "");

    EXPECT_FALSE(readWholeFile(path("absent.txt"), read, error));
    EXPECT_EQ(error, join({"failed to open file '", path("absent.txt"),
                           "' for reading while evaluating 'readfile' filter: No such file or directory"}));
    EXPECT_FALSE(readWholeFile(directory.string(), read, error));
    EXPECT_EQ(error, join({"failed to open file '", directory.string(),
                           "' for reading while evaluating 'readfile' filter: Is a directory"}));
}

}  // namespace
}  // namespace tarnfold::zmf
