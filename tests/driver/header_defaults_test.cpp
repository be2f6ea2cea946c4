#include "driver/header_defaults.h"

#include <gtest/gtest.h>

#include "driver/command_line.h"

namespace tarnfold::zmf {
namespace {

ZMFDriverOptions fromCommandLine(std::vector<std::string> arguments) {
    ZMFDriverOptions options;
    std::string error;
    EXPECT_TRUE(parseCommandLine(arguments, options, error)) << error;
    return options;
}

QueryHeaderSettings fullHeader() {
    QueryHeaderSettings header;
    header.input = {"a.pgn", "b.pgn"};
    header.output = "h.pgn";
    header.matchCount = HeaderRange{2, 4};
    header.gameNumber = HeaderRange{10, 20};
    header.result = 1;
    header.matchString = "HIT";
    header.silent = true;
    header.variations = true;
    return header;
}

TEST(HeaderDefaults, FillWhatTheCommandLineLeftOpen) {
    ZMFDriverOptions options = fromCommandLine({"--append", "old.pgn"});
    options.outputFile.clear();  // as if only appending had been asked for
    applyHeaderDefaults(fullHeader(), options);
    EXPECT_EQ(options.inputFile, "a.pgn");
    EXPECT_EQ(options.outputFile, "h.pgn");
    EXPECT_FALSE(options.appendOutput);
    EXPECT_TRUE(options.hasMatchCount);
    EXPECT_EQ(options.matchCountMin, 2u);
    EXPECT_EQ(options.matchCountMax, 4u);
    EXPECT_EQ(options.gameNumberFirst, 10u);
    EXPECT_EQ(options.gameNumberLast, 20u);
    EXPECT_TRUE(options.silent && options.quiet);
    EXPECT_TRUE(options.processVariations);
    EXPECT_EQ(options.matchString, "HIT");
    EXPECT_TRUE(options.hasResultFilter);
    EXPECT_EQ(options.resultFilter, 1u);
    EXPECT_FALSE(options.sortByMatchCount);
}

TEST(HeaderDefaults, TheCommandLineWins) {
    ZMFDriverOptions options =
        fromCommandLine({"-i", "cmd.pgn", "-a", "cmd-out.pgn", "--matchcount", "0", "0", "-g", "3", "--quiet",
                         "--mainline", "--matchstring", "M"});
    QueryHeaderSettings header = fullHeader();
    header.sortMatchCount = HeaderRange{5, 9};
    applyHeaderDefaults(header, options);
    EXPECT_EQ(options.inputFile, "cmd.pgn");
    EXPECT_EQ(options.outputFile, "cmd-out.pgn");
    EXPECT_TRUE(options.appendOutput);
    EXPECT_EQ(options.matchCountMin, 0u);
    EXPECT_EQ(options.matchCountMax, 0u);
    EXPECT_EQ(options.gameNumberFirst, 3u);
    EXPECT_EQ(options.gameNumberLast, 3u);
    // --quiet shuts out the header's silent as well.
    EXPECT_TRUE(options.quiet);
    EXPECT_FALSE(options.silent);
    EXPECT_FALSE(options.processVariations);
    EXPECT_EQ(options.matchString, "M");
    // Sorting by match count is the header's alone; its range yields to --matchcount.
    EXPECT_TRUE(options.sortByMatchCount);
}

TEST(HeaderDefaults, SortMatchCountBringsItsRangeAndQuietLeavesSilentAlone) {
    ZMFDriverOptions options;
    QueryHeaderSettings header;
    header.sortMatchCount = HeaderRange{1, 7};
    header.quiet = true;
    applyHeaderDefaults(header, options);
    EXPECT_TRUE(options.sortByMatchCount);
    EXPECT_TRUE(options.hasMatchCount);
    EXPECT_EQ(options.matchCountMin, 1u);
    EXPECT_EQ(options.matchCountMax, 7u);
    EXPECT_TRUE(options.quiet);
    EXPECT_FALSE(options.silent);
    EXPECT_FALSE(options.hasResultFilter);
    EXPECT_EQ(options.inputFile, "");
}

}  // namespace
}  // namespace tarnfold::zmf
