#include "driver/path_search.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace tarnfold::zmf {
namespace {

namespace fs = std::filesystem;

class PathSearch : public ::testing::Test {
protected:
    void SetUp() override {
        root_ = fs::temp_directory_path() / ("zmfi-path-" + std::to_string(::getpid()));
        fs::remove_all(root_);
        fs::create_directories(root_ / "lib");
        fs::create_directories(root_ / "work");
        previous_ = fs::current_path();
        fs::current_path(root_ / "work");
    }
    void TearDown() override {
        fs::current_path(previous_);
        fs::remove_all(root_);
    }
    static void write(const fs::path& path, const std::string& text) {
        std::ofstream(path, std::ios::binary) << text;
    }

    fs::path root_;
    fs::path previous_;
};

TEST_F(PathSearch, CurrentDirectoryWinsThenEachDirectoryInOrder) {
    std::string lib = (root_ / "lib").string();
    write(root_ / "lib" / "q.zmf", "from lib");
    // A trailing slash still gets one of its own: "lib//q.zmf" opens fine.
    EXPECT_EQ(resolveFile("q.zmf", {"nowhere", lib + "/"}), lib + "//q.zmf");

    write(root_ / "work" / "q.zmf", "from here");
    EXPECT_EQ(resolveFile("q.zmf", {lib}), "q.zmf");
    EXPECT_EQ(resolveFile("missing.zmf", {lib}), "missing.zmf");
    EXPECT_EQ(resolveFile("/abs/never.zmf", {lib}), "/abs/never.zmf");
}

TEST_F(PathSearch, ReadQueryFileReportsTheResolvedNameAndReason) {
    write(root_ / "lib" / "q.zmf", "check\n");
    queryPathList = {(root_ / "lib").string()};
    EXPECT_EQ(readQueryFile("q.zmf"), "check\n");

    testing::internal::CaptureStdout();
    EXPECT_EQ(readQueryFile("none.zmf"), "");
    fs::create_directory(root_ / "work" / "dir.zmf");
    EXPECT_EQ(readQueryFile("dir.zmf"), "");
    write(root_ / "work" / "empty.zmf", "");
    EXPECT_EQ(readQueryFile("empty.zmf"), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Failed to open ZMF file 'none.zmf': No such file or directory\n"
              "Failed to open ZMF file 'dir.zmf': Is a directory\n");
    queryPathList.clear();
}

TEST(PathText, SplitKeepsEmptyPiecesAndStemDropsDirectoryAndLastExtension) {
    EXPECT_EQ(splitPath("a;;b/", ';'), (std::vector<std::string>{"a", "", "b/"}));
    EXPECT_EQ(splitPath("", ';'), (std::vector<std::string>{""}));
    EXPECT_EQ(fileStem("dir.v1/sub/query.v2.zmf"), "query.v2");
    EXPECT_EQ(fileStem("dir.v1/noext"), "noext");
    EXPECT_EQ(fileStem("dir/"), "");
    EXPECT_EQ(fileStem(".zmf"), "");
}

}  // namespace
}  // namespace tarnfold::zmf
